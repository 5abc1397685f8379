#include <algorithm>
#include <functional>

#include "imaging/operations/geometry/flip.h"
#include "imaging/operations/geometry/rotate.h"
#include "imaging/operations/geometry/shrink.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

using GeometryTest = BothProcessorsTest;
INSTANTIATE_TEST_SUITE_P(Processors, GeometryTest, testing::Bool());

// Where the sample at (x, y) comes from, counted from the ends of the result.
struct Place {
  int x, y;
};

// In memory rows, and in picture rows for images of 1 bit.
struct Turn {
  const char* name;
  std::unique_ptr<CKIPImage> (*turn)(const CKIPImage*, ProgressCallback);
  std::unique_ptr<CKIPDeepImage> (*turnDeep)(const CKIPDeepImage*, ProgressCallback);
  bool isSideways;
  Place (*source)(int x, int y, int right, int bottom);
};

const Turn kTurns[] = {
    {"horizontal", FlipHorizontal, DeepFlipHorizontal, false,
     [](int x, int y, int right, int) {
       return Place{right - x, y};
     }},
    {"vertical", FlipVertical, DeepFlipVertical, false,
     [](int x, int y, int, int bottom) {
       return Place{x, bottom - y};
     }},
    {"90", Rotate90, DeepRotate90, true,
     [](int x, int y, int, int bottom) {
       return Place{bottom - y, x};
     }},
    {"180", Rotate180, DeepRotate180, false,
     [](int x, int y, int right, int bottom) {
       return Place{right - x, bottom - y};
     }},
    {"270", Rotate270, DeepRotate270, true,
     [](int x, int y, int right, int) {
       return Place{y, right - x};
     }},
};

Grid Turned(const Grid& from, const Turn& turn) {
  Grid to = from;
  if (turn.isSideways) std::swap(to.width, to.height);
  return to.Made([&](int x, int y, int channel) {
    const Place source = turn.source(x, y, to.width - 1, to.height - 1);
    return from.At(source.x, source.y, channel);
  });
}

// Around the sizes of vectors, tiles and bands.
constexpr Size kTurnedSizes[] = {{1, 1},   {2, 1},   {1, 3},    {3, 2},   {4, 4},
                                 {5, 8},   {8, 17},  {16, 16},  {17, 33}, {31, 15},
                                 {33, 65}, {40, 64}, {67, 130}, {130, 7}};

TEST_P(GeometryTest, PixelsMove) {
  for (const Turn& turn : kTurns) {
    for (const auto& [width, height] : kTurnedSizes) {
      SCOPED_TRACE(testing::Message() << turn.name << " " << width << "x" << height);
      for (const uint32_t bits : {1u, 8u, 24u}) {
        const auto image = RandomImage(width, height, bits, ColoredPalette(bits == 24 ? 0 : 2));
        const auto result = turn.turn(image.get(), nullptr);
        ASSERT_NE(result, nullptr);
        ASSERT_EQ(GridOf(*result), Turned(GridOf(*image), turn)) << bits;
        EXPECT_EQ(result->palette(), image->palette());
      }
      for (const uint32_t padding : {0u, 3u}) {
        const auto deep = DeepImageOf(Content::kRandom, width, height, 16, padding);
        const auto result = turn.turnDeep(deep.get(), nullptr);
        ASSERT_NE(result, nullptr);
        ASSERT_EQ(GridOf(*result), Turned(GridOf(*deep), turn));
      }
    }
  }
}

TEST_P(GeometryTest, RotationsDropWhatFlipsKeepAndTurnTheResolution) {
  const auto image = RandomGrey(5, 4);
  image->fileFormat = 3;
  image->flipped = true;
  for (const Turn& turn : kTurns) {
    const auto result = turn.turn(image.get(), nullptr);
    const bool isFlip = turn.turn == FlipHorizontal || turn.turn == FlipVertical;
    EXPECT_EQ(result->flipped, isFlip) << turn.name;
    EXPECT_EQ(result->fileFormat, isFlip ? 3u : 0u) << turn.name;
    EXPECT_EQ(result->name, "scan");
    EXPECT_EQ(result->xResolution(), turn.isSideways ? 150u : 300u);
    EXPECT_EQ(result->yResolution(), turn.isSideways ? 300u : 150u);
  }
}

TEST_P(GeometryTest, RowsTurnOverInPlace) {
  for (const uint32_t rowBytes : {4u, 4096u, 9000u}) {
    const auto image = RandomImage(rowBytes, 5, 8);
    const Bytes flipped = PixelBytes(*FlipVertical(image.get(), nullptr));
    FlipRows(image->bits(), rowBytes, 5);
    EXPECT_EQ(PixelBytes(*image), flipped);
  }
}

// The mean over the area of one target pixel, seen from the top.
double MeanUnder(const CKIPImage& image, uint32_t left, uint32_t top, Size size,
                 uint8_t PaletteEntry::*channel) {
  const double xStep = static_cast<double>(image.width()) / size.width;
  const double yStep = static_cast<double>(image.height()) / size.height;
  double sum = 0;
  for (uint32_t y = 0; y < image.height(); ++y) {
    for (uint32_t x = 0; x < image.width(); ++x) {
      const double wide = std::min(x + 1.0, (left + 1) * xStep) - std::max<double>(x, left * xStep);
      const double high = std::min(y + 1.0, (top + 1) * yStep) - std::max<double>(y, top * yStep);
      PaletteEntry color;
      const uint32_t row = image.flipped ? image.height() - 1 - y : y;
      if (wide <= 0 || high <= 0 || !image.GetColor(x, row, &color)) continue;
      sum += color.*channel * wide * high;
    }
  }
  return sum / (xStep * yStep);
}

TEST_P(GeometryTest, ShrunkPixelsAreMeans) {
  struct Case {
    uint32_t width, height, bits;
    Palette palette;
    uint32_t limit;
    Size size;
  };
  Palette reversed = NewIdentityPalette();
  std::reverse(reversed.begin(), reversed.end());
  const Case cases[] = {
      {100, 50, 8, NewIdentityPalette(), 10, {10, 5}}, {17, 40, 8, reversed, 13, {5, 13}},
      {31, 32, 8, ColoredPalette(200), 31, {30, 31}},  {37, 20, 24, {}, 11, {11, 5}},
      {45, 46, 1, ColoredPalette(2), 7, {6, 7}},       {9, 9, 1, {}, 1, {1, 1}}};
  for (const Case& c : cases) {
    for (const bool flipped : {false, true}) {
      SCOPED_TRACE(testing::Message() << c.width << "x" << c.height << "x" << c.bits << flipped);
      const auto image = RandomImage(c.width, c.height, c.bits, c.palette);
      image->flipped = flipped;
      const auto small = ShrinkToLimit(image.get(), c.limit, nullptr);
      ASSERT_NE(small, nullptr);
      ASSERT_EQ(small->width(), c.size.width);
      ASSERT_EQ(small->height(), c.size.height);
      EXPECT_EQ(small->bitsPerPixel(), 24u);
      EXPECT_EQ(small->palette(), c.palette);
      EXPECT_EQ(small->name, "scan");
      EXPECT_EQ(small->xResolution(), 1u);
      EXPECT_FALSE(small->flipped);
      for (uint32_t i = 0; i < c.size.width * c.size.height; ++i) {
        const uint32_t x = i % c.size.width, y = i / c.size.width;
        PaletteEntry color;
        ASSERT_TRUE(small->GetColor(x, y, &color));
        for (const auto channel : {&PaletteEntry::red, &PaletteEntry::green, &PaletteEntry::blue}) {
          ASSERT_NEAR(color.*channel, MeanUnder(*image, x, y, c.size, channel), 0.501);
        }
      }
    }
  }
}

TEST_P(GeometryTest, ShrinkingClonesWhatIsSmallAndRefusesTheRest) {
  const auto image = RandomGrey(100, 50);
  for (const uint32_t limit : {0u, 100u, 200u}) {
    const auto same = ShrinkToLimit(image.get(), limit, nullptr);
    ASSERT_NE(same, nullptr);
    EXPECT_EQ(PixelBytes(*same), PixelBytes(*image));
    EXPECT_EQ(same->bitsPerPixel(), 8u);
    EXPECT_EQ(same->xResolution(), 300u);
  }
  EXPECT_EQ(ShrinkToLimit(image.get(), 1, nullptr), nullptr);
  ExpectError(kImageErrorDimensions, "Invalid image dimensions (1x0)");
  const auto white = RandomGrey(3000, 2000);  // no brightness is lost in long sums
  std::fill_n(white->bits(), white->dataSize(), uint8_t{255});
  const Bytes pixels = PixelBytes(*ShrinkToLimit(white.get(), 4, nullptr));
  EXPECT_EQ(pixels, Bytes(pixels.size(), 255));
}

}  // namespace
}  // namespace zyr
