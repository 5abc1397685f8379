// What the operating system's names of a USB device tell.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zyr {

inline constexpr uint16_t kNoUsbNumber = 0xFFFF;

struct UsbIdentity {
  uint16_t vendor = kNoUsbNumber;
  uint16_t product = kNoUsbNumber;
};
// From an instance identity like "USB\VID_082E&PID_2000\0001", without regard to case.
UsbIdentity UsbIdentityOf(std::string_view instanceId);

// The instance identity, in capitals, of the device behind a path like
// "\\?\usb#vid_082e&pid_2000#0001#{a5dcbf10-6530-11d2-901f-00c04fb951ed}". Null for a text that is
// no such path.
std::optional<std::string> InstanceIdOfPath(std::string_view path);

// The key below the local machine's that describes a driver.
std::string DriverRegistryPath(const std::string& driverKey);

}  // namespace zyr
