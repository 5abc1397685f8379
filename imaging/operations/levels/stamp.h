// A mark written into a deep image.
#pragma once

#include <cstdint>

#include "foundation/support/progress.h"
#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"

namespace zyr {

// Inverts the image's samples below the black pixels of a 1-bit stamp. Its bottom row comes to lie
// on memory row `y`, its left column on column `x`; what falls outside is left out. False if either
// image is refused, and on cancel, which leaves the rows done so far.
bool StampInverted(const CKIPImage* stamp, CKIPDeepImage* image, int32_t x, int32_t y,
                   ProgressCallback progress);

}  // namespace zyr
