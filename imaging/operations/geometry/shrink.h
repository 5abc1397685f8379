// Small copies of pictures.
#pragma once

#include <cstdint>
#include <memory>

#include "foundation/support/progress.h"
#include "imaging/image/image.h"

namespace zyr {

// A copy of 24 bits of which no side is longer than `limit` pixels, of the same proportions; its
// pixels are the means of the areas that they stand for, in the order in which the picture is
// drawn. A plain clone if the picture is small enough already, and for a limit of 0. Null for no
// image or an invalid one, on cancel, and with the last error set if a side would come down to no
// pixel at all.
std::unique_ptr<CKIPImage> ShrinkToLimit(const CKIPImage* image, uint32_t limit,
                                         ProgressCallback progress);

}  // namespace zyr
