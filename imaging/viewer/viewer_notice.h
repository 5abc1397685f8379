// What a viewer tells its owner: posted messages, with a code in the low byte of wParam.
#pragma once

#include <cstdint>

#include "imaging/image/image.h"
#include "imaging/viewer/image_viewer_view.h"
#include "platform/messages.h"

namespace zyr {

enum ViewerNoticeCode : uint32_t {
  kNoticeZoom = 1,        // the scale may have changed
  kNoticeTool = 2,        // lParam is the tool
  kNoticeColor = 3,       // the colour picker is over a pixel
  kNoticeProbe = 4,       // and so is the pixel probe
  kNoticeFullScreen = 5,  // a full screen is wanted and this viewer may have none
};

// Kinds without a meaning for a code are 0. Colours take the upper 24 of wParam's low 32 bits, with
// red in the lowest of them; lParam is the pixel's x in the low and its y, from the top, in the
// high 16 bits, either held at 65535.
struct ViewerNotice {
  uint32_t code = 0;
  uint32_t tool = 0;
  ColorRef color = 0;
  ViewPoint pixel;
};

class ViewerOwner {
 public:
  void Set(platform::Window window, uint32_t message);
  // To nobody until a window is set.
  void Post(const ViewerNotice& notice) const;

 private:
  platform::Window window_ = nullptr;
  uint32_t message_ = 0;
};

// What the owner has received.
ViewerNotice ReadViewerNotice(uintptr_t wParam, intptr_t lParam);

}  // namespace zyr
