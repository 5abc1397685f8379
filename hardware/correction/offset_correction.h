// Removal of the read-out lag of the 2000 family.
#pragma once

#include <cstdint>

#include "hardware/correction/sensor_image.h"

namespace zyr {

// Pixels by which the raster of a sensor of that size comes late.
uint32_t ReadOutLag(uint32_t sizeCode, bool fullResolution);

// Moves the raster back by `lag` pixels, across the ends of the rows. The top row itself stays
// where it is: only its end changes, to the start of the row below. The end of the bottom row
// stays, too.
void CorrectOffset(SensorImage* image, uint32_t lag);

}  // namespace zyr
