#include "imaging/viewer/scale_taps.h"

#include <algorithm>
#include <cmath>

namespace zyr {
namespace {

// Whatever the position, an index of the image.
int32_t HoldInside(double position, int32_t size) {
  return static_cast<int32_t>(std::clamp(std::floor(position), 0.0, size - 1.0));
}

}  // namespace

void FindMeanTaps(const ScaleAxis& axis, int32_t x, MeanTaps* taps) {
  const double low = std::clamp<double>(axis.Edge(x), 0, axis.size);
  const double high = std::clamp<double>(axis.Edge(x + 1), 0, axis.size);
  taps->first = HoldInside(low, axis.size);
  taps->weights.clear();
  const double span = high - low;
  const int32_t end = std::max(taps->first + 1, static_cast<int32_t>(std::ceil(high)));
  // Rounding where each share ends, and not the shares, keeps the total.
  uint32_t given = 0;
  for (int32_t i = taps->first + 1; i < end; ++i) {
    const auto upTo = static_cast<uint32_t>((i - low) / span * MeanTaps::kWhole + 0.5);
    taps->weights.push_back(upTo - given);
    given = upTo;
  }
  taps->weights.push_back(MeanTaps::kWhole - given);
}

BlendTap FindBlendTap(const ScaleAxis& axis, int32_t x) {
  // In whole numbers, of which 2^32 are a pixel: steps of the same length, as the loops want them.
  constexpr double kPixel = 4294967296.0;
  const int64_t step = std::llround(kPixel / axis.scale);
  const int64_t start = std::llround((axis.origin + 0.5 / axis.scale - 0.5) * kPixel);
  const int64_t middle = start + step * x;
  if (middle <= 0) return {0, 0};
  const int64_t first = middle >> 32;
  if (first >= axis.size - 1) return {axis.size - 1, 0};
  return {static_cast<int32_t>(first), static_cast<int16_t>(middle >> 17 & 0x7FFF)};
}

int32_t FindNearest(const ScaleAxis& axis, int32_t x) {
  return HoldInside(axis.origin + (x + 0.5) / axis.scale, axis.size);
}

}  // namespace zyr
