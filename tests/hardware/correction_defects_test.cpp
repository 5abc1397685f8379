#include <algorithm>
#include <cstdlib>
#include <string>

#include "hardware/correction/sensor_defects.h"
#include "tests/hardware/bit_writer.h"
#include "tests/hardware/correction_test.h"

namespace zyr {
namespace {

using Pixels = std::vector<DefectPixel>;
using Lines = std::vector<int32_t>;

// The defects and their repair, step by step as they were first told: with a search through the
// lists for each neighbour, in the lists' order.
struct SlowRepair {
  Pixels pixels;
  Lines rows;
  Lines columns;
  SensorImage* image = nullptr;
  int32_t width = 0;
  int32_t height = 0;
  double weightedSum = 0;
  double weightSum = 0;
  int count = 0;

  void AddPixel(int32_t x, int32_t y) {
    if (!IsDefective(x, y)) pixels.push_back({x, y});
  }
  void AddColumn(int32_t x) {
    if (std::ranges::count(columns, x) == 0) columns.push_back(x);
    std::erase_if(pixels, [&](const DefectPixel& pixel) { return pixel.x == x; });
  }
  void AddRow(int32_t y) {
    if (std::ranges::count(rows, y) == 0) rows.push_back(y);
    std::erase_if(pixels, [&](const DefectPixel& pixel) { return pixel.y == y; });
  }
  bool IsDefective(int32_t x, int32_t y) const {
    return std::ranges::count(columns, x) != 0 || std::ranges::count(rows, y) != 0 ||
           std::ranges::count(pixels, DefectPixel{x, y}) != 0;
  }
  bool IsInside(int32_t x, int32_t y) const { return x >= 0 && x < width && y >= 0 && y < height; }
  bool IsGood(int32_t x, int32_t y) const { return IsInside(x, y) && !IsDefective(x, y); }
  uint16_t& At(int32_t x, int32_t y) {
    return image->Row(static_cast<uint32_t>(height - 1 - y))[x];
  }

  bool AddNeighbour(int32_t x, int32_t y, double weight) {
    if (!IsGood(x, y)) return false;
    ++count;
    weightSum += weight;
    weightedSum += static_cast<int32_t>(At(x, y) * weight + 0.5);
    return true;
  }
  void Write(int32_t x, int32_t y) {
    if (count != 0) At(x, y) = static_cast<uint16_t>(weightedSum / weightSum + 0.5);
  }
  void RepairPixel(int32_t x, int32_t y) {
    weightedSum = weightSum = count = 0;
    if (!IsInside(x, y)) return;
    for (const int ring : {1, 2}) {
      if (ring == 2 && count > 2) break;
      for (int dy = -ring; dy <= ring; ++dy) {
        for (int dx = -ring; dx <= ring; ++dx) {
          const int square = dx * dx + dy * dy;
          if (std::max(std::abs(dx), std::abs(dy)) != ring) continue;
          const int weight = square == 1   ? 100
                             : square == 2 ? 50
                             : square == 4 ? 33
                             : square == 5 ? 25
                                           : 10;
          AddNeighbour(x + dx, y + dy, weight);
        }
      }
    }
    Write(x, y);
  }
  void RepairLinePixel(int32_t x, int32_t y, int dx, int dy) {
    weightedSum = weightSum = count = 0;
    if (!IsInside(x, y)) return;
    if (!AddNeighbour(x - dx, y - dy, 10)) AddNeighbour(x - 2 * dx, y - 2 * dy, 4);
    if (!AddNeighbour(x + dx, y + dy, 10)) AddNeighbour(x + 2 * dx, y + 2 * dy, 4);
    for (const int i : {-1, 1}) {
      for (const int j : {-1, 1}) AddNeighbour(x + i, y + j, 2);
    }
    if (count <= 2) RepairPixel(x, y);
    Write(x, y);
  }
  void Interpolate(int32_t x, int32_t y, int dx, int dy) {
    if (!IsInside(x, y)) return;
    int left = 1;
    int right = 1;
    while (IsInside(x - left * dx, y - left * dy) && !IsGood(x - left * dx, y - left * dy)) ++left;
    while (IsInside(x + right * dx, y + right * dy) && !IsGood(x + right * dx, y + right * dy)) {
      ++right;
    }
    if (!IsInside(x - left * dx, y - left * dy) || !IsInside(x + right * dx, y + right * dy)) {
      return RepairPixel(x, y);
    }
    const int from = At(x - left * dx, y - left * dy);
    const int to = At(x + right * dx, y + right * dy);
    At(x, y) = static_cast<uint16_t>(
        from + static_cast<int>(static_cast<double>(left) / (left + right) * (to - from) + 0.5));
  }
  void Apply(SensorImage* target, bool binned, bool interpolates) {
    image = target;
    width = static_cast<int32_t>(target->GetWidth());
    height = static_cast<int32_t>(target->GetHeight());
    if (binned) {
      for (DefectPixel& pixel : pixels) pixel = {pixel.x / 2, pixel.y / 2};
      for (int32_t& row : rows) row /= 2;
      for (int32_t& column : columns) column /= 2;
    }
    for (const auto& [x, y] : pixels) RepairPixel(x, y);
    for (const int32_t y : rows) {
      for (int32_t x = 0; x < width; ++x) {
        interpolates ? Interpolate(x, y, 0, 1) : RepairLinePixel(x, y, 0, 1);
      }
    }
    for (const int32_t x : columns) {
      for (int32_t y = 0; y < height; ++y) {
        interpolates ? Interpolate(x, y, 1, 0) : RepairLinePixel(x, y, 1, 0);
      }
    }
  }
};

std::string TextRecord(int64_t x, int64_t y, int kind) {
  return std::to_string(x) + ' ' + std::to_string(y) + ' ' + std::to_string(kind) + '\n';
}

void ExpectSameList(const DefectList& list, const SlowRepair& slow) {
  EXPECT_EQ(list.Pixels(), slow.pixels);
  EXPECT_EQ(list.rows(), slow.rows);
  EXPECT_EQ(list.columns(), slow.columns);
  for (int32_t y = -3; y < 12; ++y) {
    for (int32_t x = -3; x < 12; ++x) EXPECT_EQ(list.IsDefective(x, y), slow.IsDefective(x, y));
  }
}

void ExpectSameRepair(SensorDefects* defects, SlowRepair slow, const SensorImage& raw, bool binned,
                      bool interpolates) {
  const auto fast = raw.Clone();
  defects->Apply(fast.get(), binned);
  const auto expected = raw.Clone();
  slow.Apply(expected.get(), binned, interpolates);
  EXPECT_EQ(SamplesOf(*fast), SamplesOf(*expected));
}

// Frames of all small shapes with few defects up to nothing but defects, some of them outside.
void TestRepairs(bool isText) {
  constexpr uint32_t kSizes[] = {1, 2, 3, 5, 8, 13, 30};
  for (const uint32_t width : kSizes) {
    for (const uint32_t height : kSizes) {
      for (const uint32_t count : {0u, 1u, 4u, 10u, 40u, 150u}) {
        SCOPED_TRACE(testing::Message() << width << " x " << height << ", " << count);
        SlowRepair slow;
        BitWriter bits;
        std::string text;
        const auto shifted = [&](int32_t at, uint32_t size) {
          return isText && at >= 3 && at <= static_cast<int32_t>(size) - 3 ? at + 1 : at;
        };
        for (uint32_t i = 0; i < count; ++i) {
          const uint32_t kind = Random(12) < 10 ? 0 : 2 + Random(2);
          const auto x = static_cast<int32_t>(Random(width + 4)) - (isText ? 2 : 0);
          const auto y = static_cast<int32_t>(Random(height + 4)) - (isText ? 2 : 0);
          text += TextRecord(x, y, static_cast<int>(kind));
          if (kind == 0) {
            slow.AddPixel(x + isText, y + isText);
            bits.Pixel(static_cast<uint32_t>(x), static_cast<uint32_t>(y));
          } else if (kind == 2) {
            slow.AddColumn(shifted(x, width));
            bits.Column(static_cast<uint32_t>(x));
          } else {
            slow.AddRow(shifted(y, height));
            bits.Row(static_cast<uint32_t>(y));
          }
        }
        bits.Put(0, 2);  // so that a line at the end counts
        const auto defects = isText ? MakeTextDefects() : MakeBinaryDefects();
        ASSERT_EQ(isText ? defects->LoadText(text, width, height)
                         : defects->LoadBinary(bits.bytes().data(), bits.bytes().size(), 0, 0),
                  kOk);
        ExpectSameList(defects->defects(), slow);
        const auto raw = RandomFrame(width, height, 65536);
        for (const bool binned : {true, false}) {
          ExpectSameRepair(defects.get(), slow, *raw, binned, !isText);
        }
      }
    }
  }
}

TEST(SensorDefectsTest, WeightedRepairEqualsItsSlowForm) { TestRepairs(true); }

TEST(SensorDefectsTest, InterpolationEqualsItsSlowForm) { TestRepairs(false); }

TEST(SensorDefectsTest, ListedPixelsAreFoundInTheFrameFromItsBottom) {
  const auto defects = MakeTextDefects();
  ASSERT_EQ(defects->LoadText("10 20 0\n", 468, 578), kOk);
  for (const bool binned : {false, true}) {
    SensorImage image;
    ASSERT_TRUE(image.Create(468, 578, 1, 1));
    std::fill_n(image.GetData(), 468 * 578, uint16_t{7});
    image.SetPixel(11, 556, 100);
    image.SetPixel(5, 567, 100);
    defects->Apply(&image, binned);
    EXPECT_EQ(image.GetPixel(11, 556), binned ? 100 : 7);
    EXPECT_EQ(image.GetPixel(5, 567), binned ? 7 : 100);
  }
}

TEST(SensorDefectsTest, TextIsReadLineByLine) {
  struct {
    std::string text;
    Result result;
    Pixels pixels;
    Lines rows;
    Lines columns;
  } const cases[] = {
      {"", kOk, {}, {}, {}},
      {"1 2 0\r\n\r\n\n3 4 0", kOk, {{2, 3}, {4, 5}}, {}, {}},
      {"1 2 0\n" + std::string(1, '\0') + "no", kOk, {{2, 3}}, {}, {}},
      {"1 2 0\n3 4\n5 6 0\n", kUnexpected, {{2, 3}}, {}, {}},
      {std::string("1 2\0 0", 6), kUnexpected, {}, {}, {}},
      // Lines near the edges keep their numbers; the sensor has 20 x 30 pixels.
      {"2 0 2\n3 0 2\n17 0 2\n18 0 2\n", kOk, {}, {}, {2, 4, 18}},
      {"0 2 3\n0 3 3\n0 27 3\n0 28 3\n-5 -6 3\n", kOk, {}, {2, 4, 28, -6}, {}},
      // Pixels under lines, before and after.
      {"4 4 0\n5 4 0\n6 9 0\n4 0 2\n4 7 0\n0 9 3\n", kOk, {{6, 5}}, {10}, {5}},
      // Single blanks part the fields; what is no number counts as 0.
      {"1  0\n x y\n7 8 0 9\n+3 -3 0x\n", kOk, {{2, 1}, {1, 1}, {8, 9}, {4, -2}}, {}, {}},
      {"1 2 1\n1 2 4\n1 2 7\n1 2 -1\n", kOk, {}, {}, {}},
      {"2147483647 99999999999999999999 0\n-99999999999 -2147483648 0\n",
       kOk,
       {{INT32_MAX, INT32_MAX}, {INT32_MIN + 1, INT32_MIN + 1}},
       {},
       {}},
  };
  const auto defects = MakeTextDefects();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(defects->LoadText(c.text, 20, 30), c.result);
    EXPECT_EQ(defects->defects().Pixels(), c.pixels);
    EXPECT_EQ(defects->defects().rows(), c.rows);
    EXPECT_EQ(defects->defects().columns(), c.columns);
  }
  EXPECT_EQ(defects->LoadText("5 -6 6\n", 20, 30), kOk);
  ASSERT_EQ(defects->calibration().size(), 1u);
  EXPECT_EQ(defects->calibration()[0].b, -6);
  EXPECT_EQ(defects->LoadText("", 20, 30), kOk);
  EXPECT_TRUE(defects->calibration().empty());
  EXPECT_EQ(defects->LoadBinary(nullptr, 0, 0, 0), kNotImplemented);
}

TEST(SensorDefectsTest, BitsAreReadRecordByRecord) {
  const auto defects = MakeBinaryDefects();
  const auto load = [&](const BitWriter& bits) {
    const std::vector<uint8_t> bytes = bits.bytes();  // of its very size, for the sanitizer
    return defects->LoadBinary(bytes.data(), bytes.size(), 0, 0);
  };
  const BitWriter all = BitWriter()
                            .Put(4, 3)
                            .Put(0x1FFFFFFF, 29)
                            .Pixel(2047, 1)
                            .Column(5)
                            .Put(5, 3)
                            .Put(0, 29)
                            .Calibration(-1, INT32_MAX, INT32_MIN)
                            .Row(1024);
  EXPECT_EQ(load(all), kOk);
  EXPECT_EQ(defects->defects().Pixels(), (Pixels{{2047, 1}}));
  EXPECT_EQ(defects->defects().columns(), Lines{5});
  EXPECT_EQ(defects->defects().rows(), Lines{1024});
  ASSERT_EQ(defects->calibration().size(), 1u);
  EXPECT_EQ(defects->calibration()[0].a, -1);
  EXPECT_EQ(defects->calibration()[0].b, INT32_MAX);
  EXPECT_EQ(defects->calibration()[0].c, INT32_MIN);

  for (const uint32_t unknown : {1u, 7u}) {
    EXPECT_EQ(load(BitWriter().Column(9).Put(unknown, 3).Put(0, 30)), kUnexpected);
    EXPECT_EQ(defects->defects().columns(), Lines{9});
    EXPECT_TRUE(defects->calibration().empty());
  }
  // A line of 14 bits counts only if two whole bytes are left for it.
  for (const uint32_t filling : {0u, 1u, 2u, 9u}) {
    EXPECT_EQ(load(BitWriter().Pixel(3, 4).Column(9).Put(0xFFFF, filling)), kOk);
    EXPECT_EQ(defects->defects().columns().size(), filling < 2 ? 0u : 1u) << filling;
  }
  // Every stream that is cut off gives what stands whole.
  for (size_t size = 0; size <= all.bytes().size(); ++size) {
    const std::vector<uint8_t> torn(all.bytes().begin(),
                                    all.bytes().begin() + static_cast<ptrdiff_t>(size));
    EXPECT_EQ(defects->LoadBinary(torn.data(), size, 0, 0), kOk);
    EXPECT_EQ(defects->calibration().size(), size * 8 < 32 + 25 + 14 + 32 + 104 ? 0u : 1u) << size;
  }
  EXPECT_EQ(defects->LoadText("1 2 0", 20, 30), kNotImplemented);
}

TEST(DefectListTest, ScalingCutsRoundsAndStaysWithin32Bits) {
  DefectList list;
  list.AddPixel(11, 21);
  list.AddPixel(-3, INT32_MAX);
  list.AddColumn(7);
  list.AddRow(INT32_MIN);
  const auto scaled = [&](double factor, bool rounded) {
    DefectList other = list;
    other.Scale(factor, rounded);
    return other;
  };
  EXPECT_EQ(scaled(0.5, false).Pixels(), (Pixels{{5, 10}, {-1, 1073741823}}));
  EXPECT_EQ(scaled(0.5, true).Pixels(), (Pixels{{6, 11}, {-1, 1073741824}}));
  EXPECT_EQ(scaled(0.5, true).columns(), Lines{4});
  EXPECT_TRUE(scaled(0.5, true).IsDefective(4, 99));
  EXPECT_EQ(scaled(3, false).rows(), Lines{INT32_MIN});
  EXPECT_EQ(scaled(3, false).Pixels(), (Pixels{{33, 63}, {-9, INT32_MAX}}));
  list.Clear();
  EXPECT_FALSE(list.IsDefective(11, 21) || list.IsDefective(7, 0));
}

}  // namespace
}  // namespace zyr
