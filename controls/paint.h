// What the painting of the module's own controls has in common.
#pragma once

#include <windows.h>

namespace zyr {

// So many percent of the way from one colour to the other.
COLORREF Mix(COLORREF from, COLORREF to, int percent);

void FillArea(HDC dc, const RECT& area, COLORREF color);
// Just inside the area.
void FrameArea(HDC dc, RECT area, int thickness, COLORREF color);

// Gives a control a border of one pixel whatever its template says: there, dialogs make a sunken
// edge of it. It is painted by PaintThinBorder.
void UseThinBorder(HWND window);
// In place of the black border of the system; it shows where the keyboard is.
void PaintThinBorder(HWND window);

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
