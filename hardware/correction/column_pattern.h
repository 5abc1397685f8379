// The pattern that differences between a sensor's columns leave in its dark frame.
#pragma once

#include <cstdint>
#include <vector>

#include "hardware/correction/sensor_image.h"

namespace zyr {

// A frame must have as many pixels for its pattern to be told.
inline constexpr uint32_t kLeastPatternWidth = 48;
inline constexpr uint32_t kLeastPatternHeight = 21;

// By how much the columns of `dark` lie above a smooth curve through them all. The same bits on
// every machine.
std::vector<double> ColumnPattern(const SensorImage& dark);

// A step of it: replaces means that stand out far by what their neighbours let expect.
void RepairColumnMeans(std::vector<double>* means);

}  // namespace zyr
