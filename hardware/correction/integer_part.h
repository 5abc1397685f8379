// Cutting of real numbers to integers.
#pragma once

#include <cstdint>

namespace zyr {

// `value` without its fraction. What is far beyond any pixel, or no number, ends at a bound that
// still is: sums of a few such parts fit in 32 bits.
inline int32_t IntegerPart(double value) {
  constexpr double kBound = 1 << 28;
  value = value > -kBound ? value : -kBound;
  value = value < kBound ? value : kBound;
  return static_cast<int32_t>(value);
}

}  // namespace zyr
