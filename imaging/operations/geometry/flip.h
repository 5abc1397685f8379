// Turning pictures over. The source stays; the result is new. Null for no image or an invalid one,
// and on cancel.
#pragma once

#include <cstddef>
#include <memory>

#include "foundation/support/progress.h"
#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"

namespace zyr {

// The padding of rows stays where it is.
std::unique_ptr<CKIPImage> FlipHorizontal(const CKIPImage* image, ProgressCallback progress);
std::unique_ptr<CKIPImage> FlipVertical(const CKIPImage* image, ProgressCallback progress);
std::unique_ptr<CKIPDeepImage> DeepFlipHorizontal(const CKIPDeepImage* image,
                                                  ProgressCallback progress);
std::unique_ptr<CKIPDeepImage> DeepFlipVertical(const CKIPDeepImage* image,
                                                ProgressCallback progress);

// Turns `height` rows of `rowBytes` bytes over in place.
void FlipRows(void* rows, size_t rowBytes, size_t height);

}  // namespace zyr
