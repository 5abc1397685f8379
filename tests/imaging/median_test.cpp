#include <algorithm>

#include "imaging/operations/medians/fast_noise.h"
#include "imaging/operations/medians/median.h"
#include "imaging/operations/medians/rank_list.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

using MedianTest = BothProcessorsTest;
INSTANTIATE_TEST_SUITE_P(Processors, MedianTest, testing::Bool());

Grid SlowMedian(const Grid& source, int columns, int rows) {
  CKIPRankList list;
  list.Reserve(columns * rows);
  return source.Made([&](int x, int y, int channel) {
    list.Clear();
    for (int i = 0; i < columns * rows; ++i) {
      list.Add(source.At(x + i % columns - columns / 2, y + i / columns - rows / 2, channel));
    }
    return list.Median();
  });
}

Grid SlowNoiseReduction(const Grid& source) {
  return source.Made([&](int x, int y, int channel) {
    const auto at = [&](int right, int down) { return source.At(x + right, y + down, channel); };
    if (x == 0 || x == source.width - 1 || y == 0 || y == source.height - 1) return at(0, 0);
    int five[] = {at(0, -1), at(-1, 0), at(0, 0), at(1, 0), at(0, 1)};
    std::sort(five, five + 5);
    return five[2];
  });
}

CKIPMask MaskOf(uint32_t columns, uint32_t rows) {
  CKIPMask mask;
  mask.MakeIdentity(columns, rows);
  return mask;
}

TEST_P(MedianTest, WindowsOfEverySizeMatchTheSortedList) {
  constexpr Size kWindows[] = {{1, 1}, {3, 3}, {5, 5},   {7, 7}, {3, 5},
                               {9, 1}, {1, 3}, {127, 1}, {17, 9}};
  for (const auto& [width, height] : kSizes) {
    for (const Content content : kContents) {
      for (const uint32_t bits : {8u, 24u}) {
        const auto image = ImageOf(content, width, height, bits);
        const Grid grid = GridOf(*image);
        for (const auto& [columns, rows] : kWindows) {
          ASSERT_EQ(GridOf(*MedianFilter(image.get(), MaskOf(columns, rows), {})),
                    SlowMedian(grid, columns, rows))
              << width << "x" << height << " " << columns << "x" << rows << " " << bits;
        }
        ASSERT_EQ(GridOf(*FastNoiseReduction(image.get(), {})), SlowNoiseReduction(grid))
            << width << "x" << height << " " << bits;
      }
      for (const uint32_t window : {1u, 2u, 3u, 4u, 5u, 6u, 9u, 24u}) {  // may be even
        const auto deep = DeepImageOf(content, width, height, 9 + window % 8);
        ASSERT_EQ(GridOf(*DeepMedianFilter(deep.get(), window, {})),
                  SlowMedian(GridOf(*deep), window, window))
            << width << "x" << height << " " << window;
        ASSERT_EQ(GridOf(*DeepFastNoiseReduction(deep.get(), {})),
                  SlowNoiseReduction(GridOf(*deep)));
      }
    }
  }
}

// A network is right for all values if it is right for all windows of zeros and ones. What is in a
// column matters by its ones alone once columns are in order: 6^5 windows, turned in five ways.
TEST_P(MedianTest, TheNetworkOf25IsRightForAllOrders) {
  constexpr uint32_t kWindows = 6 * 6 * 6 * 6 * 6;
  CKIPDeepImage image;
  ASSERT_TRUE(image.Create(5 * kWindows, 5, 16));
  std::vector<uint32_t> ones(kWindows);
  for (uint32_t turn = 0; turn < 5; ++turn) {
    std::fill(ones.begin(), ones.end(), 0);
    for (uint32_t i = 0; i < kWindows; ++i) {
      uint32_t rest = i;
      for (uint32_t column = 0; column < 5; ++column, rest /= 6) {
        ones[i] += rest % 6;
        for (uint32_t row = 0; row < 5; ++row) {
          const bool isOne = (row + turn * (column + 1)) % 5 < rest % 6;
          image.GetRow(row)[5 * i + column] = isOne ? 0xFFFF : 0;
        }
      }
    }
    const auto result = DeepMedianFilter(&image, 5, nullptr);
    for (uint32_t i = 0; i < kWindows; ++i) {
      ASSERT_EQ(result->GetRow(2)[5 * i + 2] != 0, ones[i] > 12) << i;
    }
  }
}

TEST_P(MedianTest, WindowsFarLargerThanTheImageCountItsEdges) {
  CKIPDeepImage image;
  ASSERT_TRUE(image.Create(3, 2, 16));
  const uint16_t samples[] = {10, 20, 30, 40, 50, 60};
  std::copy(samples, samples + 6, image.GetPixels());
  EXPECT_EQ(GridOf(*DeepMedianFilter(&image, 999, nullptr)), SlowMedian(GridOf(image), 999, 999));
  // The corners take nearly a quarter each; half of the window lies back, one row less ahead.
  for (const uint32_t size : {UINT32_MAX, UINT32_MAX - 1, 1u << 31}) {
    const auto result = DeepMedianFilter(&image, size, nullptr);
    ASSERT_NE(result, nullptr);
    const Grid smaller = SlowMedian(GridOf(image), 400 + size % 2, 400 + size % 2);
    EXPECT_EQ(GridOf(*result), smaller) << size;
  }
  const auto grey = RandomGrey(9, 8);
  EXPECT_EQ(GridOf(*MedianFilter(grey.get(), MaskOf(101, 101), nullptr)),
            SlowMedian(GridOf(*grey), 101, 101));
}

TEST(RankListTest, GrowsAndKeepsItsValues) {
  CKIPRankList list;
  EXPECT_EQ(list.Median(), 0);
  ASSERT_TRUE(list.Reserve(2));
  for (const int32_t value : {5, -7, 3}) ASSERT_TRUE(list.Add(value));
  EXPECT_EQ(list.capacity, 2u + 101);
  EXPECT_FALSE(list.sorted);
  EXPECT_EQ(list.Median(), 3);
  EXPECT_TRUE(list.sorted);
  ASSERT_TRUE(list.Add(4));
  EXPECT_FALSE(list.sorted);
  EXPECT_EQ(list.Median(), 4);  // of -7 3 4 5
  ASSERT_TRUE(list.Reserve(200));
  EXPECT_EQ(list.count, 4u);
  EXPECT_EQ(list.values[0], -7);
  ASSERT_TRUE(list.Reserve(1));  // of the values those that have room
  EXPECT_EQ(list.count, 1u);
  list.Clear();
  EXPECT_EQ(list.count, 0u);
  EXPECT_EQ(list.capacity, 1u);
}

}  // namespace
}  // namespace zyr
