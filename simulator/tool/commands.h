// The commands of zyrsim.
#pragma once

#include <string>

#include "simulator/tool/bus_control.h"
#include "simulator/tool/options.h"

namespace zyr::simulator {

struct SimOutcome {
  std::string error;   // not empty: why it failed
  std::string report;  // lines for the user
};

SimOutcome RunSimCommand(const SimOptions& options, Machine* machine);

}  // namespace zyr::simulator
