// Test control of the wait cursor double.
#pragma once

#include <cstddef>

namespace zyr::platform::host {

// How many wait cursors stand now, and how many there ever were.
size_t WaitCursorsStanding();
size_t WaitCursorsShown();

// Sets the number ever shown to 0.
void ResetWaitCursor();

}  // namespace zyr::platform::host
