#include "imaging/formats/tiff.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <optional>

#include <tiffio.h>

#include "imaging/formats/file_steps.h"
#include "platform/escape_key.h"
#include "platform/files.h"

namespace zyr {
namespace {

struct CloseTiff {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using TiffFile = std::unique_ptr<TIFF, CloseTiff>;

struct FreeTiffMemory {
  void operator()(void* memory) const { _TIFFfree(memory); }
};
using TiffBuffer = std::unique_ptr<uint8_t, FreeTiffMemory>;

TiffFile OpenForWriting(const std::string& path) {
  // The library would write to the error stream or show message boxes in its host's name.
  TIFFSetErrorHandler(nullptr);
  TIFFSetWarningHandler(nullptr);
  return TiffFile(TIFFOpen(platform::NativePath(path).c_str(), "w"));
}

// The library writes its header as it opens the file: a full disk leaves an empty one.
void RemoveIfEmpty(const std::string& path) {
  const std::optional<platform::FileStatus> status = platform::StatusOf(path);
  if (status && !status->isDirectory && status->size == 0) platform::RemoveFile(path);
}

bool SetCommonTags(TIFF* tiff, const CKIPImage& image, const CKIPTiffSaver& saver) {
  return TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, image.width()) &&
         TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, image.height()) &&
         TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH) &&
         TIFFSetField(tiff, TIFFTAG_YRESOLUTION, static_cast<double>(image.yResolution())) &&
         TIFFSetField(tiff, TIFFTAG_XRESOLUTION, static_cast<double>(image.xResolution())) &&
         TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT) &&
         TIFFSetField(tiff, TIFFTAG_COMPRESSION, saver.compression) &&
         TIFFSetField(tiff, TIFFTAG_IMAGEDESCRIPTION, saver.imageDescription.c_str()) &&
         TIFFSetField(tiff, TIFFTAG_ARTIST, saver.artist.c_str()) &&
         TIFFSetField(tiff, TIFFTAG_SOFTWARE, "Korvida Imaging Package") &&
         TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 1) &&
         TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
}

bool SetPixelTags(TIFF* tiff, int photometric, int bitsPerSample, int samplesPerPixel) {
  return TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, photometric) &&
         TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, bitsPerSample) &&
         TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, samplesPerPixel);
}

// The levels stand in the map as they are, not scaled to the 16 bits of its entries.
bool SetColorMap(TIFF* tiff, const Palette& palette) {
  std::array<uint16_t, 256> red{};
  std::array<uint16_t, 256> green{};
  std::array<uint16_t, 256> blue{};
  for (size_t i = 0; i < std::min(palette.size(), red.size()); ++i) {
    red[i] = palette[i].red;
    green[i] = palette[i].green;
    blue[i] = palette[i].blue;
  }
  return TIFFSetField(tiff, TIFFTAG_COLORMAP, red.data(), green.data(), blue.data());
}

bool SetDepthTags(TIFF* tiff, const CKIPImage& image) {
  if (image.bitsPerPixel() == 24) return SetPixelTags(tiff, PHOTOMETRIC_RGB, 8, 3);
  if (image.bitsPerPixel() == 1) {
    PaletteEntry first;
    image.GetPaletteEntry(0, &first);
    return SetPixelTags(tiff, first.red == 0 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_MINISWHITE, 1,
                        1);
  }
  if (image.IsGrey()) return SetPixelTags(tiff, PHOTOMETRIC_MINISBLACK, 8, 1);
  return SetPixelTags(tiff, PHOTOMETRIC_PALETTE, 8, 1) && SetColorMap(tiff, image.palette());
}

enum class Outcome { kWritten, kFailed, kAborted };

Outcome WritePixels(TIFF* tiff, const CKIPImage& image, ProgressCallback progress) {
  const size_t rowBytes = image.stride() - image.rowPadding();
  const tmsize_t scanlineBytes = TIFFScanlineSize(tiff);
  if (scanlineBytes < static_cast<tmsize_t>(rowBytes)) return Outcome::kFailed;
  const TiffBuffer row(static_cast<uint8_t*>(_TIFFmalloc(scanlineBytes)));
  if (row == nullptr) return Outcome::kFailed;
  for (uint32_t y = 0; y < image.height(); ++y) {
    const uint8_t* source = RowReadingAhead(image, y);
    if (image.bitsPerPixel() == 24) {
      CopySwappingRedAndBlue(source, row.get(), image.width());
    } else {
      std::memcpy(row.get(), source, rowBytes);
    }
    if (TIFFWriteScanline(tiff, row.get(), y, 0) < 0) return Outcome::kFailed;
    Report(progress, static_cast<double>(y) / image.height());
    if (UserAborted()) return Outcome::kAborted;
  }
  // Closing would not tell whether the last strip and the tags reached the file.
  return TIFFFlush(tiff) ? Outcome::kWritten : Outcome::kFailed;
}

Outcome WriteFile(TIFF* tiff, const CKIPImage& image, const CKIPTiffSaver& saver,
                  ProgressCallback progress) {
  if (!SetCommonTags(tiff, image, saver) || !SetDepthTags(tiff, image)) return Outcome::kFailed;
  return WritePixels(tiff, image, progress);
}

}  // namespace

bool CKIPTiffSaver::Save(const std::string& path, CKIPImage* image, ProgressCallback progress) {
  SetLastFileName(path);
  if (image == nullptr || !CheckImageToSave(image)) return false;
  image->fileFormat = kFileFormatTiff;
  TiffFile tiff = OpenForWriting(path);
  if (tiff == nullptr) {
    ReportCannotSave("TIFF", path);
    RemoveIfEmpty(path);
    return false;
  }
  platform::ClearEscapeKey();
  const Outcome outcome = WriteFile(tiff.get(), *image, *this, progress);
  tiff.reset();
  if (outcome != Outcome::kWritten) {
    if (outcome == Outcome::kFailed) ReportCannotWriteImage(path);
    platform::RemoveFile(path);
    return false;
  }
  image->fileSize = FileSizeOf(path);
  return true;
}

}  // namespace zyr
