// How the sensor hardware reports a failure.
#pragma once

#include "hardware/result.h"

namespace zyr {

// The system's results for what it has no memory for and for what makes no sense to it.
inline constexpr Result kOutOfMemory = ResultOfSystemError(14);
inline constexpr Result kBadParameter = ResultOfSystemError(87);

// Stores the translation of `text` as the last error, writes the English text to the log and hands
// `result` back.
Result FailWith(Result result, const char* text);

}  // namespace zyr
