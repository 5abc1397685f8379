#include "hardware/device/device.h"

#include "hardware/device/device_2000.h"
#include "hardware/device/device_303.h"

namespace zyr {

std::atomic<bool> abort_requested = false;

Device* NewDevice2000(const std::string& path, std::unique_ptr<UsbPort> port,
                      DeviceCallback callback) {
  return new Device2000(path, std::move(port), std::move(callback));
}

Device* NewDeviceZYR303(const std::string& path, std::unique_ptr<UsbPort> port,
                        DeviceCallback callback) {
  return new DeviceZYR303(path, std::move(port), std::move(callback));
}

}  // namespace zyr
