#include "imaging/operations/levels/stretch.h"

#include <cstring>

namespace zyr {
namespace {

constexpr size_t kBlock = 16;  // a fixed count, which is what compilers vectorise

// The rule is trunc(v * (1 / 4095) * 65535 + 0.5) in double precision, its lower 16 bits. Since
// 65535 = 16 * 4095 + 15 and 4095 = 15 * 273, that is 16 * v plus v / 273 rounded. 273 is odd, so v
// / 273 is never nearer to a half than 1 / 546: far more than the error of the doubles, and than
// that of 61455 / 2^24 in place of 1 / 273. Each step fits in 16 bits.
uint16_t Stretch(uint16_t v) {
  const uint16_t scaled = static_cast<uint16_t>((v * 61455u) >> 16);
  const uint16_t quotient = static_cast<uint16_t>(static_cast<uint16_t>(scaled + 128) >> 8);
  return static_cast<uint16_t>(static_cast<uint16_t>(v << 4) + quotient);
}

void StretchBlock(const uint16_t* __restrict source, uint16_t* __restrict target) {
  for (size_t k = 0; k < kBlock; ++k) target[k] = Stretch(source[k]);
}

}  // namespace

void StretchTo16Bit(uint16_t* samples, size_t count) {
  size_t i = 0;
  for (; i + kBlock <= count; i += kBlock) {
    uint16_t block[kBlock];
    StretchBlock(samples + i, block);
    std::memcpy(samples + i, block, sizeof(block));
  }
  for (; i < count; ++i) samples[i] = Stretch(samples[i]);
}

void StretchTo16Bit(const uint16_t* source, uint16_t* target, size_t count) {
  size_t i = 0;
  for (; i + kBlock <= count; i += kBlock) StretchBlock(source + i, target + i);
  for (; i < count; ++i) target[i] = Stretch(source[i]);
}

}  // namespace zyr
