// The seam across the rows of a 303 sensor, where two read-outs meet.
#pragma once

#include <cstdint>

#include "hardware/correction/sensor_image.h"

namespace zyr {

// Brings the rows below the seam to the level of those above it, ever less over 119 rows. An image
// that the seam does not cross, or that is dark there, stays as it is. Results beyond 16 bits keep
// the lower 16.
void CorrectSeam(SensorImage* image, uint32_t sizeCode);

}  // namespace zyr
