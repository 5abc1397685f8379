#include "imaging/operations/levels/keep_color.h"

#include "imaging/operations/clone.h"

namespace zyr {
namespace {

constexpr ColorRef kColorBits = 0xFFFFFF;

void MapColors(const ColorTables& tables, ColorRef keep, const uint8_t* source, uint8_t* target,
               uint32_t pixels) {
  if (keep != kKeepNoColor) keep &= kColorBits;
  for (uint32_t x = 0; x < pixels; ++x, source += 3, target += 3) {
    const uint8_t blue = source[0];
    const uint8_t green = source[1];
    const uint8_t red = source[2];
    const bool isKept = (uint32_t{blue} << 16 | uint32_t{green} << 8 | red) == keep;
    target[0] = isKept ? blue : tables.blue[blue];
    target[1] = isKept ? green : tables.green[green];
    target[2] = isKept ? red : tables.red[red];
  }
}

}  // namespace

std::optional<uint32_t> KeptIndex(const CKIPImage& image, ColorRef keep) {
  uint32_t index = 0;
  if (keep == kKeepNoColor || !image.FindNearestPaletteIndexRgb(keep, &index)) return std::nullopt;
  return index;
}

std::unique_ptr<CKIPImage> MapBytesKeeping(const CKIPImage& image, const ColorTables& tables,
                                           ColorRef keep, const RowProgress& progress) {
  if (image.bitsPerPixel() == 8) {
    ByteTable table = tables.red;
    const std::optional<uint32_t> kept = KeptIndex(image, keep);
    if (kept && *kept < table.size()) table[*kept] = static_cast<uint8_t>(*kept);
    return MapBytes(image, ByteMapper(table), progress);
  }
  std::unique_ptr<CKIPImage> result = NewUnwrittenClone(image);
  if (result == nullptr) return nullptr;
  for (uint32_t row = 0; row < image.height(); ++row) {
    MapColors(tables, keep, image.MemoryRow(row), result->MemoryRow(row), image.width());
    if (!progress.Continue(row)) return nullptr;
  }
  return result;
}

}  // namespace zyr
