// Shading a picture as if its levels were heights.
#pragma once

#include <memory>

#include "foundation/support/progress.h"
#include "imaging/image/image.h"

namespace zyr {

// A new 8-bit grey image, of any valid image. The light comes from `azimuth` and `elevation`, in
// degrees; `depth` is 0 (flat) to 1 (steep). Azimuths turn round, an infinite one counts as 0;
// the others are limited to 0 to 90 and 0 to 1. What is not a number counts as 0. Null for a null
// or invalid image, without memory, and on cancel.
std::unique_ptr<CKIPImage> Emboss(const CKIPImage* image, double azimuth, double elevation,
                                  double depth, ProgressCallback progress);

}  // namespace zyr
