#include "imaging/viewer/scaled_picture.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

using ScaledPictureTest = ImagingTest;
using Pixels = std::vector<uint32_t>;
constexpr uint32_t kUntouched = 0xDEADBEEF;

ViewSize SizeAt(const CKIPImage& image, double scale) {
  return {std::max(1, static_cast<int32_t>(image.width() * scale)),
          std::max(1, static_cast<int32_t>(image.height() * scale))};
}

Pixels Draw(const CKIPImage& image, double scale, const ViewRect& part) {
  const int32_t width = part.right - part.left;
  Pixels pixels(static_cast<size_t>(width * (part.bottom - part.top)), kUntouched);
  DrawScaled(image, scale, part, pixels.data(), static_cast<uint32_t>(width));
  return pixels;
}

Pixels DrawWhole(const CKIPImage& image, double scale) {
  const ViewSize size = SizeAt(image, scale);
  return Draw(image, scale, {0, 0, size.width, size.height});
}

// How much the image pixel `at` counts for the pixel `x` of the scaled picture along one axis.
double Share(double scale, int x, int at, int size) {
  if (scale < 1) {
    const double high = std::min(double(size), (x + 1) / scale);
    return std::max(0.0, std::min(high, at + 1.0) - std::max(x / scale, double(at))) /
           (high - x / scale);
  }
  if (scale >= kSharpScale) return at == int((x + 0.5) / scale) ? 1 : 0;
  const double middle = std::clamp((x + 0.5) / scale - 0.5, 0.0, size - 1.0);
  return std::max(0.0, 1 - std::abs(middle - at));
}

// Blue, green and red.
std::array<double, 3> Expected(const CKIPImage& image, double scale, int x, int y) {
  std::array<double, 3> sums{};
  const int reachX = int(x / scale);
  const int reachY = int(y / scale);
  const int more = int(1 / scale) + 2;
  for (int v = std::max(0, reachY - 2); v <= reachY + more && v < int(image.height()); ++v) {
    const double down = Share(scale, y, v, int(image.height()));
    for (int u = std::max(0, reachX - 2); u <= reachX + more && u < int(image.width()); ++u) {
      const double share = down * Share(scale, x, u, int(image.width()));
      PaletteEntry color;
      image.GetColor(uint32_t(u), uint32_t(v), &color);
      sums[0] += color.blue * share;
      sums[1] += color.green * share;
      sums[2] += color.red * share;
    }
  }
  return sums;
}

// Within the rounding of weights to 2^-16 and of sums to 2^-8: no level beyond the nearest.
void ExpectPicture(const CKIPImage& image, double scale) {
  const Pixels pixels = DrawWhole(image, scale);
  const int width = SizeAt(image, scale).width;
  for (size_t i = 0; i < pixels.size(); ++i) {
    const int x = int(i) % width;
    const int y = int(i) / width;
    const std::array<double, 3> wanted = Expected(image, scale, x, y);
    ASSERT_LE(pixels[i], 0xFFFFFFu);
    for (size_t c = 0; c < 3; ++c) {
      ASSERT_NEAR(pixels[i] >> (8 * c) & 0xFF, wanted[c], 0.5 + 0.03)
          << "scale " << scale << " at " << x << ", " << y << " channel " << c;
    }
  }
}

std::unique_ptr<CKIPImage> ImageOf(int kind, uint32_t width, uint32_t height) {
  if (kind == 0) return RandomGrey(width, height);
  return RandomImage(width, height, kind == 1 ? 8 : kind == 2 ? 1 : 24, ColoredPalette(256));
}

constexpr double kScales[] = {0.0625, 0.31, 0.5, 0.625, 0.97, 1, 1.0679, 2.4027, 3.604, 4, 5.4, 16};

TEST_F(ScaledPictureTest, EveryPixelIsTheMeanOrTheBlendOfWhatItCovers) {
  for (int kind = 0; kind < 4; ++kind) {
    SCOPED_TRACE(kind);
    for (const double scale : kScales) ExpectPicture(*ImageOf(kind, 37, 22), scale);
  }
}

TEST_F(ScaledPictureTest, TinyAndThinImages) {
  const ViewSize sizes[] = {{1, 1}, {2, 1}, {1, 97}, {3000, 1}};
  for (const ViewSize& size : sizes) {
    for (int kind = 0; kind < 4; ++kind) {
      for (const double scale : {0.001, 0.4, 0.5, 1.0, 1.5, 7.0}) {
        const auto image = ImageOf(kind, uint32_t(size.width), uint32_t(size.height));
        if (image->width() * scale >= 1 && image->height() * scale >= 1) {
          ExpectPicture(*image, scale);
        } else {
          for (const uint32_t pixel : DrawWhole(*image, scale)) EXPECT_LE(pixel, 0xFFFFFFu);
        }
      }
    }
  }
  // A picture of one colour stays that, whatever the weights.
  CKIPImage white;
  ASSERT_TRUE(white.Create(2999, 3, 24));
  for (const double scale : {0.0007, 0.333, 0.71, 1.3}) {
    for (const uint32_t pixel : DrawWhole(white, scale)) EXPECT_EQ(pixel, 0xFFFFFFu);
  }
}

TEST_F(ScaledPictureTest, PartsAreCutFromTheWholeOnBothProcessors) {
  for (int kind = 0; kind < 4; ++kind) {
    const auto image = ImageOf(kind, 83, 59);
    for (const double scale : kScales) {
      SCOPED_TRACE(testing::Message() << "kind " << kind << " scale " << scale);
      DenyAvx2(false);
      const Pixels whole = DrawWhole(*image, scale);
      const ViewSize size = SizeAt(*image, scale);
      for (int i = 0; i < 12; ++i) {
        DenyAvx2(i % 2 == 1);
        const auto left = int32_t(Random(uint32_t(size.width)));
        const auto top = int32_t(Random(uint32_t(size.height)));
        const ViewRect part{left, top, left + 1 + int32_t(Random(uint32_t(size.width - left))),
                            top + 1 + int32_t(Random(uint32_t(size.height - top)))};
        // Into the middle of a larger target, whose other pixels stay.
        const int32_t rowPixels = part.right - part.left + 3;
        Pixels target(size_t(rowPixels) * size_t(part.bottom - part.top), kUntouched);
        Pixels expected = target;
        for (int32_t y = top; y < part.bottom; ++y) {
          std::copy_n(whole.begin() + y * size.width + left, rowPixels - 3,
                      expected.begin() + (y - top) * rowPixels);
        }
        DrawScaled(*image, scale, part, target.data(), uint32_t(rowPixels));
        ASSERT_EQ(target, expected);
      }
    }
  }
}

TEST_F(ScaledPictureTest, GreyPicturesAreColoredAfterScaling) {
  const auto image = RandomImage(2, 1, 8, NewIdentityPalette());
  image->SetByte(0, 0, 10);
  image->SetByte(1, 0, 20);
  image->palette()[15] = {200, 200, 200, 9};
  EXPECT_EQ(Draw(*image, 0.5, {0, 0, 1, 1}), Pixels{0xC8C8C8});
  image->palette().resize(12);
  EXPECT_EQ(Draw(*image, 0.5, {0, 0, 1, 1}), Pixels{0});
  image->SetPalette({});
  EXPECT_EQ(Draw(*image, 1, {1, 0, 2, 1}), Pixels{0x141414});
  const auto bits = RandomImage(2, 1, 1);
  bits->SetBit(0, 0, true);
  bits->SetBit(1, 0, false);
  EXPECT_EQ(Draw(*bits, 1, {0, 0, 2, 1}), (Pixels{0xFFFFFF, 0}));
}

TEST_F(ScaledPictureTest, SmoothDrawingStartsAnywhereAndGoesOnBeyondTheImage) {
  const auto image = RandomGrey(40, 30);
  const Pixels whole = DrawWhole(*image, 2.5);
  Pixels moved(50 * 20);
  DrawSmooth(*image, 2.5, 4, 2, {0, 0, 50, 20}, moved.data(), 50);  // from pixel (10, 5) on
  for (size_t y = 0; y < 20; ++y) {
    for (size_t x = 0; x < 50; ++x) ASSERT_EQ(moved[y * 50 + x], whole[(y + 5) * 100 + x + 10]);
  }
  for (const bool deny : {false, true}) {
    DenyAvx2(deny);
    for (const double scale : {0.3, 1.0, 80.0}) {
      DrawSmooth(*image, scale, -1000, 1000, {-20, -10, 30, 10}, moved.data(), 50);
      uint8_t corner = 0;
      image->GetByte(0, 29, &corner);
      for (const uint32_t pixel : moved) ASSERT_EQ(pixel, corner * 0x010101u);
    }
  }
}

}  // namespace
}  // namespace zyr
