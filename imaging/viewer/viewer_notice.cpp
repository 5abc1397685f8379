#include "imaging/viewer/viewer_notice.h"

#include <algorithm>

namespace zyr {
namespace {

uint32_t Held16(int32_t coordinate) {
  return static_cast<uint32_t>(std::clamp(coordinate, 0, 0xFFFF));
}

}  // namespace

void ViewerOwner::Set(platform::Window window, uint32_t message) {
  window_ = window;
  message_ = message;
}

void ViewerOwner::Post(const ViewerNotice& notice) const {
  if (window_ == nullptr) return;
  const uint32_t low = notice.code == kNoticeTool
                           ? notice.tool
                           : Held16(notice.pixel.x) | Held16(notice.pixel.y) << 16;
  platform::PostToWindow(window_, message_, (notice.code & 0xFF) | notice.color << 8,
                         static_cast<intptr_t>(low));
}

ViewerNotice ReadViewerNotice(uintptr_t wParam, intptr_t lParam) {
  const auto low = static_cast<uint32_t>(lParam);
  ViewerNotice notice;
  notice.code = static_cast<uint32_t>(wParam & 0xFF);
  if (notice.code == kNoticeTool) {
    notice.tool = low;
  } else {
    notice.color = static_cast<uint32_t>(wParam) >> 8;
    notice.pixel = {static_cast<int32_t>(low & 0xFFFF), static_cast<int32_t>(low >> 16)};
  }
  return notice;
}

}  // namespace zyr
