// Every point operation against its rule, pixel by pixel.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include "foundation/math/portable_math.h"
#include "foundation/support/cpu.h"
#include "imaging/operations/levels/brightness_contrast.h"
#include "imaging/operations/levels/gamma.h"
#include "imaging/operations/levels/histogram.h"
#include "imaging/operations/levels/invert.h"
#include "imaging/operations/levels/stamp.h"
#include "platform/host/escape_key.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

using Samples = std::vector<uint16_t>;
using ByteRule = std::function<int(int level)>;
using SampleRule = std::function<int(int level)>;
constexpr double kOneOver255 = 0.00392156862745098;

// Both forms of the loops, each test.
class PointOperationsTest : public ImagingTest, public testing::WithParamInterface<bool> {
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
INSTANTIATE_TEST_SUITE_P(, PointOperationsTest, testing::Bool(),
                         [](const auto& tested) { return tested.param ? "Plain" : "Avx2"; });

enum class Content { kRandom, kFlat, kTwoLevels, kRamp, kBeyondMask };
constexpr Content kContents[] = {Content::kRandom, Content::kFlat, Content::kTwoLevels,
                                 Content::kRamp, Content::kBeyondMask};

struct DeepCase {
  uint32_t width, height, padding, bits;
  Content content;
};

uint32_t LevelAt(const DeepCase& deep, uint32_t index) {
  const uint32_t levels = 1u << deep.bits;
  switch (deep.content) {
    case Content::kRandom:
      return Random(levels);
    case Content::kFlat:
      return levels / 3;
    case Content::kTwoLevels:
      return index % 2 * (levels - 1);
    case Content::kRamp:
      return levels / 4 + index % (levels / 2);
    case Content::kBeyondMask:
      return index == 3 ? 0xFFFF : levels - 1;
  }
  return 0;
}

std::unique_ptr<CKIPDeepImage> NewDeep(const DeepCase& deep) {
  auto image = std::make_unique<CKIPDeepImage>();
  const uint32_t stride = deep.width + deep.padding;
  EXPECT_TRUE(image->Create(deep.width, deep.height, stride, deep.bits, 300, 150));
  for (uint32_t i = 0; i < stride * deep.height; ++i) {
    image->GetPixels()[i] = static_cast<uint16_t>(i % stride < deep.width ? LevelAt(deep, i) : ~i);
  }
  return image;
}

std::vector<DeepCase> DeepCases() {
  std::vector<DeepCase> cases;
  for (uint32_t bits = 1; bits <= 16; ++bits) {
    for (const Content content : kContents) {
      cases.push_back({1 + Random(40), 1 + Random(5), Random(4), bits, content});
    }
  }
  cases.push_back({1, 1, 0, 12, Content::kRandom});
  cases.push_back({4096, 1, 3, 12, Content::kRamp});
  return cases;
}

Samples AllSamples(const CKIPDeepImage& image) {
  return {image.GetPixels(), image.GetPixels() + size_t{image.GetStride()} * image.GetHeight()};
}

// The levels within the rows.
Samples Levels(const CKIPDeepImage& image) {
  Samples levels;
  for (uint32_t y = 0; y < image.GetHeight(); ++y) {
    levels.insert(levels.end(), image.GetRow(y), image.GetRow(y) + image.GetWidth());
  }
  return levels;
}

Bytes Levels(const CKIPImage& image) {
  Bytes levels;
  for (uint32_t y = 0; y < image.height(); ++y) {
    levels.insert(levels.end(), image.MemoryRow(y), image.MemoryRow(y) + image.width());
  }
  return levels;
}

void ExpectDeep(const CKIPDeepImage& image, const std::unique_ptr<CKIPDeepImage>& result,
                const SampleRule& rule) {
  ASSERT_NE(result, nullptr);
  ASSERT_EQ(result->GetStride(), image.GetStride());
  EXPECT_EQ(result->GetXResolution(), 300u);
  Samples expected = AllSamples(image);
  for (size_t i = 0; i < expected.size(); ++i) {
    if (i % image.GetStride() >= image.GetWidth()) continue;
    expected[i] = static_cast<uint16_t>(rule(expected[i]));
  }
  ASSERT_EQ(AllSamples(*result), expected)
      << image.GetWidth() << " x " << image.GetHeight() << ", " << image.GetBits() << " bits";
}

void ExpectGrey(const CKIPImage& image, const std::unique_ptr<CKIPImage>& result,
                const ByteRule& rule) {
  ASSERT_NE(result, nullptr);
  EXPECT_EQ(result->palette(), image.palette());
  Bytes expected = Levels(image);
  for (uint8_t& level : expected) level = static_cast<uint8_t>(rule(level));
  ASSERT_EQ(Levels(*result), expected);
}

// The grey images that the operations are tried on.
std::vector<std::unique_ptr<CKIPImage>> GreyImages() {
  std::vector<std::unique_ptr<CKIPImage>> images;
  for (const uint32_t width : {1, 2, 7, 16, 33, 300}) {
    images.push_back(RandomGrey(width, 1 + Random(3)));
    images.push_back(RandomGrey(width, 2));
    for (uint32_t i = 0; i < images.back()->dataSize(); ++i) images.back()->bits()[i] = 100;
    images.push_back(RandomGrey(width, 2));
    for (uint32_t i = 0; i < images.back()->dataSize(); ++i) {
      images.back()->bits()[i] = static_cast<uint8_t>(60 + i % 90);
    }
    images.push_back(RandomGrey(width, 3));
    for (uint32_t i = 0; i < images.back()->dataSize(); ++i) {
      images.back()->bits()[i] = i % 2 ? 255 : 0;
    }
  }
  return images;
}

int Adjusted(int v, int brightness, int contrast) {
  const double b = brightness * 0.01 * 255;
  const double c = contrast * 0.01;
  return static_cast<int>(std::clamp(v + (v - 128) * c + b, 0.0, 255.0) + 0.5);
}

int WithGamma(int v, double exponent) {
  return static_cast<int>(std::min(math::Pow(v * kOneOver255, exponent) * 255, 255.0));
}

TEST_P(PointOperationsTest, BrightnessAndContrastFollowTheirRule) {
  constexpr int kPercents[][2] = {{0, 0},    {10, 0},   {0, 10},  {-7, 33},       {100, -100},
                                  {3, -150}, {50, 100}, {13, 57}, {INT32_MIN, 1}, {1, INT32_MAX}};
  const auto greys = GreyImages();
  const auto colors = RandomImage(301, 3, 24);
  for (const auto& [brightness, contrast] : kPercents) {
    for (const auto& image : greys) {
      ExpectGrey(*image,
                 AdjustBrightnessContrast(image.get(), brightness, contrast, kKeepNoColor, nullptr),
                 [&](int v) { return Adjusted(v, brightness, contrast); });
    }
    const auto result =
        AdjustBrightnessContrast(colors.get(), brightness, contrast, kKeepNoColor, nullptr);
    for (uint32_t i = 0; i < 3 * 301; ++i) {
      ASSERT_EQ(result->bits()[i], Adjusted(colors->bits()[i], brightness, contrast));
    }
    for (const DeepCase& deep : DeepCases()) {
      const auto image = NewDeep(deep);
      const double top = image->GetMask();
      const double b = brightness * 0.01 * top;
      const double c = contrast * 0.01;
      const int middle = static_cast<int>(image->GetLevels() / 2);
      ExpectDeep(*image, DeepAdjustBrightnessContrast(image.get(), brightness, contrast, nullptr),
                 [&](int v) { return std::clamp(v + (v - middle) * c + b, 0.0, top); });
    }
  }
}

TEST_P(PointOperationsTest, GammaFollowsItsRule) {
  for (const double gamma : {0.2, 0.45, 1.0, 1.8, 2.2, 1e-310, 1e300}) {
    for (const auto& image : GreyImages()) {
      const double exponent = (1 / gamma + 1 / 1.1 + 1 / 0.7) * 0.3333333333333333;
      ExpectGrey(*image, AdjustGamma(image.get(), gamma, 1.1, 0.7, kKeepNoColor, nullptr),
                 [&](int v) { return WithGamma(v, exponent); });
    }
    for (const DeepCase& deep : DeepCases()) {
      const auto image = NewDeep(deep);
      const double top = image->GetMask();
      ExpectDeep(*image, DeepAdjustGamma(image.get(), gamma, nullptr), [&](int v) {
        return gamma == 1 ? v : std::min(math::Pow(v / top, 1 / gamma) * top, top);
      });
    }
  }
  const auto image = RandomImage(5, 5, 24);
  for (const double gamma : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(PixelBytes(*AdjustGamma(image.get(), 1.5, gamma, 1.5, kKeepNoColor, nullptr)),
              PixelBytes(*image));
    const auto deep = NewDeep({4, 4, 0, 12, Content::kRandom});
    EXPECT_EQ(AllSamples(*DeepAdjustGamma(deep.get(), gamma, nullptr)), AllSamples(*deep));
  }
}

TEST_P(PointOperationsTest, ColorsHaveTheirOwnGammasAndOneIsKept) {
  const auto image = RandomImage(37, 4, 24);
  const uint8_t kept[] = {30, 20, 10};  // blue, green, red
  std::copy_n(kept, 3, image->MemoryRow(2) + 3 * 5);
  std::copy_n(kept, 2, image->MemoryRow(2) + 3 * 6);
  image->MemoryRow(2)[3 * 6 + 2] = 11;
  const ColorRef keep = 10 | 20 << 8 | 30 << 16 | 2 << 24;  // the fourth byte is none of the colour
  const auto gamma = AdjustGamma(image.get(), 2, 1.5, 0.5, keep, nullptr);
  const auto contrast = AdjustBrightnessContrast(image.get(), 10, 20, keep, nullptr);
  const double exponents[] = {1 / 0.5, 1 / 1.5, 1 / 2.0};
  for (uint32_t i = 0; i < image->dataSize(); ++i) {
    const uint32_t inRow = i % image->stride();
    const bool isPadding = inRow >= 3 * 37;
    const bool isKept = i / image->stride() == 2 && inRow / 3 == 5;
    const uint8_t v = image->bits()[i];
    ASSERT_EQ(gamma->bits()[i], isPadding || isKept ? v : WithGamma(v, exponents[inRow % 3]));
    // Its clone is made without pixels, so the padding is a new image's.
    ASSERT_EQ(contrast->bits()[i], isPadding ? 255 : isKept ? v : Adjusted(v, 10, 20));
  }
  const auto grey = RandomGrey(300, 1);
  ExpectGrey(*grey, AdjustGamma(grey.get(), 2, 2, 2, 0x404040, nullptr), [](int v) {
    return v == 0x40 ? v : WithGamma(v, (1 / 2.0 + 1 / 2.0 + 1 / 2.0) * 0.3333333333333333);
  });
}

TEST_P(PointOperationsTest, PalettesChangeInThePixelsStead) {
  const auto image = RandomImage(9, 2, 8, ColoredPalette(20));
  const PaletteEntry keep = image->palette()[7];
  const ColorRef color = keep.red | uint32_t{keep.green} << 8 | uint32_t{keep.blue} << 16;
  const auto gamma = AdjustGamma(image.get(), 2, 1.5, 0.5, color, &RecordProgress);
  EXPECT_EQ(g_fractions.size(), 20u);
  EXPECT_EQ(PixelBytes(*gamma), PixelBytes(*image));
  const auto inverted = Invert(image.get(), nullptr);
  EXPECT_EQ(PixelBytes(*inverted), PixelBytes(*image));
  const auto inPlace = image->Clone(true);
  AdjustPaletteGamma(inPlace.get(), 2, 1.5, 0.5, color);
  EXPECT_EQ(inPlace->palette(), gamma->palette());
  const auto contrast = image->Clone(true);
  contrast->palette()[3].reserved = 9;
  AdjustPaletteBrightnessContrast(contrast.get(), -5, 40);
  EXPECT_EQ(contrast->palette()[3].reserved, 9);
  for (size_t i = 0; i < 20; ++i) {
    const PaletteEntry& was = image->palette()[i];
    const PaletteEntry& now = gamma->palette()[i];
    EXPECT_EQ(now.red, i == 7 ? was.red : WithGamma(was.red, 1 / 2.0));
    EXPECT_EQ(now.green, i == 7 ? was.green : WithGamma(was.green, 1 / 1.5));
    EXPECT_EQ(now.blue, i == 7 ? was.blue : WithGamma(was.blue, 1 / 0.5));
    EXPECT_EQ(inverted->palette()[i].red, 255 - was.red);
    EXPECT_EQ(inverted->palette()[i].reserved, was.reserved);
    EXPECT_EQ(contrast->palette()[i].green, Adjusted(was.green, -5, 40));
  }
  for (const uint32_t bits : {1, 24}) {
    const auto other = RandomImage(9, 2, bits, ColoredPalette(2));
    AdjustPaletteBrightnessContrast(other.get(), 50, 0);
    AdjustPaletteGamma(other.get(), 2, 2, 2, kKeepNoColor);
    EXPECT_EQ(other->palette(), ColoredPalette(2));
  }
}

TEST_P(PointOperationsTest, InvertTakesThePaddingAtOneBitOnly) {
  for (const uint32_t bits : {1, 8, 24}) {
    for (const uint32_t width : {1, 9, 35, 70}) {
      const auto image =
          RandomImage(width, 3, bits, bits == 8 ? NewIdentityPalette() : ColoredPalette(2));
      const auto result = Invert(image.get(), nullptr);
      const uint32_t used = bits == 1 ? image->stride() : width * bits / 8;
      for (uint32_t i = 0; i < image->dataSize(); ++i) {
        const uint8_t v = image->bits()[i];
        ASSERT_EQ(result->bits()[i], i % image->stride() < used ? 255 - v : v);
      }
    }
  }
  for (const DeepCase& deep : DeepCases()) {
    const auto image = NewDeep(deep);
    const int mask = static_cast<int>(image->GetMask());
    ExpectDeep(*image, DeepInvert(image.get(), nullptr), [&](int v) { return ~v & mask; });
  }
}

// Nothing over nothing, and something over nothing, have no integer; the least one's low bits are
// 0.
int Normalized(int v, int least, int greatest, double top) {
  if (least == greatest) return 0;
  return static_cast<int>(static_cast<double>(v - least) / (greatest - least) * top);
}

TEST_P(PointOperationsTest, NormalizeFollowsItsRule) {
  for (const auto& image : GreyImages()) {
    const Bytes levels = Levels(*image);
    const auto [least, greatest] = std::minmax_element(levels.begin(), levels.end());
    ExpectGrey(*image, Normalize(image.get(), nullptr, nullptr),
               [low = *least, high = *greatest](int v) { return Normalized(v, low, high, 255); });
    // Levels outside the reference's wrap around.
    const auto reference = RandomGrey(image->width() + 1, image->height());
    for (uint32_t i = 0; i < reference->dataSize(); ++i) reference->bits()[i] = 90 + i % 2;
    ExpectGrey(*image, Normalize(image.get(), reference.get(), nullptr),
               [](int v) { return Normalized(v, 90, 91, 255); });
  }
  for (const DeepCase& deep : DeepCases()) {
    const auto image = NewDeep(deep);
    const Samples levels = Levels(*image);
    const int mask = static_cast<int>(image->GetMask());
    const int least = std::min<int>(mask, *std::min_element(levels.begin(), levels.end()));
    const int greatest = *std::max_element(levels.begin(), levels.end());
    ExpectDeep(*image, DeepNormalize(image.get(), nullptr),
               [&](int v) { return Normalized(v, least, greatest, mask); });
  }
}

std::vector<int> CountsOf(const auto& levels, size_t count) {
  std::vector<int> counts(count);
  for (const auto level : levels) ++counts[std::min<size_t>(level, count - 1)];
  return counts;
}

std::vector<int> Equalized(const std::vector<int>& counts, size_t pixels) {
  const double top = static_cast<double>(counts.size()) - 1;
  std::vector<int> lut;
  double sum = 0;
  for (const int count : counts) {
    sum = std::min(sum + static_cast<double>(count) / static_cast<double>(pixels), 1.0);
    lut.push_back(static_cast<int>(std::min(std::trunc(sum * top + 0.5), top)));
  }
  return lut;
}

TEST_P(PointOperationsTest, EqualizeFollowsItsRule) {
  for (const auto& image : GreyImages()) {
    const auto reference = RandomGrey(image->width() + 3, image->height() + 1);
    for (const CKIPImage* source : {image.get(), reference.get()}) {
      const Bytes levels = Levels(*source);
      const std::vector<int> lut = Equalized(CountsOf(levels, 256), levels.size());
      ExpectGrey(*image, Equalize(image.get(), source == image.get() ? nullptr : source, nullptr),
                 [&](int v) { return lut[v]; });
    }
  }
  for (const DeepCase& deep : DeepCases()) {
    const auto image = NewDeep(deep);
    const Samples levels = Levels(*image);
    const std::vector<int> lut = Equalized(CountsOf(levels, image->GetLevels()), levels.size());
    ExpectDeep(*image, DeepEqualize(image.get(), nullptr),
               [&](int v) { return lut[std::min<size_t>(v, lut.size() - 1)]; });
  }
}

// Both ends, or -1 twice if nothing is to be spread.
std::pair<int, int> Clipped(const std::vector<int>& counts, int low, int high) {
  const int top = static_cast<int>(counts.size()) - 1;
  double total = 0;
  for (int i = 1; i < top; ++i) total += counts[i];
  const double lowCount = std::trunc(total * low * 0.01);
  const double highCount = std::trunc(total * high * 0.01);
  int lo = -1;
  int hi = -1;
  double sum = 0;
  for (int i = 1; i <= top && lo < 0; ++i) {
    sum += counts[i];
    if (counts[i] != 0 && sum >= lowCount) lo = i;
  }
  sum = 0;
  for (int i = top - 1; i >= 1 && hi < 0; --i) {
    sum += counts[i];
    if (counts[i] != 0 && sum >= highCount) hi = i;
  }
  return lo < 0 || hi < 0 || lo >= hi ? std::pair{-1, -1} : std::pair{lo, hi};
}

int Spread(int v, std::pair<int, int> range, double top) {
  if (v < range.first) return 0;
  if (v > range.second) return static_cast<int>(top);
  return static_cast<int>(static_cast<double>(v - range.first) / (range.second - range.first) *
                          top);
}

TEST_P(PointOperationsTest, AutomaticContrastFollowsItsRule) {
  constexpr int kPercents[][2] = {{0, 0}, {1, 1}, {2, 2}, {30, 5}, {50, 50}, {101, 0}};
  for (const auto& [low, high] : kPercents) {
    for (const auto& image : GreyImages()) {
      const auto range = Clipped(CountsOf(Levels(*image), 256), low, high);
      ExpectGrey(*image, AutoBrightnessContrast(image.get(), low, high, nullptr, nullptr),
                 [&](int v) { return range.first < 0 ? 255 : Spread(v, range, 255); });
    }
    for (const DeepCase& deep : DeepCases()) {
      const auto image = NewDeep(deep);
      const auto range = Clipped(CountsOf(Levels(*image), image->GetLevels()), low, high);
      ExpectDeep(*image, DeepAutoBrightnessContrast(image.get(), low, high, nullptr),
                 [&](int v) { return range.first < 0 ? v : Spread(v, range, image->GetMask()); });
    }
  }
  const auto image = RandomGrey(30, 3);
  EXPECT_EQ(PixelBytes(*AutoBrightnessContrastDefault(image.get(), nullptr)),
            PixelBytes(*AutoBrightnessContrast(image.get(), 2, 2, nullptr, nullptr)));
}

TEST_P(PointOperationsTest, StampsWhatLiesInside) {
  const auto stamp = RandomImage(11, 5, 1, ColoredPalette(2));
  const CKIPImage unusable;
  for (const auto& [x, y] : {std::pair{0, 0},
                             {3, 2},
                             {-4, -1},
                             {15, 6},
                             {-11, 0},
                             {40, 40},
                             {INT32_MIN, 0},
                             {0, INT32_MAX},
                             {INT32_MAX, INT32_MIN}}) {
    const auto image = NewDeep({19, 8, 2, 12, Content::kBeyondMask});
    Samples expected = AllSamples(*image);
    int rows = 0;
    for (int64_t sy = 0; sy < 5; ++sy) {
      rows += y + sy >= 0 && y + sy < 8;
      for (int64_t sx = 0; sx < 11; ++sx) {
        if (y + sy < 0 || y + sy >= 8 || x + sx < 0 || x + sx >= 19) continue;
        if (stamp->GetBit(static_cast<uint32_t>(sx), static_cast<uint32_t>(4 - sy))) continue;
        uint16_t& sample = expected[(y + sy) * 21 + x + sx];
        sample = static_cast<uint16_t>(4095 - sample);
      }
    }
    g_fractions.clear();
    EXPECT_TRUE(StampInverted(stamp.get(), image.get(), x, y, &RecordProgress));
    EXPECT_EQ(AllSamples(*image), expected) << x << ", " << y;
    EXPECT_EQ(static_cast<int>(g_fractions.size()), rows);
    EXPECT_FALSE(StampInverted(&unusable, image.get(), 0, 0, nullptr));
    EXPECT_FALSE(StampInverted(RandomGrey(3, 3).get(), image.get(), 0, 0, nullptr));
  }
}

using GreyOperation = std::unique_ptr<CKIPImage> (*)(const CKIPImage*, ProgressCallback);
using DeepOperation = std::unique_ptr<CKIPDeepImage> (*)(const CKIPDeepImage*, ProgressCallback);

constexpr GreyOperation kGreyOnly[] = {
    [](const CKIPImage* image, ProgressCallback p) { return Normalize(image, nullptr, p); },
    [](const CKIPImage* image, ProgressCallback p) { return Equalize(image, nullptr, p); },
    [](const CKIPImage* image, ProgressCallback p) {
      return AutoBrightnessContrast(image, 1, 1, nullptr, p);
    }};
constexpr GreyOperation kAllDepths[] = {Invert,
                                        [](const CKIPImage* image, ProgressCallback p) {
                                          return AdjustGamma(image, 2, 2, 2, kKeepNoColor, p);
                                        },
                                        [](const CKIPImage* image, ProgressCallback p) {
                                          return AdjustBrightnessContrast(image, 9, 9, kKeepNoColor,
                                                                          p);
                                        }};
constexpr DeepOperation kDeep[] = {
    DeepNormalize,
    DeepEqualize,
    DeepInvert,
    [](const CKIPDeepImage* image, ProgressCallback p) { return DeepAdjustGamma(image, 2, p); },
    [](const CKIPDeepImage* image, ProgressCallback p) {
      return DeepAdjustBrightnessContrast(image, 9, 9, p);
    },
    [](const CKIPDeepImage* image, ProgressCallback p) {
      return DeepAutoBrightnessContrast(image, 1, 1, p);
    }};

TEST_P(PointOperationsTest, RefusesWhatItCannotWorkOn) {
  const CKIPImage invalid;
  const CKIPDeepImage invalidDeep;
  const auto bitmap = RandomImage(20, 3, 1, ColoredPalette(2));
  const auto grey = RandomGrey(20, 3);
  for (const GreyOperation operation : kGreyOnly) {
    EXPECT_EQ(operation(nullptr, nullptr), nullptr);
    EXPECT_EQ(operation(&invalid, nullptr), nullptr);
    EXPECT_EQ(operation(bitmap.get(), nullptr), nullptr);
    EXPECT_EQ(operation(RandomImage(20, 3, 24).get(), nullptr), nullptr);
    EXPECT_EQ(operation(RandomImage(20, 3, 8, ColoredPalette(256)).get(), nullptr), nullptr);
  }
  for (const GreyOperation operation : kAllDepths) {
    EXPECT_EQ(operation(nullptr, nullptr), nullptr);
    EXPECT_EQ(operation(&invalid, nullptr), nullptr);
    EXPECT_NE(operation(RandomImage(20, 3, 8).get(), nullptr), nullptr);  // without a palette
  }
  EXPECT_EQ(AdjustBrightnessContrast(bitmap.get(), 1, 1, kKeepNoColor, nullptr), nullptr);
  EXPECT_EQ(PixelBytes(*AdjustGamma(bitmap.get(), 2, 2, 2, kKeepNoColor, nullptr)),
            PixelBytes(*bitmap));
  for (const DeepOperation operation : kDeep) {
    EXPECT_EQ(operation(nullptr, nullptr), nullptr);
    EXPECT_EQ(operation(&invalidDeep, nullptr), nullptr);
  }
  const auto narrow = RandomGrey(19, 3);
  const auto low = RandomGrey(20, 2);
  for (const CKIPImage* reference :
       {static_cast<const CKIPImage*>(narrow.get()), static_cast<const CKIPImage*>(low.get()),
        static_cast<const CKIPImage*>(bitmap.get()), &invalid}) {
    EXPECT_EQ(Normalize(grey.get(), reference, nullptr), nullptr);
    EXPECT_EQ(Equalize(grey.get(), reference, nullptr), nullptr);
    EXPECT_EQ(AutoBrightnessContrast(grey.get(), 1, 1, reference, nullptr), nullptr);
  }
}

TEST_P(PointOperationsTest, AsksAfterEveryRowAndTellsHowFar) {
  constexpr uint32_t kRows = 5;
  const auto grey = RandomGrey(20, kRows);
  const auto deep = NewDeep({20, kRows, 0, 12, Content::kRandom});
  // Passes over the rows, of which each is a half or the whole; then one question too early to end.
  const auto check = [](uint32_t passes, const auto& run) {
    g_fractions.clear();
    EXPECT_NE(run(&RecordProgress), nullptr);
    ASSERT_EQ(g_fractions.size(), passes * kRows);
    for (uint32_t i = 0; i < passes * kRows; ++i) {
      EXPECT_DOUBLE_EQ(g_fractions[i], static_cast<double>(i) / (passes * kRows));
    }
    for (uint32_t question = 1; question <= passes * kRows; ++question) {
      platform::host::PressEscapeAtQuestion(static_cast<int>(question));
      EXPECT_EQ(run(nullptr), nullptr) << question;
    }
    platform::host::ResetEscapeKey();
  };
  const auto checkGrey = [&](uint32_t passes, GreyOperation operation) {
    check(passes, [&](ProgressCallback p) { return operation(grey.get(), p); });
  };
  const auto checkDeep = [&](uint32_t passes, DeepOperation operation) {
    check(passes, [&](ProgressCallback p) { return operation(deep.get(), p); });
  };
  for (const GreyOperation operation : kGreyOnly) checkGrey(2, operation);
  for (const GreyOperation operation : kAllDepths) checkGrey(1, operation);
  for (const DeepOperation operation : {kDeep[0], kDeep[1], kDeep[5]}) checkDeep(2, operation);
  for (const DeepOperation operation : {kDeep[2], kDeep[3], kDeep[4]}) checkDeep(1, operation);
}

}  // namespace
}  // namespace zyr
