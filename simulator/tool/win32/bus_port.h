// The control device of the bus, through the system.
#pragma once

#include <memory>

#include "simulator/tool/bus_control.h"

namespace zyr::simulator {

// Null if it cannot be opened.
std::unique_ptr<BusControl> OpenBusPort();

}  // namespace zyr::simulator
