#include "controls/scroll_bar.h"

#include <algorithm>

namespace zyr {

std::optional<int> PositionAsked(HWND window, int bar, int request, int position,
                                 const ScrollSteps& steps) {
  SCROLLINFO info = {sizeof info, SIF_TRACKPOS, 0, 0, 0, 0, 0};
  switch (request) {
    case SB_LINEUP:
      return position - steps.line;
    case SB_LINEDOWN:
      return position + steps.line;
    case SB_PAGEUP:
      return position - steps.page;
    case SB_PAGEDOWN:
      return position + steps.page;
    case SB_TOP:
      return 0;
    case SB_BOTTOM:
      return steps.end;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      GetScrollInfo(window, bar, &info);
      return info.nTrackPos;
    default:
      return std::nullopt;
  }
}

void SetScrollBar(HWND window, int bar, int content, int page, int position) {
  SCROLLINFO info = {sizeof info,
                     SIF_RANGE | SIF_PAGE | SIF_POS,
                     0,
                     std::max(content - 1, 0),
                     static_cast<UINT>(std::max(page, 0)),
                     position,
                     0};
  SetScrollInfo(window, bar, &info, TRUE);
}

}  // namespace zyr
