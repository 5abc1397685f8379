#include "controls/image_viewer/full_screen_window.h"

#include <utility>

#include "controls/image_viewer/image_viewer_window.h"
#include "controls/window_class.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/own_module.h"
#include "platform/resources.h"
#include "resources/resource.h"

namespace zyr {
namespace {

constexpr char kClassName[] = "CKIPImageViewerControlFullScreenWnd";

RECT ScreenOf(HWND window) {
  MONITORINFO monitor = {};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoA(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
  return monitor.rcMonitor;
}

}  // namespace

// Outlives the object above while one of its messages is being handled.
class CKIPImageViewerControlFullScreenWnd::Frame : public std::enable_shared_from_this<Frame> {
 public:
  explicit Frame(std::function<void()> onLeave)
      : class_(SharedWindowClass(kClassName, Procedure)), onLeave_(std::move(onLeave)) {}

  bool Open(HWND owner);
  void Show();
  void Close();
  HWND window() const { return window_; }
  CKIPImageViewerControl& viewer() { return child_.viewer(); }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void FitToScreen() const;

  std::shared_ptr<const WindowClass> class_;
  std::function<void()> onLeave_;
  ImageViewerWindow child_;
  HWND window_ = nullptr;
  HWND childWindow_ = nullptr;
};

bool CKIPImageViewerControlFullScreenWnd::Frame::Open(HWND owner) {
  const auto module = static_cast<HINSTANCE>(platform::OwnResources());
  const RECT screen = ScreenOf(owner);
  const int width = static_cast<int>(screen.right - screen.left);
  const int height = static_cast<int>(screen.bottom - screen.top);
  window_ = CreateWindowExA(WS_EX_TOOLWINDOW, kClassName, GetPhrase("Full Screen").c_str(),
                            WS_POPUP | WS_CLIPCHILDREN, screen.left, screen.top, width, height,
                            GetAncestor(owner, GA_ROOT), nullptr, module, nullptr);
  if (window_ == nullptr) return false;
  SetWindowLongPtrA(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  childWindow_ = CreateWindowExA(0, IMAGE_VIEWER_CLASS, "", WS_CHILD | WS_VISIBLE, 0, 0, width,
                                 height, window_, nullptr, module, nullptr);
  if (childWindow_ == nullptr) return false;
  viewer().SetFullScreen(true);
  // Not at once: whoever leaves is still at work in the viewer.
  child_.AttachFullScreen(childWindow_,
                          [window = window_] { PostMessageA(window, WM_CLOSE, 0, 0); });
  return true;
}

void CKIPImageViewerControlFullScreenWnd::Frame::Show() {
  ShowWindow(window_, SW_SHOW);
  SetForegroundWindow(window_);
  SetFocus(childWindow_);
}

void CKIPImageViewerControlFullScreenWnd::Frame::Close() {
  onLeave_ = nullptr;
  if (window_ != nullptr) DestroyWindow(window_);
}

void CKIPImageViewerControlFullScreenWnd::Frame::FitToScreen() const {
  const RECT screen = ScreenOf(window_);
  SetWindowPos(window_, nullptr, screen.left, screen.top, screen.right - screen.left,
               screen.bottom - screen.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

LRESULT CALLBACK CKIPImageViewerControlFullScreenWnd::Frame::Procedure(HWND window, UINT message,
                                                                       WPARAM wParam,
                                                                       LPARAM lParam) {
  auto* frame = reinterpret_cast<Frame*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (frame == nullptr) return DefWindowProcA(window, message, wParam, lParam);
  const std::shared_ptr<Frame> held = frame->shared_from_this();
  try {
    return held->Handle(window, message, wParam, lParam);
  } catch (...) {  // the application's message loop knows no exceptions
    return DefWindowProcA(window, message, wParam, lParam);
  }
}

LRESULT CKIPImageViewerControlFullScreenWnd::Frame::Handle(HWND window, UINT message, WPARAM wParam,
                                                           LPARAM lParam) {
  switch (message) {
    case WM_CLOSE: {
      const platform::WindowVisit visit;
      const std::function<void()> leave = onLeave_;
      if (leave) leave();
      return 0;
    }
    case WM_SIZE:
      MoveWindow(childWindow_, 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
      return 0;
    case WM_SETFOCUS:
      SetFocus(childWindow_);
      return 0;
    case WM_DISPLAYCHANGE:
      FitToScreen();
      return 0;
    case WM_NCDESTROY:
      SetWindowLongPtrA(window, GWLP_USERDATA, 0);
      window_ = nullptr;
      break;
    default:
      break;
  }
  return DefWindowProcA(window, message, wParam, lParam);
}

CKIPImageViewerControlFullScreenWnd::CKIPImageViewerControlFullScreenWnd(
    std::function<void()> onLeave)
    : frame_(std::make_shared<Frame>(std::move(onLeave))) {}

CKIPImageViewerControlFullScreenWnd::~CKIPImageViewerControlFullScreenWnd() { frame_->Close(); }

bool CKIPImageViewerControlFullScreenWnd::Open(HWND owner) { return frame_->Open(owner); }
void CKIPImageViewerControlFullScreenWnd::Show() { frame_->Show(); }
HWND CKIPImageViewerControlFullScreenWnd::window() const { return frame_->window(); }
CKIPImageViewerControl& CKIPImageViewerControlFullScreenWnd::viewer() { return frame_->viewer(); }

}  // namespace zyr
