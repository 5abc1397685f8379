#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zyr::flip_base {
#include "imaging/operations/flip_pixels_kernels.h"
}  // namespace zyr::flip_base
