// The system's own headers, as every file here includes them. Sockets come first: <windows.h> would
// bring older ones.
#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#include <winsock2.h>

#include <cstdint>

namespace zyr::platform {

constexpr int64_t kFileTimeUnitsPerSecond = 10'000'000;
constexpr int64_t kFileTimeOf1970 = 116'444'736'000'000'000;

// Seconds since 1970.
inline int64_t SecondsOf(const FILETIME& time) {
  const auto units = static_cast<int64_t>(uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
  const int64_t since1970 = units - kFileTimeOf1970;
  const int64_t seconds = since1970 / kFileTimeUnitsPerSecond;
  return since1970 % kFileTimeUnitsPerSecond < 0 ? seconds - 1 : seconds;
}

// While it stands, this thread's calls fail where the system would otherwise bring up a box and ask
// for a disk to be put into an empty drive.
class NoSystemBoxes {
 public:
  NoSystemBoxes() { SetThreadErrorMode(SEM_FAILCRITICALERRORS, &previous_); }
  ~NoSystemBoxes() { SetThreadErrorMode(previous_, nullptr); }
  NoSystemBoxes(const NoSystemBoxes&) = delete;
  NoSystemBoxes& operator=(const NoSystemBoxes&) = delete;

 private:
  DWORD previous_ = 0;
};

// The module that this code is linked into, be it a DLL or a program.
HMODULE OwnModule();
// The same with a reference for the caller, who frees it. Null only if that fails.
HMODULE ReferenceOwnModule();

}  // namespace zyr::platform
