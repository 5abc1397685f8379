// The commands that every sensor system knows.
#include <array>

#include "foundation/support/phrase_lookup.h"
#include "hardware/failure.h"
#include "hardware/usb/usb_port.h"

namespace zyr {
namespace {

constexpr const char* kNoPing = PhraseKey(
    "The hardware could not be pinged.  Please check the hardware connection and then retry the "
    "operation.");
constexpr const char* kNoStatus = PhraseKey(
    "The hardware's status could not be obtained.  Please check the hardware connection and then "
    "retry the operation.");
constexpr const char* kUnknownResponse = PhraseKey(
    "An unknown response was received from the hardware while trying to obtain the sensor ID.  "
    "Please check the hardware connection and then retry the operation.");
constexpr const char* kUnknownError = PhraseKey(
    "An unknown hardware error was encountered trying to obtain the sensor ID.  Please check the "
    "hardware connection and then retry the operation.");
constexpr const char* kXilinxError = PhraseKey(
    "A Xilinx error was received from the hardware while trying to obtain the sensor ID.  Please "
    "check the hardware connection and then retry the operation.");

constexpr uint8_t kPower = 0x08;
constexpr uint8_t kController = 0x02;
constexpr uint8_t kFlushSensor = 0x70;
constexpr uint8_t kEcho[] = {0x0E, 0xAA, 0x55};
constexpr uint8_t kEchoAnswer = 0x8E;
constexpr uint8_t kXilinxFault = 0xFF;

Result CheckEcho(const std::array<uint8_t, kStatusSize>& answer) {
  if (answer[0] != kEchoAnswer) return FailWith(DEV_E_BAD_RESPONSE, kUnknownResponse);
  if (answer[1] != kEcho[1]) return FailWith(DEV_E_HARDWARE, kUnknownError);
  if (answer[2] == kXilinxFault) return FailWith(DEV_E_XILINX, kXilinxError);
  return answer[2] == kEcho[2] ? kOk : FailWith(DEV_E_HARDWARE, kUnknownError);
}

}  // namespace

Result UsbPort::PowerCommand(uint8_t state) { return SendCommand(kPower, state); }

Result UsbPort::Flush() { return SendCommand(kController, kFlushSensor); }

Result UsbPort::Echo(bool check) {
  Result result = WriteCommand(kEcho, sizeof kEcho);
  if (Failed(result)) return FailWith(result, kNoPing);
  std::array<uint8_t, kStatusSize> answer{};
  result = ReadStatus(answer.data());
  if (Failed(result)) return FailWith(result, kNoStatus);
  return check ? CheckEcho(answer) : kOk;
}

Result UsbPort::SendCommand(uint8_t command, uint8_t argument) {
  const uint8_t bytes[] = {command, argument};
  return WriteCommand(bytes, sizeof bytes);
}

Result UsbPort::SendReadCommand(uint8_t command, uint16_t size, uint16_t address) {
  const uint8_t bytes[] = {command, static_cast<uint8_t>(size >> 8), static_cast<uint8_t>(size),
                           static_cast<uint8_t>(address >> 8), static_cast<uint8_t>(address)};
  return WriteCommand(bytes, sizeof bytes);
}

}  // namespace zyr
