#include "controls/image_viewer/viewer_tool_bars.h"

#include <commctrl.h>

#include <algorithm>
#include <iterator>
#include <string>

#include "controls/activation_context.h"
#include "controls/dialog_font.h"
#include "controls/paint.h"
#include "foundation/support/phrase_lookup.h"
#include "imaging/viewer/image_viewer_control.h"
#include "platform/own_module.h"
#include "platform/resources.h"

namespace zyr {
namespace {

constexpr char kClassName[] = "ZyrImageViewerToolBar";

// Pixels of a plain screen.
constexpr int kButton = 40;
constexpr int kExpanderWidth = 14;
constexpr int kGap = 6;  // between the bars

constexpr COLORREF kHot = RGB(0x56, 0x56, 0x56);
constexpr COLORREF kPressed = RGB(0x2C, 0x2C, 0x2C);
constexpr COLORREF kCurrent = RGB(0x2F, 0x58, 0x80);
constexpr COLORREF kFocus = RGB(0xE6, 0xE6, 0xE6);
constexpr COLORREF kChevron = RGB(0xC0, 0xC0, 0xC0);

struct ButtonKind {
  uint32_t bit;  // 0 for what only the full screen window has
  uint32_t command;
  ViewerIcon icon;
  int bar;
  const char* text;
};

// In the order in which they stand. What one looks at the picture with is in the first bar, what
// changes its looks in the second.
constexpr ButtonKind kButtons[] = {
    {0, kViewerFullScreen, ViewerIcon::kFullScreenExit, 0, PhraseKey("Exists full screen view.")},
    {kToolBarFreeZoom, kViewerMagnify, ViewerIcon::kFreeZoom, 0,
     PhraseKey(
         "Enables you to magnifiy the image by clicking with the left and right mouse buttons.")},
    {kToolBarZoomOut, kViewerZoomOut, ViewerIcon::kZoomOut, 0,
     PhraseKey("Reduces the magnification of the image")},
    {kToolBarZoomToFit, kViewerZoomToFit, ViewerIcon::kZoomToFit, 0,
     PhraseKey("Magnifies the image so that the entire image is visible.")},
    {kToolBarZoomIn, kViewerZoomIn, ViewerIcon::kZoomIn, 0,
     PhraseKey("Increases the magnification of the image")},
    {kToolBarFullScreen, kViewerFullScreen, ViewerIcon::kFullScreen, 0,
     PhraseKey("Displays the image in a full-screen window.")},
    {kToolBarBrightnessContrast, kViewerBrightnessContrast, ViewerIcon::kBrightnessContrast, 1,
     PhraseKey("Enables you to change the brightness/contrast of the image by "
               "clicking-and-dragging with the "
               "left mouse button or by tapping-and-dragging on the screen.")},
    {kToolBarGamma, kViewerGamma, ViewerIcon::kGamma, 1,
     PhraseKey("Enables you to change the gamma of the image by clicking-and-dragging with the "
               "left mouse "
               "button or by tapping-and-dragging on the screen.")},
    {kToolBarSpotMagnify, kViewerSpotMagnify, ViewerIcon::kSpotMagnify, 1,
     PhraseKey(
         "Enables you to magnify part of the image by clicking-and-dragging with the left mouse "
         "button "
         "or by tapping-and-dragging on the screen.  Double-clicking will enable you to change the "
         "size and magnification of the spot.")},
    {kToolBarSpotEnhance, kViewerSpotEnhance, ViewerIcon::kSpotEnhance, 1,
     PhraseKey("Localized contrast enhancement that enables you to enhance part of the image by "
               "clicking-and-dragging with the left mouse button or by tapping-and-dragging on the "
               "screen.  "
               "Double-clicking will enable you to change the size of the spot.")},
    {kToolBarImageOperations, kViewerImageOperations, ViewerIcon::kImageOperations, 1,
     PhraseKey("Enables you to perform various image operations on the displayed image.")},
    {kToolBarPan, kViewerPan, ViewerIcon::kPan, 1,
     PhraseKey(
         "Enables you to pan the image by clicking-and-dragging with the left mouse button or by "
         "tapping-and-dragging on the screen.")},
};

constexpr const char* kExpanderText = PhraseKey("Expands or collapses the corresponding toolbar.");

bool IsThere(const ButtonKind& kind, uint32_t allowed, bool fullScreen) {
  if (kind.command == kViewerFullScreen && fullScreen) return kind.bit == 0;
  return (kind.bit & allowed) != 0;
}

ViewerIcon IconOf(uint32_t command, bool fullScreen) {
  const auto* kind = std::find_if(std::begin(kButtons), std::end(kButtons), [&](const auto& k) {
    return k.command == command && (fullScreen || k.bit != 0);
  });
  return kind->icon;
}

LRESULT CALLBACK BarProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND:
    case WM_DRAWITEM:
      return SendMessageA(GetParent(window), message, wParam, lParam);
    case WM_ERASEBKGND:
      return FillWindow(window, reinterpret_cast<HDC>(wParam), ViewerToolBars::kBackground);
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

// Which way the bar goes when the button is pressed, in quarters of a turn from the right.
IconStrokes Chevron(int quarter) {
  constexpr double kHalfWidth = 0.8;
  switch (quarter) {
    case 0:
      return IconPath({{5.5, 3.5}, {9, 7}, {5.5, 10.5}}, kHalfWidth);
    case 1:
      return IconPath({{3.5, 5.5}, {7, 9}, {10.5, 5.5}}, kHalfWidth);
    default:
      return IconPath({{8.5, 3.5}, {5, 7}, {8.5, 10.5}}, kHalfWidth);
  }
}

void DrawChevron(HDC dc, const RECT& area, int quarter, COLORREF background) {
  FillArea(dc, area, background);
  const int side = Scaled(kExpanderWidth);
  const IconStrokes strokes = Chevron(quarter);
  const IconLayer layers[] = {{kChevron, strokes}};
  const double scale = static_cast<double>(side) / kExpanderWidth;
  DrawIconPixels(dc, (area.right - side) / 2, (area.bottom - side) / 2, side,
                 RenderIcon(layers, side, {{0, 0}, scale}, background));
}

bool IsInput(UINT message) {
  return (message >= WM_KEYFIRST && message <= WM_KEYLAST) ||
         (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) || message == BM_CLICK;
}

}  // namespace

ViewerToolBars::ViewerToolBars(HWND viewer, uint32_t allowed, bool fullScreen)
    : viewer_(viewer),
      fullScreen_(fullScreen),
      class_(SharedWindowClass(kClassName, BarProcedure)) {
  const ActivationContext look;
  tips_.Attach(viewer);
  for (int i = 0; i < static_cast<int>(bars_.size()); ++i) MakeBar(i, allowed, fullScreen);
}

ViewerToolBars::~ViewerToolBars() {
  for (const Bar& bar : bars_) {
    if (IsWindow(bar.window)) DestroyWindow(bar.window);
  }
}

// A bar without buttons is not there.
void ViewerToolBars::MakeBar(int index, uint32_t allowed, bool fullScreen) {
  const auto isHere = [&](const ButtonKind& kind) {
    return kind.bar == index && IsThere(kind, allowed, fullScreen);
  };
  if (std::none_of(std::begin(kButtons), std::end(kButtons), isHere)) return;
  Bar& bar = bars_[static_cast<size_t>(index)];
  bar.window =
      CreateWindowExA(0, kClassName, "", WS_CHILD | WS_CLIPCHILDREN | WS_VISIBLE, 0, 0, 0, 0,
                      viewer_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(kFirstId + index)),
                      static_cast<HINSTANCE>(platform::OwnResources()), nullptr);
  if (bar.window == nullptr) return;
  bar.expander = MakeButton(bar.window, kExpander, kExpanderText);
  for (const ButtonKind& kind : kButtons) {
    if (!isHere(kind)) continue;
    bar.buttons.push_back(MakeButton(bar.window, static_cast<int>(kind.command), kind.text));
  }
}

HWND ViewerToolBars::MakeButton(HWND bar, int id, const char* text) {
  const std::string translated = GetPhrase(text);
  const HWND button =
      CreateWindowExA(0, "BUTTON", translated.c_str(), WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, 0, 0,
                      0, 0, bar, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                      static_cast<HINSTANCE>(platform::OwnResources()), nullptr);
  SetWindowSubclass(button, ButtonProcedure, 0, reinterpret_cast<DWORD_PTR>(this));
  tips_.Set(button, translated);
  return button;
}

// Closed bars beside an open one are as high as that; all closed ones leave no more than a rim.
SIZE ViewerToolBars::SizeOf(const Bar& bar, int width, bool anyOpen) const {
  const int button = Scaled(kButton);
  const int expander = Scaled(kExpanderWidth);
  if (!anyOpen) return {button, expander};
  if (!bar.open) return {expander, button};
  const int count = static_cast<int>(bar.buttons.size());
  const int perRow = std::clamp((width - expander) / button, 1, count);
  return {expander + perRow * button, (count + perRow - 1) / perRow * button};
}

int ViewerToolBars::Arrange(int width) {
  const bool anyOpen = std::any_of(bars_.begin(), bars_.end(),
                                   [](const Bar& bar) { return bar.window && bar.open; });
  POINT at = {0, 0};
  LONG bottom = 0;
  for (Bar& bar : bars_) {
    if (bar.window == nullptr) continue;
    const SIZE size = SizeOf(bar, width, anyOpen);
    if (at.x != 0 && at.x + size.cx > width) at = {0, bottom};
    Place(bar, at, size);
    at.x += size.cx + Scaled(kGap);
    bottom = std::max(bottom, at.y + size.cy);
  }
  return static_cast<int>(bottom);
}

void ViewerToolBars::Place(Bar& bar, POINT at, SIZE size) {
  const int button = Scaled(kButton);
  const bool slim = size.cy < button;
  const int expander = slim ? static_cast<int>(size.cx) : Scaled(kExpanderWidth);
  MoveWindow(bar.window, at.x, at.y, size.cx, size.cy, TRUE);
  MoveWindow(bar.expander, 0, 0, expander, size.cy, TRUE);
  InvalidateRect(bar.expander, nullptr, FALSE);
  const int perRow = std::max((static_cast<int>(size.cx) - expander) / button, 1);
  for (int i = 0; i < static_cast<int>(bar.buttons.size()); ++i) {
    const HWND window = bar.buttons[static_cast<size_t>(i)];
    MoveWindow(window, expander + i % perRow * button, i / perRow * button, button, button, TRUE);
    ShowWindow(window, bar.open ? SW_SHOWNA : SW_HIDE);
  }
}

void ViewerToolBars::SetCurrent(uint32_t command) {
  if (command == current_) return;
  current_ = command;
  for (const Bar& bar : bars_) {
    for (const HWND button : bar.buttons) InvalidateRect(button, nullptr, FALSE);
  }
}

ViewerToolBars::Bar* ViewerToolBars::BarOf(HWND button) {
  const HWND window = GetParent(button);
  for (Bar& bar : bars_) {
    if (bar.window != nullptr && bar.window == window) return &bar;
  }
  return nullptr;
}

void ViewerToolBars::ToggleBar(HWND expander) {
  Bar* bar = BarOf(expander);
  if (bar != nullptr) bar->open = !bar->open;
}

COLORREF ViewerToolBars::SurfaceOf(const DRAWITEMSTRUCT& item, uint32_t command) const {
  if ((item.itemState & ODS_SELECTED) != 0) return kPressed;
  if (command != 0 && command == current_) return kCurrent;
  return item.hwndItem == hot_ ? kHot : kBackground;
}

void ViewerToolBars::Draw(const DRAWITEMSTRUCT& item) {
  const RECT& area = item.rcItem;
  if (IsRectEmpty(&area)) return;
  if (item.CtlID == kExpander) {
    const Bar* bar = BarOf(item.hwndItem);
    const bool open = bar != nullptr && bar->open;
    const int quarter = open ? 2 : area.right > area.bottom ? 1 : 0;
    DrawChevron(item.hDC, area, quarter, SurfaceOf(item, 0));
  } else {
    const int side = static_cast<int>(area.right);
    DrawIconPixels(item.hDC, 0, 0, side,
                   Picture(IconOf(item.CtlID, fullScreen_), side, SurfaceOf(item, item.CtlID)));
  }
  if ((item.itemState & ODS_FOCUS) != 0) FrameArea(item.hDC, area, std::max(Scaled(1), 1), kFocus);
}

// All buttons are of one size.
const std::vector<uint32_t>& ViewerToolBars::Picture(ViewerIcon icon, int side,
                                                     COLORREF background) {
  std::vector<uint32_t>& picture = pictures_[{icon, background}];
  if (picture.size() != static_cast<size_t>(side) * static_cast<size_t>(side)) {
    picture = DrawViewerIcon(icon, side, background);
  }
  return picture;
}

std::vector<HWND> ViewerToolBars::Reachable(const Bar& bar) const {
  std::vector<HWND> buttons = {bar.expander};
  if (bar.open) buttons.insert(buttons.end(), bar.buttons.begin(), bar.buttons.end());
  return buttons;
}

std::vector<HWND> ViewerToolBars::TabStops() const {
  std::vector<HWND> stops;
  for (const Bar& bar : bars_) {
    if (bar.window == nullptr) continue;
    const std::vector<HWND> buttons = Reachable(bar);
    const bool lastIsThere = std::find(buttons.begin(), buttons.end(), bar.last) != buttons.end();
    stops.push_back(lastIsThere ? bar.last : buttons[bar.open ? 1 : 0]);
  }
  return stops;
}

std::optional<POINT> ViewerToolBars::Below(uint32_t command) const {
  for (const Bar& bar : bars_) {
    const HWND button = bar.open ? GetDlgItem(bar.window, static_cast<int>(command)) : nullptr;
    if (button == nullptr) continue;
    RECT place;
    GetWindowRect(button, &place);
    return POINT{place.left, place.bottom};
  }
  return std::nullopt;
}

void ViewerToolBars::MoveFocus(HWND from, WPARAM key) {
  const Bar* bar = BarOf(from);
  if (bar == nullptr) return;
  const std::vector<HWND> buttons = Reachable(*bar);
  const auto count = static_cast<ptrdiff_t>(buttons.size());
  const ptrdiff_t now = std::find(buttons.begin(), buttons.end(), from) - buttons.begin();
  const bool back = key == VK_LEFT || key == VK_UP;
  const ptrdiff_t next = key == VK_HOME  ? 0
                         : key == VK_END ? count - 1
                                         : (now + (back ? count - 1 : 1)) % count;
  SetFocus(buttons[static_cast<size_t>(next)]);
}

void ViewerToolBars::SetHot(HWND button) {
  if (hot_ == button) return;
  const HWND former = std::exchange(hot_, button);
  for (const HWND changed : {former, button}) {
    if (IsWindow(changed)) InvalidateRect(changed, nullptr, FALSE);
  }
  if (button == nullptr) return;
  TRACKMOUSEEVENT track = {sizeof track, TME_LEAVE, button, 0};
  TrackMouseEvent(&track);
}

LRESULT ViewerToolBars::OnButton(HWND button, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    // Enter presses this button and not the dialog's default.
    case WM_GETDLGCODE:
      return DLGC_BUTTON | DLGC_WANTARROWS |
             (wParam == VK_TAB || wParam == VK_RETURN || (wParam == VK_ESCAPE && fullScreen_)
                  ? DLGC_WANTMESSAGE
                  : 0);
    case WM_SETFOCUS:
      if (Bar* bar = BarOf(button)) bar->last = button;
      break;
    case WM_MOUSEMOVE:
      SetHot(button);
      break;
    case WM_MOUSELEAVE:
      SetHot(nullptr);
      break;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      byMouse_ = true;
      break;
    case WM_KEYDOWN:
      byMouse_ = false;
      switch (wParam) {
        case VK_TAB:
        case VK_ESCAPE:
          return SendMessageA(viewer_, message, wParam, lParam);
        case VK_RETURN:
          return SendMessageA(GetParent(button), WM_COMMAND,
                              MAKEWPARAM(GetDlgCtrlID(button), BN_CLICKED),
                              reinterpret_cast<LPARAM>(button));
        case VK_LEFT:
        case VK_UP:
        case VK_RIGHT:
        case VK_DOWN:
        case VK_HOME:
        case VK_END:
          MoveFocus(button, wParam);
          return 0;
        default:
          break;
      }
      break;
    default:
      break;
  }
  return DefSubclassProc(button, message, wParam, lParam);
}

LRESULT CALLBACK ViewerToolBars::ButtonProcedure(HWND button, UINT message, WPARAM wParam,
                                                 LPARAM lParam, UINT_PTR, DWORD_PTR bars) {
  std::optional<platform::WindowVisit> visit;
  if (IsInput(message)) visit.emplace();
  if (message == WM_NCDESTROY) {
    RemoveWindowSubclass(button, ButtonProcedure, 0);
    return DefSubclassProc(button, message, wParam, lParam);
  }
  try {
    return reinterpret_cast<ViewerToolBars*>(bars)->OnButton(button, message, wParam, lParam);
  } catch (...) {  // out of memory
    return 0;
  }
}

}  // namespace zyr
