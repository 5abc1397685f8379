#include "imaging/operations/masks/mask_filters_kernels.h"

namespace zyr {

const MaskLoops kMaskLoopsBase = kLoops;

}  // namespace zyr
