#include "imaging/operations/masks/emboss_kernels.h"

namespace zyr {

const EmbossLoop kEmbossLoopAvx2 = EmbossRow;

}  // namespace zyr
