#include "platform/host/device_bus.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/ascii.h"

namespace zyr::platform {
namespace {

class Monitor;

struct Bus {
  std::vector<host::BusDevice> devices;
  std::vector<Monitor*> monitors;
  std::optional<uint32_t> enumerationFailure;
  std::optional<MonitorFailure> monitorFailure;
  uint32_t endError = kNoMoreItems;
};

Bus& TheBus() {
  static Bus bus;
  return bus;
}

class Enumeration : public DeviceEnumeration {
 public:
  Enumeration(std::vector<host::BusDevice> devices, uint32_t endError)
      : devices_(std::move(devices)), endError_(endError) {}

  bool Next() override {
    ended_ = begun_ == devices_.size();
    if (!ended_) ++begun_;
    return !ended_;
  }
  uint32_t Error() const override { return ended_ ? endError_ : 0; }
  std::optional<std::string> InstanceId() override { return Current().instanceId; }
  std::optional<std::string> Path() override { return Current().path; }
  std::optional<std::string> Description() override { return Current().description; }
  std::optional<std::string> DriverKey() override { return Current().driverKey; }

 private:
  const host::BusDevice& Current() const { return devices_.at(begun_ - 1); }

  std::vector<host::BusDevice> devices_;
  uint32_t endError_;
  size_t begun_ = 0;  // devices gone to, the present one included
  bool ended_ = false;
};

class Monitor : public DeviceMonitor {
 public:
  explicit Monitor(DeviceChange onChange) : onChange_(std::move(onChange)) {
    TheBus().monitors.push_back(this);
  }
  ~Monitor() override { std::erase(TheBus().monitors, this); }
  Monitor(const Monitor&) = delete;
  Monitor& operator=(const Monitor&) = delete;

  // From a copy: the call may destroy this object.
  void Tell(const std::string& path, bool removed) const {
    const DeviceChange onChange = onChange_;
    onChange(path, removed);
  }

 private:
  DeviceChange onChange_;
};

}  // namespace

std::unique_ptr<DeviceEnumeration> EnumerateUsbDevices(uint32_t* error) {
  if (const auto failure = std::exchange(TheBus().enumerationFailure, std::nullopt)) {
    *error = *failure;
    return nullptr;
  }
  return std::make_unique<Enumeration>(TheBus().devices,
                                       std::exchange(TheBus().endError, kNoMoreItems));
}

std::unique_ptr<DeviceMonitor> MonitorUsbDevices(DeviceChange onChange, MonitorFailure* failure) {
  if (const auto next = std::exchange(TheBus().monitorFailure, std::nullopt)) {
    *failure = *next;
    return nullptr;
  }
  return std::make_unique<Monitor>(std::move(onChange));
}

namespace host {

void PutOnBus(const BusDevice& device) { TheBus().devices.push_back(device); }

void TakeFromBus(const std::string& instanceId) {
  std::erase_if(TheBus().devices, [&](const BusDevice& device) {
    return LowerAscii(device.instanceId) == LowerAscii(instanceId);
  });
}

void AnnounceChange(const std::string& path, bool removed) {
  const std::vector<Monitor*> told = TheBus().monitors;
  for (const Monitor* monitor : told) {
    const auto& living = TheBus().monitors;
    if (std::find(living.begin(), living.end(), monitor) != living.end()) {
      monitor->Tell(path, removed);
    }
  }
}

void FailEnumeration(uint32_t error) { TheBus().enumerationFailure = error; }
void FailMonitor(const MonitorFailure& failure) { TheBus().monitorFailure = failure; }
void EndEnumerationWith(uint32_t error) { TheBus().endError = error; }

size_t ActiveMonitors() { return TheBus().monitors.size(); }

void ResetDeviceBus() { TheBus() = {}; }

}  // namespace host
}  // namespace zyr::platform
