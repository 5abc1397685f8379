#include "platform/progress_window.h"

#include <algorithm>
#include <cmath>

#include "platform/win32/system.h"
// After the system's headers.
#include <commctrl.h>

namespace zyr::platform {
namespace {

constexpr uint64_t kShowAfter = 300;  // milliseconds: shorter operations are not noticed
constexpr int kSteps = 100;
// Pixels of a screen at its plain scale.
constexpr int kMargin = 12;
constexpr int kGap = 8;
constexpr int kBarHeight = 16;
constexpr int kLeastWidth = 260;

// Dialog boxes' own class: it paints a dialog's background, and needs no window procedure of ours
// that could outlive this module.
constexpr char kFrameClass[] = "#32770";

HFONT MessageFont() {
  NONCLIENTMETRICSA metrics = {};
  metrics.cbSize = sizeof metrics;
  if (!SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)) return nullptr;
  return CreateFontIndirectA(&metrics.lfMessageFont);
}

int Scaled(int pixels) {
  const HDC screen = GetDC(nullptr);
  if (screen == nullptr) return pixels;
  const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return MulDiv(pixels, dpi, USER_DEFAULT_SCREEN_DPI);
}

SIZE TextSize(const std::string& text, HFONT font) {
  SIZE size = {};
  const HDC screen = GetDC(nullptr);
  if (screen == nullptr) return size;
  const HGDIOBJ previous = font != nullptr ? SelectObject(screen, font) : nullptr;
  GetTextExtentPoint32A(screen, text.c_str(), static_cast<int>(text.size()), &size);
  if (previous != nullptr) SelectObject(screen, previous);
  ReleaseDC(nullptr, screen);
  return size;
}

// In the middle of `owner`, or of the screen.
POINT PlaceFor(HWND owner, int width, int height) {
  RECT area = {};
  if (owner == nullptr || IsIconic(owner) || !GetWindowRect(owner, &area)) {
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0);
  }
  return {(area.left + area.right - width) / 2, (area.top + area.bottom - height) / 2};
}

}  // namespace

struct ProgressWindow::Impl {
  uint64_t startedAt = GetTickCount64();
  HFONT font = nullptr;
  HWND frame = nullptr;
  HWND text = nullptr;
  HWND bar = nullptr;
  int step = 0;
  bool shown = false;

  explicit Impl(const std::string& caption);
  ~Impl();
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  void MakeFrame(int clientWidth, int clientHeight);
  HWND MakeChild(const char* windowClass, const char* caption, DWORD style, const RECT& place);
  void SetStep(int newStep);
  void Show();
};

ProgressWindow::Impl::Impl(const std::string& caption) : font(MessageFont()) {
  const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_PROGRESS_CLASS};
  InitCommonControlsEx(&controls);
  const SIZE size = TextSize(caption, font);
  const int margin = Scaled(kMargin);
  const int barHeight = Scaled(kBarHeight);
  const int width = std::max<int>(size.cx, Scaled(kLeastWidth));
  const int height = size.cy;
  const int barTop = margin + height + Scaled(kGap);
  MakeFrame(width + 2 * margin, barTop + barHeight + margin);
  if (frame == nullptr) return;
  text = MakeChild(WC_STATICA, caption.c_str(), SS_LEFT | SS_NOPREFIX,
                   {margin, margin, margin + width, margin + height});
  bar = MakeChild(PROGRESS_CLASSA, "", 0, {margin, barTop, margin + width, barTop + barHeight});
  SendMessageA(text, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  SendMessageA(bar, PBM_SETRANGE32, 0, kSteps);
}

// The owner takes the window with it if it goes first.
ProgressWindow::Impl::~Impl() {
  if (frame != nullptr && IsWindow(frame)) DestroyWindow(frame);
  if (font != nullptr) DeleteObject(font);
}

// Owned by the thread's active window, so that it stays above that one; never activated itself.
void ProgressWindow::Impl::MakeFrame(int clientWidth, int clientHeight) {
  constexpr DWORD kStyle = WS_POPUP | WS_DLGFRAME;
  constexpr DWORD kExtendedStyle = WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE;
  RECT outer = {0, 0, clientWidth, clientHeight};
  AdjustWindowRectEx(&outer, kStyle, FALSE, kExtendedStyle);
  const int width = outer.right - outer.left;
  const int height = outer.bottom - outer.top;
  const HWND owner = GetActiveWindow();
  const POINT place = PlaceFor(owner, width, height);
  frame = CreateWindowExA(kExtendedStyle, kFrameClass, "", kStyle, place.x, place.y, width, height,
                          owner, nullptr, OwnModule(), nullptr);
}

HWND ProgressWindow::Impl::MakeChild(const char* windowClass, const char* caption, DWORD style,
                                     const RECT& place) {
  return CreateWindowExA(0, windowClass, caption, WS_CHILD | WS_VISIBLE | style, place.left,
                         place.top, place.right - place.left, place.bottom - place.top, frame,
                         nullptr, OwnModule(), nullptr);
}

// Painted at once: the caller does not get back to its message loop for a while.
void ProgressWindow::Impl::SetStep(int newStep) {
  if (newStep == step) return;
  step = newStep;
  SendMessageA(bar, PBM_SETPOS, static_cast<WPARAM>(step), 0);
  if (shown) UpdateWindow(bar);
}

void ProgressWindow::Impl::Show() {
  shown = true;
  ShowWindow(frame, SW_SHOWNOACTIVATE);
  UpdateWindow(frame);
  UpdateWindow(text);
  UpdateWindow(bar);
}

ProgressWindow::ProgressWindow(const std::string& text) : impl_(new Impl(text)) {}
ProgressWindow::~ProgressWindow() = default;

void ProgressWindow::Advance(double fraction) {
  if (impl_->frame == nullptr || std::isnan(fraction)) return;
  impl_->SetStep(static_cast<int>(std::clamp(fraction, 0.0, 1.0) * kSteps));
  if (!impl_->shown && GetTickCount64() - impl_->startedAt >= kShowAfter) impl_->Show();
}

}  // namespace zyr::platform
