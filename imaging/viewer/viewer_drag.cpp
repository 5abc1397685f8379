#include "imaging/viewer/viewer_drag.h"

#include <algorithm>

namespace zyr {
namespace {

int64_t Step(int32_t from, int32_t to) { return std::max<int64_t>((int64_t{to} - from) / 256, 1); }

double GammaSpan(int32_t from, int32_t to) {
  const double span = (static_cast<double>(to) - from) * 0.005;
  return span == 0 ? 1.0 : span;
}

double GammaOfWay(int32_t start, int32_t current, double span) {
  const double way = std::clamp((static_cast<double>(current) - start) / span, -100.0, 100.0);
  if (way == 0) return 0;
  return way > 0 ? way * 0.05 + 1 : 1.01 + way * 0.01;
}

}  // namespace

BrightnessContrast HeldBrightnessContrast(int64_t brightness, int64_t contrast) {
  const auto held = [](int64_t v) {
    return static_cast<int32_t>(std::clamp<int64_t>(v, -128, 128));
  };
  return {held(brightness), held(contrast)};
}

BrightnessContrast DraggedBrightnessContrast(const ViewRect& area, ViewPoint start,
                                             ViewPoint current) {
  return HeldBrightnessContrast((int64_t{start.y} - current.y) / Step(area.top, area.bottom),
                                (int64_t{current.x} - start.x) / Step(area.left, area.right));
}

GammaPair DraggedGamma(const ViewRect& area, ViewPoint start, ViewPoint current) {
  const double xSpan = GammaSpan(area.top, area.bottom);
  const double ySpan = GammaSpan(area.left, area.right);
  return {GammaOfWay(start.x, current.x, xSpan), GammaOfWay(start.y, current.y, ySpan)};
}

}  // namespace zyr
