// Correction data as a 303 sensor holds them: fields of bits without gaps, the lowest bit first.
#pragma once

#include <cstdint>
#include <vector>

namespace zyr {

class BitWriter {
 public:
  BitWriter& Put(uint32_t value, uint32_t count) {
    for (uint32_t i = 0; i < count; ++i, ++bits_) {
      if (bits_ % 8 == 0) bytes_.push_back(0);
      if (value >> i & 1) bytes_.back() = static_cast<uint8_t>(bytes_.back() | 1u << bits_ % 8);
    }
    return *this;
  }
  BitWriter& Pixel(uint32_t x, uint32_t y) { return Put(0, 3).Put(x, 11).Put(y, 11); }
  BitWriter& Column(uint32_t x) { return Put(2, 3).Put(x, 11); }
  BitWriter& Row(uint32_t y) { return Put(3, 3).Put(y, 11); }
  BitWriter& Calibration(int32_t a, int32_t b, int32_t c) {
    Put(6, 3).Put(0x15, 5);
    for (const int32_t value : {a, b, c}) Put(static_cast<uint32_t>(value), 32);
    return *this;
  }

  const std::vector<uint8_t>& bytes() const { return bytes_; }

 private:
  std::vector<uint8_t> bytes_;
  uint64_t bits_ = 0;
};

}  // namespace zyr
