// Reversal of the pixels of one row.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zyr {

// `target` gets the pixels of `source` in the opposite order. `pixelBytes` is 1, 2 or 3; the rows
// may not overlap.
void ReversePixels(const uint8_t* source, uint8_t* target, size_t width, size_t pixelBytes);

}  // namespace zyr
