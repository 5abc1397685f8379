#include <cstddef>
#include <cstdint>

namespace zyr::shrink_base {
#include "imaging/operations/geometry/shrink_rows_kernels.h"
}  // namespace zyr::shrink_base
