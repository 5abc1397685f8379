#include <algorithm>
#include <cmath>
#include <limits>

#include "hardware/correction/column_pattern.h"
#include "hardware/correction/correct_303.h"
#include "tests/hardware/bit_writer.h"
#include "tests/hardware/correction_test.h"

namespace zyr {
namespace {

std::unique_ptr<SensorDefects> Calibration(const std::vector<CalibrationTriple>& triples) {
  BitWriter bits;
  for (const auto& [a, b, c] : triples) bits.Calibration(a, b, c);
  auto defects = MakeBinaryDefects();
  EXPECT_EQ(defects->LoadBinary(bits.bytes().data(), bits.bytes().size(), 0, 0), kOk);
  return defects;
}

// Offsets of some tens and more; with `isWild` any bits.
std::vector<CalibrationTriple> RandomTriples(size_t count, bool isWild) {
  std::vector<CalibrationTriple> triples(count);
  for (auto& [a, b, c] : triples) {
    a = static_cast<int32_t>(Random(2000000000)) - 1000000000;
    b = static_cast<int32_t>(Random(2000000)) - 1000000;
    c = static_cast<int32_t>(Random(400)) - 200;
    if (!isWild) continue;
    b = static_cast<int32_t>(Random(UINT32_MAX));
    c = static_cast<int32_t>(~Random(UINT32_MAX));
  }
  return triples;
}

// Dark columns with levels of their own; those in `odd` stand out far.
Held<SensorImage> DarkFrame(uint32_t width, uint32_t height, const std::vector<uint32_t>& odd) {
  auto dark = RandomFrame(width, height, 30);
  for (uint32_t x = 0; x < width; ++x) {
    const bool isOdd = std::ranges::count(odd, x) != 0;
    const uint32_t level = 150 + x * 37 % 23 + (isOdd ? 900 : 0);
    for (uint32_t y = 0; y < height; ++y) {
      dark->SetPixel(x, y, static_cast<uint16_t>(dark->GetPixel(x, y) + level));
    }
  }
  return dark;
}

// Smoothing with each weight worked out where it is needed.
std::vector<double> SlowSmooth(const std::vector<double>& means) {
  const int width = static_cast<int>(means.size());
  const double sigma = 30 / std::sqrt(8 * std::log(2.0));
  std::vector<double> smooth = means;
  for (int i = 4; i <= width - 5; ++i) {
    int taps = 41;
    if (i <= 23) taps = 2 * (i - 4) + 1;
    if (i >= width - 24) taps = 2 * (width - i) - 9;
    const auto weight = [&](int j) { return std::exp(-j * j / (2 * sigma * sigma)); };
    double sum = 0;
    for (int j = -taps / 2; j <= taps / 2; ++j) sum += weight(j);
    smooth[i] = 0;
    for (int j = -taps / 2; j <= taps / 2; ++j) smooth[i] += weight(j) / sum * means[i + j];
  }
  return smooth;
}

std::vector<double> SlowPattern(const SensorImage& dark) {
  const uint32_t width = dark.GetWidth();
  const uint32_t height = dark.GetHeight();
  std::vector<double> mean(width);
  for (uint32_t x = 0; x < width; ++x) {
    for (uint32_t y = 10; y <= height - 11; ++y) mean[x] += dark.GetPixel(x, y);
    mean[x] /= height - 20;
  }
  double m = 0;
  for (uint32_t x = 10; x <= width - 11; ++x) m += mean[x];
  m /= width - 20;
  double s = 0;
  for (uint32_t x = 10; x <= width - 11; ++x) s += (mean[x] - m) * (mean[x] - m);
  s = std::sqrt(s / (width - 20));
  std::vector<bool> isOut(width + 1);
  for (uint32_t x = 4; x < width; ++x) isOut[x] = mean[x] < m - 4 * s || mean[x] > m + 4 * s;
  for (uint32_t x = 4; x < width; ++x) {
    if (!isOut[x] || isOut[x - 1]) continue;
    uint32_t n = 1;
    while (isOut[x + n]) ++n;
    const double step = x + n < width ? mean[x + n] - mean[x - 1] / n : 0;
    for (uint32_t i = 0; i < n; ++i) mean[x + i] = mean[x + i - 1] + step;
  }
  const std::vector<double> smooth = SlowSmooth(mean);
  for (uint32_t x = 0; x < width; ++x) mean[x] -= smooth[x];
  return mean;
}

Held<SensorImage> SlowCorrect303(const SensorImage& normal, const SensorImage& dark,
                                 const std::vector<CalibrationTriple>& triples,
                                 const PdiRecord& pdi, uint32_t sizeCode) {
  const uint32_t width = normal.GetWidth();
  const uint32_t height = normal.GetHeight();
  const std::vector<double> pattern = SlowPattern(dark);
  const bool gain = pdi.enabled != 0 && (pdi.gain_1 != 0 || pdi.gain_2 != 0);
  std::vector<double> pixels(size_t{width} * height);
  for (uint32_t y = 0; y < height; ++y) {
    for (uint32_t x = 0; x < width; ++x) {
      const double v = normal.GetPixel(x, y);
      const double d = std::trunc(dark.GetPixel(x, y) - pattern[x]);
      const auto& [a, b, c] = triples[x];
      const double t = v - std::trunc(0.0000001 * (c * (v * v) + b * v + a) + 0.5);
      double r = t - d;
      if (gain) r = t - std::trunc((pdi.gain_2 * (t * t) + pdi.gain_1 * t + pdi.gain_0) * d);
      pixels[y * width + x] = r >= 0 && r <= 0xFFF ? r : v;
    }
  }
  const uint32_t distance = sizeCode == 0 || sizeCode == 2 ? 409 : 535;
  if (!gain && height > distance) {
    const uint32_t s = height - distance;
    double above = 0;
    double below = 0;
    for (uint32_t x = 0; x < width; ++x) {
      above += pixels[(s - 1) * width + x];
      below += pixels[s * width + x];
    }
    double factor = below == 0 ? 1 : above / below;
    const double step = (1 - factor) * 0.008333333767950535;
    for (uint32_t y = s; y <= s + 118 && below != 0; ++y) {
      for (uint32_t x = 0; x < width; ++x) {
        pixels[y * width + x] = std::trunc(pixels[y * width + x] * factor);
      }
      factor += step;
      if (factor >= 1.0 || factor <= -1.0) break;
    }
  }
  Held<SensorImage> image = NewSensorImage();
  EXPECT_TRUE(image->Create(width, height, normal.GetDpiX(), normal.GetDpiY()));
  for (uint32_t i = 0; i < width * height; ++i) {
    image->SetPixel(i % width, i / width,
                    static_cast<uint16_t>(static_cast<int64_t>(pixels[i]) << 4));
  }
  return image;
}

PdiRecord Gain(uint64_t enabled, double gain0, double gain1, double gain2) {
  PdiRecord pdi;
  pdi.enabled = enabled;
  pdi.gain_0 = gain0;
  pdi.gain_1 = gain1;
  pdi.gain_2 = gain2;
  return pdi;
}

const PdiRecord kGains[] = {Gain(0, 1, 1, 1), Gain(1, 0.9, 0, 0), Gain(1, 1.02, -0.00001, 2e-9),
                            Gain(1, -0.5, 0, 1e-7), Gain(7, 0, 0.0004, 0)};

TEST(Correct303Test, EqualsItsSlowForm) {
  constexpr uint32_t kSizes[][2] = {{48, 21}, {49, 409}, {63, 410}, {77, 536}, {101, 700}};
  for (const auto& [width, height] : kSizes) {
    for (const PdiRecord& pdi : kGains) {
      for (const uint32_t size : {0u, 1u, 2u, 3u}) {
        SCOPED_TRACE(testing::Message() << width << " x " << height << ", " << size);
        const bool isWild = size >= 2;
        const auto dark = DarkFrame(width, height, {2, 17, width - 1});
        const auto normal = RandomFrame(width, height, isWild ? 65536 : 4096);
        const auto triples = RandomTriples(width + Random(3), isWild);
        const auto calibration = Calibration(triples);
        const auto fast = Correct303(*normal, *dark, calibration.get(), pdi, size);
        const auto slow = SlowCorrect303(*normal, *dark, triples, pdi, size);
        ASSERT_EQ(SamplesOf(*fast), SamplesOf(*slow));
        EXPECT_EQ(fast->GetDpiY(), 150u);
      }
    }
  }
}

TEST(Correct303Test, ImageIsLeftAsItIsWithoutWhatTheCorrectionNeeds) {
  const auto normal = RandomFrame(60, 30, 4096);
  const auto dark = RandomFrame(60, 30, 200);
  const auto enough = Calibration(RandomTriples(60, false));
  const auto tooFew = Calibration(RandomTriples(59, false));
  const auto stays = [&](const SensorImage& raw, const SensorImage& other,
                         const SensorDefects* calibration) {
    const auto image = Correct303(raw, other, calibration, {}, 2);
    return SamplesOf(*image) == SamplesOf(raw);
  };
  EXPECT_FALSE(stays(*normal, *dark, enough.get()));
  EXPECT_TRUE(stays(*normal, *dark, nullptr));
  EXPECT_TRUE(stays(*normal, *dark, tooFew.get()));
  EXPECT_TRUE(stays(*normal, *RandomFrame(60, 29, 9), enough.get()));
  EXPECT_TRUE(stays(*normal, SensorImage(), enough.get()));
  EXPECT_TRUE(stays(SensorImage(), SensorImage(), enough.get()));
  for (const auto& [width, height] : {std::pair{47u, 30u}, std::pair{60u, 20u}}) {
    EXPECT_TRUE(
        stays(*RandomFrame(width, height, 99), *RandomFrame(width, height, 9), enough.get()));
  }
}

TEST(Correct303Test, NothingThatIsNoNumberReachesAPixel) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  const auto normal = RandomFrame(60, 30, 4096);
  const auto calibration = Calibration(RandomTriples(60, false));
  for (const PdiRecord& pdi : {Gain(1, kInfinity, -kInfinity, 1), Gain(1, 0, 1e300, 1e300),
                               Gain(1, kNone, kNone, kNone)}) {
    const auto image = Correct303(*normal, *RandomFrame(60, 30, 99), calibration.get(), pdi, 2);
    for (uint32_t x = 0; x < 60; ++x) EXPECT_EQ(image->GetPixel(x, 7), normal->GetPixel(x, 7) << 4);
  }
}

// A frame that is dark below the seam, one that gets brighter there, one that gets darker.
TEST(Correct303Test, SeamIsFadedOutDownwards) {
  const auto calibration = Calibration(std::vector<CalibrationTriple>(48));
  const auto corrected = [&](uint16_t above, uint16_t below) {
    SensorImage normal;
    SensorImage dark;
    EXPECT_TRUE(normal.Create(48, 550, 1, 1) && dark.Create(48, 550, 1, 1));
    for (uint32_t i = 0; i < 48 * 550; ++i) normal.GetData()[i] = i < 48 * 15 ? above : below;
    return Correct303(normal, dark, calibration.get(), {}, 3);
  };
  const auto levelAt = [](const Held<SensorImage>& image, uint32_t y) {
    return image->GetPixel(20, y) / 16;
  };
  EXPECT_EQ(levelAt(corrected(1000, 0), 15), 0);
  const auto brighter = corrected(1000, 2000);
  EXPECT_EQ(levelAt(brighter, 14), 1000);
  EXPECT_EQ(levelAt(brighter, 15), 1000);
  EXPECT_EQ(levelAt(brighter, 15 + 60), 1500);
  EXPECT_EQ(levelAt(brighter, 15 + 118), 1983);
  EXPECT_EQ(levelAt(brighter, 15 + 119), 2000);
  const auto darker = corrected(2000, 1000);  // mended in the first row only
  EXPECT_EQ(levelAt(darker, 15), 2000);
  EXPECT_EQ(levelAt(darker, 16), 1000);
}

TEST(ColumnPatternTest, OutlyingColumnsTakeStepsFromTheirNeighbours) {
  std::vector<double> means(200, 100.0);
  for (size_t x = 0; x < means.size(); ++x) means[x] += static_cast<double>(x % 2);
  const std::vector<double> before = means;
  for (const size_t x : {2, 4, 50, 80, 81, 199}) means[x] = 900;
  RepairColumnMeans(&means);
  EXPECT_EQ(means[2], 900);  // too near the edge to be looked at
  EXPECT_EQ(means[4], before[5]);
  EXPECT_EQ(means[50], before[51]);
  EXPECT_EQ(means[80], 101 + (100 - 101 / 2.0));
  EXPECT_EQ(means[81], 101 + 2 * (100 - 101 / 2.0));
  EXPECT_EQ(means[199], before[198]);  // the last has no neighbour
  for (const size_t x : {3, 5, 49, 79, 82, 198}) EXPECT_EQ(means[x], before[x]);
}

// FNV-1a
uint64_t HashOf(const void* bytes, size_t size) {
  uint64_t hash = 0xCBF29CE484222325;
  for (size_t i = 0; i < size; ++i) {
    hash = (hash ^ static_cast<const uint8_t*>(bytes)[i]) * 0x100000001B3;
  }
  return hash;
}

// Every build gives these very bits.
TEST(ColumnPatternTest, BitsAreTheSameOnEveryMachine) {
  std::mt19937 generator(5);
  SensorImage dark;
  SensorImage normal;
  ASSERT_TRUE(dark.Create(150, 420, 1, 1) && normal.Create(150, 420, 1, 1));
  std::vector<CalibrationTriple> triples(150);
  for (uint32_t i = 0; i < 150 * 420; ++i) {
    dark.GetData()[i] = static_cast<uint16_t>(100 + i % 150 % 13 + generator() % 32);
    normal.GetData()[i] = static_cast<uint16_t>(generator() % 4096);
    triples[i % 150] = {static_cast<int32_t>(i), 50000 - static_cast<int32_t>(i), 17};
  }
  const std::vector<double> pattern = ColumnPattern(dark);
  EXPECT_EQ(HashOf(pattern.data(), pattern.size() * sizeof(double)), 3975197331984299753u);
  const auto calibration = Calibration(triples);
  for (const auto& [pdi, hash] :
       {std::pair{kGains[0], 3872043777025821146u}, std::pair{kGains[2], 11249698492789283035u}}) {
    const auto image = Correct303(normal, dark, calibration.get(), pdi, 2);
    EXPECT_EQ(HashOf(image->data(), size_t{image->GetStride()} * 420), hash);
  }
}

}  // namespace
}  // namespace zyr
