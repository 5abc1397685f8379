// Transposition of pixels.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zyr {

// The pixel in row y and column x of `source` goes to row x and column y of `target`, which may not
// overlap. Strides are bytes from one row to the next, and may be negative. `pixelBytes` is 1, 2
// or 3.
void TransposePixels(const uint8_t* source, ptrdiff_t sourceStride, uint8_t* target,
                     ptrdiff_t targetStride, size_t width, size_t height, size_t pixelBytes);

}  // namespace zyr
