#include "controls/paint.h"

namespace zyr {

COLORREF Mix(COLORREF from, COLORREF to, int percent) {
  const auto channel = [&](int a, int b) { return static_cast<BYTE>(a + (b - a) * percent / 100); };
  return RGB(channel(GetRValue(from), GetRValue(to)), channel(GetGValue(from), GetGValue(to)),
             channel(GetBValue(from), GetBValue(to)));
}

void FillArea(HDC dc, const RECT& area, COLORREF color) {
  SetDCBrushColor(dc, color);
  FillRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

LRESULT FillWindow(HWND window, HDC dc, COLORREF color) {
  RECT client;
  GetClientRect(window, &client);
  FillArea(dc, client, color);
  return TRUE;
}

void FrameArea(HDC dc, RECT area, int thickness, COLORREF color) {
  SetDCBrushColor(dc, color);
  for (int i = 0; i < thickness; ++i) {
    FrameRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    InflateRect(&area, -1, -1);
  }
}

void UseThinBorder(HWND window) {
  SetWindowLongPtrA(window, GWL_STYLE, GetWindowLongPtrA(window, GWL_STYLE) | WS_BORDER);
  SetWindowPos(window, nullptr, 0, 0, 0, 0,
               SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void PaintThinBorder(HWND window) {
  const HDC dc = GetWindowDC(window);
  if (dc == nullptr) return;
  RECT frame;
  GetWindowRect(window, &frame);
  OffsetRect(&frame, -frame.left, -frame.top);
  const COLORREF quiet = Mix(GetSysColor(COLOR_WINDOW), GetSysColor(COLOR_WINDOWTEXT), 30);
  FrameArea(dc, frame, 1, GetFocus() == window ? GetSysColor(COLOR_HIGHLIGHT) : quiet);
  ReleaseDC(window, dc);
}

BITMAPINFO RowsFromTop(LONG width, LONG height) {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  return info;
}

void DrawPixels(HDC target, const RECT& area, const std::vector<uint32_t>& pixels) {
  const LONG width = area.right - area.left;
  const LONG height = area.bottom - area.top;
  const BITMAPINFO info = RowsFromTop(width, height);
  SetDIBitsToDevice(target, area.left, area.top, static_cast<DWORD>(width),
                    static_cast<DWORD>(height), 0, 0, 0, static_cast<UINT>(height), pixels.data(),
                    &info, DIB_RGB_COLORS);
}

BufferedPaint::BufferedPaint(HWND window) : window_(window), screen_(BeginPaint(window, &paint_)) {
  const RECT& area = paint_.rcPaint;
  if (screen_ == nullptr || IsRectEmpty(&area)) return;
  bitmap_ = CreateCompatibleBitmap(screen_, area.right - area.left, area.bottom - area.top);
  if (bitmap_ == nullptr) return;
  buffer_ = CreateCompatibleDC(screen_);
  if (buffer_ == nullptr) return;
  previous_ = SelectObject(buffer_, bitmap_);
  SetViewportOrgEx(buffer_, -area.left, -area.top, nullptr);
  SetBrushOrgEx(buffer_, -area.left, -area.top, nullptr);
}

BufferedPaint::~BufferedPaint() {
  if (buffer_ != nullptr) {
    const RECT& area = paint_.rcPaint;
    BitBlt(screen_, area.left, area.top, area.right - area.left, area.bottom - area.top, buffer_,
           area.left, area.top, SRCCOPY);
    SelectObject(buffer_, previous_);
    DeleteDC(buffer_);
  }
  if (bitmap_ != nullptr) DeleteObject(bitmap_);
  EndPaint(window_, &paint_);
}

}  // namespace zyr
