// Test control of the window placement double.
#pragma once

#include "platform/window_placement.h"

namespace zyr::platform::host {

// Where a window stands. Windows that a test never placed have no placement.
void SetPlacement(Window window, const PlacementBytes& placement);
void SetMinimised(Window window, bool minimised);
void SetMaximised(Window window, bool maximised);
// 1024 x 768 at first.
void SetScreen(const ScreenArea& screen);
// How often a placement was applied.
int AppliedPlacements();

void ResetWindowPlacements();

}  // namespace zyr::platform::host
