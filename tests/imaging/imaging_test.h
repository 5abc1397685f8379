// What the tests of the imaging package share.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "foundation/support/cpu.h"
#include "imaging/image/deep_image.h"
#include "imaging/image/grey.h"
#include "imaging/image/image_error.h"
#include "platform/host/host.h"

namespace zyr {

using Bytes = std::vector<uint8_t>;

inline std::vector<double> g_fractions;
inline void RecordProgress(double fraction) { g_fractions.push_back(fraction); }

class ImagingTest : public testing::Test {
 protected:
  void SetUp() override {
    platform::host::ResetAll();
    platform::host::PutFile(R"(C:\out\other)", "");
    g_fractions.clear();
    ReportImageError(77, "-");
  }
  void TearDown() override {
    DenyAvx2(false);
    EXPECT_EQ(platform::host::LiveBlocks() + platform::host::HeldLocks(), 0u);
    EXPECT_EQ(platform::host::CountsOfFiles().openHandles, 0);
    platform::host::ResetAll();
  }
};

// Each test runs with all vector units there are, and with the plain ones.
class BothProcessorsTest : public ImagingTest, public testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    ImagingTest::SetUp();
    DenyAvx2(GetParam());
  }
};

inline void ExpectError(uint32_t code, const std::string& text) {
  EXPECT_EQ(LastImageErrorCode(), code);
  EXPECT_EQ(LastImageErrorText(), text);
  ReportImageError(77, "-");
}

inline uint32_t Random(uint32_t limit) {
  static std::mt19937 generator(1);
  return generator() % limit;
}

// The colours differ, and none is grey.
inline Palette ColoredPalette(size_t count) {
  Palette palette(count);
  for (size_t i = 0; i < count; ++i) {
    const auto level = static_cast<uint8_t>(i);
    palette[i] = {level, static_cast<uint8_t>(255 - level / 2), static_cast<uint8_t>(level / 3), 0};
  }
  return palette;
}

// Random bytes, padding included; resolution 300 x 150.
inline std::unique_ptr<CKIPImage> RandomImage(uint32_t width, uint32_t height, uint32_t bits,
                                              Palette palette = {}) {
  auto image = std::make_unique<CKIPImage>();
  EXPECT_TRUE(image->Create("scan", width, height, 300, 150, bits));
  image->SetPalette(std::move(palette));
  for (uint32_t i = 0; i < image->dataSize(); ++i) image->bits()[i] = Random(256) & 0xFF;
  return image;
}

inline std::unique_ptr<CKIPImage> RandomGrey(uint32_t width, uint32_t height) {
  return RandomImage(width, height, 8, NewIdentityPalette());
}

inline Bytes PixelBytes(const CKIPImage& image) {
  return {image.bits(), image.bits() + image.dataSize()};
}

// What levels may look like; the last lie beyond a deep image's declared depth, too.
enum class Content { kRandom, kFlat, kTwoLevels, kRamp, kBeyondMask };
constexpr Content kContents[] = {Content::kRandom, Content::kFlat, Content::kTwoLevels,
                                 Content::kRamp, Content::kBeyondMask};

inline uint16_t LevelOf(Content content, uint32_t index, uint32_t mask) {
  const uint32_t levels[] = {Random(mask + 1), mask / 3, Random(2) * mask,
                             (mask + 1) / 4 + index % ((mask + 1) / 2), index == 3 ? 0xFFFF : mask};
  return static_cast<uint16_t>(levels[static_cast<int>(content)]);
}

inline std::unique_ptr<CKIPImage> ImageOf(Content content, uint32_t width, uint32_t height,
                                          uint32_t bits) {
  auto image = RandomImage(width, height, bits, bits == 8 ? NewIdentityPalette() : Palette{});
  for (uint32_t i = 0; i < image->dataSize(); ++i)
    image->bits()[i] = LevelOf(content, i, 255) & 255;
  return image;
}

inline std::unique_ptr<CKIPDeepImage> DeepImageOf(Content content, uint32_t width, uint32_t height,
                                                  uint32_t bits, uint32_t padding = 3) {
  auto image = std::make_unique<CKIPDeepImage>();
  EXPECT_TRUE(image->Create(width, height, width + padding, bits, 300, 150));
  for (uint32_t i = 0; i < image->GetStride() * height; ++i) {
    image->GetPixels()[i] = LevelOf(content, i, image->GetMask());
  }
  return image;
}

struct Size {
  uint32_t width, height;
};

// Below, at and beyond the vectors' lengths, tails included.
constexpr Size kSizes[] = {{1, 1},  {2, 3},  {1, 9},  {9, 1},  {5, 4},  {16, 3},
                           {17, 9}, {33, 6}, {64, 3}, {67, 6}, {131, 5}};

// Samples without regard to how they lie, their rows as in memory, those of 1 bit as in the
// picture.
struct Grid {
  int width, height, channels;
  std::vector<int> samples;

  // Beyond the edges, what is at the edges.
  int At(int64_t x, int64_t y, int channel) const {
    const int64_t row = std::clamp<int64_t>(y, 0, height - 1);
    const int64_t column = std::clamp<int64_t>(x, 0, width - 1);
    return samples[(row * width + column) * channels + channel];
  }
  // One of the same size, sample by sample from rule(x, y, channel).
  template <class Rule>
  Grid Made(Rule rule) const {
    Grid made{width, height, channels, {}};
    for (int i = 0; i < width * height * channels; ++i) {
      const int column = i / channels % width;
      made.samples.push_back(rule(column, i / channels / width, i % channels));
    }
    return made;
  }
  bool operator==(const Grid&) const = default;
};

inline Grid GridOf(const CKIPImage& image) {
  const int bits = static_cast<int>(image.bitsPerPixel());
  const Grid size{int(image.width()), int(image.height()), std::max(bits / 8, 1), {}};
  return size.Made([&](int x, int y, int channel) -> int {
    return bits == 1 ? image.GetBit(x, y) : image.MemoryRow(y)[x * size.channels + channel];
  });
}

inline Grid GridOf(const CKIPDeepImage& image) {
  const Grid size{int(image.GetWidth()), int(image.GetHeight()), 1, {}};
  return size.Made([&](int x, int y, int) { return image.GetRow(y)[x]; });
}

}  // namespace zyr
