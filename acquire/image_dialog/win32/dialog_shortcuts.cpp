#include "acquire/image_dialog/win32/dialog_shortcuts.h"

namespace zyr {

void DialogShortcuts::Attach(HWND dialog, std::span<const ACCEL> keys) {
  dialog_ = dialog;
  keys_ = CreateAcceleratorTableA(const_cast<ACCEL*>(keys.data()), static_cast<int>(keys.size()));
  previous_ = newest_;
  newest_ = this;
  hook_ = SetWindowsHookExA(WH_MSGFILTER, Filter, nullptr, GetCurrentThreadId());
}

void DialogShortcuts::Detach() {
  if (dialog_ == nullptr) return;
  if (hook_ != nullptr) UnhookWindowsHookEx(hook_);
  if (keys_ != nullptr) DestroyAcceleratorTable(keys_);
  newest_ = previous_;
  dialog_ = nullptr;
}

LRESULT CALLBACK DialogShortcuts::Filter(int code, WPARAM wParam, LPARAM lParam) {
  auto* message = reinterpret_cast<MSG*>(lParam);
  if (code == MSGF_DIALOGBOX && newest_ != nullptr && newest_->Translate(*message)) return 1;
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

bool DialogShortcuts::Translate(MSG& message) const {
  const bool isHere = message.hwnd == dialog_ || IsChild(dialog_, message.hwnd);
  return isHere && keys_ != nullptr && TranslateAcceleratorA(dialog_, keys_, &message) != 0;
}

}  // namespace zyr
