// The tool tips of a dialog's controls.
#pragma once

#include <windows.h>

#include <string>

namespace zyr {

// They go with the dialog's window; after that, operations do nothing. User-interface thread only.
class ToolTips {
 public:
  void Attach(HWND dialog);
  // `control` is a child of the dialog. Long texts and line ends make several lines.
  void Set(HWND control, const std::string& text);

 private:
  HWND dialog_ = nullptr;
  HWND tips_ = nullptr;
};

}  // namespace zyr
