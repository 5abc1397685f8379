#include "imaging/viewer/spot_tools.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "imaging/viewer/scaled_picture.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

using Pixels = std::vector<uint32_t>;

constexpr uint32_t kBackground = 0x405060;
constexpr int32_t kWidth = 300;
constexpr int32_t kHeight = 260;
constexpr ViewRect kClient = {0, 0, kWidth, kHeight};

using SpotToolsTest = ImagingTest;

// A client area with the picture at (left, top).
Pixels Paint(const CKIPImage& image, double zoom, int32_t left, int32_t top) {
  Pixels pixels(size_t(kWidth) * kHeight, kBackground);
  const auto width = int32_t(image.width() * zoom);
  const auto height = int32_t(image.height() * zoom);
  const ViewRect part{std::max(0, -left), std::max(0, -top), std::min(width, kWidth - left),
                      std::min(height, kHeight - top)};
  DrawScaled(image, zoom, part, pixels.data() + std::max(0, top) * kWidth + std::max(0, left),
             kWidth);
  return pixels;
}

// Around the client point (x, y).
Spot SpotAt(int32_t x, int32_t y, int32_t size, double zoom, int32_t left, int32_t top) {
  const ViewRect square{x - size / 2, y - size / 2, x - size / 2 + size, y - size / 2 + size};
  return {(x - left) / zoom, (y - top) / zoom, square, zoom};
}

uint32_t At(const Pixels& pixels, int32_t x, int32_t y) {
  return pixels[size_t(y) * kWidth + size_t(x)];
}

std::unique_ptr<CKIPImage> ImageOf(uint32_t width, uint32_t height,
                                   const std::function<double(uint32_t, uint32_t)>& level) {
  auto image = RandomGrey(width, height);
  for (uint32_t y = 0; y < height; ++y) {
    for (uint32_t x = 0; x < width; ++x) image->SetByte(x, y, uint8_t(level(x, y)));
  }
  return image;
}

TEST_F(SpotToolsTest, MagnifiedPixelsLieWhereTheyWereSeenFromTheMiddle) {
  // Two ramps, so that each pixel tells where in the image it is from.
  CKIPImage image;
  ASSERT_TRUE(image.Create(100, 80, 24));
  for (uint32_t y = 0; y < 80; ++y) {
    for (uint32_t x = 0; x < 100; ++x) image.SetBgr(x, y, x * 2 | y * 3 << 8 | 255 << 16);
  }
  for (uint32_t magnification = 2; magnification <= 5; ++magnification) {
    Pixels pixels = Paint(image, 1.5, 20, 10);
    const Spot spot = SpotAt(60, 40, 150, 1.5, 20, 10);
    DrawMagnifiedSpot(image, spot, magnification, kClient, pixels.data());
    const double scale = 1.5 * magnification;
    for (int32_t y = 0; y < 113; ++y) {
      for (int32_t x = 0; x < 133; ++x) {
        const double u = spot.imageX + (x + 0.5 - 60) / scale;
        const double v = spot.imageY + (y + 0.5 - 40) / scale;
        // Half a pixel at the image's edge goes on without change.
        if (u < 0.6 || v < 0.6 || u > 99.4 || v > 79.4) continue;
        ASSERT_NEAR(At(pixels, x, y) & 0xFF, (u - 0.5) * 2, 0.6) << x << ", " << y;
        ASSERT_NEAR(At(pixels, x, y) >> 8 & 0xFF, (v - 0.5) * 3, 0.6) << x << ", " << y;
      }
    }
    EXPECT_EQ(At(pixels, 134, 30), 0x303030u);  // the rim
    EXPECT_EQ(At(pixels, 133, 30), 0xE0E0E0u);
  }
  // What is not image is black.
  Pixels pixels = Paint(image, 1.5, 20, 10);
  DrawMagnifiedSpot(image, SpotAt(20, 10, 20, 1.5, 20, 10), 4, kClient, pixels.data());
  EXPECT_EQ(At(pixels, 19, 15), 0u);
  EXPECT_EQ(At(pixels, 21, 11) >> 16, 255u);
}

// The range of levels of a row in the middle of the spot.
double RangeIn(const Pixels& pixels, int32_t left, int32_t right, int32_t y) {
  const auto low = pixels.begin() + y * kWidth;
  const auto [least, most] = std::minmax_element(low + left, low + right);
  return double(*most & 0xFF) - double(*least & 0xFF);
}

TEST_F(SpotToolsTest, EnhancementBringsOutAHairlineAndNotNoise) {
  const auto grain = [] { return (Random(3) + Random(3)) / 2.0; };
  const auto crack = ImageOf(260, 220, [&](uint32_t x, uint32_t y) {
    return 140 + x / 8.0 + grain() - (std::abs(int(x) - 120 - int(y) / 20) <= 1 ? 14 : 0);
  });
  const auto air = ImageOf(260, 220, [&](uint32_t, uint32_t) { return 20 + 2 * grain(); });
  for (const bool isCrack : {true, false}) {
    const CKIPImage& image = isCrack ? *crack : *air;
    const Pixels before = Paint(image, 1, 0, 0);
    Pixels after = before;
    DrawEnhancedSpot(image, SpotAt(125, 100, 100, 1, 0, 0), kClient, after.data());
    const double factor = RangeIn(after, 115, 136, 100) / RangeIn(before, 115, 136, 100);
    if (isCrack) {
      EXPECT_GT(factor, 2);
    } else {
      EXPECT_LT(factor, 1.6);
    }
    // It fades in: nothing changes at a step.
    for (int32_t x = 75; x < 175; ++x) {
      EXPECT_NEAR(At(after, x, 50) & 0xFF, At(before, x, 50) & 0xFF, 3);
      EXPECT_NEAR(At(after, 75, x - 25) & 0xFF, At(before, 75, x - 25) & 0xFF, 3);
    }
  }
  const auto flat = ImageOf(260, 220, [](uint32_t, uint32_t) { return 77.0; });
  Pixels pixels = Paint(*flat, 1, 0, 0);
  DrawEnhancedSpot(*flat, SpotAt(125, 100, 200, 1, 0, 0), kClient, pixels.data());
  EXPECT_EQ(pixels, Paint(*flat, 1, 0, 0));
}

TEST_F(SpotToolsTest, ColorsAreThoseOfTheShownLevels) {
  const auto image = RandomGrey(100, 80);
  for (PaletteEntry& entry : image->palette()) {
    entry.blue = entry.green = entry.red = uint8_t(255 - entry.red);  // as by a brightness drag
  }
  const Pixels before = Paint(*image, 1, 10, 10);
  Pixels pixels = before;
  DrawColorizedSpot(*image, SpotAt(15, 15, 25, 1, 10, 10), Spectrum::kFire, kClient, pixels.data());
  EXPECT_EQ(At(pixels, 9, 12), kBackground);  // beside the picture
  EXPECT_EQ(At(pixels, 12, 9), kBackground);
  EXPECT_EQ(At(pixels, 10, 10), SpectrumColors(Spectrum::kFire)[At(before, 10, 10) & 0xFF]);
}

double Lightness(uint32_t color) {
  const auto light = [](uint32_t value) {
    const double part = value / 255.0;
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  const double luminance = 0.2126 * light(color >> 16) + 0.7152 * light(color >> 8 & 0xFF) +
                           0.0722 * light(color & 0xFF);
  return luminance > 0.008856 ? 116 * std::cbrt(luminance) - 16 : luminance * 903.3;
}

TEST_F(SpotToolsTest, SpectrumsRiseEvenlyInBrightnessAndDiffer) {
  for (uint32_t i = 6; i <= 10; ++i) {
    const auto& colors = SpectrumColors(Spectrum(i));
    for (uint32_t level = 0; level < 256; ++level) {
      ASSERT_NEAR(Lightness(colors[level]), level / 2.55, 0.7) << i << ": " << level;
    }
    for (uint32_t other = 6; other < i; ++other) EXPECT_NE(SpectrumColors(Spectrum(other)), colors);
  }
  const auto most = [](Spectrum spectrum, uint32_t level) {
    const uint32_t color = SpectrumColors(spectrum)[level];
    const uint32_t parts[] = {color >> 16, color >> 8 & 0xFF, color & 0xFF};
    return "RGB"[std::max_element(parts, parts + 3) - parts];
  };
  std::string order;
  for (const Spectrum spectrum : {Spectrum::kRedGreenBlue, Spectrum::kGreenRedBlue}) {
    for (const uint32_t level : {40, 128, 230}) order += most(spectrum, level);
  }
  EXPECT_EQ(order, "RGBGRB");
}

}  // namespace
}  // namespace zyr
