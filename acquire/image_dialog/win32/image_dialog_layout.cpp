#include "acquire/image_dialog/win32/image_dialog_layout.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "acquire/image_dialog/win32/image_dialog_buttons.h"
#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "controls/icon_button.h"
#include "resources/resource.h"

namespace zyr {
namespace {

constexpr int kRow[] = {IDC_IMAGE_GROUP,
                        IDC_IMAGE_GROUP + 1,
                        IDC_IMAGE_GROUP + 2,
                        IDC_IMAGE_GROUP + 3,
                        IDC_IMAGE_GROUP + 4,
                        IDOK,
                        IDCANCEL};
constexpr int kOtherControls = 4;

// Pixels of a plain screen.
constexpr int kMargin = 5;
constexpr SIZE kLeast = {640, 480};
constexpr int kAroundRow = 12;   // above and below icon and caption together
constexpr int kAroundIcon = 26;  // what is left free beside icon and caption
constexpr int kHandle = 11;
constexpr int kRoomForList = 860;
constexpr int kAroundStatus = 4;

SIZE CaptionSize(HWND control) {
  const std::string caption = WindowText(control);
  const HDC dc = GetDC(control);
  const HGDIOBJ previous =
      SelectObject(dc, reinterpret_cast<HFONT>(SendMessageA(control, WM_GETFONT, 0, 0)));
  RECT area = {};
  DrawTextA(dc, caption.c_str(), -1, &area, DT_CALCRECT | DT_SINGLELINE);
  SelectObject(dc, previous);
  ReleaseDC(control, dc);
  return {area.right, area.bottom};
}

}  // namespace

ImageDialogLayout::ImageDialogLayout(HWND dialog, int listWidth)
    : dialog_(dialog),
      listWidth_(listWidth),
      textHeight_(static_cast<int>(CaptionSize(GetDlgItem(dialog, IDOK)).cy)),
      rowHeight_(ButtonIconSize(textHeight_) + Scaled(kAroundRow)),
      statusHeight_(textHeight_ + Scaled(kAroundStatus)) {}

int ImageDialogLayout::WidthOf(int button) const {
  const int arrow = ImageDialogButtons::GroupOf(button) != nullptr ? MenuArrowWidth() : 0;
  return static_cast<int>(CaptionSize(GetDlgItem(dialog_, button)).cx) +
         ButtonIconSize(textHeight_) + Scaled(kAroundIcon) + arrow;
}

POINT ImageDialogLayout::LeastSize() const {
  RECT outer;
  RECT client;
  GetWindowRect(dialog_, &outer);
  GetClientRect(dialog_, &client);
  int row = Scaled(kMargin);
  for (const int button : kRow) row += WidthOf(button) + Scaled(kMargin);
  return {std::max(Scaled(kLeast.cx), row) + outer.right - outer.left - client.right,
          Scaled(kLeast.cy) + outer.bottom - outer.top - client.bottom};
}

bool ImageDialogLayout::HasRoomForList() const {
  RECT client;
  GetClientRect(dialog_, &client);
  return client.right >= Scaled(kRoomForList);
}

void ImageDialogLayout::Apply(bool listOpen) const {
  const int margin = Scaled(kMargin);
  RECT client;
  GetClientRect(dialog_, &client);
  const RECT inner = {margin, margin, client.right - margin, client.bottom - margin};
  const RECT row = {inner.left, inner.top, inner.right, inner.top + rowHeight_};
  const RECT status = {inner.left, inner.bottom - statusHeight_, inner.right, inner.bottom};
  RECT list = {inner.left, row.bottom + margin, inner.left, status.top - margin};
  if (listOpen) list.right += std::min(static_cast<LONG>(listWidth_), client.right / 3);
  RECT handle = list;
  handle.left = list.right;
  handle.right = handle.left + Scaled(kHandle);
  RECT viewer = list;
  viewer.left = handle.right + margin;
  viewer.right = inner.right;

  HDWP moves = BeginDeferWindowPos(static_cast<int>(std::size(kRow)) + kOtherControls);
  moves = PlaceRow(moves, row);
  moves = Move(moves, IDC_IMAGE_LIST, list);
  moves = Move(moves, IDC_IMAGE_LIST_HANDLE, handle);
  moves = Move(moves, IDC_IMAGE_VIEWER, viewer);
  moves = Move(moves, IDC_IMAGE_STATUS, status);
  if (moves != nullptr) EndDeferWindowPos(moves);
}

// The groups from the left, OK and Cancel at the right.
HDWP ImageDialogLayout::PlaceRow(HDWP moves, const RECT& row) const {
  const int margin = Scaled(kMargin);
  const int cancelLeft = static_cast<int>(row.right) - WidthOf(IDCANCEL);
  const int okLeft = cancelLeft - margin - WidthOf(IDOK);
  int left = static_cast<int>(row.left);
  for (const int button : kRow) {
    if (button == IDOK) left = std::max(left, okLeft);
    const int right = left + WidthOf(button);
    moves = Move(moves, button, {left, row.top, right, row.bottom});
    left = right + margin;
  }
  return moves;
}

HDWP ImageDialogLayout::Move(HDWP moves, int control, const RECT& to) const {
  if (moves == nullptr) return nullptr;  // out of memory
  return DeferWindowPos(moves, GetDlgItem(dialog_, control), nullptr, to.left, to.top,
                        std::max(to.right - to.left, 0L), std::max(to.bottom - to.top, 0L),
                        SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace zyr
