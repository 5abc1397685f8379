#include "imaging/formats/bmp.h"

#include "foundation/support/buffered_file.h"
#include "imaging/formats/file_steps.h"
#include "imaging/image/image_error.h"
#include "platform/escape_key.h"
#include "platform/files.h"

namespace zyr {
namespace {

constexpr size_t kBufferSize = 256 * 1024;
constexpr int64_t kFileSizeOffset = 2;
constexpr int64_t kPixelOffsetOffset = 10;

// The length and the position of the pixels are patched when they are known. Each part is flushed,
// so that a full disk is reported where it shows.
bool WriteHeader(BufferedFile& file, const CKIPImage& image) {
  uint32_t xPerMetre = 0;
  uint32_t yPerMetre = 0;
  image.GetResolutionPerMetre(&xPerMetre, &yPerMetre);
  const bool written = file.WriteUint16(0x4D42) &&          // bfType
                       file.WriteUint32(0) &&               // bfSize
                       file.WriteUint16(0) &&               // bfReserved1
                       file.WriteUint16(0) &&               // bfReserved2
                       file.WriteUint32(0) &&               // bfOffBits
                       file.WriteUint32(40) &&              // biSize
                       file.WriteUint32(image.width()) &&   // biWidth
                       file.WriteUint32(image.height()) &&  // biHeight
                       file.WriteUint16(1) &&               // biPlanes
                       file.WriteUint16(static_cast<uint16_t>(image.bitsPerPixel())) &&
                       file.WriteUint32(0) &&                   // biCompression
                       file.WriteUint32(0) &&                   // biSizeImage
                       file.WriteUint32(xPerMetre) &&           // biXPelsPerMeter
                       file.WriteUint32(yPerMetre) &&           // biYPelsPerMeter
                       file.WriteUint32(image.colorCount()) &&  // biClrUsed
                       file.WriteUint32(image.colorCount()) &&  // biClrImportant
                       file.Flush();
  if (!written) {
    ReportImageError(kImageErrorCannotWrite, "Unable to write the image header in file '%s'",
                     file.path().c_str());
  }
  return written;
}

bool WritePalette(BufferedFile& file, const CKIPImage& image) {
  if (image.bitsPerPixel() == 24) return true;
  const int64_t bytes = int64_t{image.colorCount()} * 4;
  if (file.Write(image.palette().data(), static_cast<size_t>(bytes)) == bytes && file.Flush()) {
    return true;
  }
  ReportImageError(kImageErrorCannotWrite, "Unable to write color palette data to the file '%s'",
                   file.path().c_str());
  return false;
}

bool WritePixels(BufferedFile& file, const CKIPImage& image, ProgressCallback progress) {
  for (uint32_t row = 0; row < image.height(); ++row) {
    if (UserAborted()) return false;
    Report(progress, static_cast<double>(row) / image.height());
    if (file.Write(image.MemoryRow(row), image.stride()) != int64_t{image.stride()}) {
      ReportCannotWriteImage(file.path());
      return false;
    }
  }
  return true;
}

// Flushes and closes the file, too.
bool PatchHeader(BufferedFile& file, int64_t pixelOffset, int64_t* length) {
  const std::string path = file.path();
  bool written =
      file.Seek(kPixelOffsetOffset) && file.WriteUint32(static_cast<uint32_t>(pixelOffset));
  *length = file.Length();
  written = written && *length >= 0 && file.Seek(kFileSizeOffset) &&
            file.WriteUint32(static_cast<uint32_t>(*length)) && file.Close();
  if (!written) ReportCannotWriteImage(path);
  return written;
}

bool WriteFile(BufferedFile& file, const CKIPImage& image, ProgressCallback progress,
               int64_t* length) {
  if (!WriteHeader(file, image) || !WritePalette(file, image)) return false;
  const int64_t pixelOffset = file.Tell();
  return WritePixels(file, image, progress) && PatchHeader(file, pixelOffset, length);
}

}  // namespace

bool CKIPBmpSaver::Save(const std::string& path, CKIPImage* image, ProgressCallback progress) {
  SetLastFileName(path);
  if (!CheckImageToSave(image)) return false;
  BufferedFile file(kBufferSize);
  if (!file.OpenWrite(path, true)) {
    ReportCannotSave("BMP", path);
    return false;
  }
  image->fileFormat = kFileFormatBmp;
  platform::ClearEscapeKey();
  int64_t length = 0;
  if (!WriteFile(file, *image, progress, &length)) {
    file.Close();
    platform::RemoveFile(path);
    return false;
  }
  image->fileSize = static_cast<uint32_t>(length);
  return true;
}

}  // namespace zyr
