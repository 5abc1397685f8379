#include "imaging/operations/geometry/rotate.h"

#include <algorithm>
#include <new>
#include <utility>

#include "imaging/operations/clone.h"
#include "imaging/operations/geometry/flip_pixels.h"
#include "imaging/operations/geometry/rotate_pixels.h"
#include "imaging/operations/row_progress.h"

namespace zyr {
namespace {

enum class Angle { k90, k180, k270 };

// Pixels in memory order, of 1, 2 or 3 bytes.
struct Grid {
  uint8_t* first;
  ptrdiff_t stride;  // bytes
  uint32_t width;
  uint32_t height;
  uint32_t pixelBytes;

  uint8_t* Row(uint32_t row) const { return first + static_cast<ptrdiff_t>(row) * stride; }
  // The same pixels, the last row first.
  Grid FromLastRow() const { return {Row(height - 1), -stride, width, height, pixelBytes}; }
};

// Only ever read from if the image is the source.
Grid GridOf(const CKIPImage& image) {
  return {const_cast<uint8_t*>(image.bits()), static_cast<ptrdiff_t>(image.stride()), image.width(),
          image.height(), image.bitsPerPixel() / 8};
}

Grid GridOf(const CKIPDeepImage& image) {
  return {reinterpret_cast<uint8_t*>(image.GetPixels()),
          static_cast<ptrdiff_t>(image.GetStride() * sizeof(uint16_t)), image.GetWidth(),
          image.GetHeight(), sizeof(uint16_t)};
}

// One row of tiles. With more, the rows in work crowd each other out of the cache at some widths.
constexpr uint32_t kBandRows = 16;

// The rest return false on cancel.
bool Transpose(const Grid& source, const Grid& target, ProgressCallback progress) {
  const RowProgress rows(progress, source.height);
  for (uint32_t first = 0; first < source.height; first += kBandRows) {
    const uint32_t count = std::min(kBandRows, source.height - first);
    TransposePixels(source.Row(first), source.stride,
                    target.first + size_t{first} * target.pixelBytes, target.stride, source.width,
                    count, source.pixelBytes);
    for (uint32_t row = first; row < first + count; ++row) {
      if (!rows.Continue(row)) return false;
    }
  }
  return true;
}

bool TurnOver(const Grid& source, const Grid& target, ProgressCallback progress) {
  const RowProgress rows(progress, source.height);
  for (uint32_t row = 0; row < source.height; ++row) {
    ReversePixels(source.Row(row), target.Row(source.height - 1 - row), source.width,
                  source.pixelBytes);
    if (!rows.Continue(row)) return false;
  }
  return true;
}

bool Turn(const Grid& source, const Grid& target, Angle angle, ProgressCallback progress) {
  switch (angle) {
    case Angle::k90:
      return Transpose(source, target.FromLastRow(), progress);
    case Angle::k180:
      return TurnOver(source, target, progress);
    default:
      return Transpose(source.FromLastRow(), target, progress);
  }
}

bool TurnBits(const CKIPImage& source, CKIPImage& target, Angle angle, ProgressCallback progress) {
  const RowProgress rows(progress, source.height());
  const uint32_t right = source.width() - 1;
  const uint32_t bottom = source.height() - 1;
  for (uint32_t y = 0; y <= bottom; ++y) {
    for (uint32_t x = 0; x <= right; ++x) {
      const bool bit = source.GetBit(x, y);
      if (angle == Angle::k90) target.SetBit(y, right - x, bit);
      if (angle == Angle::k180) target.SetBit(right - x, bottom - y, bit);
      if (angle == Angle::k270) target.SetBit(bottom - y, x, bit);
    }
    if (!rows.Continue(y)) return false;
  }
  return true;
}

// The picture that is to hold the turned one, filled where no pixel will be written.
std::unique_ptr<CKIPImage> NewTurned(const CKIPImage& image, bool sideways) {
  std::unique_ptr<CKIPImage> turned(new (std::nothrow) CKIPImage);
  if (turned == nullptr) return nullptr;
  CKIPImage::CreateArguments arguments = {image.name,          image.width(),
                                          image.height(),      image.xResolution(),
                                          image.yResolution(), image.bitsPerPixel()};
  if (sideways) {
    std::swap(arguments.width, arguments.height);
    std::swap(arguments.xResolution, arguments.yResolution);
  }
  if (image.bitsPerPixel() != 24) turned->SetPalette(image.palette());
  const bool created =
      image.bitsPerPixel() == 1 ? turned->Create(arguments) : turned->CreateUnfilled(arguments);
  return created ? std::move(turned) : nullptr;
}

std::unique_ptr<CKIPImage> Rotate(const CKIPImage* image, Angle angle,
                                  ProgressCallback progress) try {
  if (image == nullptr || !image->IsValid()) return nullptr;
  std::unique_ptr<CKIPImage> turned = NewTurned(*image, angle != Angle::k180);
  if (turned == nullptr) return nullptr;
  const bool done = image->bitsPerPixel() == 1
                        ? TurnBits(*image, *turned, angle, progress)
                        : Turn(GridOf(*image), GridOf(*turned), angle, progress);
  return done ? std::move(turned) : nullptr;
} catch (const std::bad_alloc&) {
  return nullptr;
}

bool CreateSideways(const CKIPDeepImage& image, CKIPDeepImage& turned) {
  const uint32_t stride = image.GetHeight();
  return turned.Create(image.GetHeight(), image.GetWidth(), stride, image.GetBits(),
                       image.GetXResolution(), image.GetYResolution());
}

// Of the same geometry, or lying on its side.
std::unique_ptr<CKIPDeepImage> NewTurned(const CKIPDeepImage& image, bool sideways) {
  if (!sideways) {
    std::unique_ptr<CKIPDeepImage> turned = NewUnwrittenClone(image);
    if (turned != nullptr) CopyPadding(image, *turned);
    return turned;
  }
  std::unique_ptr<CKIPDeepImage> turned(new (std::nothrow) CKIPDeepImage);
  if (turned == nullptr || !CreateSideways(image, *turned)) return nullptr;
  return turned;
}

std::unique_ptr<CKIPDeepImage> Rotate(const CKIPDeepImage* image, Angle angle,
                                      ProgressCallback progress) try {
  if (image == nullptr || !image->IsValid()) return nullptr;
  std::unique_ptr<CKIPDeepImage> turned = NewTurned(*image, angle != Angle::k180);
  if (turned == nullptr) return nullptr;
  return Turn(GridOf(*image), GridOf(*turned), angle, progress) ? std::move(turned) : nullptr;
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace

std::unique_ptr<CKIPImage> Rotate90(const CKIPImage* image, ProgressCallback progress) {
  return Rotate(image, Angle::k90, progress);
}

std::unique_ptr<CKIPImage> Rotate180(const CKIPImage* image, ProgressCallback progress) {
  return Rotate(image, Angle::k180, progress);
}

std::unique_ptr<CKIPImage> Rotate270(const CKIPImage* image, ProgressCallback progress) {
  return Rotate(image, Angle::k270, progress);
}

std::unique_ptr<CKIPDeepImage> DeepRotate90(const CKIPDeepImage* image, ProgressCallback progress) {
  return Rotate(image, Angle::k90, progress);
}

std::unique_ptr<CKIPDeepImage> DeepRotate180(const CKIPDeepImage* image,
                                             ProgressCallback progress) {
  return Rotate(image, Angle::k180, progress);
}

std::unique_ptr<CKIPDeepImage> DeepRotate270(const CKIPDeepImage* image,
                                             ProgressCallback progress) {
  return Rotate(image, Angle::k270, progress);
}

}  // namespace zyr
