// The first generation of drivers: a transfer names its pipe by number.
#include <cstring>

#include "hardware/failure.h"
#include "hardware/usb/transfer_buffer.h"
#include "hardware/usb/usb_port.h"

namespace zyr {
namespace {

constexpr uint32_t kResetCode = 0x222031;
constexpr uint32_t kTransferCode = 0x22204E;  // both directions: the pipe's number tells which

class UsbPortPipe : public UsbPort {
 public:
  // A port that is not open fails like any other reset.
  Result Reset() override { return ResetWith(kResetCode); }

  // The order of the checks differs from that of a write.
  Result ReadPipe(uint32_t pipe, uint8_t* buffer, uint32_t length) override {
    if (!IsOpen()) return USB_E_NOT_OPEN;
    if (length == 0) return kOk;
    if (pipe != kStatusPipe && pipe != kBulkPipe) return USB_E_BAD_PIPE;
    if (buffer == nullptr) return kBadParameter;
    return Control(kTransferCode, &pipe, sizeof pipe, buffer, length);
  }

  Result WritePipe(uint32_t pipe, const uint8_t* buffer, uint32_t length) override {
    if (!IsOpen()) return USB_E_NOT_OPEN;
    if (pipe != kCommandPipe && pipe != kAuxPipe) return USB_E_BAD_PIPE;
    if (length == 0) return kOk;
    if (buffer == nullptr) return kBadParameter;
    // The data goes where a read's answer comes back, and that must be writable memory.
    const auto data = MakeTransferBuffer(length);
    if (data == nullptr) return kOutOfMemory;
    std::memcpy(data.get(), buffer, length);
    return Control(kTransferCode, &pipe, sizeof pipe, data.get(), length);
  }
};

}  // namespace

std::unique_ptr<UsbPort> MakeUsbPortPipe() { return std::make_unique<UsbPortPipe>(); }

}  // namespace zyr
