// The image dialog as a window.
#pragma once

#include <memory>

#include "acquire/image_dialog/image_dialog_view.h"

namespace zyr {

// A modal dialog with this module's resources, for one Run.
std::unique_ptr<ImageDialogView> MakeWin32ImageDialogView();

}  // namespace zyr
