#include "tools/makephantom/phantom.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "acquire/image_cache/cached_image.h"
#include "platform/host/host.h"
#include "tools/makephantom/cache_record.h"
#include "tools/makephantom/exact_math.h"
#include "tools/makephantom/noise.h"
#include "tools/makephantom/phantom_options.h"

namespace zyr {
namespace {

// The whole view at an eighth of the usual size.
PhantomSettings Small(uint64_t seed) { return {145, 200, 180, seed}; }

uint64_t Digest(const std::vector<uint16_t>& samples) {
  uint64_t digest = 0;
  for (const uint16_t sample : samples) digest = HashBits(digest ^ sample);
  return digest;
}

TEST(Phantom, IsTheSameOnEveryBuild) {
  EXPECT_EQ(Digest(DrawPhantom(Small(1))), 4412320083818352321u);
  EXPECT_EQ(Digest(DrawPhantom(Small(2))), 5402959230487674575u);
}

TEST(Phantom, LooksLikeAnXRayOfLowerTeeth) {
  for (uint64_t seed = 1; seed <= 6; ++seed) {
    const std::vector<uint16_t> picture = DrawPhantom(Small(seed));
    const auto mean = [&](uint32_t top, uint32_t bottom) {
      double sum = 0;
      for (size_t i = top * 145u; i < bottom * 145u; ++i) sum += picture[i];
      return sum / (145.0 * (bottom - top));
    };
    const auto [least, most] = std::minmax_element(picture.begin(), picture.end());
    EXPECT_LT(*least, 400);
    EXPECT_GT(*most, 3000);
    EXPECT_LE(*most, 4095) << "more would wrap around in the stretch to 16 bits";
    // Air above the crowns is black, crowns and bone are not.
    EXPECT_LT(mean(0, 15), 500) << seed;
    EXPECT_GT(mean(50, 75), 1000) << seed;
    EXPECT_GT(mean(130, 200), 1000) << seed;
    EXPECT_NE(Digest(picture), Digest(DrawPhantom(Small(seed + 1))));
  }
}

TEST(Phantom, ItsMathematicsIsThatOfTheLibrary) {
  for (double x = -30; x < 5; x += 0.37) EXPECT_NEAR(ExactExp(x) / std::exp(x), 1, 1e-9) << x;
  for (double angle = -0.7; angle < 0.7; angle += 0.05) {
    EXPECT_NEAR(SmallSin(angle), std::sin(angle), 1e-6);
    EXPECT_NEAR(SmallCos(angle), std::cos(angle), 1e-5);
  }
  RandomStream random(5);
  double sum = 0;
  double squares = 0;
  for (int i = 0; i < 20000; ++i) {
    const double value = random.Normal();
    sum += value;
    squares += value * value;
  }
  EXPECT_NEAR(sum / 20000, 0, 0.03);
  EXPECT_NEAR(squares / 20000, 1, 0.03);
}

CacheRecord Record(uint32_t bits, uint32_t width, uint32_t height, uint16_t most) {
  CacheRecord record;
  record.bitsPerPixel = bits;
  record.width = width;
  record.height = height;
  record.xResolution = 1129;
  record.yResolution = 564;
  record.captureTime = 1'700'000'000;
  record.frameNumber = 3;
  record.sensorId = "2000D-000001";
  for (uint32_t i = 0; i < width * height; ++i)
    record.samples.push_back(static_cast<uint16_t>(i * 7919 % (most + 1)));
  return record;
}

TEST(CacheRecords, SurviveTheirOwnFileAndNoTornOne) {
  for (const uint32_t bits : {8u, 12u}) {
    const CacheRecord record = Record(bits, 5, 3, 255);
    const std::vector<uint8_t> bytes = EncodeCacheRecord(record);
    EXPECT_EQ(bytes.size(), 36u + 12 + 15 * (bits == 8 ? 1 : 2));
    const std::optional<CacheRecord> read = DecodeCacheRecord(bytes);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->samples, record.samples);
    EXPECT_EQ(read->sensorId, record.sensorId);
    EXPECT_EQ(read->frameNumber, 3u);
    for (size_t size = 0; size < bytes.size(); ++size) {
      EXPECT_FALSE(DecodeCacheRecord({bytes.begin(), bytes.begin() + size})) << size;
    }
  }
}

// The reader of the product against the writer here, and its deliveries against the second opinion
// on them.
TEST(CacheRecords, AreWhatTheImageCacheReadsAndDelivers) {
  platform::host::ResetAll();
  const struct {
    uint32_t bits;
    uint16_t most;
  } kCases[] = {{12, 4095}, {12, 1000}, {12, 90}, {8, 255}};
  for (const auto& one : kCases) {
    const CacheRecord record = Record(one.bits, 6, 5, one.most);
    const std::vector<uint8_t> bytes = EncodeCacheRecord(record);
    platform::host::PutFile("C:\\ZYRTwain\\CACHEDRAW.RAW",
                            {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    for (const uint32_t bits : {8u, 16u}) {
      CachedImage image;
      ASSERT_TRUE(image.Load("C:\\ZYRTwain\\CACHEDRAW.RAW"));
      EXPECT_EQ(image.width, 6u);
      EXPECT_EQ(image.captureTime, 1'700'000'000u);
      EXPECT_EQ(image.sensorId, "2000D-000001");
      image.TurnTopDown();
      TransferTerms terms;
      terms.is16BitGrayscale = [=] { return bits == 16; };
      std::vector<uint8_t> buffer(4096);
      MemoryStrip strip;
      strip.isPointer = true;
      strip.length = static_cast<uint32_t>(buffer.size());
      strip.memory = buffer.data();
      uint32_t x = 0;
      uint32_t y = 0;
      bool done = false;
      ASSERT_TRUE(image.CopyToMemoryBuffer(&strip, &x, &y, &done, terms));
      EXPECT_TRUE(done);
      const GreyPicture expected = ExpectedPicture(record, bits);
      for (uint32_t i = 0; i < 30; ++i) {
        const uint8_t* sample = &buffer[i / 6 * strip.bytesPerRow + i % 6 * (expected.bits / 8)];
        EXPECT_EQ(expected.samples[i], expected.bits == 8 ? sample[0] : sample[0] + 256 * sample[1])
            << one.most << ' ' << bits << ' ' << i;
      }
    }
  }
  platform::host::ResetAll();
}

TEST(PhantomOptions, SayWhatIsWrong) {
  EXPECT_EQ(ParsePhantomOptions({"--out", "a", "--size", "303d"}).width, 798u);
  EXPECT_EQ(ParsePhantomOptions({"--out", "a", "--size", "20x30"}).height, 30u);
  EXPECT_EQ(ParsePhantomOptions({"--expect", "a.raw", "--as", "8", "--pgm", "b"}).error, "");
  const std::vector<std::vector<std::string>> kWrong = {{},
                                                        {"--out"},
                                                        {"--out", ""},
                                                        {"--out", "a", "--count", "0"},
                                                        {"--out", "a", "--size", "20"},
                                                        {"--out", "a", "--size", "0x5"},
                                                        {"--out", "a", "--depth", "10"},
                                                        {"--expect", "a"},
                                                        {"--frames", "2"},
                                                        {"--out", "a", "--pgm", "b"}};
  for (const std::vector<std::string>& arguments : kWrong) {
    EXPECT_NE(ParsePhantomOptions(arguments).error, "")
        << (arguments.empty() ? "" : arguments.back());
  }
}

}  // namespace
}  // namespace zyr
