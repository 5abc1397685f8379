// A scrolling list of status lines: each an icon, a bold title and a text below it.
#pragma once

#include <windows.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "controls/dialog_font.h"
#include "controls/status_icon.h"
#include "controls/window_class.h"

namespace zyr {

// A control of a dialog template: its window class is there while an object lives. The arrow, page,
// Home and End keys scroll it. The last line is scrolled into view whenever it changes. Changes are
// on the screen at once, for a caller that goes on to work without a look at its messages. All
// lines together are the window's text, for programs that read it out. Once the window is gone,
// operations do nothing. User-interface thread only.
class StatusList {
 public:
  StatusList();
  StatusList(const StatusList&) = delete;
  StatusList& operator=(const StatusList&) = delete;

  // Takes over a window of the class, which must not outlive this object.
  void Attach(HWND window);

  void Clear();
  // The line's number, counted from 0.
  int Add(StatusIcon icon, const std::string& title, const std::string& text);
  // Ignored if there is no such line.
  void SetLine(int number, const std::string& title, const std::string& text);
  void SetLastText(const std::string& text);

 private:
  struct Line {
    StatusIcon icon;
    std::string title;
    std::string text;
    int titleHeight = 0;
    int textHeight = 0;
    int height = 0;  // in all
  };
  struct Metrics {
    int margin;
    int iconSize;
    int gap;  // between icon and text
    int titleGap;
  };

  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);

  void ContentChanged(bool followEnd);
  void Relayout();
  int Measure(HDC dc, int width);  // the height of all lines
  int LastOffset() const { return std::max(contentHeight_ - ViewHeight(), 0); }
  int TextLeft() const { return metrics_.margin + metrics_.iconSize + metrics_.gap; }
  int ViewHeight() const;
  void ScrollTo(int offset);
  void ScrollByUser(int offset);
  void OnScroll(int request);
  void OnKey(WPARAM key);
  void OnWheel(int delta);

  void Paint();
  void PaintLines(HDC dc, const RECT& area) const;
  void PaintLine(HDC dc, const Line& line, int top, int width) const;

  std::shared_ptr<const WindowClass> class_;
  Font font_;
  Font boldFont_;
  Metrics metrics_;
  HWND window_ = nullptr;
  std::vector<Line> lines_;
  int contentHeight_ = 0;
  int offset_ = 0;          // pixels of the content above the view
  bool followsEnd_ = true;  // until the user scrolls away from it
  int wheelRest_ = 0;
  bool layingOut_ = false;
};

}  // namespace zyr
