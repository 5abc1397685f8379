#include "acquire/capture_dialog/win32/capture_dialog_layout.h"

#include <algorithm>

#include "resources/resource.h"

namespace zyr {
namespace {

// Dialog units in which the two groups of buttons do not meet and texts can still be read.
constexpr SIZE kLeastSize = {340, 280};

SIZE InPixels(HWND dialog, SIZE dialogUnits) {
  RECT area = {0, 0, dialogUnits.cx, dialogUnits.cy};
  MapDialogRect(dialog, &area);
  return {area.right, area.bottom};
}

// What the window has around its client area.
SIZE FrameOf(HWND dialog) {
  RECT outer;
  RECT client;
  GetWindowRect(dialog, &outer);
  GetClientRect(dialog, &client);
  return {outer.right - outer.left - client.right, outer.bottom - outer.top - client.bottom};
}

RECT PlaceIn(HWND dialog, HWND control) {
  RECT place;
  GetWindowRect(control, &place);
  MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
  return place;
}

}  // namespace

CaptureDialogLayout::CaptureDialogLayout(HWND dialog, SIZE templateSize)
    : dialog_(dialog), startSize_(InPixels(dialog, templateSize)) {
  for (HWND control = GetWindow(dialog, GW_CHILD); control != nullptr;
       control = GetWindow(control, GW_HWNDNEXT)) {
    const RECT start = PlaceIn(dialog, control);
    const bool isPanel = GetDlgCtrlID(control) == IDC_STATUS_PANEL;
    places_.push_back({control, start, isPanel, !isPanel && start.top > startSize_.cy / 2});
  }
  const SIZE frame = FrameOf(dialog);
  const SIZE least = InPixels(dialog, kLeastSize);
  leastSize_ = {frame.cx + least.cx, frame.cy + least.cy};
}

void CaptureDialogLayout::Apply() const {
  RECT client;
  GetClientRect(dialog_, &client);
  const LONG wider = client.right - startSize_.cx;
  const LONG higher = client.bottom - startSize_.cy;
  HDWP moves = BeginDeferWindowPos(static_cast<int>(places_.size()));
  for (const Place& place : places_) {
    RECT to = place.start;
    if (place.isPanel) {
      to.right += wider;
      to.bottom += higher;
    } else {
      OffsetRect(&to, wider, place.followsBottom ? higher : 0);
    }
    if (moves == nullptr) return;
    moves = DeferWindowPos(moves, place.control, nullptr, to.left, to.top,
                           std::max(to.right - to.left, 0L), std::max(to.bottom - to.top, 0L),
                           SWP_NOZORDER | SWP_NOACTIVATE);
  }
  if (moves != nullptr) EndDeferWindowPos(moves);
}

}  // namespace zyr
