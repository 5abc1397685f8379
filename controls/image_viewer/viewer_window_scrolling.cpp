// The scroll bars.
#include "controls/image_viewer/viewer_window.h"

#include <algorithm>
#include <cstdlib>

#include "controls/dialog_font.h"
#include "controls/scroll_bar.h"

namespace zyr {
namespace {

constexpr int kLine = 40;  // pixels of a plain screen, for a step of a scroll bar

}  // namespace

ViewSize ViewerWindow::SizeWithoutScrollBars() const {
  const LONG_PTR style = GetWindowLongPtrA(window_, GWL_STYLE);
  ViewSize size = ClientSize();
  if ((style & WS_VSCROLL) != 0) size.width += GetSystemMetrics(SM_CXVSCROLL);
  if ((style & WS_HSCROLL) != 0) size.height += GetSystemMetrics(SM_CYHSCROLL);
  return size;
}

// Shows those that are needed; each takes room from the other one's direction. True if the client
// area has changed.
bool ViewerWindow::ShowScrollBars(ViewSize content) {
  const ViewSize before = ClientSize();
  const ViewSize all = SizeWithoutScrollBars();
  bool across = content.width > all.width;
  const bool down = content.height > all.height - (across ? GetSystemMetrics(SM_CYHSCROLL) : 0);
  across = content.width > all.width - (down ? GetSystemMetrics(SM_CXVSCROLL) : 0);
  const LONG_PTR style = GetWindowLongPtrA(window_, GWL_STYLE);
  settingScrollBars_ = true;
  if (across != ((style & WS_HSCROLL) != 0)) ShowScrollBar(window_, SB_HORZ, across);
  if (down != ((style & WS_VSCROLL) != 0)) ShowScrollBar(window_, SB_VERT, down);
  settingScrollBars_ = false;
  return !(ClientSize() == before);
}

void ViewerWindow::UpdateScrollBar(int bar, int32_t content, int32_t page, int32_t position) {
  if (content <= page) return;  // it is not there
  SetScrollBar(window_, bar, content, page, position);
}

void ViewerWindow::ScrollPixels(ViewPoint distance) {
  const ViewSize size = ClientSize();
  if (std::abs(distance.x) >= size.width || std::abs(distance.y) >= size.height) {
    return Invalidate();
  }
  const RECT area = PictureArea();
  ScrollWindowEx(window_, distance.x, distance.y, &area, &area, nullptr, nullptr, SW_INVALIDATE);
}

void ViewerWindow::SetScroll(ViewSize content, ViewPoint position) {
  if (!Alive()) return;
  const bool sameContent = content == content_;
  const ViewPoint distance = {position_.x - position.x, position_.y - position.y};
  content_ = content;
  position_ = position;
  const bool resized = ShowScrollBars(content);
  const ViewSize size = ClientSize();
  UpdateScrollBar(SB_HORZ, content.width, size.width, position.x);
  UpdateScrollBar(SB_VERT, content.height, size.height, position.y);
  if (resized) {
    ArrangeToolBars();
    Invalidate();
    return control_.OnSize();
  }
  if (!sameContent) return Invalidate();
  if (!(distance == ViewPoint{})) ScrollPixels(distance);
}

void ViewerWindow::ScrollTo(ViewPoint position) {
  const ViewSize size = ClientSize();
  position.x = std::clamp(position.x, 0, std::max(content_.width - size.width, 0));
  position.y = std::clamp(position.y, 0, std::max(content_.height - size.height, 0));
  if (!(position == position_)) control_.OnScroll(position);
}

void ViewerWindow::OnScrollBar(int bar, int request) {
  const bool across = bar == SB_HORZ;
  const ViewSize size = ClientSize();
  const int32_t page = (across ? size.width : size.height) * 9 / 10;
  ViewPoint to = position_;
  int32_t& part = across ? to.x : to.y;
  const auto asked =
      PositionAsked(window_, bar, request, part,
                    {Scaled(kLine), page, across ? content_.width : content_.height});
  if (!asked) return;
  part = *asked;
  ScrollTo(to);
}

void ViewerWindow::OnHorizontalWheel(int delta) {
  ScrollTo({position_.x + delta * Scaled(kLine) / WHEEL_DELTA, position_.y});
}

}  // namespace zyr
