// The window of an image viewer.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>

#include "imaging/viewer/image_viewer_control.h"

namespace zyr {

// A control of a dialog template: its window class is there while an object lives. It scrolls and
// paints the picture, has tool bars above it once the viewer allows buttons, and takes mouse and
// keyboard: arrows and page keys scroll, plus and minus zoom, 0 shows all of the picture, 1 shows
// it pixel by pixel. The full screen window goes with this one. User-interface thread only; once
// the window is gone, operations do nothing.
class ImageViewerWindow {
 public:
  ImageViewerWindow();
  ~ImageViewerWindow();
  ImageViewerWindow(const ImageViewerWindow&) = delete;
  ImageViewerWindow& operator=(const ImageViewerWindow&) = delete;

  // Takes over a window of the class, which must not outlive this object. This object may go from
  // within an event of the viewer, and while a popup or the full screen window stands.
  void Attach(HWND window);
  // As the one that fills the full screen window, which `leave` takes away in a moment.
  void AttachFullScreen(HWND window, std::function<void()> leave);

  CKIPImageViewerControl& viewer();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace zyr
