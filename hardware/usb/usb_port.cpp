#include "hardware/usb/usb_port.h"

namespace zyr {

UsbPort::~UsbPort() { UsbPort::Close(); }

Result UsbPort::Open(const std::string& path) {
  if (IsOpen()) Close();
  handle_ = std::shared_ptr<void>(platform::OpenDriver(path), platform::CloseDriver);
  return IsOpen() ? kOk : USB_E_OPEN;
}

void UsbPort::Close() { handle_.store(nullptr); }

Result UsbPort::ReadBulk(uint8_t* buffer, uint32_t length) {
  return ReadPipe(kBulkPipe, buffer, length);
}

Result UsbPort::ReadStatus(uint8_t* buffer) { return ReadPipe(kStatusPipe, buffer, kStatusSize); }

Result UsbPort::WriteCommand(const uint8_t* buffer, uint32_t length) {
  return WritePipe(kCommandPipe, buffer, length);
}

Result UsbPort::WriteAux(const uint8_t* buffer, uint32_t length) {
  return WritePipe(kAuxPipe, buffer, length);
}

Result UsbPort::ResetWith(uint32_t code) {
  return CallDriver(code, nullptr, 0, nullptr, 0).done ? kOk : USB_E_RESET;
}

Result UsbPort::Control(uint32_t code, void* input, size_t inputSize, void* output,
                        size_t outputSize) {
  const platform::DriverAnswer answer = CallDriver(code, input, inputSize, output, outputSize);
  return answer.done ? kOk : ResultOfSystemError(answer.error);
}

platform::DriverAnswer UsbPort::CallDriver(uint32_t code, void* input, size_t inputSize,
                                           void* output, size_t outputSize) {
  const std::shared_ptr<void> handle = handle_;
  return platform::ControlDriver(handle.get(), code, input, inputSize, output, outputSize);
}

}  // namespace zyr
