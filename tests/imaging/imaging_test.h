// What the tests of the imaging package share.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

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
    EXPECT_EQ(platform::host::LiveBlocks() + platform::host::HeldLocks(), 0u);
    EXPECT_EQ(platform::host::CountsOfFiles().openHandles, 0);
    platform::host::ResetAll();
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

}  // namespace zyr
