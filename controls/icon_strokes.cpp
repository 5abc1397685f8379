#include "controls/icon_strokes.h"

#include <cmath>
#include <numbers>

namespace zyr {

IconStrokes operator+(IconStrokes a, const IconStrokes& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

IconStrokes IconPath(std::initializer_list<IconPoint> points, double halfWidth) {
  IconStrokes strokes;
  for (const IconPoint* p = points.begin(); p + 1 < points.end(); ++p) {
    strokes.push_back({p[0], p[1], halfWidth});
  }
  return strokes;
}

IconStrokes IconDot(IconPoint middle, double radius) { return {{middle, middle, radius}}; }

IconStrokes IconRectangle(IconPoint leftTop, IconPoint rightBottom, double halfWidth) {
  const auto [left, top] = leftTop;
  const auto [right, bottom] = rightBottom;
  return IconPath({{left, top}, {right, top}, {right, bottom}, {left, bottom}, {left, top}},
                  halfWidth);
}

IconStrokes IconArc(IconPoint middle, double radius, double from, double to, double halfWidth) {
  constexpr int kPieces = 24;
  const auto at = [&](int piece) {
    const double angle = (from + (to - from) * piece / kPieces) * std::numbers::pi / 2;
    return IconPoint{middle.x + radius * std::cos(angle), middle.y + radius * std::sin(angle)};
  };
  IconStrokes strokes;
  for (int i = 0; i < kPieces; ++i) strokes.push_back({at(i), at(i + 1), halfWidth});
  return strokes;
}

IconStrokes IconRing(IconPoint middle, double radius, double halfWidth) {
  return IconArc(middle, radius, 0, 4, halfWidth);
}

IconStrokes MovedBy(IconStrokes strokes, IconPoint offset) {
  for (IconStroke& stroke : strokes) {
    stroke.from = {stroke.from.x + offset.x, stroke.from.y + offset.y};
    stroke.to = {stroke.to.x + offset.x, stroke.to.y + offset.y};
  }
  return strokes;
}

IconStrokes WidenedBy(IconStrokes strokes, double margin) {
  for (IconStroke& stroke : strokes) stroke.halfWidth += margin;
  return strokes;
}

IconStrokes ScaledBy(IconStrokes strokes, double factor) {
  for (IconStroke& stroke : strokes) {
    stroke.from = {stroke.from.x * factor, stroke.from.y * factor};
    stroke.to = {stroke.to.x * factor, stroke.to.y * factor};
    stroke.halfWidth *= factor;
  }
  return strokes;
}

}  // namespace zyr
