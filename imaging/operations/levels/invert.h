// Turning black into white.
#pragma once

#include <memory>

#include "foundation/support/progress.h"
#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"

namespace zyr {

// New images; null on failure or cancel. Of an 8-bit image that is not grey the palette is turned
// and the pixels stay. At 1 bit the padding of the rows turns too.
std::unique_ptr<CKIPImage> Invert(const CKIPImage* image, ProgressCallback progress);
std::unique_ptr<CKIPDeepImage> DeepInvert(const CKIPDeepImage* image, ProgressCallback progress);

}  // namespace zyr
