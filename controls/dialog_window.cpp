#include "controls/dialog_window.h"

#include <algorithm>

#include "foundation/support/phrase_lookup.h"

namespace zyr {
namespace {

void TranslateCaption(HWND window) {
  const std::string caption = WindowText(window);
  const std::string translated = GetPhrase(caption.c_str());
  if (translated != caption) SetWindowTextA(window, translated.c_str());
}

// No larger than the screen, nor beyond its edges.
void CenterIn(const RECT& area, HWND window, const RECT& screen) {
  RECT outer;
  GetWindowRect(window, &outer);
  const LONG width = std::min(outer.right - outer.left, screen.right - screen.left);
  const LONG height = std::min(outer.bottom - outer.top, screen.bottom - screen.top);
  const LONG left = (area.left + area.right - width) / 2;
  const LONG top = (area.top + area.bottom - height) / 2;
  SetWindowPos(window, nullptr, std::clamp(left, screen.left, screen.right - width),
               std::clamp(top, screen.top, screen.bottom - height), width, height,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

HWND UsableOwner(platform::Window owner) {
  const auto window = static_cast<HWND>(owner);
  if (!IsWindow(window) || window == GetDesktopWindow()) return nullptr;
  return GetAncestor(window, GA_ROOT);
}

std::string WindowText(HWND window) {
  std::string text(static_cast<size_t>(GetWindowTextLengthA(window)) + 1, '\0');
  text.resize(
      static_cast<size_t>(GetWindowTextA(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

int WindowHeight(HWND window) {
  RECT area = {};
  GetWindowRect(window, &area);
  return static_cast<int>(area.bottom - area.top);
}

void PlaceWindow(HWND window, int left, int top, int width, int height) {
  SetWindowPos(window, nullptr, left, top, std::max(width, 0), std::max(height, 0),
               SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

void ResizeWindow(HWND window, LONG width, LONG height) {
  SetWindowPos(window, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

ControlMoves::ControlMoves(HWND dialog, int most, UINT flags)
    : dialog_(dialog),
      flags_(SWP_NOZORDER | SWP_NOACTIVATE | flags),
      moves_(BeginDeferWindowPos(most)) {}

ControlMoves::~ControlMoves() {
  if (moves_ != nullptr) EndDeferWindowPos(moves_);
}

void ControlMoves::Move(int control, const RECT& to) {
  if (moves_ == nullptr) return;  // out of memory
  moves_ =
      DeferWindowPos(moves_, GetDlgItem(dialog_, control), nullptr, to.left, to.top,
                     std::max(to.right - to.left, 0L), std::max(to.bottom - to.top, 0L), flags_);
}

void MoveFocusTo(HWND control) {
  SendMessageA(GetParent(control), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control), TRUE);
}

void TranslateCaptions(HWND dialog) {
  TranslateCaption(dialog);
  for (HWND control = GetWindow(dialog, GW_CHILD); control != nullptr;
       control = GetWindow(control, GW_HWNDNEXT)) {
    TranslateCaption(control);
  }
}

RECT WorkAreaOf(HWND window) {
  MONITORINFO monitor = {};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoA(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
  return monitor.rcWork;
}

SIZE WithFrameOnScreen(HWND window, SIZE client) {
  RECT outer;
  RECT inner;
  GetWindowRect(window, &outer);
  GetClientRect(window, &inner);
  const RECT screen = WorkAreaOf(window);
  return {
      std::min(client.cx + outer.right - outer.left - inner.right, screen.right - screen.left),
      std::min(client.cy + outer.bottom - outer.top - inner.bottom, screen.bottom - screen.top)};
}

void SetLeastSize(LPARAM minMaxInfo, SIZE least) {
  reinterpret_cast<MINMAXINFO*>(minMaxInfo)->ptMinTrackSize = {least.cx, least.cy};
}

void CenterOnScreen(HWND window, HWND owner) {
  const RECT screen = WorkAreaOf(owner != nullptr ? owner : window);
  CenterIn(screen, window, screen);
}

void CenterAbove(HWND window, HWND owner) {
  if (owner == nullptr || !IsWindowVisible(owner) || IsIconic(owner)) {
    return CenterOnScreen(window, owner);
  }
  RECT around;
  GetWindowRect(owner, &around);
  CenterIn(around, window, WorkAreaOf(owner));
}

}  // namespace zyr
