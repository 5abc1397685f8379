#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zyr::flip_avx2 {
#include "imaging/operations/geometry/flip_pixels_kernels.h"
}  // namespace zyr::flip_avx2
