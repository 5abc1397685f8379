// The second generation of drivers: a transfer's data stands behind a record that names the
// endpoint, in one buffer for both directions.
#include <cstring>
#include <limits>

#include "foundation/support/little_endian.h"
#include "hardware/failure.h"
#include "hardware/usb/transfer_buffer.h"
#include "hardware/usb/usb_port.h"

namespace zyr {
namespace {

constexpr uint32_t kResetCode = 0x220030;
constexpr uint32_t kTransferCode = 0x220024;

// The record; what lies between its fields is zero, the driver's time-out among it.
constexpr size_t kEndpointOffset = 0x0D;
constexpr size_t kDataOffsetOffset = 0x1E;
constexpr size_t kDataLengthOffset = 0x22;
constexpr uint32_t kRecordSize = 0x26;

// 0 for a pipe that does not go that way.
uint8_t ReadEndpoint(uint32_t pipe) {
  return pipe == kStatusPipe ? 0x81 : pipe == kBulkPipe ? 0x86 : 0;
}
uint8_t WriteEndpoint(uint32_t pipe) {
  return pipe == kCommandPipe ? 0x01 : pipe == kAuxPipe ? 0x02 : 0;
}

// Record and room for the data; null without memory.
std::unique_ptr<uint8_t[]> MakeRecord(uint8_t endpoint, uint32_t length) {
  if (length > std::numeric_limits<uint32_t>::max() - kRecordSize) return nullptr;
  auto record = MakeTransferBuffer(size_t{kRecordSize} + length);
  if (record == nullptr) return nullptr;
  record[kEndpointOffset] = endpoint;
  StoreLittleEndian(&record[kDataOffsetOffset], kRecordSize);
  StoreLittleEndian(&record[kDataLengthOffset], length);
  return record;
}

class UsbPortEndpoint : public UsbPort {
 public:
  Result Reset() override { return IsOpen() ? ResetWith(kResetCode) : USB_E_NOT_OPEN; }

  Result ReadPipe(uint32_t pipe, uint8_t* buffer, uint32_t length) override {
    if (!IsOpen()) return USB_E_NOT_OPEN;
    const uint8_t endpoint = ReadEndpoint(pipe);
    if (endpoint == 0) return USB_E_BAD_PIPE;
    if (buffer == nullptr && length != 0) return kBadParameter;
    const auto record = MakeRecord(endpoint, length);
    if (record == nullptr) return kOutOfMemory;
    const Result result = Transfer(record.get(), length);
    // Also of a failed transfer: what did arrive counts.
    if (length != 0) std::memcpy(buffer, &record[kRecordSize], length);
    return result;
  }

  Result WritePipe(uint32_t pipe, const uint8_t* buffer, uint32_t length) override {
    if (!IsOpen()) return USB_E_NOT_OPEN;
    const uint8_t endpoint = WriteEndpoint(pipe);
    if (endpoint == 0) return USB_E_BAD_PIPE;
    if (buffer == nullptr && length != 0) return kBadParameter;
    const auto record = MakeRecord(endpoint, length);
    if (record == nullptr) return kOutOfMemory;
    if (length != 0) std::memcpy(&record[kRecordSize], buffer, length);
    return Transfer(record.get(), length);
  }

 private:
  Result Transfer(uint8_t* record, uint32_t length) {
    const size_t size = size_t{kRecordSize} + length;
    return Control(kTransferCode, record, size, record, size);
  }
};

}  // namespace

std::unique_ptr<UsbPort> MakeUsbPortEndpoint() { return std::make_unique<UsbPortEndpoint>(); }

}  // namespace zyr
