#include "platform/clock.h"

#include <algorithm>
#include <ctime>

#include "platform/win32/system.h"

namespace zyr::platform {

int64_t Now() {
  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  return SecondsOf(now);
}

TimeOfDay UtcTimeOfDay() {
  SYSTEMTIME now;
  GetSystemTime(&now);
  return {now.wHour, now.wMinute, now.wSecond, now.wMilliseconds};
}

uint64_t Ticks() { return GetTickCount64(); }

void SleepFor(uint32_t milliseconds) { Sleep(std::min<DWORD>(milliseconds, INFINITE - 1)); }

std::string LongDateTimeText(int64_t time) {
  // The C library's own extension: '#' asks for the long date and for hours without a leading zero.
  static const char* const kFormat = "%#x  %#I:%M:%S%p";
  const __time64_t seconds = time;
  std::tm local;
  if (_localtime64_s(&local, &seconds) != 0) return {};
  char text[256];
  return std::string(text, std::strftime(text, sizeof text, kFormat, &local));
}

}  // namespace zyr::platform
