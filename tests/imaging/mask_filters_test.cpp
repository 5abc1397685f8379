#include <algorithm>
#include <cmath>

#include "foundation/math/portable_math.h"
#include "foundation/support/cpu.h"
#include "imaging/operations/masks/emboss.h"
#include "imaging/operations/masks/mask_filters.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

// Each test runs with and without the wider vector unit.
class MaskFiltersTest : public ImagingTest, public testing::WithParamInterface<bool> {
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
INSTANTIATE_TEST_SUITE_P(Processors, MaskFiltersTest, testing::Bool(),
                         [](const auto& tested) { return tested.param ? "base" : "best"; });

constexpr uint32_t kSizes[][2] = {{1, 1},  {2, 3},  {1, 9},  {9, 1},   {5, 4},  {33, 6},
                                  {64, 3}, {65, 2}, {71, 9}, {131, 5}, {40, 20}};

uint32_t NearestInside(int64_t position, uint32_t size) {
  return static_cast<uint32_t>(std::clamp<int64_t>(position, 0, int64_t{size} - 1));
}

template <typename SampleAt>
double WeightedSum(const CKIPMask& mask, uint32_t x, uint32_t y, uint32_t width, uint32_t height,
                   SampleAt sampleAt) {
  double total = 0;
  for (uint32_t i = 0; i < mask.rows; ++i) {
    for (uint32_t j = 0; j < mask.columns; ++j) {
      const uint32_t row = NearestInside(int64_t{y} + i - mask.rows / 2, height);
      const uint32_t column = NearestInside(int64_t{x} + j - mask.columns / 2, width);
      total += sampleAt(column, row) * mask.weights[size_t{i} * mask.columns + j];
    }
  }
  return total * mask.factor;
}

void ExpectFiltered(const CKIPImage& image, const CKIPMask& mask) {
  const auto applied = ApplyMask(&image, mask, nullptr);
  const auto enhanced = EdgeEnhance(&image, mask, nullptr);
  ASSERT_TRUE(applied != nullptr && enhanced != nullptr);
  const uint32_t channels = image.bitsPerPixel() / 8;
  const Bytes blank = PixelBytes(*image.Clone(false));
  for (uint32_t i = 0; i < image.dataSize(); ++i) {
    const uint32_t x = i % image.stride() / channels;
    const uint32_t y = i / image.stride();
    if (x >= image.width()) {
      ASSERT_EQ(applied->bits()[i], blank[i]);
      continue;
    }
    const uint32_t channel = i % image.stride() % channels;
    const double sum = WeightedSum(mask, x, y, image.width(), image.height(),
                                   [&](uint32_t column, uint32_t row) -> double {
                                     return image.MemoryRow(row)[column * channels + channel];
                                   });
    ASSERT_EQ(applied->bits()[i], std::trunc(std::clamp(sum, 0.0, 255.0)))
        << image.width() << "x" << image.height() << " " << x << "," << y << ": " << sum;
    ASSERT_EQ(enhanced->bits()[i], std::trunc(std::clamp(sum + image.bits()[i], 0.0, 255.0)))
        << image.width() << "x" << image.height() << " " << x << "," << y << ": " << sum;
  }
}

// A filter that does nothing but round is DeepApplyMask's, and DeepEdgeEnhance's with `added`.
void ExpectDeep(const CKIPDeepImage& image, const CKIPDeepImage* filtered, const CKIPMask& mask,
                bool added) {
  ASSERT_NE(filtered, nullptr);
  EXPECT_EQ(filtered->GetYResolution(), image.GetYResolution());
  for (uint32_t y = 0; y < image.GetHeight(); ++y) {
    for (uint32_t x = 0; x < image.GetStride(); ++x) {
      const uint16_t sample = image.GetRow(y)[x];
      double sum = sample;
      if (x < image.GetWidth()) {
        sum = WeightedSum(
            mask, x, y, image.GetWidth(), image.GetHeight(),
            [&](uint32_t column, uint32_t row) -> double { return image.GetRow(row)[column]; });
        if (added) sum += sample;
        sum = std::clamp(sum, 0.0, double(image.GetMask()));
      }
      ASSERT_EQ(filtered->GetRow(y)[x], std::trunc(sum + 0.5)) << x << "," << y << ": " << sum;
    }
  }
}

// Noise, and beside it levels at which sums of smoothing masks are whole numbers or nearly so.
void FillAsKind(CKIPImage& image, uint32_t kind) {
  if (kind == 0) return;
  for (uint32_t i = 0; i < image.dataSize(); ++i) {
    const uint32_t column = i % image.stride();
    const uint8_t levels[] = {200, uint8_t(column % 7 < 3 ? 255 : 0), uint8_t(column * 3)};
    image.bits()[i] = levels[kind - 1];
  }
}

CKIPMask RandomMask(uint32_t columns, uint32_t rows) {
  CKIPMask mask;
  EXPECT_TRUE(mask.Resize(columns, rows));
  for (uint32_t i = 0; i < rows * columns; ++i) mask.weights[i] = Random(2001) / 100.0 - 9.5;
  mask.factor = 0.1;
  return mask;
}

std::vector<CKIPMask> Masks() {
  std::vector<CKIPMask> masks(15);
  masks[0].MakeSharpen(3, 50);
  masks[1].MakeSharpen(5, 3, -250);
  masks[2].MakeSmooth(3, 50);
  masks[3].MakeSmooth(3, 7, 33);
  masks[4].MakeSmooth(5, 100);
  masks[5].MakeEdge(3, 3, 3);
  masks[6].MakeEdge(1, 1, 3);
  masks[7].MakeEdge(1, 5, 0);
  masks[8] = RandomMask(3, 5);
  masks[9] = RandomMask(21, 3);
  masks[10].MakeSmooth(101, 1, 40);
  // Far from 1, and yet of ordinary results; the last sum overflows.
  masks[11].MakeSharpen(3, 2);
  for (int i = 0; i < 9; ++i) masks[11].weights[i] *= 1e200;
  masks[11].factor *= 1e-200;
  masks[12].Fill(1e30);
  masks[13].Fill(1e308);
  masks[13].factor = 1e-308;
  // Whole numbers that cancel each other out, too large for sums in single precision.
  masks[14].factor = 0.25;
  masks[14].weights[0] = 1048577;
  masks[14].weights[8] = -1048576;
  return masks;
}

TEST_P(MaskFiltersTest, BytesAreWeightedAndCut) {
  for (const auto& [width, height] : kSizes) {
    for (uint32_t kind = 0; kind < 4; ++kind) {
      const auto grey = RandomGrey(width, height);
      const auto colored = RandomImage(width, height, 24);
      FillAsKind(*grey, kind);
      FillAsKind(*colored, kind);
      for (const CKIPMask& mask : Masks()) {
        ExpectFiltered(*grey, mask);
        ExpectFiltered(*colored, mask);
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST_P(MaskFiltersTest, SamplesAreWeightedAndRounded) {
  for (const uint32_t bits : {1u, 8u, 12u, 16u}) {
    for (const auto& [width, height] : kSizes) {
      CKIPDeepImage image;
      ASSERT_TRUE(image.Create(width, height, width + bits % 3, bits, 300, 150));
      // Some beyond the declared depth.
      const uint32_t limit = Random(2) == 0 ? 65536 : image.GetLevels();
      for (uint32_t i = 0; i < height * image.GetStride(); ++i) {
        image.GetPixels()[i] = Random(limit) & 0xFFFF;
      }
      for (const CKIPMask& mask : Masks()) {
        ExpectDeep(image, DeepApplyMask(&image, mask, nullptr).get(), mask, false);
      }
      for (const uint32_t size : {0u, 3u, 4u}) {
        CKIPMask mask;
        mask.MakeSharpen(size, 30);
        ExpectDeep(image, DeepSharpen(&image, size, 30, nullptr).get(), mask, false);
        mask.MakeSmooth(size, 70);
        ExpectDeep(image, DeepSmooth(&image, size, 70, nullptr).get(), mask, false);
        mask.MakeEdge(size, size, 2.5);
        ExpectDeep(image, DeepEdgeEnhance(&image, size, 2.5, nullptr).get(), mask, true);
      }
      if (HasFatalFailure()) return;
    }
  }
}

TEST_P(MaskFiltersTest, WhatIsNoNumberIsBright) {
  CKIPMask mask;
  mask.MakeSharpen(3, INT32_MIN);  // an infinite centre and the factor 0
  EXPECT_EQ(PixelBytes(*ApplyMask(RandomGrey(40, 2).get(), mask, nullptr)), Bytes(80, 255));
}

TEST_P(MaskFiltersTest, RefuseAndCancel) {
  const auto grey = RandomGrey(4, 10);
  const CKIPMask mask;
  CKIPMask empty;
  empty.rows = 0;
  const CKIPImage none;
  EXPECT_EQ(ApplyMask(nullptr, mask, nullptr), nullptr);
  EXPECT_EQ(ApplyMask(&none, mask, nullptr), nullptr);
  EXPECT_EQ(ApplyMask(grey.get(), empty, nullptr), nullptr);
  EXPECT_EQ(ApplyMask(RandomImage(4, 4, 1, ColoredPalette(2)).get(), mask, nullptr), nullptr);
  EXPECT_EQ(EdgeEnhance(RandomImage(4, 4, 8, ColoredPalette(256)).get(), mask, nullptr), nullptr);
  EXPECT_EQ(Emboss(nullptr, 0, 0, 0, nullptr), nullptr);
  EXPECT_EQ(Emboss(&none, 0, 0, 0, nullptr), nullptr);

  CKIPDeepImage deep;
  EXPECT_EQ(DeepSmooth(nullptr, 3, 50, nullptr), nullptr);
  EXPECT_EQ(DeepSmooth(&deep, 3, 50, nullptr), nullptr);
  ASSERT_TRUE(deep.Create(4, 10, 12));
  std::fill_n(deep.GetPixels(), 40, uint16_t{7});
  EXPECT_EQ(DeepSharpen(&deep, 0xFFFFFFFF, 50, nullptr), nullptr);  // no memory for such a mask

  platform::host::PressEscapeAtQuestion(3);
  EXPECT_EQ(ApplyMask(grey.get(), mask, RecordProgress), nullptr);
  platform::host::PressEscapeAtQuestion(3);
  EXPECT_EQ(DeepEdgeEnhance(&deep, 3, 1, RecordProgress), nullptr);
  platform::host::PressEscapeAtQuestion(3);
  EXPECT_EQ(Emboss(grey.get(), 135, 45, 0.85, RecordProgress), nullptr);
  EXPECT_EQ(g_fractions, (std::vector<double>{0, 0.1, 0.2, 0, 0.1, 0.2, 0, 0.1, 0.2}));
}

TEST_P(MaskFiltersTest, ResultsKeepWhatBelongsToThePicture) {
  auto grey = RandomGrey(5, 3);
  std::reverse(grey->palette().begin(), grey->palette().end());
  grey->flipped = true;
  grey->fileFormat = 3;
  for (const auto& result :
       {ApplyMask(grey.get(), CKIPMask(), nullptr), Emboss(grey.get(), 135, 45, 0.85, nullptr)}) {
    EXPECT_EQ(result->name, "scan");
    EXPECT_EQ(result->yResolution(), 150u);
    EXPECT_EQ(result->palette(), grey->palette());
    EXPECT_TRUE(result->flipped);
    EXPECT_EQ(result->fileFormat, 3u);
  }
}

struct LightDirection {
  double azimuth;  // within a turn
  double elevation;
  double depth;
};

double ShadeAt(const CKIPImage& grey, uint32_t x, uint32_t y, const LightDirection& from) {
  const double azimuth = from.azimuth * 0.01745329252;
  const double elevation = from.elevation * 0.01745329252;
  const double lx = math::Cos(azimuth) * math::Cos(elevation) * 256;
  const double ly = math::Sin(azimuth) * math::Sin(elevation) * 256;
  const double lz = math::Sin(elevation) * 256;
  const double nz = (1 - from.depth) * 1530;
  const auto p = [&](int row, int column) -> int {
    return grey.MemoryRow(NearestInside(
        int64_t{y} + row, grey.height()))[NearestInside(int64_t{x} + column, grey.width())];
  };
  const double nx = p(0, -1) - p(0, 1) - p(-1, 1) - p(1, 1) + p(-1, -1) + p(1, -1);
  const double ny = p(-1, 0) - p(1, 0) - p(1, -1) - p(1, 1) + p(-1, -1) + p(-1, 1);
  if (nx == 0 && ny == 0) return lz;
  const double d = nx * lx + ny * ly + nz * lz;
  return d < 0 ? 0 : d / std::sqrt(nx * nx + ny * ny + nz * nz);
}

void ExpectEmbossed(const CKIPImage& image, const CKIPImage& grey, const LightDirection& asked,
                    const LightDirection& meant) {
  const auto embossed = Emboss(&image, asked.azimuth, asked.elevation, asked.depth, nullptr);
  ASSERT_NE(embossed, nullptr);
  EXPECT_TRUE(embossed->IsGrey());
  for (uint32_t y = 0; y < grey.height(); ++y) {
    for (uint32_t x = 0; x < grey.width(); ++x) {
      const double shade = ShadeAt(grey, x, y, meant);
      ASSERT_EQ(embossed->MemoryRow(y)[x], std::trunc(std::clamp(shade, 0.0, 255.0)))
          << grey.width() << "x" << grey.height() << " " << x << "," << y << ": " << shade;
    }
  }
}

TEST_P(MaskFiltersTest, EmbossShadesByTheSlope) {
  const LightDirection pairs[][2] = {
      // asked for, and what that means
      {{135, 45, 0.85}, {135, 45, 0.85}}, {{0, 90, 1}, {0, 90, 1}},
      {{360, 0, 0}, {360, 0, 0}},         {{-90.5, 30, 0.5}, {269.5, 30, 0.5}},
      {{1000, 120, -3}, {280, 90, 0}},    {{720, -5, 2}, {360, 0, 1}},
      {{-720, 60, 0.99}, {0, 60, 0.99}},  {{1e-300 - 360, 10, 0.2}, {0, 10, 0.2}},
      {{NAN, NAN, NAN}, {0, 0, 0}},       {{INFINITY, INFINITY, INFINITY}, {0, 90, 1}},
      {{360e15, 45, 1}, {360, 45, 1}}};
  for (const auto& [width, height] : kSizes) {
    const auto grey = RandomGrey(width, height);
    const auto flat = RandomGrey(width, height);
    std::fill_n(flat->bits(), flat->dataSize(), uint8_t{77});
    for (const auto& [asked, meant] : pairs) {
      ExpectEmbossed(*grey, *grey, asked, meant);
      ExpectEmbossed(*flat, *flat, asked, meant);
    }
    for (const uint32_t bits : {1u, 8u, 24u}) {
      const auto image = RandomImage(width, height, bits, ColoredPalette(bits == 24 ? 0 : 2));
      ExpectEmbossed(*image, *ConvertToGrey8(*image, nullptr), pairs[0][0], pairs[0][1]);
    }
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace zyr
