#include "imaging/viewer/picture_rows.h"

#include <algorithm>

#include "imaging/viewer/scale_rows.h"

namespace zyr {
namespace {

uint32_t ColorOf(const PaletteEntry& entry) {
  return entry.blue | uint32_t{entry.green} << 8 | uint32_t{entry.red} << 16;
}

std::array<uint32_t, 256> ColorsOf(const CKIPImage& image) {
  std::array<uint32_t, 256> colors{};
  const Palette& palette = image.palette();
  if (palette.empty()) {
    const uint32_t step = image.bitsPerPixel() == 1 ? 0xFFFFFF : 0x010101;
    for (uint32_t i = 0; i < 256; ++i) colors[i] = i * step & 0xFFFFFF;
  }
  for (size_t i = 0; i < std::min<size_t>(palette.size(), 256); ++i) {
    colors[i] = ColorOf(palette[i]);
  }
  return colors;
}

}  // namespace

PictureRows::PictureRows(const CKIPImage& image, int32_t firstColumn, int32_t columns)
    : image_(image), first_(static_cast<size_t>(firstColumn)), columns_(size_t(columns)) {
  if (image.bitsPerPixel() != 24) colors_ = ColorsOf(image);
  areLevels_ = image.bitsPerPixel() == 8 && (image.IsGrey() || image.palette().empty());
  isIdentity_ = areLevels_;
  for (uint32_t i = 0; i < 256; ++i) isIdentity_ = isIdentity_ && colors_[i] == i * 0x010101;
}

const uint8_t* PictureRows::Plane(int32_t y, size_t plane) {
  if (areLevels_) return image_.PictureRow(static_cast<uint32_t>(y)) + first_;
  if (y != rowInPlanes_) {
    row_.resize(columns_);
    planes_.resize(columns_ * 3);
    Colors(y, row_.data());
    ScaleRowLoops().splitColors(row_.data(), columns_, planes_.data(), planes_.data() + columns_,
                                planes_.data() + columns_ * 2);
    rowInPlanes_ = y;
  }
  return planes_.data() + plane * columns_;
}

void PictureRows::Colors(int32_t y, uint32_t* target) const {
  const uint8_t* source = image_.PictureRow(static_cast<uint32_t>(y));
  if (image_.bitsPerPixel() == 24) {
    ScaleRowLoops().colorsOf24(source + first_ * 3, columns_, target);
  } else if (image_.bitsPerPixel() == 8) {
    ColorLevels(source + first_, columns_, target);
  } else {
    for (size_t x = first_; x < first_ + columns_; ++x) {
      *target++ = colors_[source[x >> 3] >> (7 - (x & 7)) & 1];
    }
  }
}

void PictureRows::Finish(const uint8_t* bytes, size_t count, uint32_t* target) const {
  if (areLevels_) {
    ColorLevels(bytes, count, target);
  } else {
    ScaleRowLoops().joinColors(bytes, bytes + count, bytes + count * 2, count, target);
  }
}

void PictureRows::ColorLevels(const uint8_t* levels, size_t count, uint32_t* target) const {
  if (isIdentity_) {
    ScaleRowLoops().greysOfLevels(levels, count, target);
  } else {
    ScaleRowLoops().colorsOfLevels(levels, colors_.data(), count, target);
  }
}

}  // namespace zyr
