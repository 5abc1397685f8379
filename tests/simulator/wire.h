// A sensor on the end of either driver, spoken to in bytes.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <vector>

#include "simulator/sensor.h"

namespace zyr::test {

using Bytes = std::vector<uint8_t>;

class Wire {
 public:
  Wire(const simulator::Setup& setup, simulator::Generation generation) : generation_(generation) {
    sensor.Plug(setup, generation);
  }

  simulator::Answer Reset() {
    const bool pipes = generation_ == simulator::kPipeDriver;
    return sensor.Control(now, pipes ? simulator::kPipeReset : simulator::kEndpointReset, nullptr,
                          0, nullptr, 0);
  }
  simulator::Answer Send(std::initializer_list<uint8_t> command) {
    Bytes bytes(command);
    return Transfer(0, &bytes);
  }
  // What arrives; `answer` tells how.
  Bytes Receive(uint32_t pipe, size_t length) {
    Bytes bytes(length, kUntouched);
    answer = Transfer(pipe, &bytes);
    const uint32_t header = generation_ == simulator::kPipeDriver ? 0 : simulator::kRecordSize;
    bytes.resize(answer.returned < header ? 0 : answer.returned - header);
    return bytes;
  }
  Bytes Status() { return Receive(1, 64); }
  // Upper four bits of the CCD status, or the kind of another packet.
  int State() {
    const Bytes packet = Status();
    return packet[0] == 0x83 ? packet[1] & 0xF0 : 0x100 | packet[0];
  }
  Bytes Bulk(size_t length) { return Receive(3, length); }

  simulator::Sensor sensor;
  uint64_t now = 1'000'000;
  simulator::Answer answer{};

  static constexpr uint8_t kUntouched = 0xEE;

 private:
  simulator::Answer Transfer(uint32_t pipe, Bytes* payload) {
    const auto size = static_cast<uint32_t>(payload->size());
    if (generation_ == simulator::kPipeDriver) {
      const uint8_t name[] = {static_cast<uint8_t>(pipe), 0, 0, 0};
      return sensor.Control(now, simulator::kPipeTransfer, name, 4, payload->data(), size);
    }
    constexpr uint8_t kEndpoints[] = {0x01, 0x81, 0x02, 0x86};
    Bytes record(simulator::kRecordSize);
    record[0x0D] = kEndpoints[pipe];
    record[0x1E] = simulator::kRecordSize;
    for (int i = 0; i < 4; ++i) record[0x22 + i] = static_cast<uint8_t>(size >> 8 * i);
    record.insert(record.end(), payload->begin(), payload->end());
    const auto total = static_cast<uint32_t>(record.size());
    const simulator::Answer result = sensor.Control(now, simulator::kEndpointTransfer,
                                                    record.data(), total, record.data(), total);
    payload->assign(record.begin() + simulator::kRecordSize, record.end());
    return result;
  }

  simulator::Generation generation_;
};

}  // namespace zyr::test
