// Small pictures made of strokes, drawn at any size with smooth edges.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zyr {

// In units of the picture's own design, y down.
struct IconPoint {
  double x = 0;
  double y = 0;
};

// A line with round ends; of no length it is a dot.
struct IconStroke {
  IconPoint from;
  IconPoint to;
  double halfWidth = 0;
};

// Strokes of one colour; where they overlap they do not add up.
struct IconLayer {
  COLORREF color = 0;
  std::span<const IconStroke> strokes;
};

// Where the design's origin lies in the bitmap, in pixels, and how large its unit is.
struct IconScale {
  IconPoint origin;
  double pixelsPerUnit = 1;
};

// Each layer over those before it. `size` rows of `size` pixels, the first row on top: blue in the
// low byte, then green, red and opacity. Colours are not multiplied by the opacity. With a
// background everything is opaque.
std::vector<uint32_t> RenderIcon(std::span<const IconLayer> layers, int size,
                                 const IconScale& scale,
                                 std::optional<COLORREF> background = std::nullopt);

// Puts opaque pixels of that form on a device.
void DrawIconPixels(HDC target, int x, int y, int size, const std::vector<uint32_t>& pixels);

}  // namespace zyr
