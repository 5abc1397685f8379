#include "imaging/image/image.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "imaging/image/dib_layout.h"
#include "imaging/image/image_error.h"
#include "imaging/image/resolution.h"
#include "platform/resources.h"

namespace zyr {
namespace {

uint64_t RowBytes(uint32_t width, uint32_t bitsPerPixel) {
  return (uint64_t{width} * bitsPerPixel + 7) / 8;
}

uint64_t StrideOf(uint32_t width, uint32_t bitsPerPixel) {
  return (RowBytes(width, bitsPerPixel) + 3) / 4 * 4;
}

// Bitmap headers hold signed sizes, and `dataSize` has 32 bits.
bool IsCountable(uint32_t width, uint32_t height, uint32_t bitsPerPixel) {
  if (width > INT32_MAX || height > INT32_MAX) return false;
  return StrideOf(width, bitsPerPixel) * height <= UINT32_MAX;
}

bool CheckGeometry(uint32_t width, uint32_t height, uint32_t bitsPerPixel) {
  if (bitsPerPixel != 1 && bitsPerPixel != 8 && bitsPerPixel != 24) {
    ReportImageError(kImageErrorBitsPerPixel, "Invalid bits-per-pixel (%lu)", Lu(bitsPerPixel));
    return false;
  }
  if (width == 0 || height == 0 || !IsCountable(width, height, bitsPerPixel)) {
    ReportImageError(kImageErrorDimensions, "Invalid image dimensions (%lux%lu)", Lu(width),
                     Lu(height));
    return false;
  }
  return true;
}

uint32_t AtLeastOne(uint32_t resolution) { return std::max(resolution, 1u); }

}  // namespace

void CKIPImage::Clear() {
  width_ = height_ = 0;
  xResolution_ = yResolution_ = 0;
  bitsPerPixel_ = 24;
  palette_ = {};
  rowPadding_ = stride_ = dataSize_ = 0;
  bits_.reset();
  fileFormat = 0;
  name.clear();
  fileSize = 0;
  flipped = false;
  extra.Release();
}

std::string CKIPImage::GetLastErrorText() const { return LastImageErrorText(); }
bool CKIPImage::IsValid() const { return bits_ != nullptr; }
uint32_t CKIPImage::GetTotalSize() const { return dataSize_ + colorCount() * 4; }

bool CKIPImage::Copy(const CKIPImage& source) {
  if (!source.IsValid()) {
    ReportImageError(kImageErrorInvalidImage, "Invalid image specified");
    return false;
  }
  if (&source == this) return true;
  if (!CreateLike(source, false)) return false;
  palette_ = source.bitsPerPixel_ == 24 ? Palette{} : source.palette_;
  std::memcpy(bits_.get(), source.bits_.get(), dataSize_);
  fileFormat = source.fileFormat;
  flipped = source.flipped;
  return true;
}

std::unique_ptr<CKIPImage> CKIPImage::Clone(bool copyPixels) const try {
  std::unique_ptr<CKIPImage> clone(new (std::nothrow) CKIPImage);
  if (clone == nullptr || !IsValid()) return nullptr;
  // Before the pixels, so that white is found in it.
  if (bitsPerPixel_ != 24) clone->palette_ = palette_;
  if (!clone->CreateLike(*this, !copyPixels)) return nullptr;
  if (copyPixels) std::memcpy(clone->bits_.get(), bits_.get(), dataSize_);
  clone->fileFormat = fileFormat;
  clone->flipped = flipped;
  return clone;
} catch (const std::bad_alloc&) {
  return nullptr;
}

void CKIPImage::TakeOver(CKIPImage* source, bool deleteSource) {
  if (source == nullptr || source == this) return;
  width_ = source->width_;
  height_ = source->height_;
  xResolution_ = source->xResolution_;
  yResolution_ = source->yResolution_;
  bitsPerPixel_ = source->bitsPerPixel_;
  palette_ = std::move(source->palette_);
  rowPadding_ = source->rowPadding_;
  stride_ = source->stride_;
  dataSize_ = source->dataSize_;
  bits_ = std::move(source->bits_);
  fileFormat = source->fileFormat;
  name = std::move(source->name);
  fileSize = source->fileSize;
  flipped = source->flipped;
  extra = std::move(source->extra);
  source->Clear();
  if (deleteSource) delete source;
}

void CKIPImage::TakeExtra(CKIPImage& source) { extra = std::move(source.extra); }

bool CKIPImage::CopyPixelsFrom(const CKIPImage& source) {
  if (!IsValid() || !source.IsValid() || dataSize_ != source.dataSize_) return false;
  if (&source != this) std::memcpy(bits_.get(), source.bits_.get(), dataSize_);
  return true;
}

bool CKIPImage::Create(const CreateArguments& arguments) {
  return Create(arguments.name, arguments.width, arguments.height, arguments.xResolution,
                arguments.yResolution, arguments.bitsPerPixel);
}

bool CKIPImage::CreateLike(const CKIPImage& source) { return CreateLike(source, true); }

bool CKIPImage::CreateLike(const CKIPImage& source, bool fill) {
  const CreateArguments arguments{source.name,         source.width_,       source.height_,
                                  source.xResolution_, source.yResolution_, source.bitsPerPixel_};
  return fill ? Create(arguments) : CreateUnfilled(arguments);
}

bool CKIPImage::Create(uint32_t width, uint32_t height, uint32_t bitsPerPixel) {
  return Create({}, width, height, 1, 1, bitsPerPixel);
}

bool CKIPImage::Create(uint32_t width, uint32_t height, uint32_t xResolution, uint32_t yResolution,
                       uint32_t bitsPerPixel) {
  return Create({}, width, height, xResolution, yResolution, bitsPerPixel);
}

bool CKIPImage::Create(const std::string& newName, uint32_t width, uint32_t height,
                       uint32_t xResolution, uint32_t yResolution, uint32_t bitsPerPixel) {
  if (!Allocate({newName, width, height, xResolution, yResolution, bitsPerPixel})) return false;
  std::memset(bits_.get(), FillByte(), dataSize_);
  return true;
}

bool CKIPImage::CreateUnfilled(const CreateArguments& arguments) {
  if (!Allocate(arguments)) return false;
  FillRowPadding();
  return true;
}

bool CKIPImage::Allocate(const CreateArguments& arguments) {
  name = arguments.name;
  if (!CheckGeometry(arguments.width, arguments.height, arguments.bitsPerPixel)) return false;
  bits_.reset();
  width_ = arguments.width;
  height_ = arguments.height;
  bitsPerPixel_ = arguments.bitsPerPixel;
  SetResolution(arguments.xResolution, arguments.yResolution);
  stride_ = static_cast<uint32_t>(StrideOf(width_, bitsPerPixel_));
  rowPadding_ = stride_ - static_cast<uint32_t>(RowBytes(width_, bitsPerPixel_));
  dataSize_ = stride_ * height_;
  bits_.reset(new (std::nothrow) uint8_t[dataSize_]);
  return bits_ != nullptr;
}

void CKIPImage::FillRowPadding() {
  if (rowPadding_ == 0) return;
  const uint8_t value = FillByte();
  for (uint32_t row = 0; row < height_; ++row) {
    std::memset(MemoryRow(row) + stride_ - rowPadding_, value, rowPadding_);
  }
}

uint8_t CKIPImage::FillByte() const {
  uint32_t white = 0xFF;
  if (bitsPerPixel_ == 8) FindNearestPaletteIndex({0xFF, 0xFF, 0xFF, 0}, &white);
  return static_cast<uint8_t>(white);
}

bool CKIPImage::CopyRect(CKIPImage& target, int32_t left, int32_t top, uint32_t width,
                         uint32_t height) const {
  if (!IsValid()) {
    ReportImageError(kImageErrorInvalidImage, "Invalid image specified");
    return false;
  }
  if (&target == this) {
    CKIPImage part;
    if (!CopyRect(part, left, top, width, height)) return false;
    target.TakeOver(&part, false);
    return true;
  }
  if (!CheckGeometry(width, height, bitsPerPixel_)) return false;
  target.palette_ = bitsPerPixel_ == 24 ? Palette{} : palette_;
  if (!target.Create(width, height, xResolution_, yResolution_, bitsPerPixel_)) return false;

  // The part that lies inside, in this image's coordinates.
  const int64_t x0 = std::max<int64_t>(left, 0);
  const int64_t y0 = std::max<int64_t>(top, 0);
  const int64_t x1 = std::min<int64_t>(int64_t{left} + width, width_);
  const int64_t y1 = std::min<int64_t>(int64_t{top} + height, height_);
  for (int64_t y = y0; y < y1 && x0 < x1; ++y) {
    CopyPixels(target, static_cast<uint32_t>(x0 - left), static_cast<uint32_t>(y - top),
               static_cast<uint32_t>(x0), static_cast<uint32_t>(y), static_cast<uint32_t>(x1 - x0));
  }
  return true;
}

void CKIPImage::CopyPixels(CKIPImage& target, uint32_t targetX, uint32_t targetY, uint32_t x,
                           uint32_t y, uint32_t count) const {
  if (bitsPerPixel_ == 1) {
    for (uint32_t i = 0; i < count; ++i) target.SetBit(targetX + i, targetY, GetBit(x + i, y));
    return;
  }
  const size_t pixelBytes = bitsPerPixel_ / 8;
  std::memcpy(target.PictureRow(targetY) + targetX * pixelBytes, PictureRow(y) + x * pixelBytes,
              count * pixelBytes);
}

bool CKIPImage::LoadFromResource(const std::string& resourceName) {
  uint32_t systemError = 0;
  const std::span<const uint8_t> dib = platform::BitmapResource(resourceName, &systemError);
  return LoadFromResource(dib, systemError);
}

bool CKIPImage::LoadFromResource(uint16_t resourceId) {
  uint32_t systemError = 0;
  const std::span<const uint8_t> dib = platform::BitmapResource(resourceId, &systemError);
  return LoadFromResource(dib, systemError);
}

bool CKIPImage::LoadFromResource(std::span<const uint8_t> dib, uint32_t systemError) {
  if (dib.empty()) {
    ReportImageError(kImageErrorInvalidImage,
                     "Unable to load the bitmap from the application resources (error = %lu).",
                     Lu(systemError));
    return false;
  }
  const std::optional<BitmapInfoHeader> header = ReadDibHeader(dib);
  if (!header) {
    ReportImageError(kImageErrorInvalidImage, "Invalid image specified");
    return false;
  }
  const DibLayout layout(*header);
  const uint32_t depth = header->biBitCount;
  if (!CheckGeometry(layout.width, layout.height, depth)) return false;
  if (!DibHoldsPixels(dib, layout, StrideOf(layout.width, depth) * layout.height)) {
    ReportImageError(kImageErrorInvalidImage, "Invalid image specified");
    return false;
  }
  if (!Allocate({{}, layout.width, layout.height, 1, 1, depth})) return false;
  SetResolutionPerMetre(static_cast<uint32_t>(header->biXPelsPerMeter),
                        static_cast<uint32_t>(header->biYPelsPerMeter));
  std::memcpy(bits_.get(), dib.data() + layout.pixels, dataSize_);
  palette_ = ReadDibPalette(dib, layout, depth);
  return true;
}

bool CKIPImage::BitBlt(platform::DeviceContext target, int x, int y, int width, int height,
                       int sourceX, int sourceY) const {
  return DrawPart(target, {x, y, width, height}, {sourceX, sourceY, width, height});
}

bool CKIPImage::StretchBlt(platform::DeviceContext target, int x, int y, int width, int height,
                           int sourceX, int sourceY, int sourceWidth, int sourceHeight) const {
  return DrawPart(target, {x, y, width, height}, {sourceX, sourceY, sourceWidth, sourceHeight});
}

bool CKIPImage::Draw(platform::DeviceContext target, int x, int y, int width, int height) const {
  return DrawPart(target, {x, y, width, height},
                  {0, 0, static_cast<int>(width_), static_cast<int>(height_)});
}

bool CKIPImage::StretchDIBits(platform::DeviceContext target, int x, int y, int width, int height,
                              int sourceX, int sourceY, int sourceWidth, int sourceHeight) const {
  return DrawPart(target, {x, y, width, height}, {sourceX, sourceY, sourceWidth, sourceHeight});
}

bool CKIPImage::DrawPart(platform::DeviceContext target, const platform::DrawRect& to,
                         platform::DrawRect from) const {
  if (!IsValid()) return false;
  // The least number has no counterpart.
  if (flipped) from.height = from.height == INT32_MIN ? INT32_MAX : -from.height;
  const uint32_t colors = bitsPerPixel_ == 24 ? 0 : std::min(colorCount(), 1u << bitsPerPixel_);
  const auto* table = reinterpret_cast<const uint8_t*>(palette_.data());
  return platform::DrawDib(
      target, to,
      {width_, height_, bitsPerPixel_, colors == 0 ? nullptr : table, colors, bits_.get()}, from);
}

void CKIPImage::GetSize(uint32_t* width, uint32_t* height) const {
  if (width != nullptr) *width = width_;
  if (height != nullptr) *height = height_;
}

void CKIPImage::GetResolution(uint32_t* x, uint32_t* y) const {
  if (x != nullptr) *x = xResolution_;
  if (y != nullptr) *y = yResolution_;
}

void CKIPImage::SetResolution(uint32_t x, uint32_t y) {
  xResolution_ = AtLeastOne(x);
  yResolution_ = AtLeastOne(y);
}

void CKIPImage::GetResolutionPerMetre(uint32_t* x, uint32_t* y) const {
  if (x != nullptr) *x = DotsPerInchToPerMetre(xResolution_);
  if (y != nullptr) *y = DotsPerInchToPerMetre(yResolution_);
}

void CKIPImage::SetResolutionPerMetre(uint32_t x, uint32_t y) {
  SetResolution(PerMetreToDotsPerInch(x), PerMetreToDotsPerInch(y));
}

}  // namespace zyr
