#include "imaging/operations/masks/mask_filters_kernels.h"

namespace zyr {

const MaskLoops kMaskLoopsAvx2 = kLoops;

}  // namespace zyr
