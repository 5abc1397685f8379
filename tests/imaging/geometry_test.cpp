#include <algorithm>
#include <functional>
#include <initializer_list>

#include "foundation/support/cpu.h"
#include "imaging/operations/geometry/flip.h"
#include "imaging/operations/geometry/rotate.h"
#include "imaging/operations/geometry/shrink.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

// Each test runs with the plain vector units and with all there are.
class GeometryTest : public ImagingTest, public testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    ImagingTest::SetUp();
    DenyAvx2(GetParam());
  }
  void TearDown() override {
    DenyAvx2(false);
    ImagingTest::TearDown();
  }
};
INSTANTIATE_TEST_SUITE_P(Processors, GeometryTest, testing::Bool());

struct Place {
  uint32_t x;
  uint32_t y;
};
using Mapping = std::function<Place(Place from, uint32_t right, uint32_t bottom)>;

// `map` speaks of memory rows, `mapBits` of picture rows, for images of 1 bit.
struct Turn {
  const char* name;
  std::unique_ptr<CKIPImage> (*turn)(const CKIPImage*, ProgressCallback);
  std::unique_ptr<CKIPDeepImage> (*turnDeep)(const CKIPDeepImage*, ProgressCallback);
  bool sideways;
  bool keepsPadding;
  Mapping map;
  Mapping mapBits;
};

const Mapping kMirror = [](Place p, uint32_t right, uint32_t) { return Place{right - p.x, p.y}; };
const Mapping kTopDown = [](Place p, uint32_t, uint32_t bottom) {
  return Place{p.x, bottom - p.y};
};
const Mapping kHalf = [](Place p, uint32_t right, uint32_t bottom) {
  return Place{right - p.x, bottom - p.y};
};
const Mapping kRight = [](Place p, uint32_t right, uint32_t) { return Place{p.y, right - p.x}; };
const Mapping kLeft = [](Place p, uint32_t, uint32_t bottom) { return Place{bottom - p.y, p.x}; };

const Turn kTurns[] = {
    {"horizontal", FlipHorizontal, DeepFlipHorizontal, false, true, kMirror, kMirror},
    {"vertical", FlipVertical, DeepFlipVertical, false, true, kTopDown, kTopDown},
    {"90", Rotate90, DeepRotate90, true, false, kRight, kRight},
    {"180", Rotate180, DeepRotate180, false, false, kHalf, kHalf},
    {"270", Rotate270, DeepRotate270, true, false, kLeft, kLeft},
};

// Around the sizes of vectors, tiles and bands.
constexpr Place kSizes[] = {{1, 1},   {2, 1},   {1, 3},   {3, 2},   {4, 4},   {5, 8},    {8, 17},
                            {16, 16}, {17, 33}, {31, 15}, {33, 65}, {40, 64}, {67, 130}, {130, 7}};

std::unique_ptr<CKIPImage> Expected(const CKIPImage& image, const Turn& turn) {
  const uint32_t bits = image.bitsPerPixel();
  auto result = std::make_unique<CKIPImage>();
  result->SetPalette(image.palette());
  result->Create(turn.sideways ? image.height() : image.width(),
                 turn.sideways ? image.width() : image.height(), bits);
  if (turn.keepsPadding) result->CopyPixelsFrom(image);
  for (uint32_t y = 0; y < image.height(); ++y) {
    for (uint32_t x = 0; x < image.width(); ++x) {
      const Place to =
          (bits == 1 ? turn.mapBits : turn.map)({x, y}, image.width() - 1, image.height() - 1);
      if (bits == 1) {
        result->SetBit(to.x, to.y, image.GetBit(x, y));
      } else {
        std::memcpy(result->MemoryRow(to.y) + to.x * bits / 8, image.MemoryRow(y) + x * bits / 8,
                    bits / 8);
      }
    }
  }
  return result;
}

// Flipped rows of 1 bit move whole, with what is left over in their last byte.
bool ComparesWhole(const Turn& turn, const CKIPImage& image) {
  return image.bitsPerPixel() != 1 || turn.turn != FlipVertical;
}

TEST_P(GeometryTest, PixelsAndNothingElseMove) {
  for (const Turn& turn : kTurns) {
    for (const auto& [width, height] : kSizes) {
      for (const uint32_t bits : {1u, 8u, 24u}) {
        SCOPED_TRACE(testing::Message()
                     << turn.name << " " << width << "x" << height << "x" << bits);
        // White is the fourth colour at 8 bits: what fills the padding of a new image.
        Palette palette = ColoredPalette(bits == 24 ? 0 : 2);
        if (bits == 8) palette.insert(palette.end(), {{1, 2, 3, 0}, {255, 255, 255, 0}});
        const auto image = RandomImage(width, height, bits, palette);
        const Bytes before = PixelBytes(*image);
        const auto result = turn.turn(image.get(), nullptr);
        const auto expected = Expected(*image, turn);
        ASSERT_NE(result, nullptr);
        ASSERT_EQ(result->width(), expected->width());
        ASSERT_EQ(result->bitsPerPixel(), bits);
        if (ComparesWhole(turn, *image)) {
          ASSERT_EQ(PixelBytes(*result), PixelBytes(*expected));
        } else {
          for (uint32_t i = 0; i < width * height; ++i) {
            ASSERT_EQ(result->GetBit(i % width, i / width), expected->GetBit(i % width, i / width));
          }
        }
        EXPECT_EQ(PixelBytes(*image), before);
        EXPECT_EQ(result->name, "scan");
        EXPECT_EQ(result->palette(), palette);
        EXPECT_EQ(result->xResolution(), turn.sideways ? 150u : 300u);
        EXPECT_EQ(result->yResolution(), turn.sideways ? 300u : 150u);
      }
    }
  }
}

TEST_P(GeometryTest, DeepPixelsMoveTheSameWay) {
  for (const Turn& turn : kTurns) {
    for (const auto& [width, height] : kSizes) {
      for (const uint32_t padding : {0u, 3u}) {
        SCOPED_TRACE(testing::Message() << turn.name << " " << width << "x" << height);
        CKIPDeepImage image;
        ASSERT_TRUE(image.Create(width, height, width + padding, 12, 300, 150));
        const size_t count = size_t{width + padding} * height;
        for (size_t i = 0; i < count; ++i) image.GetPixels()[i] = Random(65536) & 0xFFFF;
        const auto result = turn.turnDeep(&image, nullptr);
        ASSERT_NE(result, nullptr);
        EXPECT_EQ(result->GetBits(), 12u);
        EXPECT_EQ(result->GetXResolution(), 300u);
        EXPECT_EQ(result->GetYResolution(), 150u);
        ASSERT_EQ(result->GetHeight(), turn.sideways ? width : height);
        ASSERT_EQ(result->GetStride(), turn.sideways ? height : width + padding);
        for (uint32_t y = 0; y < height; ++y) {
          for (uint32_t x = 0; x < width; ++x) {
            const Place to = turn.map({x, y}, width - 1, height - 1);
            ASSERT_EQ(*result->GetPixelPtr(to.x, to.y), *image.GetPixelPtr(x, y)) << x << " " << y;
          }
          for (uint32_t x = width; x < width + padding && !turn.sideways; ++x) {
            ASSERT_EQ(*result->GetPixelPtr(x, y), *image.GetPixelPtr(x, y));
          }
        }
      }
    }
  }
}

TEST_P(GeometryTest, KeepsWhatAFlipKeepsAndDropsWhatARotationDrops) {
  const auto image = RandomGrey(5, 4);
  image->fileFormat = 3;
  image->flipped = true;
  for (const Turn& turn : kTurns) {
    const auto result = turn.turn(image.get(), nullptr);
    EXPECT_EQ(result->flipped, turn.keepsPadding) << turn.name;
    EXPECT_EQ(result->fileFormat, turn.keepsPadding ? 3u : 0u) << turn.name;
  }
}

TEST_P(GeometryTest, StopsOnEscapeAndRefusesWhatIsNoImage) {
  const CKIPImage invalid;
  const CKIPDeepImage invalidDeep;
  CKIPDeepImage deep;
  ASSERT_TRUE(deep.Create(3, 100, 16));
  std::fill_n(deep.GetPixels(), 300, uint16_t{1});
  for (const Turn& turn : kTurns) {
    EXPECT_EQ(turn.turn(nullptr, nullptr), nullptr);
    EXPECT_EQ(turn.turn(&invalid, nullptr), nullptr);
    EXPECT_EQ(turn.turnDeep(nullptr, nullptr), nullptr);
    EXPECT_EQ(turn.turnDeep(&invalidDeep, nullptr), nullptr);
    for (const uint32_t bits : {1u, 8u, 16u, 24u}) {
      const auto run = [&](uint32_t rows) {
        const auto image = RandomImage(3, rows, bits == 16 ? 8 : bits);
        g_fractions.clear();
        return bits == 16 ? turn.turnDeep(&deep, RecordProgress) != nullptr
                          : turn.turn(image.get(), RecordProgress) != nullptr;
      };
      const bool pairs = turn.turn == FlipVertical;
      EXPECT_TRUE(run(100));
      EXPECT_EQ(g_fractions.size(), pairs ? 50u : 100u) << turn.name << bits;
      EXPECT_EQ(g_fractions.back(), pairs ? 0.98 : 0.99);
      platform::host::PressEscapeAtQuestion(3);
      EXPECT_FALSE(run(100)) << turn.name << bits;
      const std::vector<double> single = {0, 0.01, 0.02};
      const std::vector<double> paired = {0, 0.02, 0.04};
      EXPECT_EQ(g_fractions, pairs ? paired : single);
    }
  }
}

// The mean over the area of one target pixel, seen from the top.
double MeanUnder(const CKIPImage& image, Place target, Place size, uint8_t PaletteEntry::*channel) {
  const double xStep = static_cast<double>(image.width()) / size.x;
  const double yStep = static_cast<double>(image.height()) / size.y;
  double sum = 0;
  for (uint32_t y = 0; y < image.height(); ++y) {
    for (uint32_t x = 0; x < image.width(); ++x) {
      const double wide =
          std::min(x + 1.0, (target.x + 1) * xStep) - std::max<double>(x, target.x * xStep);
      const double high =
          std::min(y + 1.0, (target.y + 1) * yStep) - std::max<double>(y, target.y * yStep);
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
    Place size;
  };
  const Palette reversed = [] {
    Palette palette = NewIdentityPalette();
    std::reverse(palette.begin(), palette.end());
    return palette;
  }();
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
      ASSERT_EQ(small->width(), c.size.x);
      ASSERT_EQ(small->height(), c.size.y);
      EXPECT_EQ(small->bitsPerPixel(), 24u);
      EXPECT_EQ(small->palette(), c.palette);
      EXPECT_EQ(small->name, "scan");
      EXPECT_EQ(small->xResolution(), 1u);
      EXPECT_FALSE(small->flipped);
      for (uint32_t i = 0; i < c.size.x * c.size.y; ++i) {
        const Place at = {i % c.size.x, i / c.size.x};
        PaletteEntry color;
        ASSERT_TRUE(small->GetColor(at.x, at.y, &color));
        for (const auto channel : {&PaletteEntry::red, &PaletteEntry::green, &PaletteEntry::blue}) {
          ASSERT_NEAR(color.*channel, MeanUnder(*image, at, c.size, channel), 0.501);
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
  const CKIPImage invalid;
  EXPECT_EQ(ShrinkToLimit(nullptr, 10, nullptr), nullptr);
  EXPECT_EQ(ShrinkToLimit(&invalid, 10, nullptr), nullptr);
  EXPECT_EQ(ShrinkToLimit(image.get(), 1, nullptr), nullptr);
  ExpectError(kImageErrorDimensions, "Invalid image dimensions (1x0)");
  platform::host::PressEscapeAtQuestion(2);
  EXPECT_EQ(ShrinkToLimit(image.get(), 10, RecordProgress), nullptr);
  EXPECT_EQ(g_fractions, (std::vector<double>{0, 0.2}));

  const auto white = RandomGrey(3000, 2000);  // no brightness is lost in long sums
  std::fill_n(white->bits(), white->dataSize(), uint8_t{255});
  const Bytes pixels = PixelBytes(*ShrinkToLimit(white.get(), 4, nullptr));
  EXPECT_EQ(pixels, Bytes(pixels.size(), 255));
}

}  // namespace
}  // namespace zyr
