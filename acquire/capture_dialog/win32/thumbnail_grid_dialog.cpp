#include "acquire/capture_dialog/win32/thumbnail_grid_dialog.h"

#include <algorithm>
#include <string>
#include <vector>

#include "controls/activation_context.h"
#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "controls/mnemonics.h"
#include "platform/resources.h"
#include "resources/resource.h"

namespace zyr {
namespace {

// A list to choose from takes no wrong number.
void FillNumbers(HWND list, uint32_t most, uint32_t present) {
  for (uint32_t number = 1; number <= most; ++number) {
    SendMessageA(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(std::to_string(number).c_str()));
  }
  SendMessageA(list, CB_SETCURSEL, std::clamp(present, 1u, most) - 1, 0);
}

uint32_t ChosenNumber(HWND list) {
  return static_cast<uint32_t>(SendMessageA(list, CB_GETCURSEL, 0, 0)) + 1;
}

struct Field {
  int label;
  int list;
};
constexpr Field kFields[] = {{IDC_THUMBNAIL_ROWS_LABEL, IDC_THUMBNAIL_ROWS},
                             {IDC_THUMBNAIL_COLUMNS_LABEL, IDC_THUMBNAIL_COLUMNS}};

// OK and Cancel have the keys Enter and Escape.
void TranslateTexts(HWND dialog) {
  TranslateCaptions(dialog);
  Mnemonics mnemonics;
  for (const Field& field : kFields) MarkCaption(GetDlgItem(dialog, field.label), mnemonics);
}

// A list is as high as its font asks for, whatever the template says.
void AlignLabels(HWND dialog) {
  for (const Field& field : kFields) {
    const HWND label = GetDlgItem(dialog, field.label);
    RECT place;
    RECT list;
    GetWindowRect(label, &place);
    GetWindowRect(GetDlgItem(dialog, field.list), &list);
    place.top = list.top;
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
    SetWindowPos(label, nullptr, place.left, place.top, place.right - place.left,
                 list.bottom - list.top, SWP_NOZORDER | SWP_NOACTIVATE);
  }
}

void Initialise(HWND dialog, const ThumbnailGridSize& present) {
  FillNumbers(GetDlgItem(dialog, IDC_THUMBNAIL_ROWS), kMostThumbnailRows, present.rows);
  FillNumbers(GetDlgItem(dialog, IDC_THUMBNAIL_COLUMNS), kMostThumbnailColumns, present.columns);
  TranslateTexts(dialog);
  AlignLabels(dialog);
  CenterAbove(dialog, GetWindow(dialog, GW_OWNER));
}

void OnCommand(HWND dialog, WORD command) {
  if (command == IDOK) {
    auto* size = reinterpret_cast<ThumbnailGridSize*>(GetWindowLongPtrA(dialog, DWLP_USER));
    *size = {ChosenNumber(GetDlgItem(dialog, IDC_THUMBNAIL_ROWS)),
             ChosenNumber(GetDlgItem(dialog, IDC_THUMBNAIL_COLUMNS))};
  }
  if (command == IDOK || command == IDCANCEL) EndDialog(dialog, command);
}

INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  try {
    if (message == WM_INITDIALOG) {
      SetWindowLongPtrA(dialog, DWLP_USER, lParam);
      Initialise(dialog, *reinterpret_cast<const ThumbnailGridSize*>(lParam));
      return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    OnCommand(dialog, LOWORD(wParam));
    return TRUE;
  } catch (...) {  // the loop of a modal dialog knows no exceptions
    return FALSE;
  }
}

}  // namespace

std::optional<ThumbnailGridSize> AskForThumbnailGridAbove(HWND owner, ThumbnailGridSize present) {
  const ActivationContext look;
  const std::vector<uint8_t> bytes = TemplateWithMessageFont(IDD_THUMBNAIL_GRID);
  if (bytes.empty()) return std::nullopt;
  ThumbnailGridSize chosen = present;
  const INT_PTR result =
      DialogBoxIndirectParamA(static_cast<HINSTANCE>(platform::OwnResources()),
                              reinterpret_cast<const DLGTEMPLATE*>(bytes.data()), owner, Procedure,
                              reinterpret_cast<LPARAM>(&chosen));
  if (result != IDOK) return std::nullopt;
  return chosen;
}

}  // namespace zyr
