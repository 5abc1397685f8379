#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/device_bus.h"
#include "platform/win32/device_bus.h"
// After the system's headers.
#include <setupapi.h>

namespace zyr::platform {
namespace {

constexpr DWORD kUsualSize = 256;  // bytes; nearly all texts fit

// The texts of all devices go through one buffer, which grows to the longest.
class TextBuffer {
 public:
  // `read(bytes, size, &needed)` is called again with more room as long as that is what it lacks.
  template <typename Read>
  std::optional<std::string> Fill(Read read) {
    for (;;) {
      const auto size = static_cast<DWORD>(bytes_.size());
      std::fill(bytes_.begin(), bytes_.end(), '\0');  // texts may come without their terminator
      DWORD needed = 0;
      if (read(bytes_.data(), size, &needed)) return Text();
      if (GetLastError() != ERROR_INSUFFICIENT_BUFFER || needed <= size) return std::nullopt;
      bytes_.resize(needed);
    }
  }

 private:
  std::string Text() const {
    return std::string(bytes_.data(), strnlen(bytes_.data(), bytes_.size()));
  }

  std::vector<char> bytes_ = std::vector<char>(kUsualSize);
};

class Enumeration : public DeviceEnumeration {
 public:
  explicit Enumeration(HDEVINFO devices) : devices_(devices) {}
  ~Enumeration() override { SetupDiDestroyDeviceInfoList(devices_); }
  Enumeration(const Enumeration&) = delete;
  Enumeration& operator=(const Enumeration&) = delete;

  bool Next() override;
  uint32_t Error() const override { return error_; }
  std::optional<std::string> InstanceId() override;
  std::optional<std::string> Path() override;
  std::optional<std::string> Description() override { return Property(SPDRP_DEVICEDESC); }
  std::optional<std::string> DriverKey() override { return Property(SPDRP_DRIVER); }

 private:
  std::optional<std::string> Property(DWORD property);

  HDEVINFO devices_;
  DWORD index_ = 0;
  SP_DEVINFO_DATA device_ = {};
  SP_DEVICE_INTERFACE_DATA interface_ = {};
  DWORD error_ = 0;
  TextBuffer text_;
};

// Asks each device for its own interface. One that was unplugged can still be listed, without an
// interface, so that the n-th interface need not belong to the n-th device.
bool Enumeration::Next() {
  for (;;) {
    device_.cbSize = sizeof device_;
    interface_.cbSize = sizeof interface_;
    if (!SetupDiEnumDeviceInfo(devices_, index_, &device_)) break;
    ++index_;
    if (SetupDiEnumDeviceInterfaces(devices_, &device_, &kUsbDeviceInterface, 0, &interface_)) {
      return true;
    }
    if (GetLastError() != ERROR_NO_MORE_ITEMS) break;
  }
  error_ = GetLastError();
  return false;
}

std::optional<std::string> Enumeration::InstanceId() {
  return text_.Fill([this](char* bytes, DWORD size, DWORD* needed) {
    return SetupDiGetDeviceInstanceIdA(devices_, &device_, bytes, size, needed);
  });
}

std::optional<std::string> Enumeration::Property(DWORD property) {
  return text_.Fill([&](char* bytes, DWORD size, DWORD* needed) {
    return SetupDiGetDeviceRegistryPropertyA(devices_, &device_, property, nullptr,
                                             reinterpret_cast<BYTE*>(bytes), size, needed);
  });
}

std::optional<std::string> Enumeration::Path() {
  DWORD size = 0;
  SetupDiGetDeviceInterfaceDetailA(devices_, &interface_, nullptr, 0, &size, nullptr);
  if (size < sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_A)) return std::nullopt;
  // The structure's own size leaves out the text behind it.
  std::vector<uint64_t> room(size / sizeof(uint64_t) + 1);
  auto* detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_A*>(room.data());
  detail->cbSize = sizeof *detail;
  if (!SetupDiGetDeviceInterfaceDetailA(devices_, &interface_, detail, size, nullptr, nullptr)) {
    return std::nullopt;
  }
  return std::string(detail->DevicePath);
}

}  // namespace

std::unique_ptr<DeviceEnumeration> EnumerateUsbDevices(uint32_t* error) {
  const HDEVINFO devices = SetupDiGetClassDevsA(&kUsbDeviceInterface, nullptr, nullptr,
                                                DIGCF_PRESENT | DIGCF_DEVICEINTERFACE);
  if (devices == INVALID_HANDLE_VALUE) {
    *error = GetLastError();
    return nullptr;
  }
  return std::make_unique<Enumeration>(devices);
}

}  // namespace zyr::platform
