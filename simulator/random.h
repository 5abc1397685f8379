// Random numbers that are the same on every machine.
#pragma once

#include <cstdint>

namespace zyr::simulator {

class Random {
 public:
  // Streams of different purposes are independent.
  Random(uint64_t seed, uint64_t purpose) : state_(Mix(seed) ^ Mix(~purpose)) {}

  uint64_t Bits() { return Mix(state_ += 0x9E3779B97F4A7C15); }
  // From 0 below `limit`, which is above 0 and small.
  uint32_t Below(uint32_t limit) { return static_cast<uint32_t>((Bits() >> 32) * limit >> 32); }
  // From -1 to 1, evenly.
  double Even() { return (static_cast<double>(Bits() >> 11) / 4503599627370496.0) - 1.0; }
  // About the normal distribution with mean 0 and deviation 1, cut at 3.4: the sum of four even
  // numbers.
  double Normal() {
    const uint64_t bits = Bits();
    const uint64_t sum =
        (bits & 0xFFFF) + (bits >> 16 & 0xFFFF) + (bits >> 32 & 0xFFFF) + (bits >> 48);
    return (static_cast<double>(sum) - 131070.0) * (1.7320508075688772 / 65535.0);
  }

 private:
  static uint64_t Mix(uint64_t z) {
    z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9;
    z = (z ^ z >> 27) * 0x94D049BB133111EB;
    return z ^ z >> 31;
  }

  uint64_t state_;
};

}  // namespace zyr::simulator
