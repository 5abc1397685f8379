// The module that this code is part of, as programs load it, unload it and end.
#pragma once

#include "platform/messages.h"

namespace zyr::platform {

// Whether the module's objects are being destroyed because the process ends. All other threads are
// dead then, perhaps with locks in their hands: whatever waits or locks now may do so for ever.
bool ProcessIsEnding();

// What follows keeps the module loaded as long as code of it can still be reached from the
// application's thread, whatever the program does with its own reference. That thread only.

// Stands for the time of a call through the module's entry. The caller keeps the module loaded for
// so long.
class EntryVisit {
 public:
  EntryVisit();
  ~EntryVisit();
  EntryVisit(const EntryVisit&) = delete;
  EntryVisit& operator=(const EntryVisit&) = delete;
};

// Stands for the time of a call of a window procedure from which others run: a message box, a
// notification. Not while the module is being unloaded.
class WindowVisit {
 public:
  WindowVisit();
  ~WindowVisit();
  WindowVisit(const WindowVisit&) = delete;
  WindowVisit& operator=(const WindowVisit&) = delete;
};

// Stands for the time of a message loop that the module runs itself. The program's own code comes
// by there, and may let go of the module in the middle of a call. Any thread: those of the module
// need none and are left alone.
class LoopVisit {
 public:
  LoopVisit();
  ~LoopVisit();
  LoopVisit(const LoopVisit&) = delete;
  LoopVisit& operator=(const LoopVisit&) = delete;

 private:
  [[maybe_unused]] bool counts_;
};

// The window has procedures in this module. To be called during an EntryVisit; the next window
// takes the place of this one, which must be gone by then.
void StayLoadedWith(Window window);

}  // namespace zyr::platform
