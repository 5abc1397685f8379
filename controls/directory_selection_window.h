// The directory selection dialog as a window.
#pragma once

#include <memory>

#include "foundation/support/directory_selection_view.h"

namespace zyr {

// A modal dialog with this module's resources, for one Run.
std::unique_ptr<DirectorySelectionView> MakeWin32DirectorySelectionView();

}  // namespace zyr
