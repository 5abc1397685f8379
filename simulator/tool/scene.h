// What a sensor shall see, brought to its geometry.
#pragma once

#include "simulator/physics.h"
#include "tools/images/grey_picture.h"

namespace zyr::simulator {

inline constexpr uint16_t kBrightest = 4095;

// Microns from one pixel to the next at full resolution.
double PixelPitch(Family family);

// The middle of the picture, as much of it as has the sensor's proportions. `film`: the picture is
// bright where the rays are stopped, and is turned over, since a sensor's signal is high where they
// come through.
Scene SceneOfPicture(const GreyPicture& picture, Family family, Size size, bool film);
// The same seed gives the same teeth.
Scene SceneOfPhantom(Family family, Size size, uint64_t seed);

// Spread over 16 bits.
GreyPicture PictureOfScene(const Scene& scene);

}  // namespace zyr::simulator
