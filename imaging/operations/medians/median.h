// Median filters, which take noise away. The source stays; the result is new.
//
// Beyond the edges the outermost samples repeat. Null for no image, an invalid one or one that is
// neither 24-bit nor grey, for windows of no size, without memory, and on cancel.
#pragma once

#include <cstdint>
#include <memory>

#include "foundation/support/progress.h"
#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"
#include "imaging/operations/masks/mask.h"

namespace zyr {

// Of the mask only the size counts: that of the window around each pixel. Each channel for itself.
std::unique_ptr<CKIPImage> MedianFilter(const CKIPImage* image, const CKIPMask& mask,
                                        ProgressCallback progress);
// A window of size x size. An even one reaches back one farther than ahead, and of its two middle
// samples the upper is taken.
std::unique_ptr<CKIPDeepImage> DeepMedianFilter(const CKIPDeepImage* image, uint32_t size,
                                                ProgressCallback progress);

}  // namespace zyr
