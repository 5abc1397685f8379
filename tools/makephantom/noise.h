// Random numbers and random textures, the same on every machine.
#pragma once

#include <cstdint>

namespace zyr {

// A well mixed number for each input.
uint64_t HashBits(uint64_t value);

// A stream of random numbers from a seed.
class RandomStream {
 public:
  explicit RandomStream(uint64_t seed) : state_(seed) {}

  uint64_t Bits() { return HashBits(state_++); }
  // 0 <= result < 1
  double Uniform() { return static_cast<double>(Bits() >> 11) * (1.0 / 9007199254740992.0); }
  double Between(double low, double high) { return low + (high - low) * Uniform(); }
  bool Chance(double probability) { return Uniform() < probability; }
  // Close to the normal distribution with mean 0 and deviation 1; at most 4.25 either way.
  double Normal();

 private:
  uint64_t state_;
};

// Smooth noise with features of size 1, about -1 to 1, mean 0.
double SmoothNoise(double x, double y, uint64_t seed);
// A web of thin bright strands around dark gaps of size 1, about -1 to 1, mean about 0: how a
// projection through spongy bone looks.
double WebNoise(double x, double y, uint64_t seed);

}  // namespace zyr
