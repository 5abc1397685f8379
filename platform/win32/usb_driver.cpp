#include "platform/usb_driver.h"

#include <limits>

#include "platform/win32/system.h"

namespace zyr::platform {

DriverHandle OpenDriver(const std::string& path) {
  const HANDLE driver =
      CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                  nullptr, OPEN_EXISTING, 0, nullptr);
  return driver == INVALID_HANDLE_VALUE ? nullptr : driver;
}

void CloseDriver(DriverHandle driver) {
  if (driver != nullptr) CloseHandle(driver);
}

DriverAnswer ControlDriver(DriverHandle driver, uint32_t code, void* input, size_t inputSize,
                           void* output, size_t outputSize) {
  constexpr size_t kMost = std::numeric_limits<DWORD>::max();
  if (inputSize > kMost || outputSize > kMost) return {false, ERROR_INVALID_PARAMETER};
  DWORD returned = 0;
  if (DeviceIoControl(driver, code, input, static_cast<DWORD>(inputSize), output,
                      static_cast<DWORD>(outputSize), &returned, nullptr)) {
    return {true, 0};
  }
  return {false, GetLastError()};
}

}  // namespace zyr::platform
