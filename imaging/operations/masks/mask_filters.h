// Filters that weigh each pixel's neighbourhood by a mask. Borders repeat the edge pixels.
// Neighbours are counted in memory rows, so with lopsided masks the bottom-up order of the rows is
// part of the result. Everything is summed in double precision in the order of the mask, the same
// on all processors; a result that is not a number becomes the brightest value.
//
// The source stays; the result is new. Null for a null or invalid image, a mask without weights,
// without memory, and on cancel, which is asked for after each row.
#pragma once

#include <cstdint>
#include <memory>

#include "foundation/support/progress.h"
#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"
#include "imaging/operations/masks/mask.h"

namespace zyr {

// Of 24 bits, or grey; null for others. Fractions are dropped.
std::unique_ptr<CKIPImage> ApplyMask(const CKIPImage* image, const CKIPMask& mask,
                                     ProgressCallback progress);
// Adds the mask's response to the pixels.
std::unique_ptr<CKIPImage> EdgeEnhance(const CKIPImage* image, const CKIPMask& mask,
                                       ProgressCallback progress);

// The deep forms round, where those above do not. Their masks are square.
std::unique_ptr<CKIPDeepImage> DeepApplyMask(const CKIPDeepImage* image, const CKIPMask& mask,
                                             ProgressCallback progress);
std::unique_ptr<CKIPDeepImage> DeepSharpen(const CKIPDeepImage* image, uint32_t size,
                                           int32_t percent, ProgressCallback progress);
std::unique_ptr<CKIPDeepImage> DeepSmooth(const CKIPDeepImage* image, uint32_t size,
                                          int32_t percent, ProgressCallback progress);
std::unique_ptr<CKIPDeepImage> DeepEdgeEnhance(const CKIPDeepImage* image, uint32_t size,
                                               double strength, ProgressCallback progress);

}  // namespace zyr
