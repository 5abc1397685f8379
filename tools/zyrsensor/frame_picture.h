// Frames of a sensor as pictures, and how far a picture is from what it should show.
#pragma once

#include <cstdint>
#include <optional>

#include "hardware/correction/sensor_image.h"
#include "tools/images/grey_picture.h"

namespace zyr {

// Upright, 16 bits a pixel: a sensor is read from the bottom of the picture up. Samples of 12 bits
// are moved up, so that they can be seen; with `film` bright is what stopped the rays.
GreyPicture PictureOf(const SensorImage& frame, bool film);

// In levels of 4096.
struct Difference {
  double mean = 0;  // of the absolute differences
  double rootMeanSquare = 0;
  uint32_t largest = 0;
  double shareAbove40 = 0;  // of the pixels, from 0 to 1
};
// Null if the sizes differ. Both of 8 or 16 bits.
std::optional<Difference> Compare(const GreyPicture& picture, const GreyPicture& reference);

}  // namespace zyr
