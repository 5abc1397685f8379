// The depth mapper's modes against the plainest form of each.
#include "imaging/operations/levels/depth_mapper.h"

#include <algorithm>
#include <limits>

#include "imaging/image/raw_pixels.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

using DepthMapperTest = ImagingTest;
using Samples = std::vector<uint16_t>;
using Table = std::vector<int>;  // from level to byte; empty where there is nothing to spread

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr uint32_t kModes[] = {1, 2, 3, 4, 6, 9, 10, 11, 12, 13, 0xFFFFFFFF};
constexpr uint32_t kPlainModes[] = {0, 5, 7, 8};

struct Case {
  Samples levels;  // those within the table
  uint32_t size;   // of the table
  size_t pixels;   // with those beyond it
  bool positive;
  double percent;
};

int64_t CountIn(const Case& c, int64_t low, int64_t high) {
  return std::count_if(c.levels.begin(), c.levels.end(),
                       [=](int64_t level) { return low <= level && level <= high; });
}

Table SlowShares(const Case& c) {
  Table table;
  for (uint32_t i = 0; i < c.size; ++i) {
    const double share = static_cast<double>(CountIn(c, 0, i)) / c.levels.size();
    table.push_back(static_cast<int>(std::min(share * 255 + 0.5, 255.0)));
  }
  return table;
}

// Every level that occurs, once.
Case Occurring(Case c) {
  std::sort(c.levels.begin(), c.levels.end());
  c.levels.erase(std::unique(c.levels.begin(), c.levels.end()), c.levels.end());
  return c;
}

Table SlowEqualized(const Case& c) {
  Table table;
  double share = 0;
  for (uint32_t i = 0; i < c.size; ++i) {
    share = std::min(share + CountIn(c, i, i) / static_cast<double>(c.pixels), 1.0);
    table.push_back(std::min(static_cast<int>(share * 255 + 0.5), 255));
  }
  return table;
}

Table SlowLine(const Case& c, int low, int high) {
  Table table;
  if (low >= high) return table;
  for (int i = 0; i < static_cast<int>(c.size); ++i) {
    const double along = static_cast<double>(i - low) / (high - low) * 255;
    table.push_back(i < low ? 0 : i > high ? 255 : static_cast<int>(along));
  }
  return table;
}

Table SlowClip(const Case& c, double lowPercent, double highPercent) {
  const auto enough = [&](double percent) {
    return std::max<int64_t>(1, static_cast<int64_t>(c.levels.size() * percent * 0.01));
  };
  int low = 0;
  int high = static_cast<int>(c.size) - 1;
  while (CountIn(c, 0, low) < enough(lowPercent)) ++low;
  while (CountIn(c, high, c.size - 1) < enough(highPercent)) --high;
  return SlowLine(c, low, high);
}

Table SlowWindow(const Case& c) {
  const double percent = c.percent >= 0 ? std::min(c.percent, 100.0) : 0;
  const auto enough = static_cast<int64_t>(c.levels.size() * percent * 0.01);
  const int top = static_cast<int>(c.size) - 1;
  int low = 0;
  for (int i = 0; i <= top; ++i) {
    if (CountIn(c, i, i) > CountIn(c, low, low)) low = i;
  }
  int high = low;
  while (CountIn(c, low, high) < enough) {
    // Beyond the table there is less than nothing.
    const int64_t below = low == 0 ? -1 : CountIn(c, low - 1, low - 1);
    const int64_t above = high == top ? -1 : CountIn(c, high + 1, high + 1);
    below >= above ? --low : ++high;
  }
  return SlowLine(c, low, high);
}

Table SlowTable(uint32_t mode, const Case& c) {
  if (c.levels.empty()) return {};
  if (mode == 1) return SlowShares(c);
  if (mode == 2) return SlowShares(Occurring(c));
  if (mode == 4) return SlowClip(c, 3, 3);
  if (mode == 6 || mode == 9) return SlowClip(c, 0, 0);
  if (mode == 10) return c.positive ? SlowClip(c, 3, 0) : SlowClip(c, 0, 3);
  if (mode == 11) return c.positive ? SlowClip(c, 0, 3) : SlowClip(c, 3, 0);
  if (mode == 12) return SlowWindow(c);
  return SlowEqualized(c);
}

Table SlowReducedTable(uint32_t mode, const Case& full) {
  Case c = full;
  c.size = 256;
  for (uint16_t& level : c.levels) level = static_cast<uint16_t>(level * 256 / full.size);
  const Table steps = SlowTable(mode == 9 || mode == 12 ? mode : 4, c);
  Table table;
  const int block = static_cast<int>(full.size / 256);
  for (int i = 0; i < static_cast<int>(full.size) && !steps.empty(); ++i) {
    const int from = steps[i / block];
    const int to = steps[std::min(i / block + 1, 255)];
    table.push_back(from + (to - from) * (i % block) / block);
  }
  return table;
}

// For samples whose rows lie `pad` samples apart: all levels, and some beyond them.
void ExpectMode(uint32_t mode, const Samples& samples, uint32_t width, uint32_t pad,
                const DepthMapping& mapping) {
  const uint32_t height = static_cast<uint32_t>(samples.size() / (width + pad));
  const uint32_t size = 1u << (mapping.bits - mapping.lowBit);
  Case c = {{}, size, size_t{width} * height, mapping.positive, mapping.percent};
  for (size_t i = 0; i < samples.size(); ++i) {
    const uint32_t level = samples[i] >> mapping.lowBit;
    if (i % (width + pad) < width && level < size) c.levels.push_back(level & 0xFFFF);
  }
  const Table slow = size >= 256 && mode != 6 ? SlowReducedTable(mode, c) : SlowTable(mode, c);
  const auto plain = std::make_unique<CKIPDepthMapper>();
  plain->Prepare(samples.data(), width, height, pad, mapping);
  DepthMapping ofMode = mapping;
  ofMode.mode = mode;
  const auto mapper = std::make_unique<CKIPDepthMapper>();
  mapper->Prepare(samples.data(), width, height, pad, ofMode);
  for (uint32_t sample = 0; sample <= std::min((size << mapping.lowBit) + 8, 0xFFFFu); ++sample) {
    const uint16_t s = sample & 0xFFFF;
    const uint32_t level = sample >> mapping.lowBit;
    int expected = plain->Map(s, mapping.positive);
    if (!slow.empty() && level < size) {
      expected = mapping.positive ? slow[level] : 255 - slow[level];
    }
    uint8_t inRow = 0;
    mapper->MapRow(&s, &inRow, 1, false);
    ASSERT_EQ(mapper->Map(s, mapping.positive), expected) << "mode " << mode << ", " << sample;
    ASSERT_EQ(inRow, expected);
  }
}

TEST_F(DepthMapperTest, EachModeFollowsItsRule) {
  constexpr uint32_t kWidth = 13;
  constexpr uint32_t kPad = 2;
  for (const uint32_t bits : {1u, 5u, 7u, 8u, 12u}) {
    for (int content = 0; content < 4; ++content) {
      Samples samples((kWidth + kPad) * 9);
      for (uint16_t& sample : samples) {
        const uint32_t spread = Random(40) * Random(40) / (content + 1) + 50;
        sample = (content == 3 ? 100 : content == 0 ? Random(1u << bits) : spread) & 0xFFFF;
      }
      for (const bool positive : {true, false}) {
        const uint32_t lowBit = bits > 6 && content == 1 ? 2 : 0;
        DepthMapping mapping = {.positive = positive, .bits = bits, .lowBit = lowBit};
        mapping.detectDepth = false;
        for (const uint32_t mode : kModes) {
          mapping.percent = content == 0 ? 100 : content * 35;
          ASSERT_NO_FATAL_FAILURE(ExpectMode(mode, samples, kWidth, kPad, mapping));
        }
        for (const double percent : {kNaN, -1.0, 0.0, 1e300}) {
          mapping.percent = percent;
          ASSERT_NO_FATAL_FAILURE(ExpectMode(12, samples, kWidth, kPad, mapping));
        }
      }
    }
  }
}

TEST_F(DepthMapperTest, WithNothingToSpreadEveryModeIsPlain) {
  const auto mapper = std::make_unique<CKIPDepthMapper>();
  const auto plain = std::make_unique<CKIPDepthMapper>();
  const Samples flat(12, 0x123);
  const Samples beyond(12, 0x8000);
  struct {
    const Samples& samples;
    uint32_t width, bits;
  } const kCases[] = {{flat, 0, 12}, {flat, 6, 12}, {beyond, 6, 12}, {beyond, 6, 4}};
  for (const auto& c : kCases) {
    DepthMapping mapping = {.bits = c.bits, .detectDepth = false, .percent = 50};
    plain->Prepare(c.samples.data(), c.width, 2, 0, mapping);
    for (mapping.mode = 0; mapping.mode < 20; ++mapping.mode) {
      mapper->Prepare(c.samples.data(), c.width, 2, 0, mapping);
      for (uint32_t s = 0; s < 0x1100; ++s) {
        ASSERT_EQ(mapper->Map(s & 0xFFFF, true), plain->Map(s & 0xFFFF, true)) << mapping.mode;
      }
    }
  }
  Samples varied(64);
  for (uint16_t& sample : varied) sample = Random(4096) & 0xFFFF;
  for (const uint32_t mode : kPlainModes) {
    const auto image = ImageFromRaw16(varied.data(), 8, 8, 0, 1, 1, {.mode = mode, .bits = 12});
    EXPECT_EQ(PixelBytes(*image), PixelBytes(*ImageFromRaw16(varied.data(), 8, 8, 0, 1, 1, {})));
  }
}

// The levels' spread comes before brightness and contrast, and reaches the image's rows.
TEST_F(DepthMapperTest, TheOtherSettingsApplyOnTop) {
  const Samples samples = {1000, 1500, 2000, 3000};
  const DepthMapping mapping = {.mode = 6, .bits = 12, .invert = true, .brightness = 20};
  const auto image = ImageFromRaw16(samples.data(), 4, 1, 0, 1, 1, mapping);
  // 0, 63, 127 and 255, brighter by 51, inverted.
  EXPECT_EQ(PixelBytes(*image), (Bytes{204, 141, 77, 0}));
}

}  // namespace
}  // namespace zyr
