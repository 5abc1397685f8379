#include "acquire/image_dialog/win32/image_dialog_buttons.h"

// After the system's header.
#include <commctrl.h>

#include <iterator>

#include "controls/dialog_font.h"
#include "controls/mnemonics.h"
#include "controls/paint.h"
#include "controls/vector_icon.h"
#include "foundation/support/phrase_lookup.h"
#include "resources/resource.h"

namespace zyr {
namespace {

// In the order of the groups.
constexpr ButtonIcon kGroupIcons[] = {ButtonIcon::kOptions, ButtonIcon::kFlip, ButtonIcon::kRotate,
                                      ButtonIcon::kEnhance, ButtonIcon::kUndo};

// Pixels of a plain screen.
constexpr int kArrowHeight = 4;  // half as wide again and more: each row is two pixels wider
constexpr int kAroundArrow = 9;

// Points down, right of the middle of a button.
void DrawMenuArrow(HDC dc, const RECT& button, COLORREF color) {
  const int height = Scaled(kArrowHeight);
  const LONG middle = button.right - Scaled(kAroundArrow) - height;
  const LONG top = (button.top + button.bottom - height) / 2;
  for (int row = 0; row < height; ++row) {
    const int half = height - 1 - row;
    FillArea(dc, {middle - half, top + row, middle + half + 1, top + row + 1}, color);
  }
}

}  // namespace

int MenuArrowWidth() { return 2 * Scaled(kArrowHeight) + Scaled(kAroundArrow); }

void ImageDialogButtons::Attach(HWND dialog) {
  dialog_ = dialog;
  tips_.Attach(dialog);
  Mnemonics mnemonics;
  const std::span<const OperationGroup> groups = OperationTree();
  for (size_t i = 0; i < groups.size() && i < std::size(kGroupIcons); ++i) {
    const HWND button = GetDlgItem(dialog, IDC_IMAGE_GROUP + static_cast<int>(i));
    SetMarkedCaption(button, GetPhrase(groups[i].button), mnemonics);
    icons_.Set(button, kGroupIcons[i]);
    tips_.Set(button, GetPhrase(groups[i].description));
  }
  icons_.Set(GetDlgItem(dialog, IDOK), ButtonIcon::kAccept);
  icons_.Set(GetDlgItem(dialog, IDCANCEL), ButtonIcon::kCancel);
}

const OperationGroup* ImageDialogButtons::GroupOf(int control) {
  const std::span<const OperationGroup> groups = OperationTree();
  const int index = control - IDC_IMAGE_GROUP;
  return index >= 0 && index < static_cast<int>(groups.size()) ? &groups[static_cast<size_t>(index)]
                                                               : nullptr;
}

std::optional<LRESULT> ImageDialogButtons::OnNotify(const NMHDR& notification) const {
  if (notification.code != NM_CUSTOMDRAW ||
      GroupOf(static_cast<int>(notification.idFrom)) == nullptr) {
    return std::nullopt;
  }
  const auto& draw = reinterpret_cast<const NMCUSTOMDRAW&>(notification);
  if (draw.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYPOSTPAINT;
  if (draw.dwDrawStage == CDDS_POSTPAINT) {
    RECT button;
    GetClientRect(notification.hwndFrom, &button);
    DrawMenuArrow(draw.hdc, button, GetSysColor(COLOR_BTNTEXT));
  }
  return CDRF_DODEFAULT;
}

void ImageDialogButtons::SetListOpen(bool open) {
  listOpen_ = open;
  const HWND handle = GetDlgItem(dialog_, IDC_IMAGE_LIST_HANDLE);
  tips_.Set(handle, GetPhrase(open ? PhraseKey("Hides the list of operations.")
                                   : PhraseKey("Shows the list of "
                                               "operations.")));
  InvalidateRect(handle, nullptr, FALSE);
}

// An arrow head in the direction in which the list's edge would move.
void ImageDialogButtons::DrawHandle(const DRAWITEMSTRUCT& draw) const {
  constexpr double kSide = 10;
  const double tip = listOpen_ ? 3.5 : 6.5;
  const double ends = kSide - tip;
  const IconStroke strokes[] = {{{ends, 2}, {tip, 5}, 0.8}, {{tip, 5}, {ends, 8}, 0.8}};
  const COLORREF face = GetSysColor(COLOR_3DFACE);
  const COLORREF surface =
      (draw.itemState & ODS_SELECTED) != 0 ? Mix(face, GetSysColor(COLOR_BTNTEXT), 20) : face;
  const IconLayer layer = {GetSysColor(COLOR_BTNTEXT), strokes};
  const RECT& area = draw.rcItem;
  const int size = static_cast<int>(area.right - area.left);
  FillArea(draw.hDC, area, surface);
  DrawIconPixels(draw.hDC, static_cast<int>(area.left),
                 static_cast<int>(area.top + area.bottom - size) / 2, size,
                 RenderIcon({&layer, 1}, size, {{0, 0}, size / kSide}, surface));
  FrameArea(draw.hDC, area, 1,
            GetSysColor((draw.itemState & ODS_FOCUS) != 0 ? COLOR_HIGHLIGHT : COLOR_3DLIGHT));
}

}  // namespace zyr
