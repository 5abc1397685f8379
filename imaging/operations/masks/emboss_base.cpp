#include "imaging/operations/masks/emboss_kernels.h"

namespace zyr {

const EmbossLoop kEmbossLoopBase = EmbossRow;

}  // namespace zyr
