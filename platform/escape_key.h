// The Escape key, by which the user ends a long operation. Any thread.
#pragma once

namespace zyr::platform {

// Forgets presses so far.
void ClearEscapeKey();
// True if Escape went down since the last call of either function.
bool EscapeKeyWasPressed();

// Takes the keyboard messages out of the calling thread's queue; true if one of them is Escape
// going down or up. The others are put back. Cheap enough to be called for every row of an image:
// it does not look into the queue each time, so a press is noticed some milliseconds later.
bool TakeEscapeMessage();

}  // namespace zyr::platform
