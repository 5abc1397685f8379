#include "acquire/capture_dialog/win32/capture_dialog_buttons.h"

#include "acquire/capture_dialog/capture_dialog_view.h"
#include "controls/dialog_window.h"

namespace zyr {
namespace {

struct Picture {
  uint32_t command;
  ButtonIcon icon;
};
// In the order in which mnemonics are dealt out.
constexpr Picture kPictures[] = {
    {kCommandAcquireImage, ButtonIcon::kAcquire},
    {kCommandAcquireSeries, ButtonIcon::kAcquireSeries},
    {kCommandSelectSensor, ButtonIcon::kSelectSensor},
    {kCommandDeleteSelected, ButtonIcon::kDeleteSelected},
    {kCommandDeleteAll, ButtonIcon::kDeleteAll},
    {kCommandOptions, ButtonIcon::kOptions},
    {kCommandThumbnails, ButtonIcon::kThumbnails},
    {kCommandHelp, ButtonIcon::kHelp},
    {kCommandManualTrigger, ButtonIcon::kManualTrigger},
    {kCommandReturnImages, ButtonIcon::kReturn},
    {kCommandCancel, ButtonIcon::kCancel},
};

}  // namespace

void CaptureDialogButtons::Attach(HWND dialog) {
  dialog_ = dialog;
  tips_.Attach(dialog);
  for (const Picture& picture : kPictures) {
    icons_.Set(Button(picture.command), picture.icon);
    MarkCaption(Button(picture.command), mnemonics_);
  }
}

void CaptureDialogButtons::SetEnabled(uint32_t command, bool enabled, HWND refuge) {
  const HWND button = Button(command);
  if (!enabled) LeaveIfFocused(button, refuge);
  EnableWindow(button, enabled);
  if (enabled) ReturnTo(button);
}

void CaptureDialogButtons::SetVisible(uint32_t command, bool visible, HWND refuge) {
  const HWND button = Button(command);
  if (!visible) LeaveIfFocused(button, refuge);
  ShowWindow(button, visible ? SW_SHOWNA : SW_HIDE);
}

void CaptureDialogButtons::FollowFocus(HWND before) {
  if (left_ != nullptr && before == refuge_) refuge_ = GetFocus();
}

// The command Cancel keeps its letter where the new caption has it too.
void CaptureDialogButtons::SetCaption(uint32_t command, const std::string& caption) {
  SetMarkedCaption(Button(command), caption, mnemonics_);
}

void CaptureDialogButtons::SetTip(uint32_t command, const std::string& tip) {
  tips_.Set(Button(command), tip);
}

void CaptureDialogButtons::SetStopIcon(bool stop) {
  icons_.Set(Button(kCommandCancel), stop ? ButtonIcon::kStop : ButtonIcon::kCancel);
}

bool CaptureDialogButtons::IsUsable(uint32_t command) const {
  const HWND button = Button(command);
  return IsWindowEnabled(button) && (GetWindowLongPtrA(button, GWL_STYLE) & WS_VISIBLE) != 0;
}

void CaptureDialogButtons::LeaveIfFocused(HWND button, HWND refuge) {
  if (GetFocus() != button) return;
  left_ = button;
  refuge_ = refuge;
  MoveFocusTo(refuge);
}

void CaptureDialogButtons::ReturnTo(HWND button) {
  if (button != left_) return;
  left_ = nullptr;
  if (GetFocus() == refuge_) MoveFocusTo(button);
}

}  // namespace zyr
