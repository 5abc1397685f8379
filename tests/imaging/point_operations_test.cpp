// Every point operation against its rule, pixel by pixel.
#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "foundation/math/portable_math.h"
#include "imaging/operations/levels/brightness_contrast.h"
#include "imaging/operations/levels/gamma.h"
#include "imaging/operations/levels/histogram.h"
#include "imaging/operations/levels/invert.h"
#include "imaging/operations/levels/stamp.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

using Samples = std::vector<uint16_t>;
constexpr double kOneOver255 = 0.00392156862745098;

using PointOperationsTest = BothProcessorsTest;
INSTANTIATE_TEST_SUITE_P(Processors, PointOperationsTest, testing::Bool());

template <class Check>
void ForEachGrey(Check check) {
  for (const uint32_t width : {1, 2, 7, 16, 33, 300}) {
    for (const Content content : kContents) check(*ImageOf(content, width, 1 + Random(3), 8));
  }
}

template <class Check>
void ForEachDeep(Check check) {
  for (uint32_t bits = 1; bits <= 16; ++bits) {
    for (const Content content : kContents) {
      check(*DeepImageOf(content, 1 + Random(40), 1 + Random(5), bits, Random(4)));
    }
  }
  check(*DeepImageOf(Content::kRandom, 1, 1, 12));
  check(*DeepImageOf(Content::kRamp, 4096, 1, 12));
}

template <class Image, class Rule>
void ExpectLevels(const Image& image, const std::unique_ptr<Image>& result, Rule rule) {
  ASSERT_NE(result, nullptr);
  constexpr int kLevelBits = std::is_same_v<Image, CKIPImage> ? 0xFF : 0xFFFF;
  Grid expected = GridOf(image);
  for (int& level : expected.samples) level = static_cast<int>(rule(level)) & kLevelBits;
  ASSERT_EQ(GridOf(*result), expected) << expected.width << " x " << expected.height;
}

Samples AllSamples(const CKIPDeepImage& image) {
  return {image.GetPixels(), image.GetPixels() + size_t{image.GetStride()} * image.GetHeight()};
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
  const auto colors = RandomImage(301, 3, 24);
  for (const auto& [percentB, percentC] : kPercents) {
    const int brightness = percentB, contrast = percentC;
    const auto check = [&](const CKIPImage& image) {
      ExpectLevels(image,
                   AdjustBrightnessContrast(&image, brightness, contrast, kKeepNoColor, nullptr),
                   [&](int v) { return Adjusted(v, brightness, contrast); });
    };
    ForEachGrey(check);
    check(*colors);
    ForEachDeep([&](const CKIPDeepImage& image) {
      const double top = image.GetMask();
      const double b = brightness * 0.01 * top;
      const double c = contrast * 0.01;
      const int middle = static_cast<int>(image.GetLevels() / 2);
      ExpectLevels(image, DeepAdjustBrightnessContrast(&image, brightness, contrast, nullptr),
                   [&](int v) { return std::clamp(v + (v - middle) * c + b, 0.0, top); });
    });
  }
}

TEST_P(PointOperationsTest, GammaFollowsItsRule) {
  for (const double gamma : {0.2, 0.45, 1.0, 1.8, 2.2, 1e-310, 1e300}) {
    ForEachGrey([&](const CKIPImage& image) {
      const double exponent = (1 / gamma + 1 / 1.1 + 1 / 0.7) * 0.3333333333333333;
      ExpectLevels(image, AdjustGamma(&image, gamma, 1.1, 0.7, kKeepNoColor, nullptr),
                   [&](int v) { return WithGamma(v, exponent); });
    });
    ForEachDeep([&](const CKIPDeepImage& image) {
      const double top = image.GetMask();
      ExpectLevels(image, DeepAdjustGamma(&image, gamma, nullptr), [&](int v) {
        return gamma == 1 ? v : std::min(math::Pow(v / top, 1 / gamma) * top, top);
      });
    });
  }
  const auto image = RandomImage(5, 5, 24);
  for (const double gamma : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(PixelBytes(*AdjustGamma(image.get(), 1.5, gamma, 1.5, kKeepNoColor, nullptr)),
              PixelBytes(*image));
    const auto deep = DeepImageOf(Content::kRandom, 4, 4, 12);
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
  ExpectLevels(*grey, AdjustGamma(grey.get(), 2, 2, 2, 0x404040, nullptr), [](int v) {
    return v == 0x40 ? v : WithGamma(v, (1 / 2.0 + 1 / 2.0 + 1 / 2.0) * 0.3333333333333333);
  });
}

TEST_P(PointOperationsTest, PalettesChangeInThePixelsStead) {
  const auto image = RandomImage(9, 2, 8, ColoredPalette(20));
  image->palette()[3].reserved = 9;
  const PaletteEntry keep = image->palette()[7];
  const ColorRef color = keep.red | uint32_t{keep.green} << 8 | uint32_t{keep.blue} << 16;
  const auto gamma = AdjustGamma(image.get(), 2, 1.5, 0.5, color, nullptr);
  const auto inverted = Invert(image.get(), nullptr);
  EXPECT_EQ(PixelBytes(*gamma), PixelBytes(*image));
  EXPECT_EQ(PixelBytes(*inverted), PixelBytes(*image));
  const auto gammaInPlace = image->Clone(true);
  AdjustPaletteGamma(gammaInPlace.get(), 2, 1.5, 0.5, color);
  EXPECT_EQ(gammaInPlace->palette(), gamma->palette());
  const auto contrast = image->Clone(true);
  AdjustPaletteBrightnessContrast(contrast.get(), -5, 40);
  const auto level = [](int value) { return static_cast<uint8_t>(value); };
  for (size_t i = 0; i < 20; ++i) {
    const auto [blue, green, red, reserved] = image->palette()[i];
    const PaletteEntry ofGamma = {level(WithGamma(blue, 1 / 0.5)), level(WithGamma(green, 1 / 1.5)),
                                  level(WithGamma(red, 1 / 2.0)), reserved};
    EXPECT_EQ(gamma->palette()[i], i == 7 ? keep : ofGamma);
    EXPECT_EQ(inverted->palette()[i],
              (PaletteEntry{level(~blue), level(~green), level(~red), reserved}));
    EXPECT_EQ(contrast->palette()[i],
              (PaletteEntry{level(Adjusted(blue, -5, 40)), level(Adjusted(green, -5, 40)),
                            level(Adjusted(red, -5, 40)), reserved}));
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
  ForEachDeep([](const CKIPDeepImage& image) {
    const int mask = static_cast<int>(image.GetMask());
    ExpectLevels(image, DeepInvert(&image, nullptr), [&](int v) { return ~v & mask; });
  });
}

// Nothing over nothing, and something over nothing, have no integer; the least one's low bits are
// 0.
int Normalized(int v, int least, int greatest, double top) {
  if (least == greatest) return 0;
  return static_cast<int>(static_cast<double>(v - least) / (greatest - least) * top);
}

TEST_P(PointOperationsTest, NormalizeFollowsItsRule) {
  const auto check = [](const auto& image, const auto& result, int mask) {
    const std::vector<int> levels = GridOf(image).samples;
    const int least = std::min(mask, *std::min_element(levels.begin(), levels.end()));
    const int greatest = *std::max_element(levels.begin(), levels.end());
    ExpectLevels(image, result, [&](int v) { return Normalized(v, least, greatest, mask); });
  };
  ForEachGrey([&](const CKIPImage& image) {
    check(image, Normalize(&image, nullptr, nullptr), 255);
    // Levels outside the reference's wrap around.
    const auto reference = RandomGrey(image.width() + 1, image.height());
    for (uint32_t i = 0; i < reference->dataSize(); ++i) reference->bits()[i] = 90 + i % 2;
    ExpectLevels(image, Normalize(&image, reference.get(), nullptr),
                 [](int v) { return Normalized(v, 90, 91, 255); });
  });
  ForEachDeep([&](const CKIPDeepImage& image) {
    check(image, DeepNormalize(&image, nullptr), static_cast<int>(image.GetMask()));
  });
}

template <class Image>
std::vector<int> CountsOf(const Image& image, size_t count) {
  std::vector<int> counts(count);
  for (const size_t level : GridOf(image).samples) ++counts[std::min(level, count - 1)];
  return counts;
}

std::vector<int> Equalized(const std::vector<int>& counts) {
  const double pixels = std::accumulate(counts.begin(), counts.end(), 0.0);
  const double top = static_cast<double>(counts.size()) - 1;
  std::vector<int> lut;
  double sum = 0;
  for (const int count : counts) {
    sum = std::min(sum + count / pixels, 1.0);
    lut.push_back(static_cast<int>(std::min(std::trunc(sum * top + 0.5), top)));
  }
  return lut;
}

TEST_P(PointOperationsTest, EqualizeFollowsItsRule) {
  ForEachGrey([](const CKIPImage& image) {
    const auto reference = RandomGrey(image.width() + 3, image.height() + 1);
    for (const CKIPImage* source :
         {static_cast<const CKIPImage*>(nullptr), static_cast<const CKIPImage*>(reference.get())}) {
      const std::vector<int> lut = Equalized(CountsOf(source ? *source : image, 256));
      ExpectLevels(image, Equalize(&image, source, nullptr), [&](int v) { return lut[v]; });
    }
  });
  ForEachDeep([](const CKIPDeepImage& image) {
    const std::vector<int> lut = Equalized(CountsOf(image, image.GetLevels()));
    ExpectLevels(image, DeepEqualize(&image, nullptr),
                 [&](int v) { return lut[std::min<size_t>(v, lut.size() - 1)]; });
  });
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
  for (const auto& percents : kPercents) {
    const int low = percents[0], high = percents[1];
    ForEachGrey([=](const CKIPImage& image) {
      const auto range = Clipped(CountsOf(image, 256), low, high);
      ExpectLevels(image, AutoBrightnessContrast(&image, low, high, nullptr, nullptr),
                   [&](int v) { return range.first < 0 ? 255 : Spread(v, range, 255); });
    });
    ForEachDeep([=](const CKIPDeepImage& image) {
      const auto range = Clipped(CountsOf(image, image.GetLevels()), low, high);
      ExpectLevels(image, DeepAutoBrightnessContrast(&image, low, high, nullptr),
                   [&](int v) { return range.first < 0 ? v : Spread(v, range, image.GetMask()); });
    });
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
    const auto image = DeepImageOf(Content::kBeyondMask, 19, 8, 12, 2);
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

}  // namespace
}  // namespace zyr
