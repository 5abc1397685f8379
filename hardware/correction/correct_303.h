// Offset, column pattern, gain and seam of the 303 family.
#pragma once

#include <cstdint>

#include "hardware/correction/sensor_defects.h"
#include "hardware/correction/sensor_image.h"

namespace zyr {

// The gain record of the sensor's memory, all zero if there is none.
struct PdiRecord {
  uint64_t enabled = 0;
  double gain_0 = 0;
  double gain_1 = 0;
  double gain_2 = 0;
};

// A new frame, stretched from 12 to 16 bits. Without `calibration`, or with fewer triples than the
// frame has columns, a copy of `normal`. Null without memory.
Held<SensorImage> Correct303(const SensorImage& normal, const SensorImage& dark,
                             const SensorDefects* calibration, const PdiRecord& pdi,
                             uint32_t sizeCode);

}  // namespace zyr
