#include "hardware/device/sensor_commands.h"

#include <algorithm>

#include "foundation/support/phrase_lookup.h"
#include "hardware/failure.h"
#include "platform/clock.h"

namespace zyr {
namespace {

constexpr uint8_t kController = 0x02;
constexpr uint8_t kSetIntegrationTime = 0x04;
constexpr uint8_t kSetThreshold = 0x05;
constexpr uint8_t kReadMacId = 0x06;
constexpr uint8_t kReadMemory303 = 0x0B;
constexpr uint8_t kReadMemory2000 = 0x0C;
constexpr uint8_t kResetSensor = 0x0F;

// Behind kController.
constexpr uint8_t kDetectExposure = 0x20;
constexpr uint8_t kAskForMemory = 0xC0;
constexpr uint8_t kTriggerExposure = 0xF0;

constexpr uint8_t kCcdStatusAnswer = 0x83;
constexpr uint32_t kMostSensitive = 7;

// Milliseconds that the controller needs around the answer about the memory.
constexpr uint32_t kMemoryCheckTime = 600;
constexpr uint32_t kMemoryCheckRest = 100;

constexpr const char* kNoStatusCheck = PhraseKey(
    "Could not send a status check message to the hardware.  Please check the hardware "
    "connection and then retry the operation.");
constexpr const char* kNoMemoryStatus = PhraseKey(
    "Could not read the status from the hardware.  Please check the hardware connection and then "
    "retry the operation.");
constexpr const char* kNoMemoryAccess = PhraseKey(
    "Unable to access the memory on the hardware.  Please check the hardware connection and then "
    "retry the operation.");
constexpr const char* kNoMacCommand = PhraseKey(
    "Unable to send a command to obtain the MAC ID from the hardware.  Please check the hardware "
    "connection and then retry the operation.");
constexpr const char* kNoMac = PhraseKey(
    "Unable to read MAC ID from the hardware.  Please check the hardware connection and then "
    "retry the operation.");

using StatusPacket = std::array<uint8_t, kStatusSize>;

Result ReadMemory(UsbPort& port, uint8_t command, uint8_t* buffer, uint16_t size,
                  uint16_t address) {
  const Result sent = port.SendReadCommand(command, size, address);
  return Failed(sent) ? sent : port.ReadBulk(buffer, size);
}

}  // namespace

Result SendSensorReset(UsbPort& port) { return port.WriteCommand(&kResetSensor, 1); }

Result SendThreshold(UsbPort& port, uint8_t threshold) {
  return port.SendCommand(kSetThreshold, threshold);
}

Result SendIntegrationTime(UsbPort& port, uint32_t time) {
  const uint8_t bytes[] = {kSetIntegrationTime, static_cast<uint8_t>(time / 256),
                           static_cast<uint8_t>(time % 256)};
  return port.WriteCommand(bytes, sizeof bytes);
}

Result SendSensorSize(UsbPort& port, uint8_t sizeByte) {
  return port.SendCommand(kController, sizeByte);
}

Result TriggerExposure(UsbPort& port) { return port.SendCommand(kController, kTriggerExposure); }

Result DetectExposure(UsbPort& port, uint32_t sensitivity) {
  if (sensitivity < 1 || sensitivity > kMostSensitive) return 1;
  const uint8_t bytes[] = {kController, kDetectExposure, static_cast<uint8_t>(sensitivity << 4)};
  return port.WriteCommand(bytes, sizeof bytes);
}

Result ReadCcdStatus(UsbPort& port, CcdStatus* block) {
  StatusPacket packet{};
  const Result result = port.ReadStatus(packet.data());
  if (Failed(result)) return result;
  if (packet[0] != kCcdStatusAnswer) return DEV_E_BAD_RESPONSE;
  std::copy_n(packet.begin() + 1, block->size(), block->begin());
  return kOk;
}

Result ReadSensorMemory(UsbPort& port, uint8_t* buffer, uint16_t size, uint16_t address) {
  return ReadMemory(port, kReadMemory303, buffer, size, address);
}

Result ReadIdentityMemory(UsbPort& port, uint8_t* buffer, uint16_t size, uint16_t address) {
  return ReadMemory(port, kReadMemory2000, buffer, size, address);
}

Result CheckMemoryPresent(UsbPort& port, uint32_t* status) {
  Result result = port.SendCommand(kController, kAskForMemory);
  if (Failed(result)) return FailWith(result, kNoStatusCheck);
  platform::SleepFor(kMemoryCheckTime);
  StatusPacket packet{};
  result = port.ReadStatus(packet.data());
  if (Failed(result)) return FailWith(result, kNoMemoryStatus);
  platform::SleepFor(kMemoryCheckRest);
  *status = packet[0];
  return 1;
}

Result ReadMacID(UsbPort& port, MacId* mac) {
  uint32_t status = 0;
  Result result = CheckMemoryPresent(port, &status);
  if (Failed(result)) return FailWith(result, kNoMemoryAccess);
  if (status != kMemoryPresent) {
    mac->fill(0);
    return kOk;
  }
  (*mac)[0] = kReadMacId;
  result = port.WriteCommand(mac->data(), 1);
  if (Failed(result)) return FailWith(result, kNoMacCommand);
  result = port.ReadBulk(mac->data(), kMacIdSize);
  return Failed(result) ? FailWith(result, kNoMac) : result;
}

}  // namespace zyr
