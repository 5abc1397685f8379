// What the viewer draws.
#include <algorithm>
#include <cstddef>

#include "imaging/viewer/image_viewer_control.h"
#include "imaging/viewer/scaled_picture.h"
#include "imaging/viewer/spot_tools.h"

namespace zyr {
namespace {

// An area of pixels that shows a rectangle of the client area.
class Canvas {
 public:
  Canvas(const ViewRect& clip, uint32_t* pixels) : clip_(clip), pixels_(pixels) {}

  uint32_t width() const { return static_cast<uint32_t>(clip_.right - clip_.left); }
  uint32_t* At(int32_t x, int32_t y) const {
    return pixels_ + static_cast<size_t>(y - clip_.top) * width() + (x - clip_.left);
  }
  void Fill(uint32_t color) const {
    std::fill_n(pixels_, static_cast<size_t>(width()) * (clip_.bottom - clip_.top), color);
  }
  // Black and white by turns, to be seen on any picture.
  void Dash(const ViewRect& line) const {
    const ViewRect seen = Intersection(line, clip_);
    for (int32_t y = seen.top; y < seen.bottom; ++y) {
      for (int32_t x = seen.left; x < seen.right; ++x) {
        *At(x, y) = ((x + y) & 4) != 0 ? 0xFFFFFF : 0;
      }
    }
  }
  void DashFrame(const ViewRect& r) const {
    if (IsEmpty(r)) return;
    Dash({r.left, r.top, r.right, r.top + 1});
    Dash({r.left, r.bottom - 1, r.right, r.bottom});
    Dash({r.left, r.top, r.left + 1, r.bottom});
    Dash({r.right - 1, r.top, r.right, r.bottom});
  }

 private:
  const ViewRect clip_;
  uint32_t* const pixels_;
};

}  // namespace

void CKIPImageViewerControl::Paint(const ViewRect& clip, uint32_t background,
                                   uint32_t* pixels) const {
  if (IsEmpty(clip)) return;
  const Canvas canvas(clip, pixels);
  const ViewerGeometry geometry = Geometry();
  const ViewRect part = geometry.ScaledPart(clip);
  const bool hasPicture = picture_.display() != nullptr && !IsEmpty(part);
  if (!hasPicture || part.right - part.left != clip.right - clip.left ||
      part.bottom - part.top != clip.bottom - clip.top) {
    canvas.Fill(background);
  }
  if (hasPicture) {
    const ViewPoint origin = geometry.Origin();
    DrawScaled(*picture_.display(), zoom_, part,
               canvas.At(part.left + origin.x, part.top + origin.y), canvas.width());
  }
  if (SpotIsActive()) PaintSpot(clip, pixels);
  if (BandIsActive()) canvas.DashFrame(BandRect(pointer_));
}

void CKIPImageViewerControl::PaintSpot(const ViewRect& clip, uint32_t* pixels) const {
  const CKIPImage* image = picture_.display();
  if (image == nullptr) return;
  const ImagePoint middle = ImageUnder(pointer_);
  const Spot spot{middle.x, middle.y, SpotRect(pointer_), zoom_};
  if (tool_ == kToolSpotMagnify) {
    DrawMagnifiedSpot(*image, spot, spotMagnification_, clip, pixels);
  } else if (tool_ == kToolSpotEnhance) {
    DrawEnhancedSpot(*image, spot, clip, pixels);
  } else {
    DrawColorizedSpot(*image, spot, static_cast<Spectrum>(spectrum_), clip, pixels);
  }
}

}  // namespace zyr
