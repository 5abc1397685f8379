// Scroll bars of the module's own controls.
#pragma once

#include <windows.h>

#include <optional>

namespace zyr {

// `bar` is SB_HORZ or SB_VERT; all else is in the units in which the control scrolls.
struct ScrollSteps {
  int line;
  int page;
  int end;
};

// Where a request of the user leads, if anywhere; that may be beyond the ends.
std::optional<int> PositionAsked(HWND window, int bar, int request, int position,
                                 const ScrollSteps& steps);

// `page` of the content is in view, from `position` on.
void SetScrollBar(HWND window, int bar, int content, int page, int position);

}  // namespace zyr
