// Test control of the threads double: threads that really run, or that wait for the test to run
// them on its own thread.
#pragma once

#include <cstddef>

#include "platform/thread.h"

namespace zyr::platform::host {

// Threads that are started from now on wait to be run.
void HoldThreads(bool hold);
// Runs the procedure of the thread that has waited longest, to its end; false if none waits.
bool RunHeldThread();
size_t HeldThreads();

// Since the last reset.
size_t StartedThreads();
size_t TimeCriticalThreads();

// The next start fails.
void FailNextThread();

// Waits for the threads that run, and forgets those that are held.
void ResetThreads();

}  // namespace zyr::platform::host
