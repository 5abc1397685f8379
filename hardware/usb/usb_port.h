// The way to a sensor: bytes on four pipes of a kernel driver.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "hardware/result.h"
#include "platform/usb_driver.h"

namespace zyr {

inline constexpr uint32_t kCommandPipe = 0;  // out
inline constexpr uint32_t kStatusPipe = 1;   // in
inline constexpr uint32_t kAuxPipe = 2;      // out, unused
inline constexpr uint32_t kBulkPipe = 3;     // in
inline constexpr uint32_t kStatusSize = 64;  // bytes of a status packet

// Every call blocks in the driver, and none waits longer than the driver does. A failed transfer is
// the system's error number as a result, so that one without a number looks like a success. The
// driver may deliver less than it was asked for and not tell: callers clear their buffers first.
// No lock: one capture is the only user while it runs. Only Close may come in between, from another
// thread: a call under way still gets the driver's answer, and the next one fails. Lengths in
// bytes.
class UsbPort {
 public:
  UsbPort() = default;
  UsbPort(const UsbPort&) = delete;
  UsbPort& operator=(const UsbPort&) = delete;

  virtual ~UsbPort();
  virtual Result Open(const std::string& path);
  virtual void Close();
  virtual Result Reset() = 0;
  virtual Result ReadPipe(uint32_t pipe, uint8_t* buffer, uint32_t length) = 0;
  virtual Result ReadBulk(uint8_t* buffer, uint32_t length);
  // `buffer` has room for kStatusSize bytes.
  virtual Result ReadStatus(uint8_t* buffer);
  virtual Result WritePipe(uint32_t pipe, const uint8_t* buffer, uint32_t length) = 0;
  virtual Result WriteCommand(const uint8_t* buffer, uint32_t length);
  virtual Result WriteAux(const uint8_t* buffer, uint32_t length);

  // Commands that every sensor system knows.
  Result PowerCommand(uint8_t state);
  Result Flush();
  // With `check` the answer must be the sensor's regular one. The last error tells of a failure.
  Result Echo(bool check);

  // The two common forms of a command: with one argument, and with a size and an address, each sent
  // with its high byte first.
  Result SendCommand(uint8_t command, uint8_t argument);
  Result SendReadCommand(uint8_t command, uint16_t size, uint16_t address);

 protected:
  bool IsOpen() const { return handle_.load() != nullptr; }
  // A control code without buffers that resets the device.
  Result ResetWith(uint32_t code);
  // One call of the driver; a failed one becomes a result.
  Result Control(uint32_t code, void* input, size_t inputSize, void* output, size_t outputSize);

 private:
  platform::DriverAnswer CallDriver(uint32_t code, void* input, size_t inputSize, void* output,
                                    size_t outputSize);

  // Shared with the calls under way: the system may give the number of a closed handle to another
  // device at once, and closing one that is in use would wait for the driver.
  std::atomic<std::shared_ptr<void>> handle_;
};

// The two generations of kernel drivers.
std::unique_ptr<UsbPort> MakeUsbPortPipe();
std::unique_ptr<UsbPort> MakeUsbPortEndpoint();

}  // namespace zyr
