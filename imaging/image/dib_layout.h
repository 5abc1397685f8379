// Where the parts of a packed bitmap lie. The block comes from outside, so nothing in it is
// trusted.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "imaging/image/image.h"
#include "imaging/image/packed_dib.h"

namespace zyr {

inline constexpr uint32_t kBiRgb = 0;
inline constexpr uint32_t kBiBitfields = 3;

// Null if the block is shorter than a header.
std::optional<BitmapInfoHeader> ReadDibHeader(std::span<const uint8_t> dib);

struct DibLayout {
  explicit DibLayout(const BitmapInfoHeader& header);

  uint32_t width;
  uint32_t height;  // of a top-down bitmap too
  uint64_t colorTable;
  uint32_t colors;  // entries of the colour table
  uint64_t pixels;
};

// True if the header is one of those that this layout is for, and `pixelBytes` lie behind the
// colour table.
bool DibHoldsPixels(std::span<const uint8_t> dib, const DibLayout& layout, uint64_t pixelBytes);

// The colour table, without entries that no pixel of that depth can name. The block must hold it.
Palette ReadDibPalette(std::span<const uint8_t> dib, const DibLayout& layout, uint32_t bits);

}  // namespace zyr
