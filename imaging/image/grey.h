// Grey values of colours, grey palettes, and conversions between depths of a CKIPImage.
#pragma once

#include <cstdint>
#include <memory>

#include "foundation/support/progress.h"
#include "imaging/image/image.h"

namespace zyr {

// Equal values keep their level. The weights of the others add up to 249 of 256: coloured pixels
// come out darker, on purpose.
uint8_t GreyFromRgb(uint8_t red, uint8_t green, uint8_t blue);
// `color` points to blue, green, red.
uint8_t GreyFromColor(const uint8_t* color);

void MakeIdentityPalette(PaletteEntry* entries);  // 256 entries
Palette NewIdentityPalette();

// New images; null on failure or cancel.
std::unique_ptr<CKIPImage> ConvertToGrey8(const CKIPImage& image, ProgressCallback progress);
std::unique_ptr<CKIPImage> ConvertTo24(const CKIPImage& image, ProgressCallback progress);

}  // namespace zyr
