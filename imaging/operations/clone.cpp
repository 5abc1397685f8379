#include "imaging/operations/clone.h"

#include <algorithm>

namespace zyr {

std::unique_ptr<CKIPImage> NewUnwrittenClone(const CKIPImage& image) {
  std::unique_ptr<CKIPImage> clone(new (std::nothrow) CKIPImage);
  if (clone == nullptr || !image.IsValid()) return nullptr;
  // First, for white is looked up in it.
  if (image.bitsPerPixel() != 24) clone->SetPalette(image.palette());
  if (!clone->CreateUnfilled({image.name, image.width(), image.height(), image.xResolution(),
                              image.yResolution(), image.bitsPerPixel()})) {
    return nullptr;
  }
  clone->fileFormat = image.fileFormat;
  clone->flipped = image.flipped;
  return clone;
}

std::unique_ptr<CKIPDeepImage> NewUnwrittenClone(const CKIPDeepImage& image) {
  std::unique_ptr<CKIPDeepImage> clone(new (std::nothrow) CKIPDeepImage);
  if (clone == nullptr || !image.IsValid() || !clone->CopyFrom(&image, false)) return nullptr;
  return clone;
}

void CopyRowPadding(const CKIPImage& source, CKIPImage& target, uint32_t row) {
  const size_t used = source.stride() - source.rowPadding();
  std::copy_n(source.MemoryRow(row) + used, source.rowPadding(), target.MemoryRow(row) + used);
}

void CopyRowPadding(const CKIPDeepImage& source, CKIPDeepImage& target, uint32_t row) {
  std::copy_n(source.GetPixelPtr(source.GetWidth(), row), source.GetPadding(),
              target.GetPixelPtr(source.GetWidth(), row));
}

void CopyPadding(const CKIPDeepImage& source, CKIPDeepImage& target) {
  if (source.GetPadding() == 0) return;
  for (uint32_t row = 0; row < source.GetHeight(); ++row) CopyRowPadding(source, target, row);
}

}  // namespace zyr
