// Brightness and contrast, both in percent: 0 changes nothing, contrast 100 doubles the distance
// from the middle grey. The 8-bit forms round, the deep one does not.
#pragma once

#include <cstdint>
#include <memory>

#include "foundation/support/progress.h"
#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"
#include "imaging/operations/levels/keep_color.h"

namespace zyr {

// What the rule makes of each byte.
ByteTable BrightnessContrastTable(int32_t brightness, int32_t contrast);

// A new image, from 8 and 24 bits; pixels of 8 bits change by value and the palette stays. Null if
// refused, on failure and on cancel.
std::unique_ptr<CKIPImage> AdjustBrightnessContrast(const CKIPImage* image, int32_t brightness,
                                                    int32_t contrast, ColorRef keep,
                                                    ProgressCallback progress);
// Changes the palette of an image of 8 bits; others stay.
void AdjustPaletteBrightnessContrast(CKIPImage* image, int32_t brightness, int32_t contrast);

std::unique_ptr<CKIPDeepImage> DeepAdjustBrightnessContrast(const CKIPDeepImage* image,
                                                            int32_t brightness, int32_t contrast,
                                                            ProgressCallback progress);

}  // namespace zyr
