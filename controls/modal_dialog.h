// A modal dialog of this module.
#pragma once

#include <windows.h>

#include "platform/messages.h"

namespace zyr {

// The application's messages go on while it stands; its owner may be destroyed behind it. What an
// event throws ends there: the dialog stays as it was. User-interface thread only.
class ModalDialog {
 public:
  ModalDialog() = default;
  ModalDialog(const ModalDialog&) = delete;
  ModalDialog& operator=(const ModalDialog&) = delete;

 protected:
  virtual ~ModalDialog() = default;

  // With a template of this module's, in the message font and translated. True for EndModal(true);
  // false, too, if the owner has gone or there can be no window. An object is run once.
  bool RunModal(WORD dialogTemplate, platform::Window owner);
  void EndModal(bool accepted);

  // Null before and after the window.
  HWND hwnd() const { return window_; }
  HWND Control(int id) const { return GetDlgItem(window_, id); }

  // Ahead of all others, before the window is seen: gives one of the controls the keyboard.
  virtual void Initialise() = 0;
  virtual INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam) = 0;
  // The controls are still there, and go next.
  virtual void OnGone() {}

 private:
  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  INT_PTR HandleAny(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void Start(HWND window);
  void OnDestroy();

  HWND window_ = nullptr;
};

}  // namespace zyr
