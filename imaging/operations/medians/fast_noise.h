// The cheaper way to take noise away: each pixel becomes the median of itself and its four direct
// neighbours. The outermost rows and columns stay. The source stays too; the result is new. Null
// for no image, an invalid one or one that is neither 24-bit nor grey, without memory, and on
// cancel.
#pragma once

#include <memory>

#include "foundation/support/progress.h"
#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"

namespace zyr {

std::unique_ptr<CKIPImage> FastNoiseReduction(const CKIPImage* image, ProgressCallback progress);
std::unique_ptr<CKIPDeepImage> DeepFastNoiseReduction(const CKIPDeepImage* image,
                                                      ProgressCallback progress);

}  // namespace zyr
