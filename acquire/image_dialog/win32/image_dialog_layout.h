// Where the controls of the image dialog are.
#pragma once

#include <windows.h>

#include <vector>

namespace zyr {

// The buttons on top, in more than one row where there is no room for one, the viewer below it, the
// list of operations at the viewer's left, the status line at the bottom. User-interface thread
// only, while the window lives.
class ImageDialogLayout {
 public:
  // Once the controls have their captions. The list gets `listWidth` pixels where there is room.
  ImageDialogLayout(HWND dialog, int listWidth);

  // The window's, with its frame; all buttons can be seen at it.
  POINT LeastSize() const;
  // Of a window that has just been made.
  bool HasRoomForList() const;
  void Apply(bool listOpen) const;

 private:
  int WidthOf(int button) const;
  // In the order of the keyboard, in a client area of that width.
  std::vector<RECT> ButtonPlaces(int width) const;

  HWND dialog_;
  int listWidth_;
  int textHeight_;
  int rowHeight_;
  int statusHeight_;
};

}  // namespace zyr
