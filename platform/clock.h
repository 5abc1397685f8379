// Time and waiting.
#pragma once

#include <cstdint>
#include <string>

namespace zyr::platform {

// Seconds since 1970, UTC.
int64_t Now();

struct TimeOfDay {
  uint32_t hour = 0;
  uint32_t minute = 0;
  uint32_t second = 0;
  uint32_t millisecond = 0;
};
TimeOfDay UtcTimeOfDay();

// Milliseconds of a clock that only runs forward; its start has no meaning.
uint64_t Ticks();
void SleepFor(uint32_t milliseconds);

// `time` (seconds since 1970) in local time: the locale's long date, two blanks, the 12-hour time
// without a leading zero, AM or PM right behind it: "Saturday, November 21, 2026  1:05:09PM".
std::string LongDateTimeText(int64_t time);

}  // namespace zyr::platform
