#include "imaging/image/raw_pixels.h"

#include <algorithm>
#include <cmath>

#include "foundation/math/portable_math.h"
#include "imaging/operations/levels/depth_mapper.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

using RawPixelsTest = ImagingTest;
using Samples = std::vector<uint16_t>;

constexpr uint32_t kWidth = 67;
constexpr uint32_t kHeight = 5;
constexpr uint32_t kPad = 3;  // all bits set there, which must not count
constexpr uint32_t kRow = kWidth + kPad;

Samples RandomSamples(uint32_t limit) {
  Samples samples(kRow * kHeight, 0xFFFF);
  for (uint32_t i = 0; i < samples.size(); ++i) {
    if (i % kRow < kWidth) samples[i] = Random(limit) & 0xFFFF;
  }
  return samples;
}

// The mapping in its plainest form, one sample at a time.
uint32_t SlowDepth(const Samples& samples, const DepthMapping& mapping) {
  if (!mapping.detectDepth) return mapping.bits;
  uint32_t depth = 1;
  for (uint32_t i = 0; i < samples.size(); ++i) {
    const uint32_t value = mapping.positive ? samples[i] : 0xFFFFu - samples[i];
    for (uint32_t bit = 0; bit < mapping.bits && i % kRow < kWidth; ++bit) {
      if (value >> bit & 1) depth = std::max(depth, bit + 1);
    }
  }
  return depth;
}

int SlowLevel(uint32_t sample, uint32_t depth, const DepthMapping& mapping) {
  const uint32_t low = mapping.detectDepth ? 0 : mapping.lowBit;
  const uint32_t size = 1u << (depth - low);
  const uint32_t index = sample >> low;
  if (index >= size) return mapping.positive ? 0 : 255;
  int level = size >= 256 ? static_cast<int>(index * 256 / size)
                          : static_cast<int>(index * (1.0 / (size - 1)) * 255);
  if (!mapping.positive) level = 255 - level;
  if (mapping.brightness != 0 || mapping.contrast != 0) {
    const double b = mapping.brightness * 0.01 * 255;
    const double value = level + (level - 128) * (mapping.contrast * 0.01) + b;
    level = static_cast<int>(std::max(0.0, std::min(value, 255.0)) + 0.5);
  }
  if (mapping.gamma == 0 || mapping.gamma == 1) return level;
  return static_cast<int>(math::Pow(level * 0.00392156862745098, 1 / mapping.gamma) * 255);
}

void ExpectMapped(const Samples& samples, const DepthMapping& mapping, const std::string& what) {
  const auto image = ImageFromRaw16(samples.data(), kWidth, kHeight, kPad, 0, 300, mapping);
  ASSERT_TRUE(image != nullptr && image->IsGrey());
  ASSERT_EQ(image->width(), mapping.transpose ? kHeight : kWidth);
  const uint32_t depth = SlowDepth(samples, mapping);
  for (uint32_t i = 0; i < kWidth * kHeight; ++i) {
    const uint32_t x = i % kWidth;
    const uint32_t y = kHeight - 1 - i / kWidth;  // in the picture
    const uint16_t sample = samples[i / kWidth * kRow + x];
    const int level = SlowLevel(sample, depth, mapping);
    const int actual = mapping.transpose ? image->PictureRow(x)[y] : image->PictureRow(y)[x];
    ASSERT_EQ(actual, mapping.invert ? 255 - level : level) << what << " of " << sample;
  }
}

TEST_F(RawPixelsTest, SixteenBitsAreMappedByTheDepthInUse) {
  for (uint32_t limitBits = 1; limitBits <= 16; ++limitBits) {
    const Samples samples = RandomSamples(1u << limitBits);
    for (const uint32_t bits : {16u, 12u, 8u, 1u}) {
      for (int flags = 0; flags < 64; ++flags) {
        DepthMapping mapping = {
            .positive = (flags & 1) != 0, .bits = bits, .lowBit = bits > 9 ? limitBits % 6 : 0};
        mapping.invert = (flags & 2) != 0;
        mapping.transpose = (flags & 4) != 0;
        mapping.detectDepth = (flags & 8) != 0;
        if ((flags & 16) != 0) {
          mapping.brightness = static_cast<int32_t>(limitBits * 10) - 70;
          mapping.contrast = static_cast<int32_t>(bits * 30) - 200;
        }
        if ((flags & 32) != 0) mapping.gamma = 0.2 * limitBits;  // once 1
        ExpectMapped(samples, mapping, std::to_string(bits) + "/" + std::to_string(flags));
      }
    }
  }
}

TEST_F(RawPixelsTest, DepthsAtTheEdges) {
  const auto mapper = std::make_unique<CKIPDepthMapper>();
  for (uint32_t i = 0; i < 35; ++i) {  // one deep sample, wherever it stands
    for (const bool positive : {true, false}) {
      Samples samples(35, positive ? 0 : 0xFFFF);
      samples[i] ^= 0x800;
      mapper->Prepare(samples.data(), 35, 1, 0, {.positive = positive});
      EXPECT_EQ(mapper->highBit(), 12u) << i;
    }
  }
  const Samples black(12);
  mapper->Prepare(black.data(), 4, 3, 0, {});
  EXPECT_EQ(mapper->Map(1, true), 255);
  EXPECT_EQ(mapper->Map(2, true), 0);
  EXPECT_EQ(mapper->Map(2, false), 255);
  // More bits than there are, and no range.
  mapper->Prepare(black.data(), 4, 3, 0,
                  {.bits = 40, .lowBit = 99, .detectDepth = false, .gamma = -1});
  EXPECT_EQ(mapper->Map(0x8000, true), 255);

  CKIPDeepImage deep;
  ASSERT_TRUE(deep.Create(3, 2, 5, 9, 0, 150));
  std::fill_n(deep.GetPixels(), 10, uint16_t{0x1FF});
  *deep.GetPixelPtr(1, 1) = 0xF080;  // beyond the declared depth
  const auto image = ImageFromDeepImage(deep, {});
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->yResolution(), 150u);
  EXPECT_EQ(image->MemoryRow(0)[2], 255);
  EXPECT_EQ(image->MemoryRow(1)[1], 0);
}

TEST_F(RawPixelsTest, EightBitsGoInAndOut) {
  Bytes buffer((7 + 3) * 5, 0);  // 7 x 5 and 3 of padding
  for (size_t i = 0; i < buffer.size(); ++i) buffer[i] = i % 10 < 7 ? Random(256) & 0xFF : 0;
  const auto top = ImageFromRaw8(buffer.data(), 7, 5, false, 3, 0, 300, FirstRow::kTop);
  const auto image = ImageFromRaw8(buffer.data(), 7, 5, true, 3, 1, 1, FirstRow::kBottom);
  ASSERT_TRUE(top != nullptr && top->IsGrey() && image != nullptr);
  EXPECT_EQ(top->xResolution(), 1u);
  for (uint32_t i = 0; i < 35; ++i) {
    EXPECT_EQ(top->PictureRow(i / 7)[i % 7], 255 - buffer[i / 7 * 10 + i % 7]);
  }
  Bytes back(buffer.size());
  EXPECT_TRUE(CopyImageToRaw8(*image, back.data(), 3, RecordProgress));
  EXPECT_EQ(back, buffer);
  EXPECT_EQ(g_fractions, (std::vector<double>{0, 0.2, 0.4, 3 / 5.0, 0.8}));
  EXPECT_FALSE(CopyImageToRaw8(*RandomImage(7, 5, 24), back.data(), 3));
}

TEST_F(RawPixelsTest, FailuresLeaveNothing) {
  const Samples samples(64);
  EXPECT_EQ(ImageFromRaw16(nullptr, 8, 8, 0, 1, 1, {}), nullptr);
  ExpectError(1, "NULL image pointer specified");
  EXPECT_EQ(ImageFromRaw16(samples.data(), 0, 8, 0, 1, 1, {}), nullptr);
  platform::host::PressEscapeAtQuestion(8);
  EXPECT_EQ(ImageFromRaw16(samples.data(), 8, 8, 0, 1, 1, {}), nullptr);
  EXPECT_NE(ImageFromRaw16(samples.data(), 8, 8, 0, 0, 1, {}), nullptr);
}

}  // namespace
}  // namespace zyr
