#include "controls/vector_icon.h"

#include <algorithm>
#include <cmath>

#include "controls/paint.h"

namespace zyr {
namespace {

double DistanceTo(const IconStroke& stroke, IconPoint p) {
  const IconPoint along = {stroke.to.x - stroke.from.x, stroke.to.y - stroke.from.y};
  const IconPoint offset = {p.x - stroke.from.x, p.y - stroke.from.y};
  const double length2 = along.x * along.x + along.y * along.y;
  const double t =
      length2 == 0 ? 0 : std::clamp((offset.x * along.x + offset.y * along.y) / length2, 0.0, 1.0);
  return std::hypot(offset.x - t * along.x, offset.y - t * along.y);
}

// How much of the pixel around `p` the strokes cover: all of it if their edge is half a pixel away.
double Coverage(std::span<const IconStroke> strokes, IconPoint p, double pixelsPerUnit) {
  double nearest = 1;  // pixels to the edge, positive outside
  for (const IconStroke& stroke : strokes) {
    nearest = std::min(nearest, (DistanceTo(stroke, p) - stroke.halfWidth) * pixelsPerUnit);
  }
  return std::clamp(0.5 - nearest, 0.0, 1.0);
}

struct Blended {
  double red = 0;
  double green = 0;
  double blue = 0;
  double opacity = 0;

  void Cover(COLORREF color, double share) {
    const double whole = share + opacity * (1 - share);
    if (whole == 0) return;
    const auto blend = [&](double behind, int front) {
      return behind + (front - behind) * share / whole;
    };
    *this = {blend(red, GetRValue(color)), blend(green, GetGValue(color)),
             blend(blue, GetBValue(color)), whole};
  }

  uint32_t Pixel() const {
    const auto byte = [](double value) { return static_cast<uint32_t>(value + 0.5); };
    return byte(opacity * 255) << 24 | byte(red) << 16 | byte(green) << 8 | byte(blue);
  }
};

}  // namespace

std::vector<uint32_t> RenderIcon(std::span<const IconLayer> layers, int size,
                                 const IconScale& scale, std::optional<COLORREF> background) {
  std::vector<uint32_t> pixels;
  pixels.reserve(static_cast<size_t>(size) * size);
  for (int row = 0; row < size; ++row) {
    for (int column = 0; column < size; ++column) {
      const IconPoint p = {(column + 0.5 - scale.origin.x) / scale.pixelsPerUnit,
                           (row + 0.5 - scale.origin.y) / scale.pixelsPerUnit};
      Blended pixel;
      if (background) pixel.Cover(*background, 1);
      for (const IconLayer& layer : layers) {
        pixel.Cover(layer.color, Coverage(layer.strokes, p, scale.pixelsPerUnit));
      }
      pixels.push_back(pixel.Pixel());
    }
  }
  return pixels;
}

void DrawIconPixels(HDC target, int x, int y, int size, const std::vector<uint32_t>& pixels) {
  DrawPixels(target, {x, y, x + size, y + size}, pixels);
}

}  // namespace zyr
