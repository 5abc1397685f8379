// Test control of the clock double: real time, or a time that moves only when a test steps it or
// the code under test sleeps.
#pragma once

#include <cstdint>

namespace zyr::platform::host {

// Stops the clock at `time` (seconds since 1970, UTC).
void SetClock(int64_t time);
// Steps a stopped clock; a running one is stopped first.
void AdvanceClock(uint64_t milliseconds);
// How long the code under test has slept on a stopped clock, in milliseconds.
uint64_t TimeSlept();
// Lets real time run again.
void ResetClock();

}  // namespace zyr::platform::host
