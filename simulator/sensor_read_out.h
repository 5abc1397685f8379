// How a frame goes over the wire: 16-bit little-endian words, row after row.
#pragma once

#include <stdint.h>

#include "simulator/sensor.h"

namespace zyr::simulator {

struct ReadOut {
  uint32_t width;     // pixels as delivered
  uint32_t height;
  uint32_t binned;    // two by two pixels of the sensor make one
  uint32_t oddWords;  // only every second word is a pixel, beginning with the second
  uint32_t lag;       // pixels by which the raster comes late
};
// All zero if the family has no such size. Only sizes C and D of the 2000 family can be binned.
ReadOut ReadOutOf(Family family, Size size, bool binned);

uint32_t BytesPerRow(const ReadOut& readOut);
uint32_t FrameBytes(const ReadOut& readOut);

// Writes `length` bytes of the frame, from byte `position` on; both together must stay within
// FrameBytes(). `samples` has the geometry `sensor` and may be null: a black frame. Beyond the
// sensor's edges everything is black.
void PackFrame(const ReadOut& readOut, const uint16_t* samples, const Geometry& sensor,
               uint32_t position, uint8_t* target, uint32_t length);

}  // namespace zyr::simulator
