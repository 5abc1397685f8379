#include <algorithm>
#include <cmath>

#include "foundation/math/portable_math.h"
#include "imaging/operations/masks/emboss.h"
#include "imaging/operations/masks/mask_filters.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

using MaskFiltersTest = BothProcessorsTest;
INSTANTIATE_TEST_SUITE_P(Processors, MaskFiltersTest, testing::Bool());

// The sums of each sample's surroundings, and of the sample itself if `added`.
Grid Filtered(const Grid& grid, const CKIPMask& mask, bool added, int limit, double rounding) {
  return grid.Made([&](int x, int y, int channel) {
    double sum = 0;
    for (uint32_t i = 0; i < mask.rows * mask.columns; ++i) {
      const int64_t column = int64_t{x} + i % mask.columns - mask.columns / 2;
      const int64_t row = int64_t{y} + i / mask.columns - mask.rows / 2;
      sum += grid.At(column, row, channel) * mask.weights[i];
    }
    sum = sum * mask.factor + (added ? grid.At(x, y, channel) : 0);
    return static_cast<int>(std::clamp<double>(sum, 0, limit) + rounding);
  });
}

void ExpectDeep(const CKIPDeepImage& image, const std::unique_ptr<CKIPDeepImage>& filtered,
                const CKIPMask& mask, bool added) {
  ASSERT_NE(filtered, nullptr);
  ASSERT_EQ(GridOf(*filtered), Filtered(GridOf(image), mask, added, image.GetMask(), 0.5));
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
    for (const Content content : kContents) {
      for (const uint32_t bits : {8u, 24u}) {
        const auto image = ImageOf(content, width, height, bits);
        const Grid grid = GridOf(*image);
        for (const CKIPMask& mask : Masks()) {
          ASSERT_EQ(GridOf(*ApplyMask(image.get(), mask, {})), Filtered(grid, mask, false, 255, 0));
          ASSERT_EQ(GridOf(*EdgeEnhance(image.get(), mask, {})),
                    Filtered(grid, mask, true, 255, 0));
        }
      }
    }
  }
}

TEST_P(MaskFiltersTest, SamplesAreWeightedAndRounded) {
  for (const uint32_t bits : {1u, 8u, 12u, 16u}) {
    for (const auto& [width, height] : kSizes) {
      const auto owned = DeepImageOf(kContents[width % 5], width, height, bits, bits % 3);
      const CKIPDeepImage* const image = owned.get();
      for (const CKIPMask& mask : Masks()) {
        ExpectDeep(*image, DeepApplyMask(image, mask, nullptr), mask, false);
      }
      for (const uint32_t size : {0u, 3u, 4u}) {
        CKIPMask mask;
        mask.MakeSharpen(size, 30);
        ExpectDeep(*image, DeepSharpen(image, size, 30, nullptr), mask, false);
        mask.MakeSmooth(size, 70);
        ExpectDeep(*image, DeepSmooth(image, size, 70, nullptr), mask, false);
        mask.MakeEdge(size, size, 2.5);
        ExpectDeep(*image, DeepEdgeEnhance(image, size, 2.5, nullptr), mask, true);
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

struct LightDirection {
  double azimuth;  // within a turn
  double elevation;
  double depth;
};

Grid Embossed(const Grid& grey, const LightDirection& from) {
  const double azimuth = from.azimuth * 0.01745329252;
  const double elevation = from.elevation * 0.01745329252;
  const double lx = math::Cos(azimuth) * math::Cos(elevation) * 256;
  const double ly = math::Sin(azimuth) * math::Sin(elevation) * 256;
  const double lz = math::Sin(elevation) * 256;
  const double nz = (1 - from.depth) * 1530;
  return grey.Made([&](int x, int y, int) {
    const auto p = [&](int row, int column) { return grey.At(x + column, y + row, 0); };
    const double nx = p(0, -1) - p(0, 1) - p(-1, 1) - p(1, 1) + p(-1, -1) + p(1, -1);
    const double ny = p(-1, 0) - p(1, 0) - p(1, -1) - p(1, 1) + p(-1, -1) + p(-1, 1);
    const double d = nx * lx + ny * ly + nz * lz;
    const double length = std::sqrt(nx * nx + ny * ny + nz * nz);
    const double shade = nx == 0 && ny == 0 ? lz : d < 0 ? 0 : d / length;
    return static_cast<int>(std::clamp(shade, 0.0, 255.0));
  });
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
    for (const auto& [asked, meant] : pairs) {
      for (const Content content : {Content::kRandom, Content::kFlat}) {
        const auto grey = ImageOf(content, width, height, 8);
        const auto result =
            Emboss(grey.get(), asked.azimuth, asked.elevation, asked.depth, nullptr);
        ASSERT_EQ(GridOf(*result), Embossed(GridOf(*grey), meant)) << asked.azimuth;
      }
    }
    for (const uint32_t bits : {1u, 8u, 24u}) {
      const auto image = RandomImage(width, height, bits, ColoredPalette(bits == 24 ? 0 : 2));
      const auto result = Emboss(image.get(), 135, 45, 0.85, nullptr);
      EXPECT_TRUE(result->IsGrey());
      ASSERT_EQ(GridOf(*result), Embossed(GridOf(*ConvertToGrey8(*image, nullptr)), pairs[0][1]));
    }
  }
}

}  // namespace
}  // namespace zyr
