#include "imaging/operations/geometry/shrink_rows.h"

#include "foundation/support/cpu.h"

namespace zyr {

namespace shrink_base {
void SetWeighted(float* sums, const uint8_t* values, float weight, size_t count);
void AddWeighted(float* sums, const uint8_t* values, float weight, size_t count);
}  // namespace shrink_base

namespace shrink_avx2 {
void SetWeighted(float* sums, const uint8_t* values, float weight, size_t count);
void AddWeighted(float* sums, const uint8_t* values, float weight, size_t count);
}  // namespace shrink_avx2

void SetWeighted(float* sums, const uint8_t* values, float weight, size_t count) {
  (HasAvx2() ? shrink_avx2::SetWeighted : shrink_base::SetWeighted)(sums, values, weight, count);
}

void AddWeighted(float* sums, const uint8_t* values, float weight, size_t count) {
  (HasAvx2() ? shrink_avx2::AddWeighted : shrink_base::AddWeighted)(sums, values, weight, count);
}

}  // namespace zyr
