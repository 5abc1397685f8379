// The password that keeps the hardware settings from ordinary users. Only a salted hash of it is
// kept, among the settings; it goes into no log. An installer sets the first one, if it likes, with
// SetHardwarePassword; otherwise the first user does who may write the settings. Who has forgotten
// it has an administrator remove the value HardwarePassword. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace zyr {

inline constexpr size_t kShortestHardwarePassword = 4;  // bytes

// True for a damaged one too, which no password matches: damage does not open the gate.
bool IsHardwarePasswordSet();

// Replaces it, and ends a wait. False, with the last error set, if the settings cannot be written
// or the password is too short.
bool SetHardwarePassword(const std::string& password);

// False, too, before the wait is over, without looking at the password. Each wrong try lengthens
// the wait, a right one ends it. Takes a noticeable part of a second on purpose.
bool CheckHardwarePassword(const std::string& password);

// Until the next try counts. What is told of other programs' tries, and of those before a restart,
// stands in the settings.
uint32_t SecondsUntilNextTry();

}  // namespace zyr
