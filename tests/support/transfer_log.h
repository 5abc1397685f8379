// USB traffic as text that is compared and kept.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace zyr::test {

struct LoggedTransfer {
  uint64_t milliseconds = 0;  // since the sensor was plugged in
  uint32_t code = 0;          // of the driver call
  std::string direction;      // "in 3", "out 01"; or what was called instead of a transfer
  bool isBulk = false;
  uint32_t error = 0;
  size_t length = 0;  // bytes asked for or sent
  std::vector<uint8_t> bytes;  // sent, or arrived
};

// Turns a call of the driver as it was answered into a record. `input` is as the caller gave it;
// `output` is after the call. `arrived` counts the bytes that the driver has written.
LoggedTransfer DescribeCall(uint32_t code, std::span<const uint8_t> input,
                            std::span<const uint8_t> output, uint32_t error, size_t arrived);

std::string TranscriptOf(const std::vector<LoggedTransfer>& transfers);

}  // namespace zyr::test
