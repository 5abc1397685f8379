#include "imaging/operations/masks/mask.h"

#include <gtest/gtest.h>

#include <cmath>

#include "foundation/math/portable_math.h"

namespace zyr {
namespace {

std::vector<double> WeightsOf(const CKIPMask& mask) {
  return {mask.weights.get(), mask.weights.get() + size_t{mask.rows} * mask.columns};
}

TEST(MaskTest, StartsAsTheIdentityOfOddSize) {
  CKIPMask mask;
  EXPECT_EQ(mask.factor, 1);
  EXPECT_EQ(WeightsOf(mask), (std::vector<double>{0, 0, 0, 0, 1, 0, 0, 0, 0}));
  EXPECT_TRUE(mask.Resize(4, 0));
  EXPECT_EQ(mask.columns, 5u);
  EXPECT_EQ(mask.factor, 0);
  EXPECT_EQ(WeightsOf(mask), std::vector<double>(5));
  EXPECT_TRUE(mask.MakeIdentity(1, 2));
  EXPECT_EQ(WeightsOf(mask), (std::vector<double>{0, 1, 0}));
}

TEST(MaskTest, HugeOnesHaveNoWeights) {
  CKIPMask mask;
  EXPECT_TRUE(mask.Resize(4095, 4095));
  for (const uint32_t size : {4097u, 0x10000u, 0xFFFFFFFEu, 0xFFFFFFFFu}) {
    EXPECT_FALSE(mask.MakeSmooth(size, 50));
    EXPECT_FALSE(mask.MakeSharpen(size, 50));
    EXPECT_FALSE(mask.MakeEdge(size, size, 1));
    EXPECT_EQ(mask.weights, nullptr);
    EXPECT_EQ(mask.rows + mask.columns, 0u);
    mask.SetCentre(1);
    mask.Fill(1);
    EXPECT_EQ(mask.Sum(), 0);
  }
}

TEST(MaskTest, SmoothWeighsNeighboursByThePercentage) {
  CKIPMask mask;
  mask.MakeSmooth(3, 50);
  EXPECT_EQ(WeightsOf(mask), (std::vector<double>{.5, .5, .5, .5, 5.5, .5, .5, .5, .5}));
  EXPECT_EQ(mask.factor, 1 / 9.5);
  mask.MakeSmooth(1, 3, 200);  // (1 - 2) x 3 + 1
  EXPECT_EQ(WeightsOf(mask), (std::vector<double>{2, -2, 2}));
  EXPECT_EQ(mask.factor, 0.5);
  mask.MakeSmooth(1, 3, 300);  // 3, -5, 3
  EXPECT_EQ(mask.factor, 1);
}

TEST(MaskTest, DistancesAreLopsidedAndCrossed) {
  CKIPMask mask;
  EXPECT_EQ(mask.DistanceFromCentre(0, 0), std::sqrt(4.5));
  EXPECT_EQ(mask.DistanceFromCentre(2, 2), std::sqrt(0.5));
  mask.Resize(5, 3);
  EXPECT_EQ(mask.DistanceFromCentre(4, 0), std::sqrt(2.5 * 2.5 + 2.5 * 2.5));
  EXPECT_EQ(mask.DistanceFromCentre(0, 2), std::sqrt(1.5 * 1.5 + 0.5 * 0.5));
  mask.FillByDistance(3);
  EXPECT_EQ(mask.weights[2 * 5 + 1], 3 / std::sqrt(0.5 * 0.5 + 0.5 * 0.5));
}

TEST(MaskTest, SharpenKeepsTheGain) {
  CKIPMask mask;
  mask.MakeSharpen(3, 0);
  const double sum = mask.Sum();
  EXPECT_NEAR(sum * mask.factor, 1, 1e-15);
  EXPECT_EQ(mask.weights[0], -1 / std::sqrt(4.5));
  EXPECT_NEAR(mask.weights[4], 2 * sum, 1e-12);  // against -sum in all others
  mask.MakeSharpen(5, 3, 30);
  double others = 0;
  for (int i = 0; i < 15; ++i) others += i == 7 ? 0 : mask.weights[i];
  EXPECT_EQ(mask.weights[0], (-1 - 30 * 0.01) / std::sqrt(1.5 * 1.5 + 2.5 * 2.5));
  EXPECT_EQ(mask.weights[7], -others * (2 / math::Pow(2, 30 * 0.01)));
  EXPECT_EQ(mask.factor, 1 / mask.Sum());
}

TEST(MaskTest, EdgesAddUpToNothing) {
  CKIPMask mask;
  mask.MakeEdge(3, 5, 7);
  EXPECT_EQ(mask.factor, 1);
  EXPECT_EQ(mask.weights[0], -0.5 / std::sqrt(2.5 * 2.5 + 1.5 * 1.5));
  EXPECT_NEAR(mask.Sum(), 0, 1e-15);
  mask.MakeEdge(3, 3, 0);
  EXPECT_EQ(mask.weights[8], -1 / std::sqrt(0.5));
  mask.MakeEdge(1, 1, 5);
  EXPECT_EQ(mask.weights[0], 0);
}

}  // namespace
}  // namespace zyr
