// The scales at which the viewer shows a picture.
#pragma once

#include <cstdint>

#include "imaging/viewer/image_viewer_view.h"

namespace zyr {

inline constexpr double kZoomInFactor = 1.5;
inline constexpr double kZoomOutFactor = 0.6666666666666666;
inline constexpr double kLeastZoomStep = 0.0625;
inline constexpr double kGreatestZoom = 16.0;

// The step at or above `value`. Steps are 1.5 apart and miss 1: only 1 itself gives 1.
double SnappedZoom(double value);

// At which the whole image just fills the client area in one direction; 0 for an empty one.
double FitZoom(uint32_t imageWidth, uint32_t imageHeight, ViewSize client);

// Zooming by dragging from `start`: twice as large 100 pixels further up, half as large 100 further
// down. Stays within the steps' range, unless `start` lies outside.
double DraggedZoom(double start, int32_t startY, int32_t currentY);

}  // namespace zyr
