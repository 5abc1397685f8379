#include "imaging/operations/levels/brightness_contrast.h"

#include <algorithm>
#include <new>

namespace zyr {

ByteTable BrightnessContrastTable(int32_t brightness, int32_t contrast) {
  const double b = brightness * 0.01 * 255;
  const double c = contrast * 0.01;
  ByteTable table;
  for (int v = 0; v < 256; ++v) {
    table[v] = static_cast<uint8_t>(std::clamp(v + (v - 128) * c + b, 0.0, 255.0) + 0.5);
  }
  return table;
}

std::unique_ptr<CKIPImage> AdjustBrightnessContrast(const CKIPImage* image, int32_t brightness,
                                                    int32_t contrast, ColorRef keep,
                                                    ProgressCallback progress) try {
  if (image == nullptr || !image->IsValid() || image->bitsPerPixel() == 1) return nullptr;
  const ByteTable table = BrightnessContrastTable(brightness, contrast);
  const RowProgress rows(progress, image->height());
  if (keep != kKeepNoColor) return MapBytesKeeping(*image, {table, table, table}, keep, rows);
  const double c = contrast * 0.01;
  const LevelLine line = {1 + c, brightness * 0.01 * 255 - 128 * c + 0.5, 255};
  return MapBytes(*image, ByteMapper(table, line), rows);
} catch (const std::bad_alloc&) {
  return nullptr;
}

void AdjustPaletteBrightnessContrast(CKIPImage* image, int32_t brightness, int32_t contrast) {
  if (image == nullptr || !image->IsValid() || image->bitsPerPixel() != 8) return;
  const ByteTable table = BrightnessContrastTable(brightness, contrast);
  for (PaletteEntry& entry : image->palette()) {
    entry = {table[entry.blue], table[entry.green], table[entry.red], entry.reserved};
  }
}

std::unique_ptr<CKIPDeepImage> DeepAdjustBrightnessContrast(const CKIPDeepImage* image,
                                                            int32_t brightness, int32_t contrast,
                                                            ProgressCallback progress) try {
  if (image == nullptr || !image->IsValid()) return nullptr;
  const uint32_t mask = image->GetMask();
  const uint32_t middle = image->GetLevels() / 2;
  const double b = brightness * 0.01 * mask;
  const double c = contrast * 0.01;
  const auto adjusted = [=](uint32_t v) {
    const double fromMiddle = static_cast<double>(v) - middle;
    return static_cast<uint16_t>(std::clamp<double>(v + fromMiddle * c + b, 0, mask));
  };
  const LevelLine line = {1 + c, b - middle * c, static_cast<uint16_t>(mask)};
  SampleMapper mapper(mask, adjusted, line);
  return MapSamples(*image, mapper, RowProgress(progress, image->GetHeight()));
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace zyr
