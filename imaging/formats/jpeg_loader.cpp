#include <cstring>

#include "imaging/formats/file_steps.h"
#include "imaging/formats/jpeg.h"
#include "imaging/formats/jpeg_errors.h"
#include "imaging/image/grey.h"
#include "imaging/image/image_error.h"
#include "platform/escape_key.h"

namespace zyr {
namespace {

// A file of a few bytes can claim a huge picture, and one of a few kilobytes many passes over it.
// Far more than any sensor has.
constexpr uint64_t kMostPixelBytes = 64u << 20;
constexpr int kMostScans = 64;

struct Decoding {
  jpeg_decompress_struct codec{};
  JpegErrors errors;
  jpeg_progress_mgr scanLimit{};
  FILE* file = nullptr;
  const std::string* path = nullptr;
  CKIPImage* image = nullptr;
  ProgressCallback progress = nullptr;
};

void StopAtScanLimit(j_common_ptr codec) {
  if (reinterpret_cast<j_decompress_ptr>(codec)->input_scan_number <= kMostScans) return;
  auto* const errors = reinterpret_cast<JpegErrors*>(codec->err);
  std::strcpy(errors->message, "Too many scans");
  std::longjmp(errors->jump, 1);
}

void ReadHeader(Decoding& decoding) {
  jpeg_decompress_struct& codec = decoding.codec;
  jpeg_create_decompress(&codec);
  decoding.scanLimit.progress_monitor = StopAtScanLimit;
  codec.progress = &decoding.scanLimit;
  jpeg_stdio_src(&codec, decoding.file);
  jpeg_read_header(&codec, TRUE);
}

// Before decoding starts, as that allocates for the whole picture.
bool CheckHeader(const jpeg_decompress_struct& codec) {
  if (codec.jpeg_color_space != JCS_GRAYSCALE && codec.jpeg_color_space != JCS_RGB) {
    ReportImageError(kImageErrorColorScheme, "Unsupported color scheme");
    return false;
  }
  const uint64_t pixelBytes =
      uint64_t{codec.image_width} * codec.image_height * (codec.num_components > 1 ? 3 : 1);
  if (pixelBytes == 0 || pixelBytes > kMostPixelBytes) {
    ReportImageError(kImageErrorDimensions, "Invalid image dimensions (%lux%lu)",
                     Lu(codec.image_width), Lu(codec.image_height));
    return false;
  }
  return true;
}

uint32_t DotsPerInch(const jpeg_decompress_struct& codec, uint32_t density) {
  constexpr int kPerCentimetre = 2;
  if (!codec.saw_JFIF_marker) return 1;
  return codec.density_unit == kPerCentimetre ? static_cast<uint32_t>(density * 2.54 + 0.5)
                                              : density;
}

bool CreateImage(Decoding& decoding) {
  const jpeg_decompress_struct& codec = decoding.codec;
  const uint32_t bitsPerPixel = codec.jpeg_color_space == JCS_GRAYSCALE ? 8 : 24;
  if (static_cast<uint32_t>(codec.output_components) * 8 != bitsPerPixel) {
    ReportImageError(kImageErrorColorScheme, "Unsupported color scheme");
    return false;
  }
  if (!decoding.image->CreateUnfilled({*decoding.path, codec.output_width, codec.output_height,
                                       DotsPerInch(codec, codec.X_density),
                                       DotsPerInch(codec, codec.Y_density), bitsPerPixel})) {
    ReportImageError(kImageErrorOutOfMemory, "Out of memory");
    return false;
  }
  if (bitsPerPixel == 8) decoding.image->SetPalette(NewIdentityPalette());
  return true;
}

// False once the user ends it.
bool DecodeRows(Decoding& decoding) {
  jpeg_decompress_struct& codec = decoding.codec;
  CKIPImage& image = *decoding.image;
  while (codec.output_scanline < codec.output_height) {
    JSAMPROW row = image.PictureRow(codec.output_scanline);
    jpeg_read_scanlines(&codec, &row, 1);
    if (image.bitsPerPixel() == 24) CopySwappingRedAndBlue(row, row, image.width());
    Report(decoding.progress, static_cast<double>(codec.output_scanline) / codec.output_height);
    if (UserAborted()) return false;
  }
  return true;
}

// libjpeg's errors come back here.
bool Decode(Decoding& decoding) {
  decoding.codec.err = PrepareJpegErrors(decoding.errors);
  if (setjmp(decoding.errors.jump) != 0) {
    ReportImageError(kImageErrorInvalidImage, "Invalid image specified (%s)",
                     decoding.errors.message);
    return false;
  }
  ReadHeader(decoding);
  if (!CheckHeader(decoding.codec)) return false;
  jpeg_start_decompress(&decoding.codec);
  if (!CreateImage(decoding) || !DecodeRows(decoding)) return false;
  jpeg_finish_decompress(&decoding.codec);
  return true;
}

bool ReadFile(const std::string& path, CKIPImage& image, ProgressCallback progress) {
  const StdioFile file(path, "rb");
  if (file.get() == nullptr) {
    ReportCannotOpen("JPEG", path);
    return false;
  }
  platform::ClearEscapeKey();
  Decoding decoding;
  decoding.file = file.get();
  decoding.path = &path;
  decoding.image = &image;
  decoding.progress = progress;
  const bool read = Decode(decoding);
  jpeg_destroy_decompress(&decoding.codec);
  return read;
}

}  // namespace

bool CKIPJpegLoader::Load(const std::string& path, CKIPImage* image, ProgressCallback progress) {
  SetLastFileName(path);
  if (image == nullptr) {
    ReportImageError(kImageErrorNullPointer, "NULL image pointer specified");
    return false;
  }
  image->Clear();
  image->fileFormat = kFileFormatJpeg;
  if (!ReadFile(path, *image, progress)) {
    image->Clear();
    image->fileFormat = kFileFormatJpeg;
    return false;
  }
  image->fileSize = FileSizeOf(path);
  return true;
}

}  // namespace zyr
