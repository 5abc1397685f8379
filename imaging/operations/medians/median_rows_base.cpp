#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "imaging/operations/medians/median_rows.h"

namespace zyr::median_base {
#include "imaging/operations/medians/median_rows_kernels.h"
}  // namespace zyr::median_base
