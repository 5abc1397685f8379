#include "controls/text_size.h"

namespace zyr {
namespace {

SIZE Measure(HWND control, const std::string& text, LONG width, UINT format) {
  const HDC dc = GetDC(control);
  const auto font = reinterpret_cast<HFONT>(SendMessageA(control, WM_GETFONT, 0, 0));
  const HGDIOBJ previous = font != nullptr ? SelectObject(dc, font) : nullptr;
  RECT area = {0, 0, width, 0};
  DrawTextA(dc, text.c_str(), -1, &area, DT_CALCRECT | format);
  if (previous != nullptr) SelectObject(dc, previous);
  ReleaseDC(control, dc);
  return {area.right, area.bottom};
}

}  // namespace

SIZE TextSize(HWND control, const std::string& text) {
  return Measure(control, text, 0, DT_SINGLELINE);
}

int WrappedTextHeight(HWND control, const std::string& text, int width) {
  return static_cast<int>(Measure(control, text, width, DT_WORDBREAK).cy);
}

// With no room at all, every word gets a line, and the area becomes as wide as the longest.
int LongestWordWidth(HWND control, const std::string& text) {
  return static_cast<int>(Measure(control, text, 1, DT_WORDBREAK).cx);
}

int LineHeight(HWND control) { return static_cast<int>(TextSize(control, "X").cy); }

}  // namespace zyr
