// The driver's records and numbers in words.
#pragma once

#include <string>

#include "simulator/bus_protocol.h"

namespace zyr::simulator {

// "USB\VID_082E&PID_2000\0001"
std::string IdentityText(Family family, const std::string& instance);
// One line, with its end: the instance, then NAME=VALUE for all that is known.
std::string StatusLine(const StatRecord& record);
std::string SystemErrorText(uint32_t error);

}  // namespace zyr::simulator
