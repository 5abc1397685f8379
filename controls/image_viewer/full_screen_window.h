// The window that shows a viewer's picture and nothing else.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>

#include "imaging/viewer/image_viewer_control.h"

namespace zyr {

// Covers the screen that its owner is on, from Open until this object goes. It has a second viewer,
// which is told to be that of the full screen. User-interface thread only.
class CKIPImageViewerControlFullScreenWnd {
 public:
  // `onLeave`: the user wants to leave. It may destroy this object.
  explicit CKIPImageViewerControlFullScreenWnd(std::function<void()> onLeave);
  ~CKIPImageViewerControlFullScreenWnd();
  CKIPImageViewerControlFullScreenWnd(const CKIPImageViewerControlFullScreenWnd&) = delete;
  CKIPImageViewerControlFullScreenWnd& operator=(const CKIPImageViewerControlFullScreenWnd&) =
      delete;

  // Not seen yet. False if there is no window.
  bool Open(HWND owner);
  void Show();
  HWND window() const;  // null once it is gone
  CKIPImageViewerControl& viewer();

 private:
  class Frame;
  std::shared_ptr<Frame> frame_;
};

}  // namespace zyr
