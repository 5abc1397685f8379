// Gamma: each level to the power of 1 / gamma, counted in parts of the brightest. Nothing rounds.
#pragma once

#include <memory>

#include "foundation/support/progress.h"
#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"
#include "imaging/operations/levels/keep_color.h"

namespace zyr {

// What the rule makes of each byte; `exponent` is 1 / gamma.
ByteTable GammaTable(double exponent);

// A new image. Grey pixels of 8 bits take the mean of the three exponents, other palettes are
// changed in the pixels' stead, and 1 bit and gammas that are not above 0 give the plain copy.
// Null on failure or cancel.
std::unique_ptr<CKIPImage> AdjustGamma(const CKIPImage* image, double red, double green,
                                       double blue, ColorRef keep, ProgressCallback progress);
// Changes the palette of an image of 8 bits, grey or not; others stay.
void AdjustPaletteGamma(CKIPImage* image, double red, double green, double blue, ColorRef keep);

// The copy as it is if gamma is 1 or not above 0.
std::unique_ptr<CKIPDeepImage> DeepAdjustGamma(const CKIPDeepImage* image, double gamma,
                                               ProgressCallback progress);

}  // namespace zyr
