#include "controls/modal_dialog.h"

#include <cstdint>
#include <vector>

#include "controls/activation_context.h"
#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "platform/own_module.h"
#include "platform/resources.h"

namespace zyr {

bool ModalDialog::RunModal(WORD dialogTemplate, platform::Window owner) {
  const platform::LoopVisit visit;
  const ActivationContext look;
  const std::vector<uint8_t> bytes = TemplateWithMessageFont(dialogTemplate);
  if (bytes.empty()) return false;
  const INT_PTR result =
      DialogBoxIndirectParamA(static_cast<HINSTANCE>(platform::OwnResources()),
                              reinterpret_cast<const DLGTEMPLATE*>(bytes.data()),
                              UsableOwner(owner), Procedure, reinterpret_cast<LPARAM>(this));
  return result == IDOK;
}

void ModalDialog::EndModal(bool accepted) {
  if (window_ != nullptr) EndDialog(window_, accepted ? IDOK : IDCANCEL);
}

INT_PTR CALLBACK ModalDialog::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const platform::WindowVisit visit;
  if (message == WM_INITDIALOG) SetWindowLongPtrA(window, DWLP_USER, lParam);
  auto* dialog = reinterpret_cast<ModalDialog*>(GetWindowLongPtrA(window, DWLP_USER));
  if (dialog == nullptr) return FALSE;
  try {
    return dialog->HandleAny(window, message, wParam, lParam);
  } catch (...) {  // the loop that called this knows no exceptions
    if (message == WM_INITDIALOG) dialog->EndModal(false);
    return FALSE;
  }
}

INT_PTR ModalDialog::HandleAny(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      Start(window);
      return FALSE;  // the keyboard is where it should be
    case WM_DESTROY:
      OnDestroy();
      return FALSE;
    default:
      return Handle(message, wParam, lParam);
  }
}

void ModalDialog::Start(HWND window) {
  window_ = window;
  TranslateCaptions(window);
  Initialise();
}

// The dialog's own loop sleeps through a destruction by another message's handler.
void ModalDialog::OnDestroy() {
  OnGone();
  SetWindowLongPtrA(window_, DWLP_USER, 0);
  window_ = nullptr;
  PostThreadMessageA(GetCurrentThreadId(), WM_NULL, 0, 0);
}

}  // namespace zyr
