// CKIPDepthMapper: a table that turns 16-bit samples into bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "imaging/image/raw_pixels.h"

namespace zyr {

// About 64 KB: make it on the heap. One thread.
class CKIPDepthMapper {
 public:
  // Finds the depth and builds the table. Rows of `samples` are `width + pad` samples apart. The
  // modes other than 0 may throw std::bad_alloc; the mapper is then to be prepared anew.
  void Prepare(const uint16_t* samples, uint32_t width, uint32_t height, uint32_t pad,
               const DepthMapping& mapping);

  // Without `positive` an out-of-range sample maps to the bright end, as the table is complemented.
  uint8_t Map(uint16_t sample, bool positive) const {
    const uint32_t index = static_cast<uint32_t>(sample) >> lowBit_;
    if (index >= tableSize_) return positive ? 0 : 255;
    return lut_[index & mask_];
  }

  // Maps `count` samples with the `positive` of Prepare. Each result is inverted on the way if
  // asked. The ranges may not overlap.
  void MapRow(const uint16_t* samples, uint8_t* bytes, size_t count, bool invert) const;

  uint32_t lowBit() const { return lowBit_; }
  uint32_t highBit() const { return highBit_; }
  uint32_t tableSize() const { return tableSize_; }

 private:
  void Configure(const uint16_t* samples, uint32_t width, uint32_t height, uint32_t pad,
                 const DepthMapping& mapping);
  void BuildPlainTable();
  void Transform(const uint16_t* samples, uint32_t width, uint32_t height, uint32_t pad,
                 const DepthMapping& mapping);
  void FinishTable();
  void RewriteTable(const std::array<uint8_t, 256>& levels);

  // Entries from `tableSize_` on hold what an out-of-range sample maps to.
  std::array<uint8_t, 65536> lut_{};
  uint32_t lowBit_ = 0;
  uint32_t highBit_ = 16;
  uint32_t rangeBits_ = 16;
  uint32_t mask_ = 0;
  uint32_t tableSize_ = 0;
  bool reducible_ = false;
  uint32_t reduceShift_ = 0;
  bool positive_ = true;
  bool isPlainShift_ = false;  // the table does nothing but shift, and complement if not positive
};

}  // namespace zyr
