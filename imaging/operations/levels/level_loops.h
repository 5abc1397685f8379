// The loops over rows that the point operations share, in two forms.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zyr {

inline constexpr size_t kCountTables = 4;

// One form for plain processors and one for AVX2. `least` and `greatest` go in with where to start.
struct LevelKernels {
  void (*extremes16)(const uint16_t* samples, size_t count, uint16_t* least, uint16_t* greatest);
  void (*extremes8)(const uint8_t* bytes, size_t count, uint8_t* least, uint8_t* greatest);
  void (*complement16)(const uint16_t* source, uint16_t* target, size_t count, uint16_t mask);
  void (*complement8)(const uint8_t* source, uint8_t* target, size_t count);
  // Returns the bits in use in `source`. The table has 65,536 entries.
  uint16_t (*lookUp16)(const uint16_t* table, const uint16_t* source, uint16_t* target,
                       size_t count);
  // The table has 256 entries.
  void (*lookUp8)(const uint8_t* table, const uint8_t* source, uint8_t* target, size_t count);
  // Add to `kCountTables` tables behind each other, of 256 and of `top` + 1 bins, whose sum is what
  // counts. Samples beyond `top` count as `top`.
  void (*count8)(const uint8_t* bytes, size_t count, uint32_t* bins);
  void (*count16)(const uint16_t* samples, size_t count, uint32_t top, uint32_t* bins);
};

const LevelKernels& TheLevelKernels();  // of this processor

// level * slope + offset, truncated and limited to the bytes or to `top`; only for processors that
// have AVX2. The arithmetic is not that of any rule: who uses it compares every level's result with
// the rule's first.
namespace avx2 {
void DrawLine8(float slope, float offset, const uint8_t* source, uint8_t* target, size_t count);
// Returns the bits in use in `source`.
uint16_t DrawLine16(double slope, double offset, uint16_t top, const uint16_t* source,
                    uint16_t* target, size_t count);
// The same in single precision, at half the time.
uint16_t DrawRoughLine16(float slope, float offset, uint16_t top, const uint16_t* source,
                         uint16_t* target, size_t count);
extern const LevelKernels kKernels;
}  // namespace avx2
namespace base {
extern const LevelKernels kKernels;
}  // namespace base

}  // namespace zyr
