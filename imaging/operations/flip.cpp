#include "imaging/operations/flip.h"

#include <algorithm>
#include <cstring>
#include <new>

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

// False on cancel.
bool CopyFlipped(const Rows& source, const Rows& target, size_t height, ProgressCallback progress) {
  cancel_monitor::Reset();
  for (size_t row = 0; row < height / 2; ++row) {
    Report(progress, 2.0 * static_cast<double>(row) / static_cast<double>(height));
    if (cancel_monitor::IsCancelled()) return false;
    CopyRow(source, target, row, height - 1 - row);
    CopyRow(source, target, height - 1 - row, row);
  }
  if (height % 2 != 0) CopyRow(source, target, height / 2, height / 2);
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

std::unique_ptr<CKIPImage> FlipVertical(const CKIPImage& image, ProgressCallback progress) {
  std::unique_ptr<CKIPImage> flipped(new (std::nothrow) CKIPImage);
  if (flipped == nullptr || !image.IsValid()) return nullptr;
  if (image.bitsPerPixel() != 24) flipped->SetPalette(image.palette());
  if (!flipped->CreateUnfilled({image.name, image.width(), image.height(), image.xResolution(),
                                image.yResolution(), image.bitsPerPixel()})) {
    return nullptr;
  }
  flipped->fileFormat = image.fileFormat;
  flipped->flipped = image.flipped;
  if (!CopyFlipped(RowsOf(image), RowsOf(*flipped), image.height(), progress)) return nullptr;
  return flipped;
}

std::unique_ptr<CKIPDeepImage> DeepFlipVertical(const CKIPDeepImage& image,
                                                ProgressCallback progress) {
  std::unique_ptr<CKIPDeepImage> flipped(new (std::nothrow) CKIPDeepImage);
  if (flipped == nullptr || !image.IsValid() || !flipped->CopyFrom(&image, false)) return nullptr;
  if (!CopyFlipped(RowsOf(image), RowsOf(*flipped), image.GetHeight(), progress)) return nullptr;
  return flipped;
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
