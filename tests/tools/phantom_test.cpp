#include "tools/makephantom/phantom.h"

#include <gtest/gtest.h>

#include "acquire/image_cache/cached_image.h"
#include "platform/host/host.h"
#include "tests/tools/words.h"
#include "tools/makephantom/cache_record.h"
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
  for (const uint16_t most : {4095, 1000, 90, 255}) {
    const CacheRecord record = Record(most == 255 ? 8 : 12, 6, 5, most);
    const std::vector<uint8_t> bytes = EncodeCacheRecord(record);
    platform::host::PutFile("C:\\ZYRTwain\\CACHEDRAW.RAW",
                            {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    for (const uint32_t bits : {8u, 16u}) {
      CachedImage image;
      ASSERT_TRUE(image.Load("C:\\ZYRTwain\\CACHEDRAW.RAW"));
      EXPECT_TRUE(image.width == 6 && image.captureTime == 1'700'000'000);
      EXPECT_EQ(image.sensorId, "2000D-000001");
      image.TurnTopDown();
      TransferTerms terms;
      terms.is16BitGrayscale = [=] { return bits == 16; };
      uint8_t buffer[4096];
      MemoryStrip strip;
      strip.isPointer = true;
      strip.length = sizeof buffer;
      strip.memory = buffer;
      uint32_t x = 0, y = 0;
      bool done = false;
      ASSERT_TRUE(image.CopyToMemoryBuffer(&strip, &x, &y, &done, terms));
      EXPECT_TRUE(done);
      const GreyPicture expected = ExpectedPicture(record, bits);
      for (uint32_t i = 0; i < 30; ++i) {
        const uint8_t* sample = &buffer[i / 6 * strip.bytesPerRow + i % 6 * (expected.bits / 8)];
        EXPECT_EQ(expected.samples[i], expected.bits == 8 ? sample[0] : sample[0] + 256 * sample[1])
            << most << ' ' << bits << ' ' << i;
      }
    }
  }
  platform::host::ResetAll();
}

TEST(PhantomOptions, SayWhatIsWrong) {
  EXPECT_EQ(ParsePhantomOptions({"--out", "a", "--size", "303d"}).width, 798u);
  EXPECT_EQ(ParsePhantomOptions({"--out", "a", "--size", "20x30"}).height, 30u);
  EXPECT_EQ(ParsePhantomOptions({"--expect", "a.raw", "--as", "8", "--pgm", "b"}).error, "");
  for (const char* wrong :
       {"", "--out", "--out ''", "--out a --count 0", "--out a --size 20", "--out a --size 0x5",
        "--out a --depth 10", "--expect a", "--frames 2", "--out a --pgm b"}) {
    EXPECT_NE(ParsePhantomOptions(test::Words(wrong)).error, "") << wrong;
  }
}

}  // namespace
}  // namespace zyr
