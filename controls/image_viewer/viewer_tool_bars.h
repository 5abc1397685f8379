// The two tool bars above a viewer's picture.
#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "controls/image_viewer/viewer_icons.h"
#include "controls/tool_tips.h"
#include "controls/window_class.h"

namespace zyr {

// The buttons are children of the bars, and push buttons to programs that read the screen out; they
// are numbered by their commands. The bars pass WM_COMMAND and WM_DRAWITEM on to the viewer's
// window, and the buttons WM_KEYDOWN of Tab and Escape.
class ViewerToolBars {
 public:
  static constexpr int kFirstId = 1000;
  static constexpr int kExpander = 100;  // the number of the button that each bar begins with
  static constexpr COLORREF kBackground = RGB(0x40, 0x40, 0x40);

  // `allowed` as CKIPImageViewerControl has them. In the full screen window the button to leave it
  // is there in any case.
  ViewerToolBars(HWND viewer, uint32_t allowed, bool fullScreen);
  ~ViewerToolBars();
  ViewerToolBars(const ViewerToolBars&) = delete;
  ViewerToolBars& operator=(const ViewerToolBars&) = delete;

  // Places the bars along the upper edge; the height that they take.
  int Arrange(int width);
  // 0 for none.
  void SetCurrent(uint32_t command);
  // Opens or closes the bar of that expander; the bars are to be arranged again.
  void ToggleBar(HWND expander);
  void Draw(const DRAWITEMSTRUCT& item);
  // Was the button pressed by the mouse? If so, the keyboard goes back to the picture.
  bool PressedByMouse() const { return byMouse_; }

  // Of each bar the button that the keyboard reaches first.
  std::vector<HWND> TabStops() const;
  // Below a button, on the screen; nothing if it is not there or closed away.
  std::optional<POINT> Below(uint32_t command) const;

 private:
  struct Bar {
    HWND window = nullptr;
    HWND expander = nullptr;
    std::vector<HWND> buttons;
    bool open = true;
    HWND last = nullptr;  // that had the keyboard
  };
  class Class;

  void MakeBar(int index, uint32_t allowed, bool fullScreen);
  HWND MakeButton(HWND bar, int id, const char* text);
  SIZE SizeOf(const Bar& bar, int width, bool anyOpen) const;
  void Place(Bar& bar, POINT at, SIZE size);
  Bar* BarOf(HWND button);
  std::vector<HWND> Reachable(const Bar& bar) const;
  void MoveFocus(HWND from, WPARAM key);
  const std::vector<uint32_t>& Picture(ViewerIcon icon, int side, COLORREF background);
  COLORREF SurfaceOf(const DRAWITEMSTRUCT& item, uint32_t command) const;
  LRESULT OnButton(HWND button, UINT message, WPARAM wParam, LPARAM lParam);
  void SetHot(HWND button);
  static LRESULT CALLBACK ButtonProcedure(HWND button, UINT message, WPARAM wParam, LPARAM lParam,
                                          UINT_PTR, DWORD_PTR bars);

  HWND viewer_;
  bool fullScreen_;
  std::shared_ptr<const WindowClass> class_;
  std::array<Bar, 2> bars_;
  ToolTips tips_;
  std::map<std::pair<ViewerIcon, COLORREF>, std::vector<uint32_t>> pictures_;
  uint32_t current_ = 0;
  HWND hot_ = nullptr;
  bool byMouse_ = false;
};

}  // namespace zyr
