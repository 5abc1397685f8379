// The inner loops of the mask filters, over one row. Both forms give the same bits.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zyr {

// The loops work on vectors and read up to this many numbers behind what they need.
inline constexpr size_t kMaskSlack = 4;

// A weighted sum of neighbours for each sample of a row. `windowRows` holds as many rows as the
// mask; entry x of such a row is the leftmost neighbour of sample x, the next one `step` further.
// Bytes lie there as floats and 16-bit samples as doubles; sums are in double in any case.
template <typename Wide>
struct MaskSum {
  const Wide* const* windowRows;
  const double* weights;  // row by row
  size_t rows;
  size_t columns;
  size_t step;
  double factor;
  const Wide* added;  // what each sum is added to, or null
  double limit;       // results lie in 0 to limit
  double rounding;    // added before what lies behind the point is dropped
};

// For sums of bytes in single precision, which are at most `error` away from the exact ones. Where
// both ends of that range give the same byte, it is the exact sum's.
struct RoughMask {
  const float* weights;  // times the mask's factor
  float error;
};

struct MaskLoops {
  void (*widen8)(const uint8_t* from, float* to, size_t count);
  void (*widen16)(const uint16_t* from, double* to, size_t count);
  void (*sum8)(const MaskSum<float>& sum, uint8_t* to, size_t count);
  void (*sum16)(const MaskSum<double>& sum, uint16_t* to, size_t count);
  // What sum8 does, for weights with which sums of bytes are exact in single precision too, before
  // the factor.
  void (*sum8OfFractions)(const MaskSum<float>& sum, const float* weights, uint8_t* to,
                          size_t count);
  // What sum8 does with a limit of 255 and no rounding. Returns how many of the `count` results
  // needed the exact sum, or more.
  size_t (*sum8Roughly)(const MaskSum<float>& sum, const RoughMask& rough, uint8_t* to,
                        size_t count);
};

extern const MaskLoops kMaskLoopsBase;
extern const MaskLoops kMaskLoopsAvx2;

}  // namespace zyr
