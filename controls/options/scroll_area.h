// A part of a dialog whose content may be taller than itself.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>

#include "controls/window_class.h"

namespace zyr {

// A control of a dialog template: its window class is there while an object lives. It has a scroll
// bar when the content is too tall, and brings into view what the keyboard goes to. User-interface
// thread only; once the window is gone, operations do nothing.
class ScrollArea {
 public:
  // Places the children for so much room, `top` being where the content begins, 0 or less. Gives
  // the height of the content.
  using Arrange = std::function<int(SIZE room, int top)>;

  ScrollArea();
  ~ScrollArea();
  ScrollArea(const ScrollArea&) = delete;
  ScrollArea& operator=(const ScrollArea&) = delete;

  // Takes over a window of the class, which must not outlive this object.
  void Attach(HWND window, Arrange arrange);
  HWND window() const { return window_; }

  // After a change of the content.
  void Refresh();
  void ScrollTo(int position);
  // Of a mouse's wheel: the high word of WM_MOUSEWHEEL's first parameter.
  void Turn(int delta);
  // What is inside `child` now is brought into view when it gets the keyboard. The wheel scrolls
  // the area where it would change a value.
  void Follow(HWND child);

 private:
  static LRESULT CALLBACK Followed(HWND control, UINT message, WPARAM wParam, LPARAM lParam,
                                   UINT_PTR id, DWORD_PTR area);
  static BOOL CALLBACK FollowOne(HWND control, LPARAM area);
  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
  void OnScroll(int request);
  void BringIntoView(HWND control);
  int Height() const;
  int Furthest() const;
  void ShowBar() const;

  std::shared_ptr<const WindowClass> class_;
  HWND window_ = nullptr;
  Arrange arrange_;
  int content_ = 0;   // its height
  int position_ = 0;  // how much of it is above the window
  int wheel_ = 0;     // turned, and not yet scrolled
  bool arranging_ = false;
};

}  // namespace zyr
