#include "controls/image_viewer/viewer_window.h"

#include <algorithm>
#include <utility>

#include "controls/paint.h"
#include "platform/own_module.h"
#include "resources/resource.h"

namespace zyr {
namespace {

// From within these, others are called: the owner of the viewer, or all there are while the user
// holds a scroll bar.
bool IsInput(UINT message) {
  return (message >= WM_KEYFIRST && message <= WM_KEYLAST) ||
         (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) ||
         (message >= WM_NCMOUSEMOVE && message <= WM_NCMBUTTONDBLCLK) || message == WM_COMMAND ||
         message == WM_CONTEXTMENU || message == WM_SYSCOMMAND;
}

}  // namespace

ViewerWindow::ViewerWindow()
    : class_(SharedWindowClass(IMAGE_VIEWER_CLASS, Procedure, CS_DBLCLKS)) {}

void ViewerWindow::Attach(HWND window, std::function<void()> leave) {
  window_ = window;
  leave_ = std::move(leave);
  SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  SetWindowLongPtrA(window, GWL_STYLE, GetWindowLongPtrA(window, GWL_STYLE) | WS_CLIPCHILDREN);
  if (!IsFullScreen()) UseThinBorder(window);
  UpdateToolBars();
  control_.OnSize();
}

// The control may be at work further up, and what it shows may go with whoever lets go of us.
void ViewerWindow::Detach() {
  if (Alive()) {
    const HWND window = window_;
    OnDestroy();
    SetWindowLongPtrA(window, GWLP_USERDATA, 0);
  }
  control_.Clear();
}

void ViewerWindow::OnDestroy() {
  if (popupStands_) EndMenu();
  if (captured_) CaptureMouse(false);
  fullScreen_.reset();
  toolBars_.reset();
  window_ = nullptr;
}

RECT ViewerWindow::Client() const {
  RECT client = {};
  if (Alive()) GetClientRect(window_, &client);
  return client;
}

RECT ViewerWindow::PictureArea() const {
  RECT area = Client();
  area.top = std::min<LONG>(top_, area.bottom);
  return area;
}

ViewSize ViewerWindow::ClientSize() const {
  const RECT area = PictureArea();
  return {static_cast<int32_t>(area.right), static_cast<int32_t>(area.bottom - area.top)};
}

ViewPoint ViewerWindow::ClientOrigin() const {
  if (!Alive()) return {};
  POINT origin = {0, top_};
  ClientToScreen(window_, &origin);
  return {static_cast<int32_t>(origin.x), static_cast<int32_t>(origin.y)};
}

void ViewerWindow::OnSize() {
  if (settingScrollBars_) return;
  ArrangeToolBars();
  ::InvalidateRect(window_, nullptr, FALSE);
  control_.OnSize();
}

LRESULT ViewerWindow::Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (const auto result = HandleMouse(message, wParam, lParam)) return *result;
  switch (message) {
    case WM_PAINT:
      Paint();
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_NCPAINT:
      DefWindowProcA(window, message, wParam, lParam);
      ShowFocus();
      return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      ShowFocus();
      return 0;
    case WM_SIZE:
      OnSize();
      return 0;
    case WM_HSCROLL:
    case WM_VSCROLL:
      OnScrollBar(message == WM_HSCROLL ? SB_HORZ : SB_VERT, LOWORD(wParam));
      return 0;
    case WM_SETCURSOR:
      if (reinterpret_cast<HWND>(wParam) != window || LOWORD(lParam) != HTCLIENT) break;
      ::SetCursor(cursors_.Get(cursor_));
      return TRUE;
    case WM_CAPTURECHANGED:
      OnCaptureChanged(reinterpret_cast<HWND>(lParam));
      return 0;
    case WM_GETDLGCODE:
      return DialogCode(wParam);
    case WM_KEYDOWN:
      OnKey(wParam);
      return 0;
    case WM_CHAR:
      OnCharacter(wParam);
      return 0;
    case WM_CONTEXTMENU:
      OnContextMenu(lParam);
      return 0;
    case WM_COMMAND:
      if (lParam != 0 && (HIWORD(wParam) == BN_CLICKED || HIWORD(wParam) == BN_DOUBLECLICKED)) {
        OnCommand(LOWORD(wParam), reinterpret_cast<HWND>(lParam));
      }
      return 0;
    case WM_DRAWITEM:
      if (toolBars_ != nullptr) toolBars_->Draw(*reinterpret_cast<DRAWITEMSTRUCT*>(lParam));
      return TRUE;
    case WM_DESTROY:
      OnDestroy();
      SetWindowLongPtrA(window, GWLP_USERDATA, 0);
      return 0;
    default:
      break;
  }
  return DefWindowProcA(window, message, wParam, lParam);
}

LRESULT CALLBACK ViewerWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* viewer = reinterpret_cast<ViewerWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (viewer == nullptr) return DefWindowProcA(window, message, wParam, lParam);
  std::optional<platform::WindowVisit> visit;
  if (IsInput(message)) visit.emplace();
  const std::shared_ptr<ViewerWindow> held = viewer->shared_from_this();
  try {
    return held->Handle(window, message, wParam, lParam);
  } catch (...) {  // out of memory: the picture stays as it is
    return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace zyr
