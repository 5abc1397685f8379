#include "imaging/viewer/viewer_zoom.h"

#include <algorithm>

namespace zyr {

double SnappedZoom(double value) {
  if (value == 1.0) return 1.0;
  for (double step = kLeastZoomStep; step <= kGreatestZoom; step *= kZoomInFactor) {
    if (step >= value) return step;
  }
  return kGreatestZoom;
}

double FitZoom(uint32_t imageWidth, uint32_t imageHeight, ViewSize client) {
  if (imageWidth == 0 || imageHeight == 0) return 0;
  return std::min(static_cast<double>(client.width) / imageWidth,
                  static_cast<double>(client.height) / imageHeight);
}

double DraggedZoom(double start, int32_t startY, int32_t currentY) {
  constexpr double kPixelsToTwice = 100;
  const double up = (static_cast<double>(startY) - currentY) / kPixelsToTwice;
  const double zoom = up >= 0 ? start * (1 + up) : start / (1 - up);
  return std::clamp(zoom, std::min(start, kLeastZoomStep), std::max(start, kGreatestZoom));
}

}  // namespace zyr
