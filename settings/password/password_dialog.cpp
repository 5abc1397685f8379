#include "settings/password/password_dialog.h"

#include <string>

#include "foundation/support/error.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/prompt.h"
#include "settings/password/hardware_password.h"
#include "settings/password/wipe.h"
#include "settings/store.h"

namespace zyr {
namespace {

std::string Question() {
  return GetPhrase("Enter the password that protects the hardware settings.");
}

}  // namespace

bool PasswordDialog::Run(platform::Window owner) {
  isNew_ = !IsHardwarePasswordSet();
  waits_ = false;
  if (isNew_ && !CanWriteSettings()) {
    platform::ShowPrompt(
        owner,
        GetPhrase("The hardware settings are protected by a password, and none has been set yet. "
                  "Ask somebody who may change the settings of this computer to set one."),
        GetPhrase("ZYR Hardware Settings"), platform::PromptKind::kWarning);
    return false;
  }
  return view_.Run(this, owner, isNew_);
}

void PasswordDialog::OnInitDialog() {
  if (isNew_) {
    view_.SetMessage(FormatText(
        GetFormatPhrase("The hardware settings have no password yet. Choose one of at least %lu "
                        "characters, and enter it twice.")
            .c_str(),
        Lu(kShortestHardwarePassword)));
  } else if (!ShowWait()) {
    view_.SetMessage(Question());
  }
}

void PasswordDialog::OnTimer() {
  if (!waits_ || ShowWait()) return;
  waits_ = false;
  view_.SetMessage(Question());
  view_.SetOKEnabled(true);
}

void PasswordDialog::OnOK() {
  if (isNew_) {
    SetNewPassword();
  } else {
    CheckPassword();
  }
}

// An empty field is no try: whoever presses Enter too early need not wait for it.
void PasswordDialog::CheckPassword() {
  if (ShowWait()) return;
  std::string password = view_.Password();
  const WipedAtEnd wiped(password);
  if (password.empty()) return view_.SetMessage(Question());
  const bool right = CheckHardwarePassword(password);
  view_.ClearPassword();
  if (right) return view_.End(true);
  ShowWait();
}

void PasswordDialog::SetNewPassword() {
  std::string password = view_.Password();
  std::string repetition = view_.Repetition();
  const WipedAtEnd wiped(password);
  const WipedAtEnd alsoWiped(repetition);
  // The error for one that is too short tells more than that the repetition differs.
  if (password != repetition && password.size() >= kShortestHardwarePassword) {
    view_.SetMessage(GetPhrase("The two passwords differ. Enter the same password twice."));
    return view_.ClearPassword();
  }
  const bool stored = SetHardwarePassword(password);
  if (!stored) view_.SetMessage(LastErrorText());
  view_.ClearPassword();
  if (stored) view_.End(true);
}

bool PasswordDialog::ShowWait() {
  const uint32_t seconds = SecondsUntilNextTry();
  if (seconds == 0) return false;
  waits_ = true;
  view_.SetOKEnabled(false);
  view_.SetMessage(
      FormatText(GetFormatPhrase("The password was wrong. Seconds until the next try: %lu").c_str(),
                 Lu(seconds)));
  return true;
}

}  // namespace zyr
