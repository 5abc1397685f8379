// What the painting of the module's own controls has in common.
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

namespace zyr {

// So many percent of the way from one colour to the other.
COLORREF Mix(COLORREF from, COLORREF to, int percent);

void FillArea(HDC dc, const RECT& area, COLORREF color);
// All that a window has inside; gives what answers WM_ERASEBKGND.
LRESULT FillWindow(HWND window, HDC dc, COLORREF color);
// Just inside the area.
void FrameArea(HDC dc, RECT area, int thickness, COLORREF color);

// Gives a control a border of one pixel whatever its template says: there, dialogs make a sunken
// edge of it. It is painted by PaintThinBorder.
void UseThinBorder(HWND window);
// In place of the black border of the system; it shows where the keyboard is.
void PaintThinBorder(HWND window);

// `width` x `height` pixels of 32 bits, the first row on top.
BITMAPINFO RowsFromTop(LONG width, LONG height);
// Puts such pixels where the area is, whose size they have.
void DrawPixels(HDC target, const RECT& area, const std::vector<uint32_t>& pixels);

// BeginPaint to EndPaint with a bitmap in between, so that nothing flickers.
class BufferedPaint {
 public:
  explicit BufferedPaint(HWND window);
  ~BufferedPaint();
  BufferedPaint(const BufferedPaint&) = delete;
  BufferedPaint& operator=(const BufferedPaint&) = delete;

  // In coordinates of the window; null if there is nothing to paint on.
  HDC dc() const { return buffer_; }
  const RECT& area() const { return paint_.rcPaint; }

 private:
  HWND window_;
  PAINTSTRUCT paint_;
  HDC screen_;
  HDC buffer_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ previous_ = nullptr;
};

}  // namespace zyr
