// How a cached image goes out: native, to a file, and strip by strip through memory.
#include <algorithm>
#include <cstring>
#include <optional>

#include "acquire/image_cache/cached_image.h"
#include "foundation/log/log.h"
#include "foundation/support/phrase_lookup.h"
#include "foundation/support/progress.h"
#include "imaging/formats/bmp.h"
#include "imaging/formats/jpeg.h"
#include "imaging/formats/tiff.h"
#include "imaging/image/raw_pixels.h"
#include "imaging/image/resolution.h"
#include "imaging/operations/geometry/flip.h"
#include "imaging/operations/levels/stretch.h"
#include "platform/progress_window.h"
#include "settings/store.h"

namespace zyr {
namespace {

constexpr uint32_t kTransferJpegQuality = 100;
constexpr size_t kStretchPiece = 4096;  // pixels
constexpr int kMostCancels = 5;

const uint16_t* AsSamples(const uint8_t* bytes) { return reinterpret_cast<const uint16_t*>(bytes); }

// The application's memory may begin at an odd address.
void StretchInto(uint8_t* target, const uint8_t* source, size_t count) {
  if (reinterpret_cast<uintptr_t>(target) % alignof(uint16_t) == 0) {
    StretchTo16Bit(AsSamples(source), reinterpret_cast<uint16_t*>(target), count);
    return;
  }
  uint16_t piece[kStretchPiece];
  for (size_t done = 0; done < count; done += kStretchPiece) {
    const size_t now = std::min(count - done, kStretchPiece);
    StretchTo16Bit(AsSamples(source) + done, piece, now);
    std::memcpy(target + done * sizeof(uint16_t), piece, now * sizeof(uint16_t));
  }
}

void CopySamples(uint8_t* target, const uint8_t* source, size_t count, bool stretch) {
  if (stretch) {
    StretchInto(target, source, count);
  } else {
    std::memcpy(target, source, count * sizeof(uint16_t));
  }
}

BitmapInfoHeader DeepHeader(const ImageDescription& image) {
  BitmapInfoHeader header;
  header.biWidth = static_cast<int32_t>(image.width);
  header.biHeight = static_cast<int32_t>(image.height);
  header.biBitCount = 16;
  header.biXPelsPerMeter = static_cast<int32_t>(DotsPerInchToPerMetre(image.xResolution));
  header.biYPelsPerMeter = static_cast<int32_t>(DotsPerInchToPerMetre(image.yResolution));
  return header;
}

bool SavePicture(const std::string& path, CKIPImage* picture, uint16_t format) {
  switch (format) {
    case 0:
      return CKIPTiffSaver().Save(path, picture, nullptr);
    case 2:
      return CKIPBmpSaver().Save(path, picture, nullptr);
    default:
      return CKIPJpegSaver().Save(path, picture, kTransferJpegQuality, nullptr);
  }
}

// The memory that the application gave for a strip: an address of its own, or a block that stays
// locked for the life of this object.
class StripMemory {
 public:
  explicit StripMemory(const MemoryStrip& strip) : isPointer_(strip.isPointer) {
    if (isPointer_) {
      address_ = strip.memory;
      return;
    }
    block_.emplace(strip.memory);
    address_ = block_->address();
  }

  uint8_t* address() const { return static_cast<uint8_t*>(address_); }
  bool Holds(size_t bytes) const {
    return isPointer_ ? platform::IsWritable(address_, bytes) : block_->size() >= bytes;
  }

 private:
  bool isPointer_;
  std::optional<platform::LockedBlock> block_;
  void* address_ = nullptr;
};

// Rows without gaps between them.
struct StripSource {
  const uint8_t* rows = nullptr;
  uint32_t bytesPerRow = 0;
  uint32_t width = 0;  // pixels
  bool deep = false;
};

StripSource SourceOf(CachedImage& image, const TransferTerms& terms) {
  if (terms.is16BitGrayscale() && image.bitsPerPixel > 8) {
    return {image.PixelData().data(), static_cast<uint32_t>(image.RowBytes()), image.width, true};
  }
  const CKIPImage* picture = image.PrepareImage();
  if (picture == nullptr) return {};
  return {picture->bits(), picture->stride(), image.width, false};
}

void DescribeStrip(MemoryStrip* strip, const StripSource& source, uint32_t xOffset,
                   uint32_t yOffset) {
  strip->compression = 0;
  strip->bytesPerRow = source.bytesPerRow;
  strip->columns = source.width;
  strip->rows = strip->length / source.bytesPerRow;
  strip->xOffset = xOffset;
  strip->yOffset = yOffset;
}

void LogStripSizes(const MemoryStrip& strip, const ImageDescription& image, bool deep) {
  Log().WriteLine(deep ? "   Mem 16-bit Transfer Specs" : "   Mem 8-bit Transfer Specs");
  Log().WriteLine("      Offset: (%lu, %lu)", Lu(strip.xOffset), Lu(strip.yOffset));
  Log().WriteLine("      Buffer Size: %lu", Lu(strip.length));
  Log().WriteLine("      ");
  Log().WriteLine("      Image Size: (%lu, %lu)", Lu(image.width), Lu(image.height));
  Log().WriteLine("      Bytes Per Row: %lu", Lu(strip.bytesPerRow));
  Log().WriteLine("      Minimum rows that can be transfered: %lu", Lu(strip.rows));
  Log().WriteLine("      Compression: %s", GetPhrase("None").c_str());
}

void LogStripResult(const MemoryStrip& strip) {
  Log().WriteLine("      ");
  Log().WriteLine("      Rows being transfered: %lu", Lu(strip.rows));
  Log().WriteLine("      Bytes written: %lu", Lu(strip.bytesWritten));
}

// Two pointers walk over the same strip: from row to row the reading one advances by `width` pixels
// and the writing one by `stride` pixels. Callers give the stride in bytes, so that at 16 bits the
// writing one runs ahead, and would leave the strip halfway; with padded 8-bit rows the reading one
// falls behind.
template <typename Pixel, typename Invert>
void InvertRows(std::span<uint8_t> strip, uint32_t width, uint32_t rows, uint32_t stride,
                Invert invert) {
  for (uint64_t row = 0; row < rows; ++row) {
    uint64_t from = row * width * sizeof(Pixel);
    uint64_t to = row * stride * sizeof(Pixel);
    for (uint32_t x = 0; x < width; ++x, from += sizeof(Pixel), to += sizeof(Pixel)) {
      if (std::max(from, to) + sizeof(Pixel) > strip.size()) return;
      Pixel pixel;
      std::memcpy(&pixel, strip.data() + from, sizeof pixel);
      pixel = invert(pixel);
      std::memcpy(strip.data() + to, &pixel, sizeof pixel);
    }
  }
}

void ApplyPixelFlavor(std::span<uint8_t> strip, uint32_t width, uint32_t rows, uint32_t stride,
                      uint32_t depth) {
  if (depth == 8) {
    InvertRows<uint8_t>(strip, width, rows, stride,
                        [](uint8_t pixel) { return static_cast<uint8_t>(255 - pixel); });
  } else {
    InvertRows<uint16_t>(strip, width, rows, stride,
                         [](uint16_t pixel) { return static_cast<uint16_t>(-pixel); });
  }
}

void FillStrip(uint8_t* target, const StripSource& source, const MemoryStrip& strip,
               uint16_t pixelFlavor) {
  const uint8_t* rows = source.rows + size_t{strip.yOffset} * strip.bytesPerRow;
  if (source.deep) {
    CopySamples(target, rows, size_t{strip.columns} * strip.rows, GetHistStretch());
  } else {
    std::memcpy(target, rows, strip.bytesWritten);
  }
  if (pixelFlavor == 0) return;
  ApplyPixelFlavor({target, strip.bytesWritten}, strip.columns, strip.rows, strip.bytesPerRow,
                   source.deep ? 16 : 8);
}

}  // namespace

CKIPImage* CachedImage::PrepareImage() {
  if (image8 != nullptr) return image8.get();
  platform::ProgressWindow progress(GetPhrase("Preparing Image"));
  if (PixelData().empty()) return nullptr;
  progress.Advance(0.5);
  // An image that the user's Escape left unprepared would count as delivered, and be deleted.
  for (int i = 0; i < kMostCancels && image8 == nullptr; ++i) {
    image8 = MakeImage8();
    if (!cancel_monitor::IsCancelled()) break;
  }
  return image8.get();
}

std::unique_ptr<CKIPImage> CachedImage::MakeImage8() const {
  if (bitsPerPixel == 8) {
    return ImageFromRaw8(pixels_.data(), width, height, true, 0, xResolution, yResolution,
                         FirstRow::kBottom);
  }
  DepthMapping mapping;
  mapping.bits = bitsPerPixel;
  return ImageFromRaw16(AsSamples(pixels_.data()), width, height, 0, xResolution, yResolution,
                        mapping);
}

platform::GlobalHandle CachedImage::MakeNativeHandle(const TransferTerms& terms) {
  if (terms.is16BitGrayscale() && bitsPerPixel > 8) {
    Log().WriteLine("    Converting to 16-bit HDIB");
    return MakeDeepHandle();
  }
  Log().WriteLine("    Converting to 8-bit HDIB");
  const CKIPImage* picture = PrepareImage();
  return picture == nullptr ? nullptr : PackedDibFromImage(*picture, nullptr, RowOrder::kReversed);
}

// Each row goes straight to its place in the block, so that the pixels are touched once.
platform::GlobalHandle CachedImage::MakeDeepHandle() {
  const std::span<const uint8_t> pixels = PixelData();
  if (pixels.empty()) return nullptr;
  const bool stretch = GetHistStretch();
  const BitmapInfoHeader header = DeepHeader(*this);
  const platform::GlobalHandle handle =
      platform::AllocateMovable(sizeof header + pixels.size(), false);
  if (handle == nullptr) return nullptr;
  {
    const platform::LockedBlock block(handle);
    if (auto* target = static_cast<uint8_t*>(block.address()); target != nullptr) {
      std::memcpy(target, &header, sizeof header);
      target += sizeof header;
      const size_t rowBytes = RowBytes();
      for (size_t end = pixels.size(); end != 0; end -= rowBytes, target += rowBytes) {
        CopySamples(target, pixels.data() + end - rowBytes, width, stretch);
      }
      return handle;
    }
  }
  platform::FreeBlock(handle);
  return nullptr;
}

bool CachedImage::SaveToFile(const std::string& path, const TransferTerms& terms) {
  CKIPImage* picture = PrepareImage();
  std::unique_ptr<CKIPImage> upright;
  if (picture != nullptr && rowsTopDown_) {
    upright = FlipVertical(picture, nullptr);
    picture = upright.get();
  }
  return SavePicture(path, picture, terms.imageFileFormat);  // which refuses a null picture
}

bool CachedImage::CopyToMemoryBuffer(MemoryStrip* strip, const uint32_t* xOffset, uint32_t* yOffset,
                                     bool* done, const TransferTerms& terms) {
  if (strip == nullptr || strip->memory == nullptr) return false;
  Log().WriteLine(strip->isPointer ? "    Passed pointer to datablock"
                                   : "    Passed handle to datablock");
  const StripMemory target(*strip);
  if (target.address() == nullptr) return false;
  const StripSource source = SourceOf(*this, terms);
  if (source.rows == nullptr) return false;

  DescribeStrip(strip, source, *xOffset, *yOffset);
  LogStripSizes(*strip, *this, source.deep);
  if (strip->rows == 0) return false;

  const uint32_t remaining = height - std::min(height, *yOffset);
  const bool last = strip->rows > remaining;
  strip->rows = std::min(strip->rows, remaining);
  const uint32_t bytes = strip->rows * strip->bytesPerRow;
  if (bytes != 0 && !target.Holds(bytes)) return false;
  strip->bytesWritten = bytes;
  LogStripResult(*strip);
  if (bytes != 0) FillStrip(target.address(), source, *strip, terms.pixelFlavor);
  *yOffset += strip->rows;
  if (last) *done = true;
  return true;
}

}  // namespace zyr
