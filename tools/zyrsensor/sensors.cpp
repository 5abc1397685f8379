#include "tools/zyrsensor/sensors.h"

#include <cstdio>
#include <memory>

#include "foundation/support/error.h"
#include "hardware/device/sensor_settings.h"
#include "hardware/devmgr/dev_mgr.h"
#include "hardware/devmgr/device_path.h"
#include "hardware/devmgr/port_choice.h"
#include "platform/ascii.h"
#include "platform/device_bus.h"

namespace zyr {
namespace {

constexpr uint8_t kTriggerCommand[] = {0x02, 0xF0};

void Complain(const std::string& text) { std::fprintf(stderr, "zyrsensor: %s\n", text.c_str()); }

bool HoldsIgnoringCase(const std::string& text, const std::string& part) {
  return LowerAscii(text).find(LowerAscii(part)) != std::string::npos;
}

void ComplainOfNone(const std::string& part) {
  Complain(part.empty() ? "There is no sensor." : "There is no sensor like '" + part + "'.");
}

bool IsSensor(const std::string& instanceId) {
  const UsbIdentity usb = UsbIdentityOf(instanceId);
  return usb.vendor == kZyrVendor && (usb.product == kProduct2000 || usb.product == kProduct303);
}

bool Trigger(platform::DeviceEnumeration& devices) {
  const std::optional<std::string> path = devices.Path();
  const std::unique_ptr<UsbPort> port = path ? MakePortFor(devices) : nullptr;
  if (port == nullptr) {
    Complain("The sensor's driver is not known.");
    return false;
  }
  Result result = port->Open(*path);
  if (!Failed(result)) result = port->WriteCommand(kTriggerCommand, sizeof kTriggerCommand);
  if (Failed(result)) Complain(DescribeFailure("The sensor could not be triggered", result));
  return !Failed(result);
}

}  // namespace

bool StartHardware(DeviceCallback callback) {
  if (!SensorSettings().Load()) {
    Complain(LastErrorText());
    return false;
  }
  const Result result = DeviceManager().Initialize(std::move(callback));
  if (Failed(result)) Complain(DescribeFailure("The sensors could not be looked for", result));
  return !Failed(result);
}

void StopHardware() { DeviceManager().Finalize(); }

std::vector<SensorEntry> FoundSensors() {
  std::vector<SensorEntry> sensors;
  SensorEntry sensor;
  for (uint32_t i = 0;
       DeviceManager().GetDevice(i, &sensor.name, &sensor.instanceId, &sensor.sensorId); ++i)
    sensors.push_back(sensor);
  return sensors;
}

Held<Device> OpenSensorLike(const std::string& part) {
  for (const SensorEntry& sensor : FoundSensors()) {
    if (!HoldsIgnoringCase(sensor.instanceId, part)) continue;
    Device* device = nullptr;
    Result result = DeviceManager().CreateDevice(sensor.instanceId, &device);
    Held<Device> held(device);
    if (!Failed(result)) result = held->Open();
    if (!Failed(result)) return held;
    Complain(DescribeFailure("The sensor could not be opened", result));
    return nullptr;
  }
  ComplainOfNone(part);
  return nullptr;
}

bool TriggerSensorLike(const std::string& part, bool* isThere) {
  *isThere = false;
  uint32_t error = 0;
  const std::unique_ptr<platform::DeviceEnumeration> devices =
      platform::EnumerateUsbDevices(&error);
  while (devices != nullptr && devices->Next()) {
    const std::optional<std::string> id = devices->InstanceId();
    if (!id || !IsSensor(*id) || !HoldsIgnoringCase(*id, part)) continue;
    *isThere = true;
    return Trigger(*devices);
  }
  ComplainOfNone(part);
  return false;
}

}  // namespace zyr
