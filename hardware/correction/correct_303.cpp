#include "hardware/correction/correct_303.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "foundation/log/log.h"
#include "hardware/correction/column_pattern.h"
#include "hardware/correction/integer_part.h"
#include "hardware/correction/seam.h"

namespace zyr {
namespace {

constexpr size_t kBlock = 16;  // a fixed count, which is what compilers vectorise
constexpr uint32_t kGreatestLevel = 0xFFF;
constexpr uint32_t kSpareBits = 4;  // from 12 to 16
constexpr double kOffsetScale = 0.0000001;

struct Gain {
  explicit Gain(const PdiRecord& pdi)
      : isOn(pdi.enabled != 0 && (pdi.gain_2 != 0 || pdi.gain_1 != 0)),
        constant(pdi.gain_0),
        linear(pdi.gain_1),
        square(pdi.gain_2) {}

  bool isOn;
  double constant;
  double linear;
  double square;
};

// What is known of each column, an array for each coefficient: so a row's pixels are worked on side
// by side.
struct Columns {
  Columns(const std::vector<CalibrationTriple>& calibration, std::vector<double> darkPattern)
      : pattern(std::move(darkPattern)) {
    for (size_t x = 0; x < pattern.size(); ++x) {
      constant.push_back(calibration[x].a);
      linear.push_back(calibration[x].b);
      square.push_back(calibration[x].c);
    }
  }

  std::vector<double> pattern;
  std::vector<double> constant;
  std::vector<double> linear;
  std::vector<double> square;
};

template <bool withGain>
void CorrectBlock(const uint16_t* __restrict normal, const uint16_t* __restrict dark,
                  const Columns& columns, size_t x, const Gain& gain, uint16_t* __restrict result) {
  const double* const a = &columns.constant[x];
  const double* const b = &columns.linear[x];
  const double* const c = &columns.square[x];
  const double* const pattern = &columns.pattern[x];
  for (size_t k = 0; k < kBlock; ++k) {
    const double v = normal[x + k];
    const int32_t offset = IntegerPart(kOffsetScale * (c[k] * (v * v) + b[k] * v + a[k]) + 0.5);
    const int32_t level = normal[x + k] - offset;
    const int32_t darkLevel = IntegerPart(dark[x + k] - pattern[k]);
    int32_t darkShare = darkLevel;
    if (withGain) {
      const double t = level;
      darkShare =
          IntegerPart((gain.square * (t * t) + gain.linear * t + gain.constant) * darkLevel);
    }
    const int32_t corrected = level - darkShare;
    const bool isValid = corrected >= 0 && corrected <= static_cast<int32_t>(kGreatestLevel);
    result[x + k] = isValid ? static_cast<uint16_t>(corrected) : normal[x + k];
  }
}

// The last block may overlap the one before it.
template <bool withGain>
void CorrectFrame(const SensorImage& normal, const SensorImage& dark, const Columns& columns,
                  const Gain& gain, SensorImage* result) {
  const size_t lastBlock = normal.GetWidth() - kBlock;
  for (uint32_t y = 0; y < normal.GetHeight(); ++y) {
    for (size_t x = 0; x <= lastBlock; x += kBlock) {
      CorrectBlock<withGain>(normal.Row(y), dark.Row(y), columns, x, gain, result->Row(y));
    }
    CorrectBlock<withGain>(normal.Row(y), dark.Row(y), columns, lastBlock, gain, result->Row(y));
  }
}

void StretchLevels(SensorImage* image) {
  uint16_t* const samples = image->GetData();
  const size_t count = size_t{image->GetHeight()} * image->GetRowPixels();
  const auto stretch = [](uint16_t& sample) {
    sample = static_cast<uint16_t>(sample << kSpareBits);
  };
  size_t i = 0;
  for (; i + kBlock <= count; i += kBlock) {
    for (size_t k = 0; k < kBlock; ++k) stretch(samples[i + k]);
  }
  for (; i < count; ++i) stretch(samples[i]);
}

// Null if the correction can be made.
const char* ReasonAgainst(const SensorImage& normal, const SensorImage& dark,
                          const SensorDefects* calibration) {
  if (calibration == nullptr) return "the sensor has no calibration";
  if (calibration->calibration().size() < normal.GetWidth()) {
    return "the calibration has fewer columns than the frame";
  }
  if (dark.GetWidth() != normal.GetWidth() || dark.GetHeight() != normal.GetHeight()) {
    return "the dark frame is of another size";
  }
  if (normal.GetWidth() < kLeastPatternWidth || normal.GetHeight() < kLeastPatternHeight) {
    return "the frame is too small";
  }
  return nullptr;
}

}  // namespace

Held<SensorImage> Correct303(const SensorImage& normal, const SensorImage& dark,
                             const SensorDefects* calibration, const PdiRecord& pdi,
                             uint32_t sizeCode) {
  if (const char* const reason = ReasonAgainst(normal, dark, calibration)) {
    Log().WriteLine("The image is left without offset and gain correction: %s.", reason);
    return normal.Clone();
  }
  Held<SensorImage> result = NewSensorImage();
  if (result == nullptr ||
      !result->Create(normal.GetWidth(), normal.GetHeight(), normal.GetDpiX(), normal.GetDpiY())) {
    return nullptr;
  }
  const Columns columns(calibration->calibration(), ColumnPattern(dark));
  const Gain gain(pdi);
  if (gain.isOn) {
    CorrectFrame<true>(normal, dark, columns, gain, result.get());
  } else {
    CorrectFrame<false>(normal, dark, columns, gain, result.get());
    CorrectSeam(result.get(), sizeCode);
  }
  StretchLevels(result.get());
  return result;
}

}  // namespace zyr
