// The Escape key, by which the user ends a long operation. Any thread.
#pragma once

namespace zyr::platform {

// Forgets presses so far.
void ClearEscapeKey();
// True if Escape went down since the last call of either function.
bool EscapeKeyWasPressed();

enum class EscapeAnswer {
  kNo,
  kYes,
  kTooSoon,  // the clock stands where it stood at the question before: nothing was looked at
};

// Takes the keyboard messages out of the calling thread's queue; yes if one of them is Escape
// going down or up. The others are put back. It does not look into the queue each time, so a press
// is noticed some milliseconds later.
EscapeAnswer TakeEscapeMessage();

}  // namespace zyr::platform
