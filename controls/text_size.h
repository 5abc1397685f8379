// How much room a text takes in a control.
#pragma once

#include <windows.h>

#include <string>

namespace zyr {

// In the font of `control`, on one line; an ampersand before a letter underlines that.
SIZE TextSize(HWND control, const std::string& text);
// Of the lines into which it is broken to be no wider than that.
int WrappedTextHeight(HWND control, const std::string& text, int width);
// Narrower, a text cannot be broken into lines that fit.
int LongestWordWidth(HWND control, const std::string& text);
int LineHeight(HWND control);

}  // namespace zyr
