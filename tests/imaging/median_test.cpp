#include <algorithm>

#include "foundation/support/cpu.h"
#include "imaging/operations/medians/fast_noise.h"
#include "imaging/operations/medians/median.h"
#include "imaging/operations/medians/rank_list.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

// Both forms of the loops, one after the other.
class MedianTest : public ImagingTest {
 protected:
  void TearDown() override {
    DenyAvx2(false);
    ImagingTest::TearDown();
  }
};

template <class Check>
void OnBothProcessors(Check check) {
  for (const bool deny : {false, true}) {
    SCOPED_TRACE(deny ? "base" : "AVX2");
    DenyAvx2(deny);
    check();
  }
}

// Samples without regard to how they lie in an image.
struct Grid {
  Grid(int newWidth, int newHeight, int newChannels)
      : width(newWidth), height(newHeight), channels(newChannels) {
    samples.resize(size_t(width) * height * channels);
  }

  uint16_t& At(int x, int y, int channel) {
    return samples[(size_t(y) * width + x) * channels + channel];
  }

  bool operator==(const Grid&) const = default;

  int width;
  int height;
  int channels;
  std::vector<uint16_t> samples;
};

Grid GridOf(const CKIPImage& image) {
  Grid grid(image.width(), image.height(), image.bitsPerPixel() / 8);
  const size_t rowSamples = size_t(grid.width) * grid.channels;
  for (int y = 0; y < grid.height; ++y) {
    std::copy_n(image.MemoryRow(y), rowSamples, grid.samples.begin() + y * rowSamples);
  }
  return grid;
}

Grid GridOf(const CKIPDeepImage& image) {
  Grid grid(image.GetWidth(), image.GetHeight(), 1);
  for (int y = 0; y < grid.height; ++y) {
    std::copy_n(image.GetRow(y), grid.width, grid.samples.begin() + y * grid.width);
  }
  return grid;
}

Grid SlowMedian(Grid source, int columns, int rows) {
  Grid result = source;
  CKIPRankList list;
  list.Reserve(columns * rows);
  for (int y = 0; y < source.height; ++y) {
    for (int x = 0; x < source.width; ++x) {
      for (int channel = 0; channel < source.channels; ++channel) {
        list.Clear();
        for (int i = 0; i < rows; ++i) {
          const int row = std::clamp(y + i - rows / 2, 0, source.height - 1);
          for (int j = 0; j < columns; ++j) {
            const int column = std::clamp(x + j - columns / 2, 0, source.width - 1);
            list.Add(source.At(column, row, channel));
          }
        }
        result.At(x, y, channel) = static_cast<uint16_t>(list.Median());
      }
    }
  }
  return result;
}

// Keeps the three least of the five, the greatest of them last.
Grid SlowNoiseReduction(Grid source) {
  Grid result = source;
  for (int y = 1; y < source.height - 1; ++y) {
    for (int x = 1; x < source.width - 1; ++x) {
      for (int channel = 0; channel < source.channels; ++channel) {
        uint32_t a = UINT32_MAX, b = UINT32_MAX, c = UINT32_MAX;
        for (const uint32_t v :
             {source.At(x, y - 1, channel), source.At(x - 1, y, channel), source.At(x, y, channel),
              source.At(x + 1, y, channel), source.At(x, y + 1, channel)}) {
          if (a == UINT32_MAX)
            a = v;
          else if (b == UINT32_MAX)
            b = v;
          else if (c == UINT32_MAX)
            c = v;
          else if (v < c)
            c = v;
          else if (v < b)
            b = v;
          else if (v < a)
            a = v;
          if (c < b) std::swap(b, c);
          if (b < a) std::swap(a, b);
        }
        result.At(x, y, channel) = static_cast<uint16_t>(std::max({a, b, c}));
      }
    }
  }
  return result;
}

CKIPMask MaskOf(uint32_t columns, uint32_t rows) {
  CKIPMask mask;
  mask.MakeIdentity(columns, rows);
  return mask;
}

// What samples may look like: all of one value, of two, rising, any.
enum class Kind { kFlat, kTwoValues, kGradient, kAny };
constexpr Kind kKinds[] = {Kind::kFlat, Kind::kTwoValues, Kind::kGradient, Kind::kAny};

uint32_t SampleOf(Kind kind, uint32_t index, uint32_t mask) {
  switch (kind) {
    case Kind::kFlat:
      return mask;
    case Kind::kTwoValues:
      return Random(2) * mask;
    case Kind::kGradient:
      return index * (mask / 64 + 1) & mask;
    default:
      return Random(mask + 1);
  }
}

std::unique_ptr<CKIPImage> ImageOf(Kind kind, uint32_t width, uint32_t height, uint32_t bits) {
  auto image = RandomImage(width, height, bits, bits == 8 ? NewIdentityPalette() : Palette{});
  for (uint32_t i = 0; i < image->dataSize(); ++i) {
    image->bits()[i] = static_cast<uint8_t>(SampleOf(kind, i, 255));
  }
  return image;
}

// Padding of three samples, distinct from what is beside it.
CKIPDeepImage& DeepImageOf(CKIPDeepImage& image, Kind kind, uint32_t width, uint32_t height,
                           uint32_t bits) {
  EXPECT_TRUE(image.Create(width, height, width + 3, bits, 300, 150));
  for (uint32_t i = 0; i < image.GetStride() * height; ++i) {
    image.GetPixels()[i] = static_cast<uint16_t>(SampleOf(kind, i, image.GetMask()));
  }
  return image;
}

struct Size {
  uint32_t width;
  uint32_t height;
};

// Below, at and beyond the vectors' lengths, tails included.
constexpr Size kSizes[] = {{1, 1},  {1, 7},  {2, 2},  {3, 3},  {6, 1},  {5, 4},
                           {16, 3}, {17, 9}, {34, 5}, {67, 6}, {131, 4}};

TEST_F(MedianTest, WindowsOfEverySizeMatchTheSortedList) {
  constexpr Size kWindows[] = {{1, 1}, {3, 3}, {5, 5},   {7, 7}, {3, 5},
                               {9, 1}, {1, 3}, {127, 1}, {17, 9}};
  OnBothProcessors([&] {
    for (const Size size : kSizes) {
      for (const Size window : kWindows) {
        for (const Kind kind : kKinds) {
          for (const uint32_t bits : {8u, 24u}) {
            const auto image = ImageOf(kind, size.width, size.height, bits);
            const Bytes before = PixelBytes(*image);
            const auto result = MedianFilter(image.get(), MaskOf(window.width, window.height), {});
            ASSERT_NE(result, nullptr);
            ASSERT_EQ(GridOf(*result), SlowMedian(GridOf(*image), window.width, window.height))
                << size.width << "x" << size.height << " " << window.width << "x" << window.height
                << " " << bits;
            EXPECT_EQ(PixelBytes(*image), before);
          }
        }
      }
    }
  });
}

TEST_F(MedianTest, DeepWindowsMayBeEvenAndKeepThePadding) {
  OnBothProcessors([&] {
    for (const Size size : kSizes) {
      for (const uint32_t window : {1u, 2u, 3u, 4u, 5u, 6u, 9u, 24u}) {
        for (const Kind kind : kKinds) {
          CKIPDeepImage image;
          DeepImageOf(image, kind, size.width, size.height, 9 + window % 8);
          const auto result = DeepMedianFilter(&image, window, nullptr);
          ASSERT_NE(result, nullptr);
          ASSERT_EQ(GridOf(*result), SlowMedian(GridOf(image), window, window))
              << size.width << "x" << size.height << " " << window;
          for (uint32_t i = 0; i < 3; ++i) {
            EXPECT_EQ(result->GetRow(size.height - 1)[size.width + i],
                      image.GetRow(size.height - 1)[size.width + i]);
          }
        }
      }
    }
  });
}

// A network is right for all values if it is right for all windows of zeros and ones. What is in a
// column matters by its ones alone once columns are in order: 6^5 windows, turned in five ways.
TEST_F(MedianTest, TheNetworkOf25IsRightForAllOrders) {
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
    OnBothProcessors([&] {
      const auto result = DeepMedianFilter(&image, 5, nullptr);
      for (uint32_t i = 0; i < kWindows; ++i) {
        ASSERT_EQ(result->GetRow(2)[5 * i + 2] != 0, ones[i] > 12) << i;
      }
    });
  }
}

TEST_F(MedianTest, WindowsFarLargerThanTheImageCountItsEdges) {
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

TEST_F(MedianTest, FastNoiseReductionTakesTheThirdOfFive) {
  OnBothProcessors([&] {
    for (const Size size : kSizes) {
      for (const Kind kind : kKinds) {
        for (const uint32_t bits : {8u, 24u}) {
          const auto image = ImageOf(kind, size.width, size.height, bits);
          const auto result = FastNoiseReduction(image.get(), nullptr);
          ASSERT_NE(result, nullptr);
          ASSERT_EQ(GridOf(*result), SlowNoiseReduction(GridOf(*image)))
              << size.width << "x" << size.height << " " << bits;
          // The padding comes along.
          EXPECT_EQ(result->bits()[result->dataSize() - 1], image->bits()[image->dataSize() - 1]);
        }
        CKIPDeepImage image;
        DeepImageOf(image, kind, size.width, size.height, 16);
        const auto result = DeepFastNoiseReduction(&image, nullptr);
        ASSERT_NE(result, nullptr);
        ASSERT_EQ(GridOf(*result), SlowNoiseReduction(GridOf(image)))
            << size.width << "x" << size.height;
        EXPECT_EQ(result->GetRow(size.height - 1)[size.width + 2],
                  image.GetRow(size.height - 1)[size.width + 2]);
      }
    }
  });
}

TEST_F(MedianTest, ResultsAreClones) {
  const auto image = RandomGrey(6, 4);
  image->fileFormat = 5;
  for (const auto& result :
       {MedianFilter(image.get(), CKIPMask(), nullptr), FastNoiseReduction(image.get(), nullptr)}) {
    EXPECT_EQ(result->name, "scan");
    EXPECT_EQ(result->yResolution(), 150u);
    EXPECT_EQ(result->fileFormat, 5u);
    EXPECT_TRUE(result->IsGrey());
  }
  CKIPDeepImage deep;
  DeepImageOf(deep, Kind::kAny, 6, 4, 12);
  for (const auto& result :
       {DeepMedianFilter(&deep, 3, nullptr), DeepFastNoiseReduction(&deep, nullptr)}) {
    EXPECT_EQ(result->GetBits(), 12u);
    EXPECT_EQ(result->GetStride(), 9u);
    EXPECT_EQ(result->GetYResolution(), 150u);
  }
}

TEST_F(MedianTest, WhatCannotBeFilteredGivesNull) {
  const CKIPImage none;
  const auto colored = RandomImage(4, 4, 8, ColoredPalette(256));
  const auto lineArt = RandomImage(4, 4, 1, ColoredPalette(2));
  for (const CKIPImage* image :
       {static_cast<const CKIPImage*>(nullptr), &none, const_cast<const CKIPImage*>(colored.get()),
        const_cast<const CKIPImage*>(lineArt.get())}) {
    EXPECT_EQ(MedianFilter(image, CKIPMask(), nullptr), nullptr);
    EXPECT_EQ(FastNoiseReduction(image, nullptr), nullptr);
  }
  CKIPMask empty;
  empty.rows = 0;
  EXPECT_EQ(MedianFilter(RandomGrey(4, 4).get(), empty, nullptr), nullptr);
  CKIPDeepImage deep;
  EXPECT_EQ(DeepMedianFilter(&deep, 3, nullptr), nullptr);
  EXPECT_EQ(DeepMedianFilter(nullptr, 3, nullptr), nullptr);
  EXPECT_EQ(DeepFastNoiseReduction(&deep, nullptr), nullptr);
  EXPECT_EQ(DeepFastNoiseReduction(nullptr, nullptr), nullptr);
  ASSERT_TRUE(deep.Create(4, 4, 12));
  EXPECT_EQ(DeepMedianFilter(&deep, 0, nullptr), nullptr);
}

TEST_F(MedianTest, EscapeIsAskedForAfterEachRow) {
  const auto image = RandomGrey(5, 4);
  CKIPDeepImage deep;
  DeepImageOf(deep, Kind::kAny, 5, 4, 12);
  const auto expectCancel = [](auto operation) {
    g_fractions.clear();
    platform::host::PressEscapeAtQuestion(3);
    EXPECT_EQ(operation(), nullptr);
    EXPECT_EQ(g_fractions, (std::vector<double>{0, 0.25, 0.5}));
    g_fractions.clear();
    EXPECT_NE(operation(), nullptr);
    EXPECT_EQ(g_fractions, (std::vector<double>{0, 0.25, 0.5, 0.75}));
  };
  for (const uint32_t size : {3u, 5u, 7u}) {
    expectCancel([&] { return MedianFilter(image.get(), MaskOf(size, size), RecordProgress); });
    expectCancel([&] { return DeepMedianFilter(&deep, size, RecordProgress); });
  }
  expectCancel([&] { return FastNoiseReduction(image.get(), RecordProgress); });
  expectCancel([&] { return DeepFastNoiseReduction(&deep, RecordProgress); });
}

TEST_F(MedianTest, RankListGrowsAndKeepsItsValues) {
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
