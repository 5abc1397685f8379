#include "acquire/image_dialog/win32/image_dialog_layout.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "acquire/image_dialog/win32/image_dialog_buttons.h"
#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "controls/icon_button.h"
#include "controls/text_size.h"
#include "resources/resource.h"

namespace zyr {
namespace {

constexpr int kButtons[] = {IDC_IMAGE_GROUP,
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

SIZE CaptionSize(HWND control) { return TextSize(control, WindowText(control)); }

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
  const SIZE least = WithFrameOnScreen(dialog_, {Scaled(kLeast.cx), Scaled(kLeast.cy)});
  return {least.cx, least.cy};
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
  const std::vector<RECT> buttons = ButtonPlaces(static_cast<int>(client.right));
  const RECT status = {inner.left, inner.bottom - statusHeight_, inner.right, inner.bottom};
  RECT list = {inner.left, buttons.back().bottom + margin, inner.left, status.top - margin};
  if (listOpen) list.right += std::min(static_cast<LONG>(listWidth_), client.right * 2 / 5);
  RECT handle = list;
  handle.left = list.right;
  handle.right = handle.left + Scaled(kHandle);
  RECT viewer = list;
  viewer.left = handle.right + margin;
  viewer.right = inner.right;

  ControlMoves moves(dialog_, static_cast<int>(std::size(kButtons)) + kOtherControls);
  for (size_t i = 0; i < buttons.size(); ++i) moves.Move(kButtons[i], buttons[i]);
  moves.Move(IDC_IMAGE_LIST, list);
  moves.Move(IDC_IMAGE_LIST_HANDLE, handle);
  moves.Move(IDC_IMAGE_VIEWER, viewer);
  moves.Move(IDC_IMAGE_STATUS, status);
}

// The groups from the left, OK and Cancel at the right of the last row.
std::vector<RECT> ImageDialogLayout::ButtonPlaces(int width) const {
  const LONG margin = Scaled(kMargin);
  const LONG right = width - margin;
  const LONG closing = WidthOf(IDOK) + margin + WidthOf(IDCANCEL);
  std::vector<RECT> places;
  RECT place = {margin, margin, margin, margin + rowHeight_};
  for (const int button : kButtons) {
    place.right = place.left + WidthOf(button);
    const LONG needed = button == IDOK ? place.left + closing : place.right;
    if (needed > right && place.left > margin) {
      OffsetRect(&place, margin - place.left, rowHeight_ + margin);
    }
    if (button == IDOK) OffsetRect(&place, std::max(right - closing - place.left, 0L), 0);
    places.push_back(place);
    place.left = place.right + margin;
  }
  return places;
}

}  // namespace zyr
