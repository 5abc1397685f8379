// The dialog for gamma, brightness and contrast as a window.
#pragma once

#include <memory>

#include "acquire/image_dialog/gamma_dialog_view.h"

namespace zyr {

// A modal dialog with this module's resources, for one Run.
std::unique_ptr<GammaDialogView> MakeWin32GammaDialogView();

}  // namespace zyr
