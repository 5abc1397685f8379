// What dragging over the picture makes of brightness, contrast and gamma.
#pragma once

#include <cstdint>

#include "imaging/viewer/image_viewer_view.h"

namespace zyr {

struct BrightnessContrast {
  int32_t brightness = 0;
  int32_t contrast = 0;
  bool operator==(const BrightnessContrast&) const = default;
};

struct GammaPair {
  double x = 0;
  double y = 0;
  bool operator==(const GammaPair&) const = default;
};

// `area` is the picture's rectangle, with the same origin as the points. Dragging all across it
// goes through 256 levels, upwards to brighter and to the right to more contrast; either value is
// held to -128 to 128.
BrightnessContrast DraggedBrightnessContrast(const ViewRect& area, ViewPoint start,
                                             ViewPoint current);
BrightnessContrast HeldBrightnessContrast(int64_t brightness, int64_t contrast);

// Gammas from 0.01 to 6; 0 where the pointer has not moved in that direction. The way to the right
// is counted in parts of the area's height and the way down in parts of its width.
GammaPair DraggedGamma(const ViewRect& area, ViewPoint start, ViewPoint current);

}  // namespace zyr
