// A sensor that answers each command in one fixed way, and writes down what it was asked.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "foundation/support/format.h"
#include "foundation/support/little_endian.h"
#include "platform/host/usb_driver.h"

namespace zyr::test {

using Bytes = std::vector<uint8_t>;

inline std::string Hex(const Bytes& bytes) {
  std::string text;
  for (const uint8_t byte : bytes) text += FormatText(text.empty() ? "%02X" : " %02X", byte);
  return text;
}

// Speaks to UsbPortPipe.
class ScriptedDriver : public platform::host::FakeDriver {
 public:
  // Commands in hexadecimal digits, "status", "bulk <length>", "reset". Equal neighbours become one
  // entry with their number: "bulk 8192 x3".
  std::vector<std::string> asked;
  uint32_t transfers = 0;
  std::map<uint32_t, uint32_t> failAt;  // number of a transfer, from 0: the error it fails with

  Bytes memory = Bytes(0x4020);
  std::array<uint8_t, 8> mac{1, 2, 3, 4, 5, 6, 7, 8};
  std::array<uint8_t, 3> echo{0x8E, 0xAA, 0x55};
  std::deque<uint8_t> present;  // answers to 02 C0, then 1
  std::deque<uint8_t> ccd;      // states of the CCD logic, then 0x60
  uint8_t ccdAnswer = 0x83;
  uint32_t rowError = 0;  // what the rows of frames fail with
  // Word `x` of the `y`-th row, counted through both frames of a capture.
  std::function<uint16_t(uint32_t x, uint32_t y)> word;  // null: zeros

  void PutText(size_t address, const std::string& text) {
    std::copy(text.begin(), text.end(), memory.begin() + static_cast<std::ptrdiff_t>(address));
  }

  platform::DriverAnswer Control(uint32_t code, uint8_t* input, size_t inputSize, uint8_t* output,
                                 size_t outputSize) override {
    const uint32_t pipe = inputSize == 4 ? LoadLittleEndian<uint32_t>(input) : 0;
    const Bytes sent(output, pipe == 0 ? output + outputSize : output);
    const std::string entry = code == 0x222031 ? "reset"
                              : pipe == 0      ? Hex(sent)
                              : pipe == 1      ? "status"
                                          : FormatText("bulk %d", static_cast<int>(outputSize));
    WriteDown(entry);
    const auto fault = failAt.find(transfers++);
    if (fault != failAt.end()) return {false, fault->second};
    if (pipe == 0) command_ = sent;
    if (entry.starts_with("02 20")) row_ = 0;
    return pipe == 0 ? platform::DriverAnswer{true, 0} : Answer(pipe, output, outputSize);
  }

 private:
  void WriteDown(const std::string& entry) {
    repeats_ = entry == lastEntry_ ? repeats_ + 1 : 1;
    if (repeats_ > 1) asked.pop_back();
    asked.push_back(repeats_ > 1 ? FormatText("%s x%d", entry.c_str(), repeats_) : entry);
    lastEntry_ = entry;
  }

  static uint8_t Next(std::deque<uint8_t>& queue, uint8_t otherwise) {
    if (queue.empty()) return otherwise;
    const uint8_t front = queue.front();
    queue.pop_front();
    return front;
  }

  platform::DriverAnswer Answer(uint32_t pipe, uint8_t* output, size_t size) {
    const uint8_t last = command_.empty() ? 0 : command_[0];
    if (pipe == 1) {
      std::fill_n(output, size, uint8_t{0});
      if (last == 0x0E) {
        std::copy(echo.begin(), echo.end(), output);
      } else if (Hex(command_) == "02 C0") {
        output[0] = Next(present, 1);
      } else {
        output[0] = ccdAnswer;
        output[1] = Next(ccd, 0x60);
      }
    } else if (last == 0x06) {
      std::copy_n(mac.begin(), std::min(size, mac.size()), output);
    } else if (last == 0x0B || last == 0x0C) {
      const size_t address = command_[3] * 256u + command_[4];
      std::copy_n(memory.begin() + static_cast<std::ptrdiff_t>(address), size, output);
    } else if (rowError != 0) {
      return {false, rowError};
    } else {
      if (word == nullptr) std::fill_n(output, size, uint8_t{0});
      for (uint32_t x = 0; word != nullptr && x < size / 2; ++x) {
        StoreLittleEndian(output + 2 * x, word(x, row_));
      }
      ++row_;
    }
    return {true, 0};
  }

  Bytes command_;
  std::string lastEntry_;
  int repeats_ = 0;
  uint32_t row_ = 0;
};

}  // namespace zyr::test
