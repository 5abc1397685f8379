#include "controls/options/scroll_area.h"

// After the system's header.
#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "controls/dialog_font.h"
#include "controls/paint.h"
#include "controls/scroll_bar.h"
#include "foundation/support/raised_flag.h"
#include "resources/resource.h"

namespace zyr {
namespace {

constexpr int kLine = 24;  // pixels of a plain screen
constexpr int kLinesANotch = 3;
constexpr int kAroundControl = 8;

bool IsOfClass(HWND window, const char* name) {
  char found[64] = "";
  GetClassNameA(window, found, sizeof found);
  return lstrcmpiA(found, name) == 0;
}

// A turn of the wheel over one of these would change what it holds.
bool ChangesByWheel(HWND control) {
  if (IsOfClass(control, TRACKBAR_CLASSA)) return true;
  return IsOfClass(control, "COMBOBOX") && SendMessageA(control, CB_GETDROPPEDSTATE, 0, 0) == 0;
}

}  // namespace

ScrollArea::ScrollArea()
    : class_(SharedWindowClass(OPTIONS_AREA_CLASS,
                               GuardedProcedure<ScrollArea, &ScrollArea::Handle>)) {}

ScrollArea::~ScrollArea() {
  if (window_ != nullptr) SetWindowLongPtrA(window_, GWLP_USERDATA, 0);
}

void ScrollArea::Attach(HWND window, Arrange arrange) {
  window_ = window;
  arrange_ = std::move(arrange);
  SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

int ScrollArea::Height() const {
  RECT client;
  GetClientRect(window_, &client);
  return static_cast<int>(client.bottom);
}

int ScrollArea::Furthest() const { return std::max(content_ - Height(), 0); }

// The bar takes room from the content, which may get taller for that.
void ScrollArea::Refresh() {
  if (window_ == nullptr || arranging_) return;
  const RaisedFlag arranging(arranging_);
  RECT outer;
  GetWindowRect(window_, &outer);
  SIZE room = {outer.right - outer.left, outer.bottom - outer.top};
  content_ = arrange_(room, -position_);
  if (content_ > room.cy) {
    room.cx -= GetSystemMetrics(SM_CXVSCROLL);
    content_ = arrange_(room, -position_);
  }
  const int within = std::clamp(position_, 0, Furthest());
  if (within != position_) {
    position_ = within;
    arrange_(room, -position_);
  }
  ShowBar();
}

void ScrollArea::ShowBar() const { SetScrollBar(window_, SB_VERT, content_, Height(), position_); }

void ScrollArea::ScrollTo(int position) {
  if (window_ == nullptr) return;
  const int before = std::exchange(position_, std::clamp(position, 0, Furthest()));
  if (position_ == before) return;
  ScrollWindowEx(window_, 0, before - position_, nullptr, nullptr, nullptr, nullptr,
                 SW_SCROLLCHILDREN | SW_INVALIDATE | SW_ERASE);
  ShowBar();
  UpdateWindow(window_);
}

void ScrollArea::OnScroll(int request) {
  const int line = Scaled(kLine);
  const auto asked = PositionAsked(window_, SB_VERT, request, position_,
                                   {line, std::max(Height() - line, 1), content_});
  if (asked) ScrollTo(*asked);
}

// Fine wheels turn by less than a notch.
void ScrollArea::Turn(int delta) {
  wheel_ += delta * kLinesANotch * Scaled(kLine);
  const int pixels = wheel_ / WHEEL_DELTA;
  wheel_ -= pixels * WHEEL_DELTA;
  ScrollTo(position_ - pixels);
}

// No further than it takes; but all the way to an end where that shows it, too, so that texts above
// the first control and below the last one can be read without a mouse.
void ScrollArea::BringIntoView(HWND control) {
  RECT area;
  GetWindowRect(control, &area);
  MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&area), 2);
  const int top = static_cast<int>(area.top) + position_ - Scaled(kAroundControl);
  const int bottom = static_cast<int>(area.bottom) + position_ + Scaled(kAroundControl);
  if (top < position_) {
    ScrollTo(bottom <= Height() ? 0 : top);
  } else if (bottom > position_ + Height()) {
    ScrollTo(top >= Furthest() ? Furthest() : std::min(bottom - Height(), top));
  }
}

void ScrollArea::Follow(HWND child) {
  EnumChildWindows(child, FollowOne, reinterpret_cast<LPARAM>(this));
}

BOOL CALLBACK ScrollArea::FollowOne(HWND control, LPARAM area) {
  SetWindowSubclass(control, Followed, 1, static_cast<DWORD_PTR>(area));
  return TRUE;
}

// Not for the mouse: what moves between its button's going down and up is not pressed.
LRESULT CALLBACK ScrollArea::Followed(HWND control, UINT message, WPARAM wParam, LPARAM lParam,
                                      UINT_PTR id, DWORD_PTR area) {
  auto* const self = reinterpret_cast<ScrollArea*>(area);
  if (message == WM_NCDESTROY) RemoveWindowSubclass(control, Followed, id);
  if (message == WM_MOUSEWHEEL && self->Furthest() > 0 && ChangesByWheel(control)) {
    self->Turn(GET_WHEEL_DELTA_WPARAM(wParam));
    return 0;
  }
  const LRESULT result = DefSubclassProc(control, message, wParam, lParam);
  if (message == WM_SETFOCUS && self->window_ != nullptr && GetKeyState(VK_LBUTTON) >= 0) {
    self->BringIntoView(control);
  }
  return result;
}

LRESULT ScrollArea::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND window = window_;
  switch (message) {
    case WM_SIZE:
      Refresh();
      return 0;
    case WM_VSCROLL:
      OnScroll(LOWORD(wParam));
      return 0;
    case WM_MOUSEWHEEL:
      Turn(GET_WHEEL_DELTA_WPARAM(wParam));
      return 0;
    case WM_ERASEBKGND:
      return FillWindow(window, reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_BTNFACE));
    case WM_DESTROY:
      SetWindowLongPtrA(window, GWLP_USERDATA, 0);
      window_ = nullptr;
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace zyr
