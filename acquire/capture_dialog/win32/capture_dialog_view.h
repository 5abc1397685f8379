// The capture dialog as a window.
#pragma once

#include "acquire/capture_dialog/capture_dialog_view.h"

namespace zyr {

// Views that are modeless dialogs with this module's resources.
CaptureDialogViewFactory Win32CaptureDialogViews();

}  // namespace zyr
