// What the image viewer shows and asks of its window.
#pragma once

#include <cstdint>

#include "platform/global_memory.h"

namespace zyr {

// Pixels of a window's client area, or of an image, x to the right and y down.
struct ViewPoint {
  int32_t x = 0;
  int32_t y = 0;
  bool operator==(const ViewPoint&) const = default;
};
struct ViewSize {
  int32_t width = 0;
  int32_t height = 0;
  bool operator==(const ViewSize&) const = default;
};
struct ViewRect {
  int32_t left = 0;
  int32_t top = 0;
  int32_t right = 0;  // beyond the last pixel, as is the bottom
  int32_t bottom = 0;
  bool operator==(const ViewRect&) const = default;
};

enum class ViewerCursor {
  kArrow,
  kCross,
  kMove,  // the open hand: IDC_KIP_MOVE_CURSOR
  kMagnify,
  kDripper,
  kPixelCross,  // IDC_KIP_CROSS_CURSOR
  kMagnifySpot,
  kEnhanceSpot,
  kColorizeSpot,
  kBrightnessContrast,
  kGamma,
  kHidden,
};

// User-interface thread only. Once the window is gone, operations do nothing.
class ImageViewerView {
 public:
  virtual ~ImageViewerView() = default;

  virtual ViewSize ClientSize() const = 0;     // without the scroll bars that stand now
  virtual ViewPoint ClientOrigin() const = 0;  // on the screen
  // The content's size and where the client area begins in it. The window scrolls by itself what it
  // can, and shows bars for what does not fit; this may change the client size, and ends in the
  // control's OnSize then.
  virtual void SetScroll(ViewSize content, ViewPoint position) = 0;
  virtual void Invalidate() = 0;
  virtual void InvalidateRect(const ViewRect& client) = 0;
  virtual void PaintNow() = 0;
  virtual void SetCursor(ViewerCursor cursor) = 0;
  virtual void CaptureMouse(bool capture) = 0;
  // Takes the packed bitmap over.
  virtual void CopyToClipboard(platform::GlobalHandle packedDib) = 0;
  // The tool in use, the buttons allowed or whether there can be a full screen have changed: the
  // tool bars follow.
  virtual void UpdateToolBars() {}
  // The popup of the image operations; 0 if nothing was chosen.
  virtual uint32_t TrackOperationsPopup() = 0;
  // The settings of a spot: its popup, at the pointer.
  virtual void TrackSpotPopup() = 0;
  // False if there can be no full screen window.
  virtual bool OpenFullScreen() = 0;
  virtual void CloseFullScreen() = 0;
};

}  // namespace zyr
