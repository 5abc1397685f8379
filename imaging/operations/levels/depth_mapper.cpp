#include "imaging/operations/levels/depth_mapper.h"

#include <algorithm>
#include <bit>
#include <numeric>
#include <span>
#include <vector>

#include "imaging/operations/levels/brightness_contrast.h"
#include "imaging/operations/levels/depth_transforms.h"
#include "imaging/operations/levels/gamma.h"

namespace zyr {
namespace {

// Loops over whole blocks of this length have a fixed count, which is what compilers vectorise.
constexpr size_t kBlock = 16;

uint32_t OrOfRow(const uint16_t* samples, size_t count) {
  uint16_t lanes[kBlock] = {};
  size_t i = 0;
  for (; i + kBlock <= count; i += kBlock) {
    for (size_t k = 0; k < kBlock; ++k) lanes[k] |= samples[i + k];
  }
  uint32_t result = 0;
  for (const uint16_t lane : lanes) result |= lane;
  for (; i < count; ++i) result |= samples[i];
  return result;
}

uint32_t AndOfRow(const uint16_t* samples, size_t count) {
  uint16_t lanes[kBlock];
  std::fill_n(lanes, kBlock, uint16_t{0xFFFF});
  size_t i = 0;
  for (; i + kBlock <= count; i += kBlock) {
    for (size_t k = 0; k < kBlock; ++k) lanes[k] &= samples[i + k];
  }
  uint32_t result = 0xFFFF;
  for (const uint16_t lane : lanes) result &= lane;
  for (; i < count; ++i) result &= samples[i];
  return result;
}

// All bits set in any sample, or in any sample's complement.
uint32_t BitsInUse(const uint16_t* samples, uint32_t width, uint32_t height, uint32_t pad,
                   bool positive) {
  uint32_t inUse = 0;
  for (uint32_t row = 0; row < height; ++row, samples += size_t{width} + pad) {
    inUse |= positive ? OrOfRow(samples, width) : ~AndOfRow(samples, width) & 0xFFFF;
  }
  return inUse;
}

// Samples beyond the table are not mapped by it and do not count.
void CountInRange(std::span<const uint16_t> samples, uint32_t lowBit,
                  std::vector<uint32_t>& counts) {
  for (const uint16_t sample : samples) {
    const uint32_t level = static_cast<uint32_t>(sample) >> lowBit;
    if (level < counts.size()) ++counts[level];
  }
}

uint8_t ByteOf(double level) {
  if (!(level < 255)) return 255;  // not a number, too
  return level > 0 ? static_cast<uint8_t>(level) : 0;
}

// The top 8 of the lower `highBit` bits, 8 to 16. Samples with higher bits count as 0; then the
// bits of `complement` are turned over.
struct TopByte {
  TopByte(uint32_t highBit, uint8_t complementBits)
      : greatest(static_cast<uint16_t>((1u << highBit) - 1)),
        scale(static_cast<uint16_t>(1u << (16 - highBit))),
        complement(complementBits) {}

  void OfBlock(const uint16_t* __restrict samples, uint8_t* __restrict bytes) const {
    for (size_t k = 0; k < kBlock; ++k) {
      const uint16_t sample = samples[k] <= greatest ? samples[k] : uint16_t{0};
      // Up to the top of 16 bits and down again: one shift for all depths.
      const uint16_t scaled = static_cast<uint16_t>(sample * scale);
      bytes[k] = static_cast<uint8_t>((scaled >> 8) ^ complement);
    }
  }

  void OfRow(const uint16_t* samples, uint8_t* bytes, size_t count) const {
    size_t i = 0;
    for (; i + kBlock <= count; i += kBlock) OfBlock(samples + i, bytes + i);
    if (i == count) return;
    uint16_t lastSamples[kBlock] = {};
    uint8_t lastBytes[kBlock];
    std::copy(samples + i, samples + count, lastSamples);
    OfBlock(lastSamples, lastBytes);
    std::copy_n(lastBytes, count - i, bytes + i);
  }

  uint16_t greatest;
  uint16_t scale;
  uint8_t complement;
};

}  // namespace

void CKIPDepthMapper::Prepare(const uint16_t* samples, uint32_t width, uint32_t height,
                              uint32_t pad, const DepthMapping& mapping) {
  Configure(samples, width, height, pad, mapping);
  BuildPlainTable();
  const bool isPlain = IsPlainDepthMode(mapping.mode);
  if (!isPlain) Transform(samples, width, height, pad, mapping);
  FinishTable();
  const bool changesLevels = mapping.brightness != 0 || mapping.contrast != 0;
  const bool changesGamma = mapping.gamma != 0 && mapping.gamma != 1;
  if (changesLevels) {
    RewriteTable(BrightnessContrastTable(mapping.brightness, mapping.contrast));
  }
  if (changesGamma) RewriteTable(GammaTable(1 / mapping.gamma));
  isPlainShift_ = reducible_ && isPlain && !changesLevels && !changesGamma;
}

void CKIPDepthMapper::Configure(const uint16_t* samples, uint32_t width, uint32_t height,
                                uint32_t pad, const DepthMapping& mapping) {
  const uint32_t declaredBits = std::clamp(mapping.bits, 1u, 16u);
  positive_ = mapping.positive;
  if (mapping.detectDepth) {
    const uint32_t inUse = BitsInUse(samples, width, height, pad, positive_);
    const uint32_t inDeclared = inUse & ((1u << declaredBits) - 1);
    highBit_ = std::max(1u, static_cast<uint32_t>(std::bit_width(inDeclared)));
    lowBit_ = 0;
  } else {
    highBit_ = declaredBits;
    lowBit_ = std::min(mapping.lowBit, highBit_ - 1);
  }
  rangeBits_ = highBit_ - lowBit_;
  tableSize_ = 1u << rangeBits_;
  mask_ = tableSize_ - 1;
  reducible_ = rangeBits_ >= 8;
  reduceShift_ = reducible_ ? rangeBits_ - 8 : 0;
}

// The reduction to the top 8 bits.
void CKIPDepthMapper::BuildPlainTable() {
  for (uint32_t i = 0; i < tableSize_; ++i) {
    lut_[i] = reducible_ ? static_cast<uint8_t>(i >> reduceShift_)
                         : ByteOf(i * (1.0 / (tableSize_ - 1)) * 255);
  }
}

void CKIPDepthMapper::Transform(const uint16_t* samples, uint32_t width, uint32_t height,
                                uint32_t pad, const DepthMapping& mapping) {
  std::vector<uint32_t> counts(tableSize_);
  for (uint32_t row = 0; row < height; ++row, samples += size_t{width} + pad) {
    CountInRange({samples, width}, lowBit_, counts);
  }
  const DepthTransform transform = {mapping.mode, positive_, static_cast<double>(width) * height,
                                    mapping.percent};
  const std::span<uint8_t> levels(lut_.data(), tableSize_);
  if (!reducible_ || mapping.mode == kDepthRange) {
    TransformLevels(counts, transform, levels);
    return;
  }
  std::array<uint32_t, 256> reducedCounts{};
  for (uint32_t i = 0; i < tableSize_; ++i) reducedCounts[i >> reduceShift_] += counts[i];
  std::array<uint8_t, 256> reduced;
  std::iota(reduced.begin(), reduced.end(), uint8_t{0});
  TransformReducedLevels(reducedCounts, transform, reduced);
  SmoothLevels(reduced, reduceShift_, levels);
}

void CKIPDepthMapper::FinishTable() {
  std::fill(lut_.begin() + tableSize_, lut_.end(), uint8_t{0});
  if (positive_) return;
  for (uint8_t& level : lut_) level = static_cast<uint8_t>(255 - level);
}

void CKIPDepthMapper::RewriteTable(const std::array<uint8_t, 256>& levels) {
  for (uint32_t i = 0; i < tableSize_; ++i) lut_[i] = levels[lut_[i]];
}

void CKIPDepthMapper::MapRow(const uint16_t* samples, uint8_t* bytes, size_t count,
                             bool invert) const {
  const uint8_t inversion = invert ? 0xFF : 0;
  if (isPlainShift_) {
    const uint8_t complement = positive_ ? 0 : 0xFF;
    TopByte(highBit_, complement ^ inversion).OfRow(samples, bytes, count);
    return;
  }
  for (size_t i = 0; i < count; ++i) bytes[i] = lut_[samples[i] >> lowBit_] ^ inversion;
}

}  // namespace zyr
