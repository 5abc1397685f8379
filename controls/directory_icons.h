// How drives and directories look in a tree.
#pragma once

#include <windows.h>

#include "controls/pixel_icon.h"
#include "foundation/support/directory_selection_view.h"

namespace zyr {

// So many pixels wide and high, in colours that go with the system's windows.
Icon DrawDirectoryIcon(DirectoryKind kind, int size);

}  // namespace zyr
