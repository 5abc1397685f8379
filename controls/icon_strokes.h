// Shapes that vector icons are made of.
#pragma once

#include <initializer_list>
#include <vector>

#include "controls/vector_icon.h"

namespace zyr {

using IconStrokes = std::vector<IconStroke>;

IconStrokes operator+(IconStrokes a, const IconStrokes& b);

IconStrokes IconPath(std::initializer_list<IconPoint> points, double halfWidth);
IconStrokes IconDot(IconPoint middle, double radius);
IconStrokes IconRectangle(IconPoint leftTop, IconPoint rightBottom, double halfWidth);
// Clockwise, in quarters of a turn from the right.
IconStrokes IconArc(IconPoint middle, double radius, double from, double to, double halfWidth);
IconStrokes IconRing(IconPoint middle, double radius, double halfWidth);

IconStrokes MovedBy(IconStrokes strokes, IconPoint offset);
// The same shape with that much more around it.
IconStrokes WidenedBy(IconStrokes strokes, double margin);
// About the origin.
IconStrokes ScaledBy(IconStrokes strokes, double factor);

}  // namespace zyr
