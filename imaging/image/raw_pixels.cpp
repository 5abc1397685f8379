#include "imaging/image/raw_pixels.h"

#include <cstring>
#include <new>

#include "imaging/image/grey.h"
#include "imaging/image/image_error.h"
#include "imaging/operations/levels/depth_mapper.h"

namespace zyr {
namespace {

std::unique_ptr<CKIPImage> NewGreyImage(uint32_t width, uint32_t height, uint32_t xResolution,
                                        uint32_t yResolution) {
  std::unique_ptr<CKIPImage> image(new (std::nothrow) CKIPImage);
  if (image == nullptr ||
      !image->CreateUnfilled({{}, width, height, xResolution, yResolution, 8})) {
    return nullptr;
  }
  image->SetPalette(NewIdentityPalette());
  return image;
}

bool CheckBuffer(const void* buffer) {
  if (buffer != nullptr) return true;
  ReportImageError(kImageErrorNullPointer, "NULL image pointer specified");
  return false;
}

// Runs `work(row)` for each row of the buffer. False on cancel.
template <typename Work>
bool ForEachRow(uint32_t height, ProgressCallback progress, Work work) {
  cancel_monitor::Reset();
  for (uint32_t row = 0; row < height; ++row) {
    Report(progress, static_cast<double>(row) / height);
    if (cancel_monitor::IsCancelled()) return false;
    work(row);
  }
  return true;
}

bool MapRows(const CKIPDepthMapper& mapper, const uint16_t* buffer, size_t rowSamples, bool invert,
             CKIPImage& image, ProgressCallback progress) {
  return ForEachRow(image.height(), progress, [&](uint32_t row) {
    mapper.MapRow(buffer + row * rowSamples, image.MemoryRow(row), image.width(), invert);
  });
}

// The first row of the buffer becomes the last column, top to bottom.
bool MapRowsToColumns(const CKIPDepthMapper& mapper, const uint16_t* buffer, size_t rowSamples,
                      bool invert, CKIPImage& image, ProgressCallback progress) {
  const std::unique_ptr<uint8_t[]> bytes(new (std::nothrow) uint8_t[image.height()]);
  if (bytes == nullptr) return false;
  return ForEachRow(image.width(), progress, [&](uint32_t row) {
    mapper.MapRow(buffer + row * rowSamples, bytes.get(), image.height(), invert);
    const uint32_t x = image.width() - 1 - row;
    for (uint32_t y = 0; y < image.height(); ++y) image.PictureRow(y)[x] = bytes[y];
  });
}

}  // namespace

std::unique_ptr<CKIPImage> ImageFromRaw8(const uint8_t* buffer, uint32_t width, uint32_t height,
                                         bool positive, uint32_t pad, uint32_t xResolution,
                                         uint32_t yResolution, FirstRow firstRow,
                                         ProgressCallback progress) {
  if (!CheckBuffer(buffer)) return nullptr;
  std::unique_ptr<CKIPImage> image = NewGreyImage(width, height, xResolution, yResolution);
  if (image == nullptr) return nullptr;
  const bool done = ForEachRow(height, progress, [&](uint32_t row) {
    const uint8_t* source = buffer + row * (size_t{width} + pad);
    uint8_t* target = firstRow == FirstRow::kTop ? image->PictureRow(row) : image->MemoryRow(row);
    if (positive) {
      std::memcpy(target, source, width);
    } else {
      for (uint32_t x = 0; x < width; ++x) target[x] = static_cast<uint8_t>(255 - source[x]);
    }
  });
  if (!done) return nullptr;
  return image;
}

std::unique_ptr<CKIPImage> ImageFromRaw16(const uint16_t* buffer, uint32_t width, uint32_t height,
                                          uint32_t pad, uint32_t xResolution, uint32_t yResolution,
                                          const DepthMapping& mapping,
                                          ProgressCallback progress) try {
  if (!CheckBuffer(buffer)) return nullptr;
  const bool transpose = mapping.transpose;
  std::unique_ptr<CKIPImage> image = NewGreyImage(
      transpose ? height : width, transpose ? width : height, xResolution, yResolution);
  const std::unique_ptr<CKIPDepthMapper> mapper(new (std::nothrow) CKIPDepthMapper);
  if (image == nullptr || mapper == nullptr) return nullptr;
  mapper->Prepare(buffer, width, height, pad, mapping);
  const auto map = transpose ? MapRowsToColumns : MapRows;
  if (!map(*mapper, buffer, size_t{width} + pad, mapping.invert, *image, progress)) return nullptr;
  return image;
} catch (const std::bad_alloc&) {
  return nullptr;
}

std::unique_ptr<CKIPImage> ImageFromDeepImage(const CKIPDeepImage& image,
                                              const DepthMapping& mapping,
                                              ProgressCallback progress) {
  if (!image.IsValid()) return nullptr;
  DepthMapping ownDepth = mapping;
  ownDepth.bits = image.GetBits();
  return ImageFromRaw16(image.GetPixels(), image.GetWidth(), image.GetHeight(), image.GetPadding(),
                        image.GetXResolution(), image.GetYResolution(), ownDepth, progress);
}

bool CopyImageToRaw8(const CKIPImage& image, uint8_t* buffer, uint32_t pad,
                     ProgressCallback progress) {
  if (!CheckBuffer(buffer) || !image.IsValid() || image.bitsPerPixel() != 8) return false;
  return ForEachRow(image.height(), progress, [&](uint32_t row) {
    std::memcpy(buffer + row * (size_t{image.width()} + pad), image.MemoryRow(row), image.width());
  });
}

}  // namespace zyr
