// What the driver keeps of one sensor: the extension of its device.
#pragma once

#include "simulator/bus_protocol.h"
#include "simulator/driver/driver.h"

namespace zyr::simulator {

struct PluggedSensor {
  DeviceExtension header;
  PDEVICE_OBJECT device;
  LIST_ENTRY link;  // among all sensors, from plugging in until the device is deleted
  char instance[kInstanceSize];
  uint64_t seed;
  uint64_t exposure;
  uint32_t generation;
  uint32_t handles;  // that programs hold open
  bool present;      // plugged in
  bool reported;     // the system has been told of it, and will have it removed
  bool started;
  bool removed;            // by the system
  uint64_t unneededSince;  // 0: needed
  UNICODE_STRING interfaceName;
  uint8_t* content;  // the memory, then both frames
  Sensor sensor;
};

inline PluggedSensor* SensorOf(PDEVICE_OBJECT device) {
  return static_cast<PluggedSensor*>(device->DeviceExtension);
}

// The system is done with it and no program holds it open.
inline bool IsUnneeded(const PluggedSensor& sensor) {
  return !sensor.present && sensor.handles == 0 && (sensor.removed || !sensor.reported);
}

}  // namespace zyr::simulator
