// One exposure, and its pictures.
#pragma once

#include "tools/zyrsensor/options.h"

namespace zyr {

// On a console progress is one line that changes; elsewhere each step has a line.
void ShowProgress(const std::string& text, int32_t code, int32_t percent, bool isConsole);

// Prints what it does; the sensors have been found.
SensorExit Capture(const SensorOptions& options);

}  // namespace zyr
