// Test control of the USB bus.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/device_bus.h"

namespace zyr::platform::host {

struct BusDevice {
  std::string instanceId;
  std::optional<std::string> path;
  std::optional<std::string> description;
  std::optional<std::string> driverKey;
};

// Adds to the end of the list of present devices. Does not tell the monitors, nor does taking away;
// an enumeration under way goes on with the devices that there were when it began.
void PutOnBus(const BusDevice& device);
// Compares without regard to case.
void TakeFromBus(const std::string& instanceId);

// Tells every monitor, at once and on this thread; `path` as the system would give it.
void AnnounceChange(const std::string& path, bool removed);

// The next enumeration, or the next monitor, fails so.
void FailEnumeration(uint32_t error);
void FailMonitor(const MonitorFailure& failure);
// The next enumeration lists its devices and ends with this error instead of kNoMoreItems.
void EndEnumerationWith(uint32_t error);

size_t ActiveMonitors();

// Empties the bus and forgets failures that are still to come. Living monitors stay, and hear
// nothing more.
void ResetDeviceBus();

}  // namespace zyr::platform::host
