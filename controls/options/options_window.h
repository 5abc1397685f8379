// The options dialog's Win32 view.
#pragma once

#include <memory>

#include "settings/pages/options_dialog_view.h"

namespace zyr {

// How its controls are numbered: resources/resource.h, and for those of pages
// controls/options/page_frame.h.
std::unique_ptr<OptionsDialogView> MakeWin32OptionsDialogView();

}  // namespace zyr
