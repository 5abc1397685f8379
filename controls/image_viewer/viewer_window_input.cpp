// Mouse and keyboard.
#include "controls/image_viewer/viewer_window.h"

#include <algorithm>
#include <utility>

namespace zyr {
namespace {

bool IsDown(int key) { return GetKeyState(key) < 0; }

MouseKeys KeysOf(WPARAM wParam) { return {(wParam & MK_CONTROL) != 0, (wParam & MK_SHIFT) != 0}; }

}  // namespace

ViewPoint ViewerWindow::PointOf(LPARAM lParam) const {
  return {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)) - top_};
}

// The pointer changes at once if it is over the picture.
void ViewerWindow::SetCursor(ViewerCursor cursor) {
  cursor_ = cursor;
  UpdateToolBars();
  if (!Alive()) return;
  POINT pointer;
  if (!GetCursorPos(&pointer)) return;
  const bool isHere = WindowFromPoint(pointer) == window_;
  ScreenToClient(window_, &pointer);
  const RECT area = PictureArea();
  if (captured_ || (isHere && PtInRect(&area, pointer))) ::SetCursor(cursors_.Get(cursor));
}

void ViewerWindow::CaptureMouse(bool capture) {
  if (!Alive() || capture == captured_) return;
  captured_ = capture;
  if (capture) {
    SetCapture(window_);
  } else if (GetCapture() == window_) {
    ReleaseCapture();
  }
}

void ViewerWindow::OnCaptureChanged(HWND to) {
  if (to == window_ || !std::exchange(captured_, false)) return;
  control_.OnCaptureLost();
}

// Letters and digits are not to press the dialog's buttons. Tab goes to the tool bars before it
// goes on.
LRESULT ViewerWindow::DialogCode(WPARAM key) const {
  const bool entersBars = key == VK_TAB && toolBars_ != nullptr && !IsDown(VK_SHIFT);
  return DLGC_WANTARROWS | DLGC_WANTCHARS | (entersBars ? DLGC_WANTMESSAGE : 0);
}

void ViewerWindow::OnKey(WPARAM key) {
  switch (key) {
    case VK_LEFT:
      return OnScrollBar(SB_HORZ, SB_LINEUP);
    case VK_RIGHT:
      return OnScrollBar(SB_HORZ, SB_LINEDOWN);
    case VK_UP:
      return OnScrollBar(SB_VERT, SB_LINEUP);
    case VK_DOWN:
      return OnScrollBar(SB_VERT, SB_LINEDOWN);
    case VK_PRIOR:
      return OnScrollBar(IsDown(VK_CONTROL) ? SB_HORZ : SB_VERT, SB_PAGEUP);
    case VK_NEXT:
      return OnScrollBar(IsDown(VK_CONTROL) ? SB_HORZ : SB_VERT, SB_PAGEDOWN);
    case VK_HOME:
      return OnScrollBar(IsDown(VK_CONTROL) ? SB_VERT : SB_HORZ, SB_TOP);
    case VK_END:
      return OnScrollBar(IsDown(VK_CONTROL) ? SB_VERT : SB_HORZ, SB_BOTTOM);
    case VK_TAB:
      return MoveFocusByTab(IsDown(VK_SHIFT));
    case VK_ESCAPE:
      if (IsFullScreen()) leave_();
      return;
    default:
      return;
  }
}

void ViewerWindow::OnCharacter(WPARAM character) {
  switch (character) {
    case '+':
    case '=':  // on the key of the plus
      return control_.ZoomIn();
    case '-':
      return control_.ZoomOut();
    case '0':
      return control_.ZoomToFit();
    case '1':
      return ShowOneToOne();
    default:
      return;
  }
}

// What is in the middle stays there.
void ViewerWindow::ShowOneToOne() {
  const ViewSize before = ClientSize();
  const ViewPoint middle = control_.ClientToImage({before.width / 2, before.height / 2}, true);
  control_.SetZoom(1.0, true);
  if (!Alive()) return;
  const ViewPoint now = control_.ImageToClient(middle);
  const ViewSize size = ClientSize();
  ScrollTo({position_.x + now.x - size.width / 2, position_.y + now.y - size.height / 2});
}

// The picture and each of the bars are a stop. Beyond them the dialog goes on; a window without one
// begins anew.
void ViewerWindow::MoveFocusByTab(bool back) {
  std::vector<HWND> stops = {window_};
  if (toolBars_ != nullptr) {
    const std::vector<HWND> bars = toolBars_->TabStops();
    stops.insert(stops.end(), bars.begin(), bars.end());
  }
  const HWND focus = GetFocus();
  auto now = std::find(stops.begin(), stops.end(), focus) - stops.begin();
  const auto count = static_cast<ptrdiff_t>(stops.size());
  if (now == count) now = 0;
  const ptrdiff_t next = now + (back ? -1 : 1);
  const bool leaves = next < 0 || next >= count;
  SetFocus(leaves && !IsFullScreen() ? window_
                                     : stops[static_cast<size_t>((next + count) % count)]);
  if (leaves && !IsFullScreen() && Alive()) {
    SendMessageA(GetParent(window_), WM_NEXTDLGCTL, back, FALSE);
  }
}

// The menu key. The right mouse button has other tasks here.
void ViewerWindow::OnContextMenu(LPARAM lParam) {
  if (lParam != -1) return;
  const bool offersOperations = (control_.toolBarsAllowed() & kToolBarImageOperations) != 0;
  if (offersOperations) control_.OnCommand(kViewerImageOperations);
}

void ViewerWindow::OnLeftDown(UINT message, ViewPoint point, MouseKeys keys) {
  if (GetFocus() != window_) SetFocus(window_);
  if (!Alive() || point.y < 0) return;
  if (message == WM_LBUTTONDBLCLK) return control_.OnLeftDoubleClick(point, keys);
  control_.OnLeftDown(point, keys);
}

std::optional<LRESULT> ViewerWindow::HandleMouse(UINT message, WPARAM wParam, LPARAM lParam) {
  const ViewPoint point = PointOf(lParam);
  const MouseKeys keys = KeysOf(wParam);
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      OnLeftDown(message, point, keys);
      return 0;
    case WM_MOUSEMOVE:
      control_.OnMouseMove(point, keys);
      return 0;
    case WM_LBUTTONUP:
      control_.OnLeftUp(point, keys);
      return 0;
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
      if (point.y >= 0) control_.OnRightDown(point, keys);
      return 0;
    case WM_RBUTTONUP:
      return 0;  // no context menu of the dialog's
    case WM_MOUSEWHEEL: {
      POINT client = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
      ScreenToClient(window_, &client);
      control_.OnWheel({static_cast<int32_t>(client.x), static_cast<int32_t>(client.y) - top_},
                       GET_WHEEL_DELTA_WPARAM(wParam), keys);
      return 0;
    }
    case WM_MOUSEHWHEEL:
      OnHorizontalWheel(GET_WHEEL_DELTA_WPARAM(wParam));
      return 0;
    default:
      return std::nullopt;
  }
}

}  // namespace zyr
