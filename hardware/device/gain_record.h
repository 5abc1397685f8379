// The gain record at the end of the memory of a sensor of the 303 family.
#pragma once

#include <cstdint>
#include <span>

#include "hardware/correction/correct_303.h"

namespace zyr {

// All zero if `area` has no such record at its end.
PdiRecord ParseGainRecord(std::span<const uint8_t> area);

}  // namespace zyr
