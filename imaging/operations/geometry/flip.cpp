#include "imaging/operations/geometry/flip.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "imaging/operations/clone.h"
#include "imaging/operations/geometry/flip_pixels.h"
#include "imaging/operations/row_progress.h"

namespace zyr {
namespace {

// Rows of pixels, each with padding behind it.
struct Rows {
  uint8_t* first;
  size_t pixelBytes;
  size_t paddingBytes;

  uint8_t* At(size_t row) const { return first + row * (pixelBytes + paddingBytes); }
};

// The padding stays in its row.
void CopyRow(const Rows& source, const Rows& target, size_t sourceRow, size_t targetRow) {
  std::memcpy(target.At(targetRow), source.At(sourceRow), source.pixelBytes);
  if (source.paddingBytes == 0) return;
  std::memcpy(target.At(targetRow) + target.pixelBytes, source.At(targetRow) + source.pixelBytes,
              source.paddingBytes);
}

// False on cancel, as the next two are. Rows change places in pairs, and each pair counts as two.
bool CopyRowsReversed(const Rows& source, const Rows& target, uint32_t height,
                      ProgressCallback progress) {
  const RowProgress rows(progress, height);
  for (uint32_t row = 0; row < height / 2; ++row) {
    CopyRow(source, target, row, height - 1 - row);
    CopyRow(source, target, height - 1 - row, row);
    if (!rows.Continue(2 * row)) return false;
  }
  if (height % 2 != 0) CopyRow(source, target, height / 2, height / 2);
  return true;
}

bool CopyColumnsReversed(const Rows& source, const Rows& target, uint32_t width, uint32_t height,
                         ProgressCallback progress) {
  const RowProgress rows(progress, height);
  const size_t pixels = source.pixelBytes;
  for (uint32_t row = 0; row < height; ++row) {
    ReversePixels(source.At(row), target.At(row), width, pixels / width);
    std::memcpy(target.At(row) + pixels, source.At(row) + pixels, source.paddingBytes);
    if (!rows.Continue(row)) return false;
  }
  return true;
}

bool FlipBits(CKIPImage& image, ProgressCallback progress) {
  const RowProgress rows(progress, image.height());
  for (uint32_t y = 0; y < image.height(); ++y) {
    for (uint32_t left = 0; left < image.width() / 2; ++left) {
      const uint32_t right = image.width() - 1 - left;
      const bool bit = image.GetBit(left, y);
      image.SetBit(left, y, image.GetBit(right, y));
      image.SetBit(right, y, bit);
    }
    if (!rows.Continue(y)) return false;
  }
  return true;
}

// Only ever read from.
Rows RowsOf(const CKIPImage& image) {
  return {const_cast<uint8_t*>(image.bits()), image.stride() - image.rowPadding(),
          image.rowPadding()};
}

Rows RowsOf(const CKIPDeepImage& image) {
  return {reinterpret_cast<uint8_t*>(image.GetPixels()), image.GetWidth() * sizeof(uint16_t),
          image.GetPadding() * sizeof(uint16_t)};
}

}  // namespace

std::unique_ptr<CKIPImage> FlipHorizontal(const CKIPImage* image, ProgressCallback progress) try {
  if (image == nullptr) return nullptr;
  if (image->bitsPerPixel() == 1) {
    std::unique_ptr<CKIPImage> flipped = image->Clone(true);
    if (flipped == nullptr || !FlipBits(*flipped, progress)) return nullptr;
    return flipped;
  }
  std::unique_ptr<CKIPImage> flipped = NewUnwrittenClone(*image);
  if (flipped == nullptr || !CopyColumnsReversed(RowsOf(*image), RowsOf(*flipped), image->width(),
                                                 image->height(), progress)) {
    return nullptr;
  }
  return flipped;
} catch (const std::bad_alloc&) {
  return nullptr;
}

std::unique_ptr<CKIPImage> FlipVertical(const CKIPImage* image, ProgressCallback progress) try {
  if (image == nullptr) return nullptr;
  std::unique_ptr<CKIPImage> flipped = NewUnwrittenClone(*image);
  if (flipped == nullptr ||
      !CopyRowsReversed(RowsOf(*image), RowsOf(*flipped), image->height(), progress)) {
    return nullptr;
  }
  return flipped;
} catch (const std::bad_alloc&) {
  return nullptr;
}

std::unique_ptr<CKIPDeepImage> DeepFlipHorizontal(const CKIPDeepImage* image,
                                                  ProgressCallback progress) try {
  if (image == nullptr) return nullptr;
  std::unique_ptr<CKIPDeepImage> flipped = NewUnwrittenClone(*image);
  if (flipped == nullptr || !CopyColumnsReversed(RowsOf(*image), RowsOf(*flipped),
                                                 image->GetWidth(), image->GetHeight(), progress)) {
    return nullptr;
  }
  return flipped;
} catch (const std::bad_alloc&) {
  return nullptr;
}

std::unique_ptr<CKIPDeepImage> DeepFlipVertical(const CKIPDeepImage* image,
                                                ProgressCallback progress) try {
  if (image == nullptr) return nullptr;
  std::unique_ptr<CKIPDeepImage> flipped = NewUnwrittenClone(*image);
  if (flipped == nullptr ||
      !CopyRowsReversed(RowsOf(*image), RowsOf(*flipped), image->GetHeight(), progress)) {
    return nullptr;
  }
  return flipped;
} catch (const std::bad_alloc&) {
  return nullptr;
}

void FlipRows(void* rows, size_t rowBytes, size_t height) {
  uint8_t* const first = static_cast<uint8_t*>(rows);
  uint8_t chunk[4096];
  for (size_t row = 0; row < height / 2; ++row) {
    uint8_t* lower = first + row * rowBytes;
    uint8_t* upper = first + (height - 1 - row) * rowBytes;
    for (size_t done = 0; done < rowBytes; done += sizeof(chunk)) {
      const size_t bytes = std::min(sizeof(chunk), rowBytes - done);
      std::memcpy(chunk, lower + done, bytes);
      std::memcpy(lower + done, upper + done, bytes);
      std::memcpy(upper + done, chunk, bytes);
    }
  }
}

}  // namespace zyr
