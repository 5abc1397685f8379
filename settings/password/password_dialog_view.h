// What the dialog for the hardware password shows.
#pragma once

#include <cstdint>
#include <string>

#include "platform/messages.h"

namespace zyr {

class PasswordDialog;

// Calls back into its dialog: OnInitDialog before the window is seen, OnTimer every second from
// then on, OnOK. Texts come translated. What is typed is shown as dots. User-interface thread only.
// Once the window is gone, operations do nothing.
class PasswordDialogView {
 public:
  virtual ~PasswordDialogView() = default;

  // Modal: true for End(true). False, too, if there can be no window. With `isNew` there is a
  // second field, for the password once more.
  virtual bool Run(PasswordDialog* dialog, platform::Window owner, bool isNew) = 0;
  virtual platform::Window window() const = 0;
  virtual void End(bool accepted) = 0;

  virtual void SetMessage(const std::string& text) = 0;
  virtual std::string Password() const = 0;
  virtual std::string Repetition() const = 0;  // empty without the second field
  // Empties the fields; the first one gets the keyboard.
  virtual void ClearPassword() = 0;
  virtual void SetOKEnabled(bool enabled) = 0;
};

}  // namespace zyr
