// Dots per inch and the pixels per metre of bitmap headers.
#pragma once

#include <cstdint>

namespace zyr {

// Both round to the nearest; a result beyond 32 bits loses its upper ones.
inline uint32_t DotsPerInchToPerMetre(uint32_t dotsPerInch) {
  return static_cast<uint32_t>(
      static_cast<uint64_t>(dotsPerInch * 0.39370078740157477 * 100 + 0.5));
}

// May be 0.
inline uint32_t PerMetreToDotsPerInch(uint32_t perMetre) {
  return static_cast<uint32_t>(perMetre * 0.01 * 2.54 + 0.5);
}

}  // namespace zyr
