// The driver's side of the sensor: control codes, buffers and faults.
#include "simulator/sensor.h"

namespace zyr::simulator {
namespace {

constexpr uint32_t kCommandPipe = 0;
constexpr uint32_t kStatusPipe = 1;
constexpr uint32_t kAuxPipe = 2;
constexpr uint32_t kBulkPipe = 3;
constexpr uint32_t kNoPipe = 4;

constexpr uint32_t kPacketSize = 64;  // of commands and status

// Fields of the record of kEndpointTransfer.
constexpr uint32_t kEndpointAt = 0x0D;
constexpr uint32_t kOffsetAt = 0x1E;
constexpr uint32_t kLengthAt = 0x22;

bool IsRead(uint32_t pipe) { return pipe == kStatusPipe || pipe == kBulkPipe; }

uint32_t PipeOfEndpoint(uint8_t address) {
  switch (address) {
    case 0x01: return kCommandPipe;
    case 0x81: return kStatusPipe;
    case 0x02: return kAuxPipe;
    case 0x86: return kBulkPipe;
    default: return kNoPipe;
  }
}

uint32_t Number(const uint8_t* bytes) {
  return bytes[0] | uint32_t{bytes[1]} << 8 | uint32_t{bytes[2]} << 16 | uint32_t{bytes[3]} << 24;
}

uint32_t Smaller(uint32_t a, uint32_t b) { return a < b ? a : b; }

}  // namespace

void Sensor::Plug(const Setup& setup, Generation generation) {
  *this = Sensor();
  setup_ = setup;
  generation_ = generation;
  plugged_ = 1;
}

Answer Sensor::Fail(uint32_t error, uint64_t delay) const {
  return {error, 0, setup_.timing.transfer + delay, 0};
}

Fault Sensor::TakeFault() {
  if (fault_.kind == kNoFault) return {};
  if (fault_.transfer > 0) {
    --fault_.transfer;
    return {};
  }
  const Fault struck = fault_;
  fault_ = {};
  return struck;
}

Answer Sensor::Control(uint64_t now, uint32_t code, const uint8_t* input, uint32_t inputSize,
                       uint8_t* output, uint32_t outputSize) {
  if (!plugged_) return {kDriverNotConnected, 0, 0, 0};
  ++statistics_.transfers;
  Advance(now);
  const Fault fault = TakeFault();
  if (fault.kind == kFaultError) return Fail(fault.value != 0 ? fault.value : kDriverFailed, 0);
  if (fault.kind == kFaultSilence) return Fail(kDriverTimedOut, setup_.timing.driverTimeout);
  if (fault.kind == kFaultUnplug) {
    Unplug();
    return {kDriverNotConnected, 0, setup_.timing.transfer, 1};
  }

  const bool withPipes = generation_ == kPipeDriver;
  if (code == (withPipes ? kPipeReset : kEndpointReset)) {
    ++statistics_.resets;
    ResetSensor();
    return {kDriverOk, 0, setup_.timing.transfer, 0};
  }
  if (code != (withPipes ? kPipeTransfer : kEndpointTransfer)) {
    return Fail(kDriverInvalidFunction, 0);
  }
  Transfer transfer;
  const uint32_t error =
      withPipes ? UnderstandPipe(input, inputSize, output, outputSize, &transfer)
                : UnderstandEndpoint(input, inputSize, output, outputSize, &transfer);
  if (error != kDriverOk) return Fail(error, 0);

  uint32_t arrived = 0;
  if (!IsRead(transfer.pipe)) {
    Write(now, transfer, fault);
  } else if (Read(now, transfer, fault, &arrived) != kDriverOk) {
    return Fail(kDriverTimedOut, setup_.timing.driverTimeout);
  }
  if (withPipes) return {kDriverOk, arrived, setup_.timing.transfer, 0};
  for (uint32_t i = 0; i < kRecordSize && input != output; ++i) output[i] = input[i];
  return {kDriverOk, kRecordSize + arrived, setup_.timing.transfer, 0};
}

// The input names the pipe; the data are in the "output", whichever way they go.
uint32_t Sensor::UnderstandPipe(const uint8_t* input, uint32_t inputSize, uint8_t* output,
                                uint32_t outputSize, Transfer* transfer) const {
  if (input == nullptr || inputSize != 4) return kDriverInvalidParameter;
  if (output == nullptr && outputSize > 0) return kDriverInvalidParameter;
  const uint32_t pipe = Number(input);
  if (pipe >= kNoPipe) return kDriverInvalidParameter;
  *transfer = {pipe, output, output, outputSize};
  return kDriverOk;
}

uint32_t Sensor::UnderstandEndpoint(const uint8_t* input, uint32_t inputSize, uint8_t* output,
                                    uint32_t outputSize, Transfer* transfer) const {
  if (input == nullptr || output == nullptr) return kDriverInvalidParameter;
  if (inputSize < kRecordSize || outputSize != inputSize) return kDriverInvalidParameter;
  const uint32_t length = Number(input + kLengthAt);
  const uint32_t pipe = PipeOfEndpoint(input[kEndpointAt]);
  if (Number(input + kOffsetAt) != kRecordSize || length != inputSize - kRecordSize ||
      pipe == kNoPipe) {
    return kDriverInvalidParameter;
  }
  *transfer = {pipe, input + kRecordSize, output + kRecordSize, length};
  return kDriverOk;
}

void Sensor::Write(uint64_t now, const Transfer& transfer, const Fault& fault) {
  const uint32_t arrived =
      fault.kind == kFaultShort ? Smaller(fault.value, transfer.length) : transfer.length;
  statistics_.bytesOut += arrived;
  if (transfer.pipe != kCommandPipe) return;
  uint8_t bytes[kPacketSize] = {};
  const uint32_t length = Smaller(arrived, kPacketSize);
  for (uint32_t i = 0; i < length; ++i) bytes[i] = transfer.source[i];
  if (fault.kind == kFaultWrongByte && arrived > 0 && fault.value % arrived < length) {
    bytes[fault.value % arrived] ^= 0xFF;
  }
  Command(now, bytes, length);
}

uint32_t Sensor::Read(uint64_t now, const Transfer& transfer, const Fault& fault,
                      uint32_t* arrived) {
  const uint32_t visible = fault.kind == kFaultShort ? fault.value : transfer.length;
  uint32_t given = transfer.length;
  if (transfer.pipe == kStatusPipe) {
    uint8_t packet[kPacketSize] = {};
    MakeStatus(now, packet);
    given = Smaller(given, kPacketSize);
    for (uint32_t i = 0; i < Smaller(given, visible); ++i) transfer.target[i] = packet[i];
  } else if (given > 0) {
    given = ReadBulk(now, transfer.target, given, visible);
    if (given == 0) return kDriverTimedOut;
  }
  *arrived = Smaller(given, visible);
  if (fault.kind == kFaultWrongByte && *arrived > 0) {
    transfer.target[fault.value % *arrived] ^= 0xFF;
  }
  statistics_.bytesIn += *arrived;
  return kDriverOk;
}

}  // namespace zyr::simulator
