#include "tools/images/picture_file.h"

#include <cstdio>
#include <fstream>
#include <memory>

#include <tiffio.h>

namespace zyr {
namespace {

void Put16(std::vector<uint8_t>* bytes, uint32_t value) {
  bytes->push_back(static_cast<uint8_t>(value));
  bytes->push_back(static_cast<uint8_t>(value >> 8));
}

void Put32(std::vector<uint8_t>* bytes, uint32_t value) {
  Put16(bytes, value);
  Put16(bytes, value >> 16);
}

struct TiffCloser {
  void operator()(TIFF* file) const { TIFFClose(file); }
};

bool WriteTiffRows(TIFF* file, const GreyPicture& picture) {
  std::vector<uint8_t> narrow(picture.width);
  std::vector<uint16_t> wide(picture.width);
  for (uint32_t y = 0; y < picture.height; ++y) {
    const uint16_t* row = picture.Row(y);
    void* line = wide.data();
    if (picture.bits == 8) {
      for (uint32_t x = 0; x < picture.width; ++x) narrow[x] = static_cast<uint8_t>(row[x]);
      line = narrow.data();
    } else {
      wide.assign(row, row + picture.width);
    }
    if (TIFFWriteScanline(file, line, y, 0) < 0) return false;
  }
  return TIFFFlush(file) == 1;
}

bool WriteTiff(const GreyPicture& picture, const std::string& path) {
  TIFFSetErrorHandler(nullptr);
  TIFFSetWarningHandler(nullptr);
  const std::unique_ptr<TIFF, TiffCloser> file(TIFFOpen(path.c_str(), "w"));
  if (file == nullptr) return false;
  TIFF* tiff = file.get();
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, picture.width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, picture.height);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, static_cast<int>(picture.bits));
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
  if (picture.xDpi > 0 && picture.yDpi > 0) {
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, picture.xDpi);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, picture.yDpi);
  }
  return WriteTiffRows(tiff, picture);
}

}  // namespace

const char* ExtensionOf(PictureFormat format) {
  switch (format) {
    case PictureFormat::kBmp:
      return "bmp";
    case PictureFormat::kTiff:
      return "tif";
    default:
      return "png";
  }
}

bool CanHold(PictureFormat format, uint32_t bits) {
  return format != PictureFormat::kBmp || bits == 8;
}

std::vector<uint8_t> EncodeBmp(const GreyPicture& picture) {
  constexpr uint32_t kPixelsAt = 14 + 40 + 4 * 256;
  const uint32_t stride = (picture.width + 3) / 4 * 4;
  std::vector<uint8_t> file = {'B', 'M'};
  file.reserve(kPixelsAt + size_t{stride} * picture.height);
  Put32(&file, kPixelsAt + stride * picture.height);
  Put32(&file, 0);
  Put32(&file, kPixelsAt);
  Put32(&file, 40);
  Put32(&file, picture.width);
  Put32(&file, picture.height);
  Put16(&file, 1);
  Put16(&file, 8);
  Put32(&file, 0);  // not compressed
  Put32(&file, stride * picture.height);
  Put32(&file, static_cast<uint32_t>(picture.xDpi / 0.0254 + 0.5));
  Put32(&file, static_cast<uint32_t>(picture.yDpi / 0.0254 + 0.5));
  Put32(&file, 256);
  Put32(&file, 256);
  for (uint32_t grey = 0; grey < 256; ++grey) Put32(&file, grey * 0x010101);
  for (uint32_t y = picture.height; y-- > 0;) {
    const uint16_t* row = picture.Row(y);
    for (uint32_t x = 0; x < stride; ++x)
      file.push_back(x < picture.width ? static_cast<uint8_t>(row[x]) : 0);
  }
  return file;
}

std::vector<uint8_t> EncodePgm(const GreyPicture& picture) {
  const std::string head = "P5\n" + std::to_string(picture.width) + " " +
                           std::to_string(picture.height) + "\n" +
                           (picture.bits == 8 ? "255" : "65535") + "\n";
  std::vector<uint8_t> bytes(head.begin(), head.end());
  for (const uint16_t sample : picture.samples) {
    if (picture.bits == 16) bytes.push_back(static_cast<uint8_t>(sample >> 8));
    bytes.push_back(static_cast<uint8_t>(sample));
  }
  return bytes;
}

bool WriteBytes(const std::vector<uint8_t>& bytes, const std::string& path) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (file) return true;
  std::remove(path.c_str());
  return false;
}

bool WritePicture(const GreyPicture& picture, PictureFormat format, const std::string& path) {
  switch (format) {
    case PictureFormat::kBmp:
      return WriteBytes(EncodeBmp(picture), path);
    case PictureFormat::kTiff:
      if (WriteTiff(picture, path)) return true;
      std::remove(path.c_str());
      return false;
    default:
      return WriteBytes(EncodePng(picture), path);
  }
}

}  // namespace zyr
