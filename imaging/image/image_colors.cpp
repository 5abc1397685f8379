// Palette and pixel access of CKIPImage.
#include <algorithm>

#include "imaging/image/image.h"
#include "imaging/image/image_error.h"

namespace zyr {
namespace {

uint32_t SquaredDistance(const PaletteEntry& a, const PaletteEntry& b) {
  const int blue = a.blue - b.blue;
  const int green = a.green - b.green;
  const int red = a.red - b.red;
  return static_cast<uint32_t>(blue * blue + green * green + red * red);
}

PaletteEntry EntryOf(ColorRef colour) {
  return {static_cast<uint8_t>(colour >> 16), static_cast<uint8_t>(colour >> 8),
          static_cast<uint8_t>(colour), 0};
}

uint8_t BitMask(uint32_t x) { return static_cast<uint8_t>(0x80 >> (x & 7)); }

}  // namespace

bool CKIPImage::GetPaletteEntry(uint32_t index, PaletteEntry* out) const {
  if (index >= palette_.size()) return false;
  if (out != nullptr) *out = palette_[index];
  return true;
}

bool CKIPImage::FindNearestPaletteIndex(const PaletteEntry& colour, uint32_t* index) const {
  if (palette_.empty()) return false;
  // An exact match has the distance 0, which no earlier entry can have had.
  const auto nearest = std::min_element(
      palette_.begin(), palette_.end(), [&](const PaletteEntry& a, const PaletteEntry& b) {
        return SquaredDistance(a, colour) < SquaredDistance(b, colour);
      });
  if (index != nullptr) *index = static_cast<uint32_t>(nearest - palette_.begin());
  return true;
}

bool CKIPImage::MapToNearestPaletteColour(const PaletteEntry& colour, PaletteEntry* out) const {
  uint32_t index = 0;
  return FindNearestPaletteIndex(colour, &index) && GetPaletteEntry(index, out);
}

bool CKIPImage::FindNearestPaletteIndexRgb(ColorRef colour, uint32_t* index) const {
  return FindNearestPaletteIndex(EntryOf(colour), index);
}

bool CKIPImage::GetBit(uint32_t x, uint32_t y) const {
  return (PictureRow(y)[x >> 3] & BitMask(x)) != 0;
}

void CKIPImage::SetBit(uint32_t x, uint32_t y, bool value) {
  uint8_t& byte = PictureRow(y)[x >> 3];
  byte = static_cast<uint8_t>(value ? byte | BitMask(x) : byte & ~BitMask(x));
}

void CKIPImage::GetByte(uint32_t x, uint32_t y, uint8_t* out) const {
  const uint8_t value = bitsPerPixel_ == 1 ? GetBit(x, y) : PictureRow(y)[x];
  if (out != nullptr) *out = value;
}

void CKIPImage::SetByte(uint32_t x, uint32_t y, uint8_t value) {
  if (bitsPerPixel_ == 1) {
    SetBit(x, y, value != 0);
  } else {
    PictureRow(y)[x] = value;
  }
}

void CKIPImage::SetRgb(uint32_t x, uint32_t y, ColorRef colour) {
  if (bitsPerPixel_ != 24) {
    uint32_t index = 0;
    if (FindNearestPaletteIndexRgb(colour, &index)) SetByte(x, y, static_cast<uint8_t>(index));
    return;
  }
  const PaletteEntry entry = EntryOf(colour);
  uint8_t* pixel = PictureRow(y) + size_t{x} * 3;
  pixel[0] = entry.blue;
  pixel[1] = entry.green;
  pixel[2] = entry.red;
}

void CKIPImage::SetBgr(uint32_t x, uint32_t y, uint32_t packed) {
  SetRgb(x, y, (packed & 0xFF) << 16 | (packed & 0xFF00) | (packed >> 16 & 0xFF));
}

bool CKIPImage::GetColor(uint32_t x, uint32_t y, PaletteEntry* out) const {
  if (bitsPerPixel_ == 24) {
    const uint8_t* pixel = PictureRow(y) + size_t{x} * 3;
    if (out != nullptr) *out = {pixel[0], pixel[1], pixel[2], 0};
    return true;
  }
  uint8_t index = 0;
  GetByte(x, y, &index);
  return GetPaletteEntry(index, out);
}

bool CKIPImage::GetColorChecked(uint32_t x, uint32_t y, PaletteEntry* out) const {
  if (bits_ == nullptr) {
    ReportImageError(kImageErrorInvalidImage, "Invalid image specified");
    return false;
  }
  if (x >= width_ || y >= height_) {
    ReportImageError(kImageErrorImageIndex, "Image index out of range (%lux%lu)", Lu(x), Lu(y));
    return false;
  }
  if (bitsPerPixel_ == 8 && PictureRow(y)[x] >= colorCount()) {
    ReportImageError(kImageErrorColorIndex, "Color index out of range (%lu out of %lu)",
                     Lu(PictureRow(y)[x]), Lu(colorCount()));
    return false;
  }
  return GetColor(x, y, out);
}

bool CKIPImage::IsGrey() const {
  return bitsPerPixel_ == 8 && !palette_.empty() &&
         std::all_of(palette_.begin(), palette_.end(), [](const PaletteEntry& entry) {
           return entry.red == entry.green && entry.green == entry.blue;
         });
}

}  // namespace zyr
