#include <cstring>
#include <fstream>
#include <memory>
#include <span>

#include <tiffio.h>

#include "tools/images/picture_file.h"

namespace zyr {
namespace {

using Bytes = std::span<const uint8_t>;

// What all these formats tell of themselves comes early.
constexpr size_t kHead = 64 * 1024;

uint32_t Little(Bytes bytes, size_t at, int count) {
  uint32_t value = 0;
  for (int i = count; i-- > 0;) value = value << 8 | bytes[at + i];
  return value;
}

uint32_t Big16(Bytes bytes, size_t at) {
  return static_cast<uint32_t>(bytes[at]) << 8 | bytes[at + 1];
}

bool InspectBmp(Bytes head, PictureInfo* info) {
  if (head.size() < 54 || head[0] != 'B' || head[1] != 'M') return false;
  info->width = Little(head, 18, 4);
  const auto height = static_cast<int32_t>(Little(head, 22, 4));
  info->height = height < 0 ? 0 - static_cast<uint32_t>(height) : static_cast<uint32_t>(height);
  info->bits = Little(head, 28, 2);
  info->xDpi = Little(head, 38, 4) * 0.0254;
  info->yDpi = Little(head, 42, 4) * 0.0254;
  return true;
}

void InspectJfif(Bytes segment, PictureInfo* info) {
  if (segment.size() < 12 || std::memcmp(segment.data(), "JFIF", 5) != 0) return;
  const double perInch = segment[7] == 1 ? 1 : segment[7] == 2 ? 2.54 : 0;
  info->xDpi = Big16(segment, 8) * perInch;
  info->yDpi = Big16(segment, 10) * perInch;
}

// A frame header, whichever of the coding processes it announces.
bool IsFrame(uint8_t marker) {
  return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

bool InspectJpeg(Bytes head, PictureInfo* info) {
  if (head.size() < 4 || head[0] != 0xFF || head[1] != 0xD8) return false;
  for (size_t at = 2; at + 4 <= head.size() && head[at] == 0xFF;) {
    const uint8_t marker = head[at + 1];
    const size_t length = Big16(head, at + 2);
    if (length < 2 || at + 2 + length > head.size()) return false;
    const Bytes segment = head.subspan(at + 4, length - 2);
    if (marker == 0xE0) InspectJfif(segment, info);
    if (IsFrame(marker) && segment.size() >= 6) {
      info->height = Big16(segment, 1);
      info->width = Big16(segment, 3);
      info->bits = static_cast<uint32_t>(segment[0]) * segment[5];
      return true;
    }
    at += 2 + length;
  }
  return false;
}

struct TiffCloser {
  void operator()(TIFF* file) const { TIFFClose(file); }
};

bool InspectTiff(Bytes head, const std::string& path, PictureInfo* info) {
  if (head.size() < 8 ||
      (std::memcmp(head.data(), "II*", 4) != 0 && std::memcmp(head.data(), "MM\0*", 4) != 0)) {
    return false;
  }
  TIFFSetErrorHandler(nullptr);
  TIFFSetWarningHandler(nullptr);
  const std::unique_ptr<TIFF, TiffCloser> file(TIFFOpen(path.c_str(), "r"));
  if (file == nullptr) return false;
  uint16_t bits = 0;
  uint16_t samples = 0;
  uint16_t unit = 0;
  float x = 0;
  float y = 0;
  TIFFGetField(file.get(), TIFFTAG_IMAGEWIDTH, &info->width);
  TIFFGetField(file.get(), TIFFTAG_IMAGELENGTH, &info->height);
  TIFFGetFieldDefaulted(file.get(), TIFFTAG_BITSPERSAMPLE, &bits);
  TIFFGetFieldDefaulted(file.get(), TIFFTAG_SAMPLESPERPIXEL, &samples);
  TIFFGetFieldDefaulted(file.get(), TIFFTAG_RESOLUTIONUNIT, &unit);
  TIFFGetField(file.get(), TIFFTAG_XRESOLUTION, &x);
  TIFFGetField(file.get(), TIFFTAG_YRESOLUTION, &y);
  const double perInch = unit == RESUNIT_INCH ? 1 : unit == RESUNIT_CENTIMETER ? 2.54 : 0;
  info->bits = static_cast<uint32_t>(bits) * samples;
  info->xDpi = x * perInch;
  info->yDpi = y * perInch;
  return true;
}

}  // namespace

std::optional<PictureInfo> InspectPicture(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  std::vector<uint8_t> head(kHead);
  file.read(reinterpret_cast<char*>(head.data()), static_cast<std::streamsize>(head.size()));
  head.resize(static_cast<size_t>(file.gcount()));
  file.clear();
  file.seekg(0, std::ios::end);
  PictureInfo info;
  info.fileSize = static_cast<uint64_t>(file.tellg());
  if (!InspectBmp(head, &info) && !InspectJpeg(head, &info) && !InspectTiff(head, path, &info))
    return std::nullopt;
  return info;
}

}  // namespace zyr
