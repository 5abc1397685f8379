// Devices on the USB bus, and their coming and going. All calls on one thread, the one that handles
// window messages.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zyr::platform {

// One pass over the USB devices that are present.
class DeviceEnumeration {
 public:
  virtual ~DeviceEnumeration() = default;

  // Goes to the next device, at first to the first one. False at the end and on failure; Error()
  // then has the system's number, which at a regular end is 0 or kNoMoreItems. What came or went
  // since the pass began may or may not show.
  virtual bool Next() = 0;
  virtual uint32_t Error() const = 0;

  // Of the device gone to; null if the system does not say. The instance identity is stable while
  // the device is plugged in: "USB\VID_082E&PID_2000\0001". The path is what OpenDriver takes,
  // with the class of the interface at its end:
  // "\\?\usb#vid_082e&pid_2000#0001#{a5dcbf10-6530-11d2-901f-00c04fb951ed}". The driver key is the
  // last part of a path below the registry's class keys: "{36FC9E60-...}\0000".
  virtual std::optional<std::string> InstanceId() = 0;
  virtual std::optional<std::string> Path() = 0;
  virtual std::optional<std::string> Description() = 0;
  virtual std::optional<std::string> DriverKey() = 0;
};

inline constexpr uint32_t kNoMoreItems = 0x103;

// Null on failure, with the system's number in `error`.
std::unique_ptr<DeviceEnumeration> EnumerateUsbDevices(uint32_t* error);

// Hears of USB devices as long as it lives, while the thread that made it handles window messages.
// May be destroyed from within its own call of `onChange`.
class DeviceMonitor {
 public:
  virtual ~DeviceMonitor() = default;
};

// `path` as DeviceEnumeration::Path gives it, but perhaps in other letters' case.
using DeviceChange = std::function<void(const std::string& path, bool removed)>;

enum class MonitorStep { kRegisterClass, kCreateWindow, kRegisterNotification };
struct MonitorFailure {
  MonitorStep step = MonitorStep::kRegisterClass;
  uint32_t error = 0;  // the system's number
};

// Null on failure.
std::unique_ptr<DeviceMonitor> MonitorUsbDevices(DeviceChange onChange, MonitorFailure* failure);

}  // namespace zyr::platform
