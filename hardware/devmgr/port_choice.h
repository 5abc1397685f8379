// Which of the two generations of kernel drivers serves a sensor.
#pragma once

#include <memory>

#include "hardware/usb/usb_port.h"
#include "platform/device_bus.h"

namespace zyr {

// A port, not yet open, that speaks to the driver of the device which `devices` has gone to. Null
// if the driver is of neither generation, or cannot be found out.
std::unique_ptr<UsbPort> MakePortFor(platform::DeviceEnumeration& devices);

}  // namespace zyr
