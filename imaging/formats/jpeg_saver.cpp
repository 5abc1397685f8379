#include <algorithm>

#include "imaging/formats/file_steps.h"
#include "imaging/formats/jpeg.h"
#include "imaging/formats/jpeg_errors.h"
#include "imaging/image/grey.h"
#include "imaging/image/image_error.h"
#include "platform/escape_key.h"
#include "platform/files.h"

namespace zyr {
namespace {

struct Encoding {
  jpeg_compress_struct codec{};
  JpegErrors errors;
  FILE* file = nullptr;
  const CKIPImage* image = nullptr;  // grey or 24-bit
  int quality = 0;
  ProgressCallback progress = nullptr;
  bool aborted = false;
};

void StartEncoding(Encoding& encoding) {
  jpeg_compress_struct& codec = encoding.codec;
  const CKIPImage& image = *encoding.image;
  const bool isGrey = image.bitsPerPixel() == 8;
  jpeg_create_compress(&codec);
  jpeg_stdio_dest(&codec, encoding.file);
  codec.image_width = image.width();
  codec.image_height = image.height();
  codec.input_components = isGrey ? 1 : 3;
  codec.in_color_space = isGrey ? JCS_GRAYSCALE : JCS_RGB;
  jpeg_set_defaults(&codec);
  codec.write_JFIF_header = TRUE;
  codec.density_unit = 1;  // dots per inch
  // Crossed, and readers of these files count on it.
  codec.X_density = static_cast<UINT16>(image.yResolution());
  codec.Y_density = static_cast<UINT16>(image.xResolution());
  jpeg_set_quality(&codec, encoding.quality, TRUE);
  jpeg_start_compress(&codec, TRUE);
}

// Row `y` from the top as libjpeg takes it, which does not write to it. `buffer` holds one row.
JSAMPROW RowToEncode(const CKIPImage& image, uint32_t y, JSAMPROW buffer) {
  const uint8_t* row = RowReadingAhead(image, y);
  if (image.bitsPerPixel() == 8) return const_cast<JSAMPROW>(row);
  CopySwappingRedAndBlue(row, buffer, image.width());
  return buffer;
}

// False once the user ends it.
bool EncodeRows(Encoding& encoding) {
  jpeg_compress_struct& codec = encoding.codec;
  const CKIPImage& image = *encoding.image;
  const JSAMPARRAY buffer = (*codec.mem->alloc_sarray)(reinterpret_cast<j_common_ptr>(&codec),
                                                       JPOOL_IMAGE, image.stride(), 1);
  for (uint32_t y = 0; y < image.height(); ++y) {
    JSAMPROW row = RowToEncode(image, y, buffer[0]);
    jpeg_write_scanlines(&codec, &row, 1);
    Report(encoding.progress, (y + 1.0) / image.height());
    if (UserAborted()) return false;
  }
  return true;
}

// libjpeg's errors come back here.
bool Encode(Encoding& encoding) {
  encoding.codec.err = PrepareJpegErrors(encoding.errors);
  if (setjmp(encoding.errors.jump) != 0) {
    ReportImageError(kImageErrorCannotWrite, "%s", encoding.errors.message);
    return false;
  }
  StartEncoding(encoding);
  if (!EncodeRows(encoding)) return false;
  jpeg_finish_compress(&encoding.codec);
  return true;
}

bool WriteFile(const std::string& path, const CKIPImage& image, int quality,
               ProgressCallback progress) {
  StdioFile file(path, "wb");
  if (file.get() == nullptr) {
    ReportCannotOpen("JPEG", path);
    return false;
  }
  platform::ClearEscapeKey();
  Encoding encoding;
  encoding.file = file.get();
  encoding.image = &image;
  encoding.quality = quality;
  encoding.progress = progress;
  bool written = Encode(encoding);
  jpeg_destroy_compress(&encoding.codec);
  if (!file.Close() && written) {
    ReportCannotWriteImage(path);
    written = false;
  }
  if (!written) platform::RemoveFile(path);
  return written;
}

}  // namespace

bool CKIPJpegSaver::Save(const std::string& path, CKIPImage* image, uint32_t quality,
                         ProgressCallback progress) {
  SetLastFileName(path);
  if (!CheckImageToSave(image)) return false;
  std::unique_ptr<CKIPImage> converted;
  const bool needsConversion = image->bitsPerPixel() != 24 && !image->IsGrey();
  if (needsConversion) {
    converted =
        image->bitsPerPixel() == 1 ? ConvertToGrey8(*image, nullptr) : ConvertTo24(*image, nullptr);
    if (converted == nullptr) {
      ReportImageError(kImageErrorOutOfMemory, "Out of memory");
      return false;
    }
  }
  image->fileFormat = kFileFormatJpeg;
  const CKIPImage& source = needsConversion ? *converted : *image;
  if (!WriteFile(path, source, static_cast<int>(std::clamp(quality, 1u, 100u)), progress)) {
    return false;
  }
  image->fileSize = FileSizeOf(path);
  return true;
}

}  // namespace zyr
