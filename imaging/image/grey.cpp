#include "imaging/image/grey.h"

#include <array>
#include <new>

namespace zyr {
namespace {

constexpr uint8_t kWhite = 255;

std::unique_ptr<CKIPImage> NewImageLike(const CKIPImage& source, uint32_t bitsPerPixel) {
  std::unique_ptr<CKIPImage> image(new (std::nothrow) CKIPImage);
  if (image == nullptr || !source.IsValid()) return nullptr;
  if (!image->CreateUnfilled({source.name, source.width(), source.height(), source.xResolution(),
                              source.yResolution(), bitsPerPixel})) {
    return nullptr;
  }
  image->flipped = source.flipped;
  return image;
}

// Value of the pixel at `x` of an image of 1 or 8 bits.
uint32_t IndexAt(const uint8_t* row, uint32_t x, uint32_t bitsPerPixel) {
  return bitsPerPixel == 8 ? row[x] : row[x >> 3] >> (7 - (x & 7)) & 1u;
}

// Runs `convertRow(source row, target row)` over the memory rows. False on cancel and if it says
// so.
template <typename ConvertRow>
bool ForEachRow(const CKIPImage& source, CKIPImage& target, ProgressCallback progress,
                ConvertRow convertRow) {
  cancel_monitor::Reset();
  for (uint32_t row = 0; row < source.height(); ++row) {
    Report(progress, static_cast<double>(row) / source.height());
    if (cancel_monitor::IsCancelled()) return false;
    if (!convertRow(source.MemoryRow(row), target.MemoryRow(row))) return false;
  }
  return true;
}

std::array<uint8_t, 256> GreysOf(const Palette& palette) {
  std::array<uint8_t, 256> greys;
  greys.fill(kWhite);
  for (size_t i = 0; i < palette.size() && i < greys.size(); ++i) {
    greys[i] = GreyFromRgb(palette[i].red, palette[i].green, palette[i].blue);
  }
  return greys;
}

}  // namespace

uint8_t GreyFromRgb(uint8_t red, uint8_t green, uint8_t blue) {
  if (red == green && green == blue) return red;
  return static_cast<uint8_t>((71 * red + 150 * green + 28 * blue) >> 8);
}

uint8_t GreyFromColor(const uint8_t* color) { return GreyFromRgb(color[2], color[1], color[0]); }

void MakeIdentityPalette(PaletteEntry* entries) {
  for (uint32_t i = 0; i < 256; ++i) {
    const uint8_t level = static_cast<uint8_t>(i);
    entries[i] = {level, level, level, 0};
  }
}

Palette NewIdentityPalette() {
  Palette palette(256);
  MakeIdentityPalette(palette.data());
  return palette;
}

std::unique_ptr<CKIPImage> ConvertToGrey8(const CKIPImage& image, ProgressCallback progress) {
  std::unique_ptr<CKIPImage> grey = NewImageLike(image, 8);
  if (grey == nullptr) return nullptr;
  grey->SetPalette(NewIdentityPalette());
  const uint32_t width = image.width();
  const uint32_t depth = image.bitsPerPixel();
  const std::array<uint8_t, 256> greys = GreysOf(image.palette());
  const bool done = ForEachRow(image, *grey, progress, [&](const uint8_t* source, uint8_t* target) {
    if (depth == 24) {
      for (uint32_t x = 0; x < width; ++x) target[x] = GreyFromColor(source + size_t{x} * 3);
    } else {
      for (uint32_t x = 0; x < width; ++x) target[x] = greys[IndexAt(source, x, depth)];
    }
    return true;
  });
  return done ? std::move(grey) : nullptr;
}

std::unique_ptr<CKIPImage> ConvertTo24(const CKIPImage& image, ProgressCallback progress) {
  if (image.bitsPerPixel() == 24) return image.Clone(true);
  std::unique_ptr<CKIPImage> colored = NewImageLike(image, 24);
  if (colored == nullptr) return nullptr;
  const Palette& palette = image.palette();
  const bool done =
      ForEachRow(image, *colored, progress, [&](const uint8_t* source, uint8_t* target) {
        for (uint32_t x = 0; x < image.width(); ++x, target += 3) {
          const uint32_t index = IndexAt(source, x, image.bitsPerPixel());
          if (index >= palette.size()) return false;
          target[0] = palette[index].blue;
          target[1] = palette[index].green;
          target[2] = palette[index].red;
        }
        return true;
      });
  return done ? std::move(colored) : nullptr;
}

}  // namespace zyr
