// The sensors that the device manager has found.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hardware/counted.h"
#include "hardware/device/device.h"
#include "tools/zyrsensor/report.h"

namespace zyr {

// Reads the settings and finds the sensors. False, with a message printed, if that failed.
bool StartHardware(DeviceCallback callback);
void StopHardware();

// In the order of discovery. Asks the hardware.
std::vector<SensorEntry> FoundSensors();

// The first whose instance identity holds `part`, without regard to case, open. Null, with a
// message printed, if there is none.
Held<Device> OpenSensorLike(const std::string& part);

// Makes the first sensor like that fire, whoever has armed it, and without bringing it up. False,
// with a message printed, if it cannot be told to.
bool TriggerSensorLike(const std::string& part, bool* isThere);

}  // namespace zyr
