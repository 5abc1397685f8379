#include "imaging/image/packed_dib.h"

#include <array>
#include <bit>
#include <cstring>
#include <new>

#include "foundation/support/phrase_lookup.h"
#include "imaging/image/dib_layout.h"
#include "imaging/image/image_error.h"
#include "imaging/image/raw_pixels.h"
#include "imaging/image/resolution.h"

namespace zyr {
namespace {

using Bytes = std::span<const uint8_t>;

void ReportInvalidImage() { ReportImageError(kImageErrorInvalidImage, "Invalid image specified"); }
void ReportOutOfMemory() { ReportImageError(kImageErrorOutOfMemory, "Out of memory"); }

bool IsSupportedDepth(uint32_t bits) {
  return bits == 1 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

std::optional<BitmapInfoHeader> ReadSupportedHeader(Bytes dib) {
  const std::optional<BitmapInfoHeader> header = ReadDibHeader(dib);
  if (!header) {
    ReportInvalidImage();
    return std::nullopt;
  }
  if (header->biPlanes != 1) {
    ReportImageError(kImageErrorBitPlanes, "Unsupported number of bit planes %lu",
                     Lu(header->biPlanes));
    return std::nullopt;
  }
  if (header->biCompression != kBiRgb && header->biCompression != kBiBitfields) {
    ReportImageError(kImageErrorCompression, "Unsupported compression");
    return std::nullopt;
  }
  if (!IsSupportedDepth(header->biBitCount)) {
    ReportImageError(kImageErrorColorBits, "Unsupported number of color bits %lu",
                     Lu(header->biBitCount));
    return std::nullopt;
  }
  return header;
}

// Checks the size and that the block holds the pixels, rows being padded to 4 bytes.
bool CheckBlock(Bytes dib, const DibLayout& layout, uint32_t bitCount) {
  if (layout.width == 0 || layout.height == 0) {
    ReportImageError(kImageErrorDimensions, "Invalid image dimensions (%lux%lu)", Lu(layout.width),
                     Lu(layout.height));
    return false;
  }
  const uint64_t stride = (uint64_t{layout.width} * bitCount + 31) / 32 * 4;
  if (stride > dib.size() || !DibHoldsPixels(dib, layout, stride * layout.height)) {
    ReportInvalidImage();
    return false;
  }
  return true;
}

std::unique_ptr<CKIPImage> NewImage(const BitmapInfoHeader& header, const DibLayout& layout,
                                    uint32_t bitsPerPixel) {
  std::unique_ptr<CKIPImage> image(new (std::nothrow) CKIPImage);
  if (image == nullptr ||
      !image->CreateUnfilled({{}, layout.width, layout.height, 0, 0, bitsPerPixel})) {
    ReportOutOfMemory();
    return nullptr;
  }
  image->SetResolutionPerMetre(static_cast<uint32_t>(header.biXPelsPerMeter),
                               static_cast<uint32_t>(header.biYPelsPerMeter));
  return image;
}

// The block's rows and ours lie alike.
std::unique_ptr<CKIPImage> ImageFromSameLayout(Bytes dib, const BitmapInfoHeader& header,
                                               const DibLayout& layout) {
  std::unique_ptr<CKIPImage> image = NewImage(header, layout, header.biBitCount);
  if (image == nullptr) return nullptr;
  if (header.biBitCount != 24) image->SetPalette(ReadDibPalette(dib, layout, header.biBitCount));
  std::memcpy(image->bits(), dib.data() + layout.pixels, image->dataSize());
  return image;
}

struct Channel {
  uint32_t mask = 0;
  uint32_t shift = 0;

  uint8_t Of(uint32_t pixel) const { return static_cast<uint8_t>((pixel & mask) >> shift); }
};

// Blue, green, red.
std::array<Channel, 3> ChannelsOf(Bytes dib, const BitmapInfoHeader& header) {
  uint32_t masks[3] = {0xFF0000, 0xFF00, 0xFF};  // red, green, blue
  constexpr size_t kMasksEnd = sizeof(header) + sizeof(masks);
  if (header.biCompression == kBiBitfields && dib.size() >= kMasksEnd) {
    std::memcpy(masks, dib.data() + sizeof(header), sizeof(masks));
  }
  std::array<Channel, 3> channels;
  for (size_t i = 0; i < 3; ++i) {
    const uint32_t mask = masks[2 - i];
    channels[i] = {mask, mask == 0 ? 0 : static_cast<uint32_t>(std::countr_zero(mask))};
  }
  return channels;
}

std::unique_ptr<CKIPImage> ImageFrom32(Bytes dib, const BitmapInfoHeader& header,
                                       const DibLayout& layout) {
  std::unique_ptr<CKIPImage> image = NewImage(header, layout, 24);
  if (image == nullptr) return nullptr;
  const std::array<Channel, 3> channels = ChannelsOf(dib, header);
  const uint8_t* source = dib.data() + layout.pixels;
  for (uint32_t row = 0; row < layout.height; ++row) {
    uint8_t* target = image->MemoryRow(row);
    for (uint32_t x = 0; x < layout.width; ++x, source += 4, target += 3) {
      uint32_t pixel;
      std::memcpy(&pixel, source, sizeof(pixel));
      for (size_t i = 0; i < 3; ++i) target[i] = channels[i].Of(pixel);
    }
  }
  return image;
}

std::unique_ptr<CKIPImage> ImageFrom16(const uint8_t* dib, size_t size) {
  const std::unique_ptr<CKIPDeepImage> deep = DeepImageFromPackedDib(dib, size);
  if (deep == nullptr) return nullptr;
  std::unique_ptr<CKIPImage> image = ImageFromDeepImage(*deep, DepthMapping{});
  if (image == nullptr) ReportOutOfMemory();
  return image;
}

// Locks the block, converts it, and puts the reason of a failure into `message`.
template <typename Image>
std::unique_ptr<Image> FromHandle(platform::GlobalHandle handle, std::string* message,
                                  std::unique_ptr<Image> (*convert)(const uint8_t*, size_t)) {
  const auto fail = [&](const char* text) {
    if (message != nullptr) *message = GetPhrase(text);
    return nullptr;
  };
  if (handle == nullptr) return fail(PhraseKey("No image was specified"));
  const platform::LockedBlock block(handle);
  if (block.address() == nullptr) {
    return fail(
        PhraseKey("Out of memory.  Not enough memory was available to operate on the image."));
  }
  std::unique_ptr<Image> image =
      convert(static_cast<const uint8_t*>(block.address()), block.size());
  if (image == nullptr) return fail(PhraseKey("Invalid image was specified"));
  return image;
}

// A locked new block with the header in it; the caller fills the rest.
class NewDib {
 public:
  NewDib(const BitmapInfoHeader& header, uint64_t bytesBehindHeader) {
    const uint64_t bytes = sizeof(header) + bytesBehindHeader;
    if (bytes > PTRDIFF_MAX) return;
    handle_ = platform::AllocateMovable(static_cast<size_t>(bytes), true);
    address_ = static_cast<uint8_t*>(platform::LockBlock(handle_));
    if (address_ != nullptr) std::memcpy(address_, &header, sizeof(header));
  }
  ~NewDib() {
    if (address_ != nullptr) platform::UnlockBlock(handle_);
    if (handle_ != nullptr) platform::FreeBlock(handle_);
  }
  NewDib(const NewDib&) = delete;
  NewDib& operator=(const NewDib&) = delete;

  // Behind the header; null without memory.
  uint8_t* body() const {
    return address_ == nullptr ? nullptr : address_ + sizeof(BitmapInfoHeader);
  }
  // Unlocks the block and hands it over.
  platform::GlobalHandle Release() {
    platform::UnlockBlock(handle_);
    address_ = nullptr;
    return std::exchange(handle_, nullptr);
  }

 private:
  platform::GlobalHandle handle_ = nullptr;
  uint8_t* address_ = nullptr;
};

void CopyRows(const CKIPImage& image, RowOrder order, uint8_t* target) {
  if (order == RowOrder::kAsStored) {
    std::memcpy(target, image.bits(), image.dataSize());
    return;
  }
  const size_t rowBytes = image.stride() - image.rowPadding();
  for (uint32_t row = 0; row < image.height(); ++row, target += image.stride()) {
    std::memcpy(target, image.PictureRow(row), rowBytes);
    std::memcpy(target + rowBytes, image.MemoryRow(row) + rowBytes, image.rowPadding());
  }
}

}  // namespace

std::unique_ptr<CKIPImage> ImageFromPackedDib(const uint8_t* dib, size_t size) {
  const Bytes bytes(dib, dib == nullptr ? 0 : size);
  const std::optional<BitmapInfoHeader> header = ReadSupportedHeader(bytes);
  if (!header) return nullptr;
  if (header->biBitCount == 16) return ImageFrom16(dib, size);
  const DibLayout layout(*header);
  if (!CheckBlock(bytes, layout, header->biBitCount)) return nullptr;
  if (header->biBitCount == 32) return ImageFrom32(bytes, *header, layout);
  return ImageFromSameLayout(bytes, *header, layout);
}

std::unique_ptr<CKIPDeepImage> DeepImageFromPackedDib(const uint8_t* dib, size_t size) {
  const Bytes bytes(dib, dib == nullptr ? 0 : size);
  const std::optional<BitmapInfoHeader> header = ReadSupportedHeader(bytes);
  if (!header) return nullptr;
  if (header->biBitCount != 16) {
    ReportImageError(kImageErrorColorBits, "Unsupported number of color bits %lu",
                     Lu(header->biBitCount));
    return nullptr;
  }
  const DibLayout layout(*header);
  if (!CheckBlock(bytes, layout, 16)) return nullptr;
  const uint32_t stride = layout.width + (layout.width & 1);
  std::unique_ptr<CKIPDeepImage> image(new (std::nothrow) CKIPDeepImage);
  if (image == nullptr || !image->Create(layout.width, layout.height, stride, 16, 1, 1)) {
    ReportOutOfMemory();
    return nullptr;
  }
  image->SetResolutionPerMetre(static_cast<uint32_t>(header->biXPelsPerMeter),
                               static_cast<uint32_t>(header->biYPelsPerMeter));
  std::memcpy(image->GetPixels(), dib + layout.pixels,
              size_t{stride} * layout.height * sizeof(uint16_t));
  return image;
}

std::unique_ptr<CKIPImage> ImageFromPackedDibHandle(platform::GlobalHandle handle,
                                                    std::string* message) {
  return FromHandle<CKIPImage>(handle, message, ImageFromPackedDib);
}

std::unique_ptr<CKIPDeepImage> DeepImageFromPackedDibHandle(platform::GlobalHandle handle,
                                                            std::string* message) {
  return FromHandle<CKIPDeepImage>(handle, message, DeepImageFromPackedDib);
}

platform::GlobalHandle PackedDibFromImage(const CKIPImage& image, const Palette* palette,
                                          RowOrder order) {
  if (!image.IsValid()) return nullptr;
  static const Palette kNone;
  const Palette& own = palette != nullptr ? *palette : image.palette();
  const Palette& colors = image.bitsPerPixel() == 24 ? kNone : own;
  const size_t tableBytes = colors.size() * sizeof(PaletteEntry);

  BitmapInfoHeader header;
  header.biWidth = static_cast<int32_t>(image.width());
  header.biHeight = static_cast<int32_t>(image.height());
  header.biBitCount = static_cast<uint16_t>(image.bitsPerPixel());
  header.biXPelsPerMeter = static_cast<int32_t>(DotsPerInchToPerMetre(image.xResolution()));
  header.biYPelsPerMeter = static_cast<int32_t>(DotsPerInchToPerMetre(image.yResolution()));
  header.biClrUsed = header.biClrImportant = static_cast<uint32_t>(colors.size());

  NewDib dib(header, uint64_t{tableBytes} + image.dataSize());
  if (dib.body() == nullptr) return nullptr;
  if (tableBytes != 0) std::memcpy(dib.body(), colors.data(), tableBytes);
  CopyRows(image, order, dib.body() + tableBytes);
  return dib.Release();
}

platform::GlobalHandle PackedDibFromDeepImage(const CKIPDeepImage& image) {
  if (!image.IsValid()) return nullptr;
  BitmapInfoHeader header;
  header.biWidth = static_cast<int32_t>(image.GetWidth());
  header.biHeight = static_cast<int32_t>(image.GetHeight());
  header.biBitCount = 16;
  header.biXPelsPerMeter = static_cast<int32_t>(image.GetXResolutionPerMetre());
  header.biYPelsPerMeter = static_cast<int32_t>(image.GetYResolutionPerMetre());

  const uint64_t rowBytes = uint64_t{image.GetWidth()} * sizeof(uint16_t);
  const uint64_t stride = (rowBytes + 3) / 4 * 4;
  NewDib dib(header, stride * image.GetHeight());
  if (dib.body() == nullptr) return nullptr;
  for (uint32_t row = 0; row < image.GetHeight(); ++row) {
    std::memcpy(dib.body() + row * stride, image.GetRow(row), rowBytes);
  }
  return dib.Release();
}

}  // namespace zyr
