#include "tools/zyracquire/delivered_picture.h"

#include <array>
#include <utility>

namespace zyr {
namespace {

constexpr size_t kHeaderSize = 40;
constexpr uint32_t kLargestSide = 65536;

uint32_t Little(std::span<const uint8_t> bytes, size_t at, size_t count) {
  uint32_t value = 0;
  for (size_t i = count; i-- > 0;) value = value << 8 | bytes[at + i];
  return value;
}

struct DibHeader {
  uint32_t width = 0;
  uint32_t height = 0;
  bool topDown = false;
  uint32_t bits = 0;
  double xDpi = 0;
  double yDpi = 0;
  uint32_t colors = 0;
  size_t pixelsAt = 0;
};

std::string ReadHeader(std::span<const uint8_t> block, DibHeader* header) {
  if (block.size() < kHeaderSize || Little(block, 0, 4) < kHeaderSize) return "no bitmap header";
  header->width = Little(block, 4, 4);
  const auto height = static_cast<int32_t>(Little(block, 8, 4));
  header->topDown = height < 0;
  header->height = height < 0 ? 0 - static_cast<uint32_t>(height) : static_cast<uint32_t>(height);
  if (header->width == 0 || header->height == 0 || header->width > kLargestSide ||
      header->height > kLargestSide) {
    return "a size of " + std::to_string(header->width) + " x " + std::to_string(height);
  }
  header->bits = Little(block, 14, 2);
  if (header->bits != 8 && header->bits != 16) {
    return std::to_string(header->bits) + " bits a pixel, and not 8 or 16";
  }
  if (Little(block, 16, 4) != 0) return "compressed pixels";
  header->xDpi = Little(block, 24, 4) * 0.0254;
  header->yDpi = Little(block, 28, 4) * 0.0254;
  if (header->bits == 8) header->colors = Little(block, 32, 4);
  if (header->bits == 8 && (header->colors == 0 || header->colors > 256)) header->colors = 256;
  header->pixelsAt = size_t{Little(block, 0, 4)} + 4 * size_t{header->colors};
  return {};
}

// Rows of bitmaps are padded to four bytes. Some sources do without that at 16 bits, and the size
// of the block tells.
uint64_t Stride(const DibHeader& header, size_t pixelBytes) {
  const uint64_t exact = uint64_t{header.width} * header.bits / 8;
  const uint64_t padded = (exact + 3) / 4 * 4;
  return header.bits == 16 && pixelBytes < padded * header.height ? exact : padded;
}

// The brightness of each colour of the table.
std::array<uint8_t, 256> Greys(std::span<const uint8_t> block, const DibHeader& header) {
  std::array<uint8_t, 256> greys{};
  for (uint32_t i = 0; i < header.colors; ++i) {
    const size_t at = header.pixelsAt - 4 * size_t{header.colors} + 4 * size_t{i};
    greys[i] =
        static_cast<uint8_t>((114 * block[at] + 587 * block[at + 1] + 299 * block[at + 2]) / 1000);
  }
  return greys;
}

}  // namespace

std::optional<GreyPicture> PictureFromDib(std::span<const uint8_t> block, std::string* error) {
  DibHeader header;
  *error = ReadHeader(block, &header);
  if (!error->empty()) return std::nullopt;
  const size_t pixelBytes = block.size() > header.pixelsAt ? block.size() - header.pixelsAt : 0;
  const uint64_t rowBytes = Stride(header, pixelBytes);
  if (rowBytes * header.height > pixelBytes) {
    *error = "fewer pixels than the header says";
    return std::nullopt;
  }
  const auto stride = static_cast<size_t>(rowBytes);
  GreyPicture picture{header.width, header.height, header.bits, header.xDpi, header.yDpi, {}};
  picture.samples.reserve(size_t{header.width} * header.height);
  const std::array<uint8_t, 256> greys = Greys(block, header);
  for (uint32_t y = 0; y < header.height; ++y) {
    const size_t row = header.pixelsAt + stride * (header.topDown ? y : header.height - 1 - y);
    for (uint32_t x = 0; x < header.width; ++x) {
      picture.samples.push_back(header.bits == 8
                                    ? greys[block[row + x]]
                                    : static_cast<uint16_t>(Little(block, row + 2 * size_t{x}, 2)));
    }
  }
  return picture;
}

StripCollector::StripCollector(const TW_IMAGEINFO& info)
    : promisedBits_(static_cast<uint32_t>(info.BitsPerPixel)) {
  picture_.width = static_cast<uint32_t>(info.ImageWidth);
  picture_.height = static_cast<uint32_t>(info.ImageLength);
  if (picture_.width == 0 || picture_.height == 0 || picture_.width > kLargestSide ||
      picture_.height > kLargestSide) {
    Refuse("The source gives an image size of " + std::to_string(info.ImageWidth) + " x " +
           std::to_string(info.ImageLength) + ".");
  } else if (promisedBits_ != 8 && promisedBits_ != 16) {
    Refuse("The source gives images of " + std::to_string(info.BitsPerPixel) +
           " bits a pixel, and not of 8 or 16.");
  }
}

bool StripCollector::Refuse(const std::string& reason) {
  error_ = reason;
  return false;
}

bool StripCollector::IsPlausible(const TW_IMAGEMEMXFER& strip, size_t bufferSize) {
  const uint32_t bytesPerRow = strip.BytesPerRow;
  const uint32_t rows = strip.Rows;
  if (strip.Compression != TWCP_NONE) return Refuse("The source compresses its strips.");
  if (strip.Columns != picture_.width) return Refuse("A strip is not as wide as the image.");
  if (strip.YOffset != rows_)
    return Refuse("A strip does not begin where the one before it ended.");
  if (rows > picture_.height - rows_)
    return Refuse("The source gives more rows than the image has.");
  if (bytesPerRow < picture_.width * (picture_.bits / 8))
    return Refuse("The rows of a strip are too short.");
  if (uint64_t{rows} * bytesPerRow > bufferSize || strip.BytesWritten > bufferSize) {
    return Refuse("A strip is larger than its buffer.");
  }
  return true;
}

bool StripCollector::Add(const TW_IMAGEMEMXFER& strip, std::span<const uint8_t> buffer) {
  if (!error_.empty()) return false;
  if (strip.Rows == 0) return true;
  // What is announced is the negotiated depth; an image that was taken at 8 bits has no more all
  // the same.
  picture_.bits = promisedBits_ == 16 && strip.BytesPerRow >= 2 * uint64_t{picture_.width} ? 16 : 8;
  if (!IsPlausible(strip, buffer.size())) return false;
  for (uint32_t y = 0; y < strip.Rows; ++y) {
    const size_t row = size_t{y} * strip.BytesPerRow;
    for (uint32_t x = 0; x < picture_.width; ++x) {
      picture_.samples.push_back(
          picture_.bits == 8 ? buffer[row + x]
                             : static_cast<uint16_t>(Little(buffer, row + 2 * size_t{x}, 2)));
    }
  }
  rows_ += strip.Rows;
  bytes_ += strip.BytesWritten;
  return true;
}

bool StripCollector::Finish(bool zeroIsWhite, GreyPicture* picture) {
  if (!error_.empty()) return false;
  if (rows_ != picture_.height) {
    return Refuse("The source ended the transfer after " + std::to_string(rows_) + " of " +
                  std::to_string(picture_.height) + " rows.");
  }
  const uint16_t white = picture_.bits == 16 ? 0xFFFF : 0xFF;
  if (zeroIsWhite) {
    for (uint16_t& sample : picture_.samples) sample = static_cast<uint16_t>(white - sample);
  }
  *picture = std::move(picture_);
  return true;
}

}  // namespace zyr
