// Operations that look at all levels of an image first. New images; null if refused, on failure and
// on cancel. The 8-bit ones take grey images only. A `reference` lends its levels in the place of
// the image's; null means the image itself. It must be of 8 bits and not smaller than the image.
#pragma once

#include <cstdint>
#include <memory>

#include "foundation/support/progress.h"
#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"

namespace zyr {

// Spreads the levels from the least to the greatest over all there are. Where both are the same
// everything becomes 0. Levels outside those of a reference wrap around.
std::unique_ptr<CKIPImage> Normalize(const CKIPImage* image, const CKIPImage* reference,
                                     ProgressCallback progress);
std::unique_ptr<CKIPDeepImage> DeepNormalize(const CKIPDeepImage* image, ProgressCallback progress);

// Each level becomes the share of pixels that are not brighter.
std::unique_ptr<CKIPImage> Equalize(const CKIPImage* image, const CKIPImage* reference,
                                    ProgressCallback progress);
std::unique_ptr<CKIPDeepImage> DeepEqualize(const CKIPDeepImage* image, ProgressCallback progress);

// Spreads the levels between two that leave out these percentages of the pixels at the dark and at
// the bright end; pure black and pure white do not count. Where that leaves nothing to spread, the
// 8-bit form gives a white image and the deep one a copy.
std::unique_ptr<CKIPImage> AutoBrightnessContrast(const CKIPImage* image, uint32_t lowPercent,
                                                  uint32_t highPercent, const CKIPImage* reference,
                                                  ProgressCallback progress);
std::unique_ptr<CKIPImage> AutoBrightnessContrastDefault(const CKIPImage* image,
                                                         ProgressCallback progress);
std::unique_ptr<CKIPDeepImage> DeepAutoBrightnessContrast(const CKIPDeepImage* image,
                                                          uint32_t lowPercent,
                                                          uint32_t highPercent,
                                                          ProgressCallback progress);

}  // namespace zyr
