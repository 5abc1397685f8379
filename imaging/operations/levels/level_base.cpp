#include <cstddef>
#include <cstdint>

#include "imaging/operations/levels/level_loops.h"

namespace zyr::base {

#include "imaging/operations/levels/level_kernels.h"

const LevelKernels kKernels = {Extremes16, Extremes8,      Complement16, Complement8,
                               LookUp16,   LookUp8Plainly, Count8,       Count16};

}  // namespace zyr::base
