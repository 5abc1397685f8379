// PasswordDialog: asks for the hardware password, or for a new one if there is none yet.
#pragma once

#include "settings/password/password_dialog_view.h"

namespace zyr {

// User-interface thread only.
class PasswordDialog {
 public:
  explicit PasswordDialog(PasswordDialogView& view) : view_(view) {}

  // Modal. True if the user knows the password or has set the first one. Without a password only
  // who may write the settings is asked for one; anybody else is told so. The owner may be gone
  // afterwards.
  bool Run(platform::Window owner);

  // Events of the view.
  void OnInitDialog();
  void OnTimer();
  void OnOK();

 private:
  void CheckPassword();
  void SetNewPassword();
  bool ShowWait();  // false if there is none

  PasswordDialogView& view_;
  bool isNew_ = false;
  bool waits_ = false;
};

}  // namespace zyr
