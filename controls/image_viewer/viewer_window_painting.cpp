#include "controls/image_viewer/viewer_window.h"

#include "controls/paint.h"

namespace zyr {
namespace {

// What lies beside the picture, 0x00RRGGBB.
constexpr uint32_t kSurface = 0x2B2B2B;
constexpr uint32_t kFullScreenSurface = 0x000000;

constexpr size_t kMostRectangles = 16;  // painted one by one

struct RegionDeleter {
  using pointer = HRGN;
  void operator()(HRGN region) const { DeleteObject(region); }
};

// The parts of a window that are to be painted.
std::vector<RECT> UpdateRectangles(HWND window) {
  const std::unique_ptr<HRGN, RegionDeleter> region(CreateRectRgn(0, 0, 0, 0));
  GetUpdateRgn(window, region.get(), FALSE);
  std::vector<uint8_t> bytes(GetRegionData(region.get(), 0, nullptr));
  auto* data = reinterpret_cast<RGNDATA*>(bytes.data());
  if (bytes.empty() || GetRegionData(region.get(), static_cast<DWORD>(bytes.size()), data) == 0) {
    return {};
  }
  if (data->rdh.nCount > kMostRectangles) return {data->rdh.rcBound};
  const auto* first = reinterpret_cast<const RECT*>(data->Buffer);
  return {first, first + data->rdh.nCount};
}

class PaintScope {
 public:
  explicit PaintScope(HWND window) : window_(window), dc_(BeginPaint(window, &paint_)) {}
  ~PaintScope() { EndPaint(window_, &paint_); }
  PaintScope(const PaintScope&) = delete;
  PaintScope& operator=(const PaintScope&) = delete;

  HDC dc() const { return dc_; }

 private:
  HWND window_;
  PAINTSTRUCT paint_ = {};
  HDC dc_;
};

}  // namespace

void ViewerWindow::Invalidate() {
  if (!Alive()) return;
  const RECT area = PictureArea();
  ::InvalidateRect(window_, &area, FALSE);
  FollowInFullScreen();
}

void ViewerWindow::InvalidateRect(const ViewRect& client) {
  if (!Alive()) return;
  FollowInFullScreen();
  const RECT shifted = {client.left, client.top + top_, client.right, client.bottom + top_};
  const RECT area = PictureArea();
  RECT seen;
  if (IntersectRect(&seen, &shifted, &area)) ::InvalidateRect(window_, &seen, FALSE);
}

void ViewerWindow::PaintNow() {
  if (Alive()) UpdateWindow(window_);
}

void ViewerWindow::Paint() {
  const std::vector<RECT> rectangles = UpdateRectangles(window_);
  const PaintScope paint(window_);
  const HDC dc = paint.dc();
  if (dc == nullptr) return;
  const RECT area = PictureArea();
  if (top_ != 0) {
    const RECT strip = {0, 0, area.right, area.top};
    FillArea(dc, strip, ViewerToolBars::kBackground);
  }
  for (const RECT& rectangle : rectangles) {
    RECT clip;
    if (!IntersectRect(&clip, &rectangle, &area)) continue;
    pixels_.resize(static_cast<size_t>(clip.right - clip.left) *
                   static_cast<size_t>(clip.bottom - clip.top));
    control_.Paint({clip.left, clip.top - top_, clip.right, clip.bottom - top_},
                   IsFullScreen() ? kFullScreenSurface : kSurface, pixels_.data());
    DrawPixels(dc, clip, pixels_);
  }
}

void ViewerWindow::ShowFocus() const {
  if (!IsFullScreen()) PaintThinBorder(window_);
}

}  // namespace zyr
