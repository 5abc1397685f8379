#include "imaging/viewer/spot_tools.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "imaging/viewer/local_contrast.h"
#include "imaging/viewer/scaled_picture.h"

namespace zyr {
namespace {

constexpr uint32_t kRimBright = 0xE0E0E0;
constexpr uint32_t kRimDark = 0x303030;

ViewRect Intersect(const ViewRect& a, const ViewRect& b) {
  return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
          std::min(a.bottom, b.bottom)};
}

bool IsEmpty(const ViewRect& rect) { return rect.left >= rect.right || rect.top >= rect.bottom; }

// The pixel at whose left or upper edge a spot has its middle.
int32_t Middle(int32_t low, int32_t high) { return low + (high - low) / 2; }

// The image around the middle of a spot, `scale` screen pixels for an image pixel.
struct SpotView {
  SpotView(const CKIPImage& newImage, const Spot& spot, double newScale)
      : image(newImage),
        scale(newScale),
        left(spot.imageX - Middle(spot.client.left, spot.client.right) / scale),
        top(spot.imageY - Middle(spot.client.top, spot.client.bottom) / scale) {}

  // Of the client area that shows the image; painted at whole pixels.
  ViewRect Shown() const {
    const auto round = [](double at) {
      return static_cast<int32_t>(std::floor(std::clamp(at, -1e9, 1e9) + 0.5));
    };
    return {round(-left * scale), round(-top * scale), round((image.width() - left) * scale),
            round((image.height() - top) * scale)};
  }

  const CKIPImage& image;
  double scale;
  double left;  // of the client area's origin, in the image
  double top;
};

struct Canvas {
  const ViewRect& clip;
  uint32_t* pixels;

  uint32_t width() const { return static_cast<uint32_t>(clip.right - clip.left); }
  uint32_t* At(int32_t x, int32_t y) const {
    return pixels + static_cast<size_t>(y - clip.top) * width() + (x - clip.left);
  }
};

void Fill(const Canvas& canvas, const ViewRect& rect, uint32_t color) {
  const ViewRect inside = Intersect(rect, canvas.clip);
  if (IsEmpty(inside)) return;
  for (int32_t y = inside.top; y < inside.bottom; ++y) {
    std::fill_n(canvas.At(inside.left, y), inside.right - inside.left, color);
  }
}

void Frame(const Canvas& canvas, const ViewRect& rect, uint32_t color) {
  Fill(canvas, {rect.left, rect.top, rect.right, rect.top + 1}, color);
  Fill(canvas, {rect.left, rect.bottom - 1, rect.right, rect.bottom}, color);
  Fill(canvas, {rect.left, rect.top, rect.left + 1, rect.bottom}, color);
  Fill(canvas, {rect.right - 1, rect.top, rect.right, rect.bottom}, color);
}

bool CanDraw(const CKIPImage& image, const Spot& spot, const ViewRect& clip) {
  return image.IsValid() && spot.zoom > 0 && !IsEmpty(Intersect(spot.client, clip));
}

}  // namespace

void DrawMagnifiedSpot(const CKIPImage& image, const Spot& spot, uint32_t magnification,
                       const ViewRect& clip, uint32_t* pixels) {
  if (!CanDraw(image, spot, clip)) return;
  const Canvas canvas{clip, pixels};
  const SpotView view(image, spot, spot.zoom * std::max(magnification, 1u));
  Fill(canvas, spot.client, 0);
  const ViewRect seen = Intersect(Intersect(spot.client, view.Shown()), clip);
  if (!IsEmpty(seen)) {
    DrawSmooth(image, view.scale, view.left, view.top, seen, canvas.At(seen.left, seen.top),
               canvas.width());
  }
  const ViewRect& rim = spot.client;
  Frame(canvas, rim, kRimDark);
  if (rim.right - rim.left > 2 && rim.bottom - rim.top > 2) {
    Frame(canvas, {rim.left + 1, rim.top + 1, rim.right - 1, rim.bottom - 1}, kRimBright);
  }
}

void DrawEnhancedSpot(const CKIPImage& image, const Spot& spot, const ViewRect& clip,
                      uint32_t* pixels) {
  if (!CanDraw(image, spot, clip)) return;
  const SpotView view(image, spot, spot.zoom);
  const ViewRect shown = Intersect(spot.client, view.Shown());
  if (IsEmpty(shown)) return;
  const auto width = static_cast<uint32_t>(shown.right - shown.left);
  std::vector<uint32_t> whole(size_t{width} * static_cast<uint32_t>(shown.bottom - shown.top));
  DrawSmooth(image, view.scale, view.left, view.top, shown, whole.data(), width);
  const LocalContrast contrast(whole.data(), shown, spot.client, spot.zoom);

  const Canvas canvas{clip, pixels};
  const ViewRect seen = Intersect(shown, clip);
  for (int32_t y = seen.top; y < seen.bottom && seen.left < seen.right; ++y) {
    contrast.Apply(y, seen.left, seen.right, canvas.At(seen.left, y));
  }
}

void DrawColorizedSpot(const CKIPImage& image, const Spot& spot, Spectrum spectrum,
                       const ViewRect& clip, uint32_t* pixels) {
  if (!CanDraw(image, spot, clip)) return;
  const Canvas canvas{clip, pixels};
  const std::array<uint32_t, 256>& colors = SpectrumColors(spectrum);
  const ViewRect seen =
      Intersect(Intersect(spot.client, SpotView(image, spot, spot.zoom).Shown()), clip);
  for (int32_t y = seen.top; y < seen.bottom && seen.left < seen.right; ++y) {
    uint32_t* row = canvas.At(seen.left, y);
    for (int32_t i = 0; i < seen.right - seen.left; ++i) row[i] = colors[LevelOfColor(row[i])];
  }
}

}  // namespace zyr
