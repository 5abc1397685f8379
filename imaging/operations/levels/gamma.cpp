#include "imaging/operations/levels/gamma.h"

#include <algorithm>
#include <new>

#include "foundation/math/portable_math.h"
#include "imaging/operations/clone.h"

namespace zyr {
namespace {

bool AreAboveZero(double red, double green, double blue) {
  return red > 0 && green > 0 && blue > 0;
}

ColorTables TablesOf(double red, double green, double blue) {
  return {GammaTable(1 / red), GammaTable(1 / green), GammaTable(1 / blue)};
}

// A copy, padding and all.
std::unique_ptr<CKIPImage> ChangePixels(const CKIPImage& image, const ColorTables& tables,
                                        ColorRef keep, ProgressCallback progress) {
  std::unique_ptr<CKIPImage> result =
      MapBytesKeeping(image, tables, keep, RowProgress(progress, image.height()));
  if (result == nullptr) return nullptr;
  for (uint32_t row = 0; row < image.height(); ++row) CopyRowPadding(image, *result, row);
  return result;
}

// False on cancel.
bool ChangePalette(CKIPImage& image, const ColorTables& tables, ColorRef keep,
                   ProgressCallback progress) {
  const std::optional<uint32_t> kept = KeptIndex(image, keep);
  Palette& palette = image.palette();
  const RowProgress entries(progress, static_cast<uint32_t>(palette.size()));
  for (uint32_t i = 0; i < palette.size(); ++i) {
    PaletteEntry& entry = palette[i];
    if (i != kept) {
      entry = {tables.blue[entry.blue], tables.green[entry.green], tables.red[entry.red],
               entry.reserved};
    }
    if (!entries.Continue(i)) return false;
  }
  return true;
}

}  // namespace

ByteTable GammaTable(double exponent) {
  constexpr double kOneOver255 = 0.00392156862745098;
  ByteTable table;
  for (int v = 0; v < 256; ++v) {
    const double level = math::Pow(v * kOneOver255, exponent) * 255;
    table[v] = level < 255 ? static_cast<uint8_t>(level) : 255;  // so is what is no number
  }
  return table;
}

std::unique_ptr<CKIPImage> AdjustGamma(const CKIPImage* image, double red, double green,
                                       double blue, ColorRef keep, ProgressCallback progress) try {
  if (image == nullptr || !image->IsValid()) return nullptr;
  if (!AreAboveZero(red, green, blue) || image->bitsPerPixel() == 1) return image->Clone(true);
  if (image->bitsPerPixel() == 24) {
    return ChangePixels(*image, TablesOf(red, green, blue), keep, progress);
  }
  if (image->IsGrey()) {
    const ByteTable table = GammaTable((1 / red + 1 / green + 1 / blue) * 0.3333333333333333);
    return ChangePixels(*image, {table, table, table}, keep, progress);
  }
  std::unique_ptr<CKIPImage> result = image->Clone(true);
  if (result == nullptr) return nullptr;
  if (!ChangePalette(*result, TablesOf(red, green, blue), keep, progress)) return nullptr;
  return result;
} catch (const std::bad_alloc&) {
  return nullptr;
}

void AdjustPaletteGamma(CKIPImage* image, double red, double green, double blue, ColorRef keep) {
  if (image == nullptr || !image->IsValid() || image->bitsPerPixel() != 8) return;
  if (!AreAboveZero(red, green, blue)) return;
  ChangePalette(*image, TablesOf(red, green, blue), keep, nullptr);
}

std::unique_ptr<CKIPDeepImage> DeepAdjustGamma(const CKIPDeepImage* image, double gamma,
                                               ProgressCallback progress) try {
  if (image == nullptr || !image->IsValid()) return nullptr;
  if (!(gamma > 0) || gamma == 1) return image->Clone();
  const double top = image->GetMask();
  SampleMapper mapper(image->GetMask(), [=](uint32_t v) {
    return static_cast<uint16_t>(std::min(math::Pow(v / top, 1 / gamma) * top, top));
  });
  return MapSamples(*image, mapper, RowProgress(progress, image->GetHeight()));
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace zyr
