#include "acquire/capture_dialog/win32/capture_dialog_layout.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "controls/icon_button.h"
#include "controls/text_size.h"
#include "resources/resource.h"

namespace zyr {
namespace {

enum class Gap { kNone, kNear, kGroup, kRest };  // ahead of a button

struct ColumnButton {
  int control;
  Gap ahead;
};
constexpr ColumnButton kColumn[] = {
    {ID_ACQUIRE_IMAGE, Gap::kNone},  {ID_ACQUIRE_SERIES, Gap::kNear},
    {ID_SELECT_SENSOR, Gap::kNear},  {ID_DELETE_SELECTED, Gap::kGroup},
    {ID_DELETE_ALL, Gap::kNear},     {ID_OPTIONS, Gap::kGroup},
    {ID_THUMBNAILS, Gap::kNear},     {ID_HELP, Gap::kNear},
    {ID_MANUAL_TRIGGER, Gap::kRest}, {ID_RETURN_IMAGES, Gap::kGroup},
    {ID_CANCEL, Gap::kNear},
};
constexpr int kButtons = static_cast<int>(std::size(kColumn));
constexpr int kPanels = 3;

// Dialog units.
constexpr SIZE kMargin = {8, 8};
constexpr SIZE kButton = {104, 18};
constexpr SIZE kGaps = {12, 3};  // between groups, within one
constexpr SIZE kLeastPanel = {170, 100};

// Pixels of a plain screen.
constexpr int kAroundIcon = 34;  // what is left free beside icon and caption
constexpr int kTightAround = 6;  // above and below caption and icon together
constexpr int kTightNearGap = 2;
constexpr int kTightGroupGap = 6;

SIZE InPixels(HWND dialog, SIZE dialogUnits) {
  RECT area = {0, 0, dialogUnits.cx, dialogUnits.cy};
  MapDialogRect(dialog, &area);
  return {area.right, area.bottom};
}

// What the window has around its client area.
SIZE FrameOf(HWND dialog) {
  RECT outer;
  RECT client;
  GetWindowRect(dialog, &outer);
  GetClientRect(dialog, &client);
  return {outer.right - outer.left - client.right, outer.bottom - outer.top - client.bottom};
}

SIZE LargestCaption(HWND dialog) {
  SIZE largest = {};
  for (const ColumnButton& button : kColumn) {
    const SIZE size = TextSize(dialog, WindowText(GetDlgItem(dialog, button.control)));
    largest = {std::max(largest.cx, size.cx), std::max(largest.cy, size.cy)};
  }
  return largest;
}

}  // namespace

CaptureDialogLayout::CaptureDialogLayout(HWND dialog) : dialog_(dialog) { Measure(); }

void CaptureDialogLayout::Measure() {
  const SIZE caption = LargestCaption(dialog_);
  const SIZE button = InPixels(dialog_, kButton);
  const SIZE gaps = InPixels(dialog_, {0, kGaps.cx});
  margin_ = static_cast<int>(InPixels(dialog_, kMargin).cy);
  const int icon = ButtonIconSize(static_cast<int>(caption.cy));
  columnWidth_ = static_cast<int>(std::max(button.cx, caption.cx + icon + Scaled(kAroundIcon)));
  const int tightHeight = icon + Scaled(kTightAround);
  tight_ = {tightHeight, Scaled(kTightNearGap), Scaled(kTightGroupGap)};
  roomy_ = {std::max(static_cast<int>(button.cy), tightHeight),
            std::max(static_cast<int>(InPixels(dialog_, {0, kGaps.cy}).cy), tight_.nearGap),
            std::max(static_cast<int>(gaps.cy), tight_.groupGap)};
}

POINT CaptureDialogLayout::LeastSize() const {
  const SIZE frame = FrameOf(dialog_);
  const SIZE panel = InPixels(dialog_, kLeastPanel);
  const int height = std::max(static_cast<int>(panel.cy), ColumnHeight(tight_));
  return {frame.cx + panel.cx + columnWidth_ + 3 * margin_, frame.cy + height + 2 * margin_};
}

void CaptureDialogLayout::Apply(bool split) const {
  RECT client;
  GetClientRect(dialog_, &client);
  InflateRect(&client, -margin_, -margin_);
  RECT column = client;
  column.left = column.right - columnWidth_;
  RECT area = client;
  area.right = column.left - margin_;
  // Copied, what a button shows would be that of the one which was in its place.
  ControlMoves moves(dialog_, kButtons + kPanels, SWP_NOCOPYBITS);
  PlaceButtons(moves, column);
  PlacePanels(moves, area, split);
}

int CaptureDialogLayout::ColumnHeight(const Spacing& spacing) const {
  int height = kButtons * spacing.buttonHeight;
  for (const ColumnButton& button : kColumn) {
    if (button.ahead == Gap::kNone) continue;
    height += button.ahead == Gap::kNear ? spacing.nearGap : spacing.groupGap;
  }
  return height;
}

// Between tight and roomy by what height there is.
CaptureDialogLayout::Spacing CaptureDialogLayout::SpacingFor(int clientHeight) const {
  const int tight = ColumnHeight(tight_);
  const int roomy = ColumnHeight(roomy_);
  if (clientHeight >= roomy) return roomy_;
  if (clientHeight <= tight) return tight_;
  const auto between = [&](int least, int most) {
    return least + (most - least) * (clientHeight - tight) / (roomy - tight);
  };
  return {between(tight_.buttonHeight, roomy_.buttonHeight),
          between(tight_.nearGap, roomy_.nearGap), between(tight_.groupGap, roomy_.groupGap)};
}

void CaptureDialogLayout::PlaceButtons(ControlMoves& moves, const RECT& column) const {
  const int height = column.bottom - column.top;
  const Spacing spacing = SpacingFor(height);
  const int spare = std::max(height - ColumnHeight(spacing), 0);
  int top = column.top;
  for (const ColumnButton& button : kColumn) {
    if (button.ahead == Gap::kNear) top += spacing.nearGap;
    if (button.ahead == Gap::kGroup) top += spacing.groupGap;
    if (button.ahead == Gap::kRest) top += spacing.groupGap + spare;
    moves.Move(button.control, {column.left, top, column.right, top + spacing.buttonHeight});
    top += spacing.buttonHeight;
  }
}

// The thumbnails get three fifths: above the status lines, or to their left where there is width.
void CaptureDialogLayout::PlacePanels(ControlMoves& moves, const RECT& area, bool split) const {
  RECT thumbnails = area;
  RECT rest = area;
  const LONG width = area.right - area.left;
  const LONG height = area.bottom - area.top;
  if (split && width > height * 3 / 2) {
    thumbnails.right = area.left + (width - margin_) * 3 / 5;
    rest.left = thumbnails.right + margin_;
  } else if (split) {
    thumbnails.bottom = area.top + (height - margin_) * 3 / 5;
    rest.top = thumbnails.bottom + margin_;
  }
  moves.Move(IDC_THUMBNAILS, thumbnails);
  moves.Move(IDC_STATUS_PANEL, rest);
  moves.Move(IDC_EXPOSURE_PANEL, rest);
}

}  // namespace zyr
