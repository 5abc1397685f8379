// A frame from the wire: rows of 16-bit words, lowest byte first, 12 bits of which count.
#pragma once

#include <cstdint>

#include "hardware/correction/sensor_image.h"
#include "hardware/result.h"
#include "hardware/usb/usb_port.h"

namespace zyr {

struct FrameGeometry {
  uint32_t width = 0;  // of the frame, pixels
  uint32_t height = 0;
  uint32_t wordsPerRow = 0;  // on the wire, one row a read
  bool everyWord = true;     // else only the words 1, 3, 5, ... are pixels
};
FrameGeometry FrameGeometryOf(uint32_t sensorWidth, uint32_t sensorHeight, uint32_t sizeCode,
                              bool fullResolution);

// Makes `frame` anew and fills it. On failure the last error is set, and the rows that did not
// arrive are zero.
Result ReadFrame(UsbPort& port, const FrameGeometry& geometry, uint32_t dpiX, uint32_t dpiY,
                 SensorImage* frame);

}  // namespace zyr
