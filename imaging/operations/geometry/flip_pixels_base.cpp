#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zyr::flip_base {
#include "imaging/operations/geometry/flip_pixels_kernels.h"
}  // namespace zyr::flip_base
