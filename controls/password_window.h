// The dialog for the hardware password as a window.
#pragma once

#include <memory>

#include "settings/password/password_dialog_view.h"

namespace zyr {

// A modal dialog with this module's resources, for one Run.
std::unique_ptr<PasswordDialogView> MakeWin32PasswordDialogView();

}  // namespace zyr
