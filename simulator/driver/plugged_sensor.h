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
  bool removed;       // by the system; the device lives on until its last handle is closed
  bool beingDeleted;  // by whoever set this, and nobody else
  UNICODE_STRING interfaceName;
  uint8_t* content;  // the memory, then both frames
  Sensor sensor;
};

inline PluggedSensor* SensorOf(PDEVICE_OBJECT device) {
  return static_cast<PluggedSensor*>(device->DeviceExtension);
}

// True once for each sensor that nothing needs any more: the caller deletes it. The lock is held,
// and must not be for DeleteSensor.
inline bool ClaimForDeletion(PluggedSensor* sensor) {
  const bool unneeded = sensor->handles == 0 && !sensor->present && !sensor->beingDeleted &&
                        (sensor->removed || !sensor->reported);
  if (unneeded) sensor->beingDeleted = true;
  return unneeded;
}
void DeleteSensor(PluggedSensor* sensor);

// Pulls a sensor out in two steps: PullOut with the lock held, and what it returns to FinishPullOut
// without it. Between them the sensor may cease to be.
struct PulledOut {
  PDEVICE_OBJECT device;
  PluggedSensor* unneeded;  // or null
};
inline PulledOut PullOut(PluggedSensor* sensor) {
  sensor->present = false;
  return {sensor->device, ClaimForDeletion(sensor) ? sensor : nullptr};
}
void FinishPullOut(const PulledOut& pulled);

}  // namespace zyr::simulator
