// The 12-to-16-bit stretch of images that are handed out.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zyr {

// Rewrites each sample so that 4095 becomes 65535. Larger samples wrap.
void StretchTo16Bit(uint16_t* samples, size_t count);
// The same from `source` to `target`, which may not overlap.
void StretchTo16Bit(const uint16_t* source, uint16_t* target, size_t count);

}  // namespace zyr
