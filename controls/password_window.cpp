#include "controls/password_window.h"

#include <windows.h>

#include <algorithm>
#include <string>

#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "controls/mnemonics.h"
#include "controls/modal_dialog.h"
#include "controls/text_size.h"
#include "resources/resource.h"
#include "settings/password/password_dialog.h"

namespace zyr {
namespace {

constexpr UINT_PTR kSecondsTimer = 1;
constexpr UINT kSecond = 1000;  // milliseconds
constexpr WPARAM kLongestPassword = 200;

// Pixels of a plain screen.
constexpr int kMargin = 12;
constexpr int kGap = 8;
constexpr int kMessageWidth = 380;
constexpr int kFieldWidth = 200;
constexpr int kAroundText = 10;  // above and below it in a button, together
constexpr int kAroundInput = 6;  // in a field, where it stands at the top
constexpr int kBesideCaption = 28;
constexpr int kButtonWidth = 84;
constexpr int kMessageLines = 2;  // there is room for from the first

struct FieldRow {
  int label;
  int field;
};
constexpr FieldRow kRows[] = {{IDC_PASSWORD_LABEL, IDC_PASSWORD},
                              {IDC_REPETITION_LABEL, IDC_REPETITION}};

LONG CaptionWidth(HWND window) { return TextSize(window, WindowText(window)).cx; }

class Win32PasswordDialogView : public PasswordDialogView, private ModalDialog {
 public:
  bool Run(PasswordDialog* dialog, platform::Window owner, bool isNew) override;
  platform::Window window() const override { return hwnd(); }
  void End(bool accepted) override { EndModal(accepted); }

  void SetMessage(const std::string& text) override;
  std::string Password() const override { return WindowText(Control(IDC_PASSWORD)); }
  std::string Repetition() const override { return WindowText(Control(IDC_REPETITION)); }
  void ClearPassword() override;
  void SetOKEnabled(bool enabled) override { EnableWindow(Control(IDOK), enabled); }

 private:
  void Initialise() override;
  INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam) override;

  void PrepareFields();
  void Measure();
  LONG MessageHeight() const;
  void Arrange();
  LONG PlaceRows(LONG top) const;
  LONG PlaceButtons(LONG top) const;
  void Place(int control, const RECT& to) const;
  void Resize(LONG clientHeight) const;

  PasswordDialog* dialog_ = nullptr;
  HWND owner_ = nullptr;
  bool isNew_ = false;
  LONG labelWidth_ = 0;
  LONG textWidth_ = 0;  // between the margins
  LONG lineHeight_ = 0;
  LONG buttonWidth_ = 0;
  LONG messageHeight_ = 0;  // 0 as long as nothing is placed
};

bool Win32PasswordDialogView::Run(PasswordDialog* dialog, platform::Window owner, bool isNew) {
  dialog_ = dialog;
  owner_ = UsableOwner(owner);
  isNew_ = isNew;
  return RunModal(IDD_PASSWORD_DIALOG, owner);
}

// The window grows with the text and does not shrink again: a dialog that jumps is hard to hit.
void Win32PasswordDialogView::SetMessage(const std::string& text) {
  if (hwnd() == nullptr) return;
  SetWindowTextA(Control(IDC_PASSWORD_MESSAGE), text.c_str());
  if (messageHeight_ > 0 && MessageHeight() > messageHeight_) Arrange();
}

void Win32PasswordDialogView::ClearPassword() {
  if (hwnd() == nullptr) return;
  for (const FieldRow& row : kRows) SetWindowTextA(Control(row.field), "");
  MoveFocusTo(Control(IDC_PASSWORD));
}

void Win32PasswordDialogView::Initialise() {
  PrepareFields();
  Measure();
  dialog_->OnInitDialog();
  Arrange();
  CenterAbove(hwnd(), owner_);
  SetFocus(Control(IDC_PASSWORD));
  SetTimer(hwnd(), kSecondsTimer, kSecond, nullptr);
}

// OK and Cancel have the keys Enter and Escape.
void Win32PasswordDialogView::PrepareFields() {
  Mnemonics mnemonics;
  for (const FieldRow& row : kRows) {
    if (row.field == IDC_REPETITION && !isNew_) {
      DestroyWindow(Control(row.label));
      DestroyWindow(Control(row.field));
      continue;
    }
    MarkCaption(Control(row.label), mnemonics);
    SetWindowTextA(Control(row.field), "");  // whatever a phrase file makes of no text
    SendMessageA(Control(row.field), EM_LIMITTEXT, kLongestPassword, 0);
  }
}

void Win32PasswordDialogView::Measure() {
  for (const FieldRow& row : kRows) {
    const HWND label = Control(row.label);
    if (label != nullptr) labelWidth_ = std::max(labelWidth_, CaptionWidth(label));
  }
  buttonWidth_ = Scaled(kButtonWidth);
  for (const int button : {IDOK, IDCANCEL}) {
    buttonWidth_ = std::max(buttonWidth_, CaptionWidth(Control(button)) + Scaled(kBesideCaption));
  }
  lineHeight_ = LineHeight(Control(IDC_PASSWORD_MESSAGE));
  textWidth_ =
      std::max({static_cast<LONG>(Scaled(kMessageWidth)),
                labelWidth_ + Scaled(kGap) + Scaled(kFieldWidth), 2 * buttonWidth_ + Scaled(kGap)});
}

LONG Win32PasswordDialogView::MessageHeight() const {
  const HWND message = Control(IDC_PASSWORD_MESSAGE);
  const LONG needed = WrappedTextHeight(message, WindowText(message), static_cast<int>(textWidth_));
  return std::max(needed, kMessageLines * lineHeight_);
}

void Win32PasswordDialogView::Arrange() {
  messageHeight_ = MessageHeight();
  const LONG left = Scaled(kMargin);
  Place(IDC_PASSWORD_MESSAGE, {left, left, left + textWidth_, left + messageHeight_});
  const LONG belowRows = PlaceRows(left + messageHeight_ + Scaled(kGap));
  Resize(PlaceButtons(belowRows + Scaled(kGap)) + Scaled(kMargin));
}

LONG Win32PasswordDialogView::PlaceRows(LONG top) const {
  const LONG left = Scaled(kMargin);
  const LONG height = lineHeight_ + Scaled(kAroundInput);
  for (const FieldRow& row : kRows) {
    if (Control(row.field) == nullptr) continue;
    Place(row.label, {left, top, left + labelWidth_, top + height});
    Place(row.field, {left + labelWidth_ + Scaled(kGap), top, left + textWidth_, top + height});
    top += height + Scaled(kGap);
  }
  return top;
}

LONG Win32PasswordDialogView::PlaceButtons(LONG top) const {
  const LONG bottom = top + lineHeight_ + Scaled(kAroundText);
  LONG right = Scaled(kMargin) + textWidth_;
  for (const int button : {IDCANCEL, IDOK}) {
    Place(button, {right - buttonWidth_, top, right, bottom});
    right -= buttonWidth_ + Scaled(kGap);
  }
  return bottom;
}

void Win32PasswordDialogView::Place(int control, const RECT& to) const {
  SetWindowPos(Control(control), nullptr, to.left, to.top, to.right - to.left, to.bottom - to.top,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void Win32PasswordDialogView::Resize(LONG clientHeight) const {
  const SIZE outer = WithFrameOnScreen(hwnd(), {textWidth_ + 2 * Scaled(kMargin), clientHeight});
  ResizeWindow(hwnd(), outer.cx, outer.cy);
}

INT_PTR Win32PasswordDialogView::Handle(UINT message, WPARAM wParam, LPARAM) {
  switch (message) {
    case WM_TIMER:
      if (wParam != kSecondsTimer) return FALSE;
      dialog_->OnTimer();
      return TRUE;
    case WM_COMMAND:
      if (LOWORD(wParam) == IDOK) dialog_->OnOK();
      if (LOWORD(wParam) == IDCANCEL) End(false);
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace

std::unique_ptr<PasswordDialogView> MakeWin32PasswordDialogView() {
  return std::make_unique<Win32PasswordDialogView>();
}

}  // namespace zyr
