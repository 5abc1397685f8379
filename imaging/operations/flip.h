// Turning pictures over. The source stays; the result is new. Null on failure or cancel.
#pragma once

#include <cstddef>
#include <memory>

#include "foundation/support/progress.h"
#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"

namespace zyr {

std::unique_ptr<CKIPImage> FlipVertical(const CKIPImage& image, ProgressCallback progress);
std::unique_ptr<CKIPDeepImage> DeepFlipVertical(const CKIPDeepImage& image,
                                                ProgressCallback progress);

// Turns `height` rows of `rowBytes` bytes over in place.
void FlipRows(void* rows, size_t rowBytes, size_t height);

}  // namespace zyr
