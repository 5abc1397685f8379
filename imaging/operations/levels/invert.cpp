#include "imaging/operations/levels/invert.h"

#include <new>

#include "imaging/operations/clone.h"
#include "imaging/operations/levels/levels.h"

namespace zyr {
namespace {

std::unique_ptr<CKIPImage> WithInvertedPalette(const CKIPImage& image) {
  std::unique_ptr<CKIPImage> result = image.Clone(true);
  if (result == nullptr) return nullptr;
  for (PaletteEntry& entry : result->palette()) {
    entry.blue = static_cast<uint8_t>(~entry.blue);
    entry.green = static_cast<uint8_t>(~entry.green);
    entry.red = static_cast<uint8_t>(~entry.red);
  }
  return result;
}

}  // namespace

std::unique_ptr<CKIPImage> Invert(const CKIPImage* image, ProgressCallback progress) try {
  if (image == nullptr || !image->IsValid()) return nullptr;
  const RowProgress rows(progress, image->height());
  if (image->bitsPerPixel() == 8 && !image->IsGrey()) return WithInvertedPalette(*image);
  std::unique_ptr<CKIPImage> result = NewUnwrittenClone(*image);
  if (result == nullptr) return nullptr;
  const size_t inverted =
      image->bitsPerPixel() == 1 ? image->stride() : image->stride() - image->rowPadding();
  for (uint32_t row = 0; row < image->height(); ++row) {
    CopyRowPadding(*image, *result, row);
    TheLevelKernels().complement8(image->MemoryRow(row), result->MemoryRow(row), inverted);
    if (!rows.Continue(row)) return nullptr;
  }
  return result;
} catch (const std::bad_alloc&) {
  return nullptr;
}

std::unique_ptr<CKIPDeepImage> DeepInvert(const CKIPDeepImage* image,
                                          ProgressCallback progress) try {
  if (image == nullptr || !image->IsValid()) return nullptr;
  std::unique_ptr<CKIPDeepImage> result = NewUnwrittenClone(*image);
  if (result == nullptr) return nullptr;
  const RowProgress rows(progress, image->GetHeight());
  const uint16_t mask = static_cast<uint16_t>(image->GetMask());
  for (uint32_t row = 0; row < image->GetHeight(); ++row) {
    TheLevelKernels().complement16(image->GetRow(row), result->GetRow(row), image->GetWidth(),
                                   mask);
    CopyRowPadding(*image, *result, row);
    if (!rows.Continue(row)) return nullptr;
  }
  return result;
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace zyr
