#include "imaging/image/dib_layout.h"

#include <algorithm>
#include <cstring>

namespace zyr {
namespace {

constexpr size_t kMaskBytes = 3 * sizeof(uint32_t);

// Also of the least number, which has no positive counterpart in 32 bits.
uint32_t Absolute(int32_t value) {
  const uint32_t bits = static_cast<uint32_t>(value);
  return value < 0 ? 0u - bits : bits;
}

uint32_t ColorsOf(const BitmapInfoHeader& header) {
  if (header.biBitCount == 16) return 0;
  if (header.biClrUsed == 0 && header.biBitCount < 16) return 1u << header.biBitCount;
  return header.biClrUsed;
}

// Larger headers hold the masks themselves.
bool HasMasksBehindHeader(const BitmapInfoHeader& header) {
  return header.biBitCount == 32 && header.biCompression == kBiBitfields &&
         header.biSize == sizeof(BitmapInfoHeader);
}

}  // namespace

std::optional<BitmapInfoHeader> ReadDibHeader(std::span<const uint8_t> dib) {
  BitmapInfoHeader header;
  if (dib.data() == nullptr || dib.size() < sizeof(header)) return std::nullopt;
  std::memcpy(&header, dib.data(), sizeof(header));
  return header;
}

DibLayout::DibLayout(const BitmapInfoHeader& header)
    : width(Absolute(header.biWidth)),
      height(Absolute(header.biHeight)),
      colorTable(uint64_t{header.biSize} + (HasMasksBehindHeader(header) ? kMaskBytes : 0)),
      colors(ColorsOf(header)),
      pixels(colorTable + uint64_t{colors} * sizeof(PaletteEntry)) {}

bool DibHoldsPixels(std::span<const uint8_t> dib, const DibLayout& layout, uint64_t pixelBytes) {
  return layout.colorTable >= sizeof(BitmapInfoHeader) && layout.pixels <= dib.size() &&
         pixelBytes <= dib.size() - layout.pixels;
}

Palette ReadDibPalette(std::span<const uint8_t> dib, const DibLayout& layout, uint32_t bits) {
  Palette palette(std::min(layout.colors, 1u << bits));
  std::memcpy(palette.data(), dib.data() + layout.colorTable,
              palette.size() * sizeof(PaletteEntry));
  return palette;
}

}  // namespace zyr
