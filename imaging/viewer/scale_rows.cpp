#include "imaging/viewer/scale_rows.h"

#include "foundation/support/cpu.h"

namespace zyr {

namespace scale_rows_base {
extern const ScaleRows kLoops;
}  // namespace scale_rows_base

namespace scale_rows_avx2 {
extern const ScaleRows kLoops;
}  // namespace scale_rows_avx2

const ScaleRows& ScaleRowLoops() {
  return HasAvx2() ? scale_rows_avx2::kLoops : scale_rows_base::kLoops;
}

}  // namespace zyr
