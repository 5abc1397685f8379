#include "controls/status_list.h"

#include <algorithm>

#include "controls/paint.h"
#include "controls/scroll_bar.h"
#include "resources/resource.h"

namespace zyr {
namespace {

constexpr UINT kTextFormat = DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS;

COLORREF Background() { return GetSysColor(COLOR_WINDOW); }
COLORREF TitleColor() { return GetSysColor(COLOR_WINDOWTEXT); }
COLORREF TextColor() { return Mix(TitleColor(), Background(), 25); }
COLORREF RuleColor() { return Mix(Background(), TitleColor(), 10); }

int DrawTextIn(HDC dc, HFONT font, const std::string& text, RECT* area, UINT format) {
  const HGDIOBJ previous = SelectObject(dc, font);
  const int height = text.empty() ? 0
                                  : DrawTextA(dc, text.c_str(), static_cast<int>(text.size()), area,
                                              kTextFormat | format);
  SelectObject(dc, previous);
  return height;
}

int TextHeight(HDC dc, HFONT font, const std::string& text, int width) {
  RECT area = {0, 0, width, 0};
  return DrawTextIn(dc, font, text, &area, DT_CALCRECT);
}

}  // namespace

StatusList::StatusList()
    : class_(SharedWindowClass(STATUS_LIST_CLASS, Procedure)),
      font_(MessageFont()),
      boldFont_(BoldMessageFont()),
      metrics_{Scaled(14), Scaled(32), Scaled(14), Scaled(3)} {}

void StatusList::Attach(HWND window) {
  window_ = window;
  SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  UseThinBorder(window);
  ContentChanged(true);
}

void StatusList::Clear() {
  lines_.clear();
  ContentChanged(true);
}

int StatusList::Add(StatusIcon icon, const std::string& title, const std::string& text) {
  lines_.push_back({icon, title, text});
  ContentChanged(true);
  return static_cast<int>(lines_.size()) - 1;
}

// Whoever reads on elsewhere is not taken away from there by a line above the last.
void StatusList::SetLine(int number, const std::string& title, const std::string& text) {
  if (number < 0 || static_cast<size_t>(number) >= lines_.size()) return;
  Line& line = lines_[static_cast<size_t>(number)];
  line.title = title;
  line.text = text;
  ContentChanged(followsEnd_ || &line == &lines_.back());
}

void StatusList::SetLastText(const std::string& text) {
  if (lines_.empty()) return;
  lines_.back().text = text;
  ContentChanged(true);
}

void StatusList::ContentChanged(bool followEnd) {
  if (window_ == nullptr) return;
  std::string all;
  for (const Line& line : lines_) all += line.title + "\r\n" + line.text + "\r\n";
  SetWindowTextA(window_, all.c_str());
  followsEnd_ = followEnd;
  Relayout();
  UpdateWindow(window_);
}

// The scroll bar takes its room only if it is needed, and changes the size when it comes and goes.
void StatusList::Relayout() {
  if (layingOut_) return;
  layingOut_ = true;
  RECT frame;
  GetWindowRect(window_, &frame);
  const int border = GetSystemMetrics(SM_CXBORDER);
  const int fullWidth = frame.right - frame.left - 2 * border;
  const HDC dc = GetDC(window_);
  contentHeight_ = Measure(dc, fullWidth);
  if (contentHeight_ > ViewHeight()) {
    contentHeight_ = Measure(dc, fullWidth - GetSystemMetrics(SM_CXVSCROLL));
  }
  ReleaseDC(window_, dc);
  SetScrollBar(window_, SB_VERT, contentHeight_, ViewHeight(), offset_);
  layingOut_ = false;
  ScrollTo(followsEnd_ ? LastOffset() : offset_);
  InvalidateRect(window_, nullptr, FALSE);
}

int StatusList::Measure(HDC dc, int width) {
  const int textWidth = std::max(width - TextLeft() - metrics_.margin, 1);
  int height = 0;
  for (Line& line : lines_) {
    line.titleHeight = TextHeight(dc, boldFont_.handle(), line.title, textWidth);
    line.textHeight = TextHeight(dc, font_.handle(), line.text, textWidth);
    line.height =
        std::max(metrics_.iconSize, line.titleHeight + metrics_.titleGap + line.textHeight) +
        2 * metrics_.margin;
    height += line.height;
  }
  return height;
}

int StatusList::ViewHeight() const {
  RECT client;
  GetClientRect(window_, &client);
  return client.bottom;
}

void StatusList::ScrollTo(int offset) {
  offset = std::clamp(offset, 0, LastOffset());
  if (offset == offset_) return;
  offset_ = offset;
  SCROLLINFO info = {sizeof info, SIF_POS, 0, 0, 0, offset, 0};
  SetScrollInfo(window_, SB_VERT, &info, TRUE);
  InvalidateRect(window_, nullptr, FALSE);
}

void StatusList::ScrollByUser(int offset) {
  ScrollTo(offset);
  followsEnd_ = offset_ == LastOffset();
}

void StatusList::OnScroll(int request) {
  const int step = metrics_.iconSize;
  const auto asked = PositionAsked(window_, SB_VERT, request, offset_,
                                   {step, std::max(ViewHeight() - step, step), contentHeight_});
  if (asked) ScrollByUser(*asked);
}

void StatusList::OnKey(WPARAM key) {
  switch (key) {
    case VK_UP:
      return OnScroll(SB_LINEUP);
    case VK_DOWN:
      return OnScroll(SB_LINEDOWN);
    case VK_PRIOR:
      return OnScroll(SB_PAGEUP);
    case VK_NEXT:
      return OnScroll(SB_PAGEDOWN);
    case VK_HOME:
      return OnScroll(SB_TOP);
    case VK_END:
      return OnScroll(SB_BOTTOM);
    default:
      return;
  }
}

// Fine wheels send parts of a notch.
void StatusList::OnWheel(int delta) {
  UINT linesPerNotch = 3;
  SystemParametersInfoA(SPI_GETWHEELSCROLLLINES, 0, &linesPerNotch, 0);
  if (linesPerNotch == WHEEL_PAGESCROLL) return OnScroll(delta > 0 ? SB_PAGEUP : SB_PAGEDOWN);
  wheelRest_ += delta * static_cast<int>(linesPerNotch) * Scaled(16);
  const int pixels = wheelRest_ / WHEEL_DELTA;
  wheelRest_ -= pixels * WHEEL_DELTA;
  ScrollByUser(offset_ - pixels);
}

void StatusList::Paint() {
  const BufferedPaint paint(window_);
  if (paint.dc() == nullptr) return;
  RECT client;
  GetClientRect(window_, &client);
  PaintLines(paint.dc(), client);
}

void StatusList::PaintLines(HDC dc, const RECT& area) const {
  FillArea(dc, area, Background());
  SetBkMode(dc, TRANSPARENT);
  int top = -offset_;
  for (const Line& line : lines_) {
    if (&line != &lines_.front()) {
      FillArea(dc, {metrics_.margin, top, area.right - metrics_.margin, top + 1}, RuleColor());
    }
    if (top < area.bottom && top + line.height > 0) PaintLine(dc, line, top, area.right);
    top += line.height;
  }
}

void StatusList::PaintLine(HDC dc, const Line& line, int top, int width) const {
  DrawStatusIcon(dc, metrics_.margin, top + metrics_.margin, metrics_.iconSize, line.icon,
                 Background());
  RECT area = {TextLeft(), top + metrics_.margin, width - metrics_.margin, top + line.height};
  SetTextColor(dc, TitleColor());
  DrawTextIn(dc, boldFont_.handle(), line.title, &area, 0);
  area.top += line.titleHeight + metrics_.titleGap;
  SetTextColor(dc, TextColor());
  DrawTextIn(dc, font_.handle(), line.text, &area, 0);
}

LRESULT CALLBACK StatusList::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* list = reinterpret_cast<StatusList*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (list == nullptr) return DefWindowProcA(window, message, wParam, lParam);
  try {
    return list->Handle(message, wParam, lParam);
  } catch (...) {  // out of memory: the picture stays as it is
    return DefWindowProcA(window, message, wParam, lParam);
  }
}

LRESULT StatusList::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND window = window_;
  switch (message) {
    case WM_PAINT:
      Paint();
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_NCPAINT:
      DefWindowProcA(window, message, wParam, lParam);
      PaintThinBorder(window);
      return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      PaintThinBorder(window);
      return 0;
    case WM_LBUTTONDOWN:
      SetFocus(window);
      return 0;
    case WM_SIZE:
      Relayout();
      return 0;
    case WM_VSCROLL:
      OnScroll(LOWORD(wParam));
      return 0;
    case WM_MOUSEWHEEL:
      OnWheel(GET_WHEEL_DELTA_WPARAM(wParam));
      return 0;
    case WM_KEYDOWN:
      OnKey(wParam);
      return 0;
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS;
    case WM_NCDESTROY:
      window_ = nullptr;
      SetWindowLongPtrA(window, GWLP_USERDATA, 0);
      break;
    default:
      break;
  }
  return DefWindowProcA(window, message, wParam, lParam);
}

}  // namespace zyr
