#include "imaging/formats/tiff.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

#include "imaging/formats/file_steps.h"
#include "imaging/formats/tiff_output.h"
#include "platform/escape_key.h"
#include "platform/files.h"

namespace zyr {
namespace {

constexpr size_t kBufferSize = 256 * 1024;

struct FreeTiffMemory {
  void operator()(void* memory) const { _TIFFfree(memory); }
};
using TiffBuffer = std::unique_ptr<uint8_t, FreeTiffMemory>;

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

bool WritePixels(TIFF* tiff, const CKIPImage& image, ProgressCallback progress, bool* aborted) {
  const size_t rowBytes = image.stride() - image.rowPadding();
  const tmsize_t scanlineBytes = TIFFScanlineSize(tiff);
  if (scanlineBytes < static_cast<tmsize_t>(rowBytes)) return false;
  const TiffBuffer row(static_cast<uint8_t*>(_TIFFmalloc(scanlineBytes)));
  if (row == nullptr) return false;
  for (uint32_t y = 0; y < image.height(); ++y) {
    const uint8_t* source = RowReadingAhead(image, y);
    if (image.bitsPerPixel() == 24) {
      CopySwappingRedAndBlue(source, row.get(), image.width());
    } else {
      std::memcpy(row.get(), source, rowBytes);
    }
    if (TIFFWriteScanline(tiff, row.get(), y, 0) < 0) return false;
    Report(progress, static_cast<double>(y) / image.height());
    *aborted = UserAborted();
    if (*aborted) return false;
  }
  // Closing would not tell whether the last strip and the tags were written.
  return TIFFFlush(tiff) != 0;
}

bool Encode(BufferedFile& file, const CKIPImage& image, const CKIPTiffSaver& saver,
            ProgressCallback progress, bool* aborted) {
  TiffOutput output(file);
  const TiffFile tiff = output.Open();
  return tiff != nullptr && SetCommonTags(tiff.get(), image, saver) &&
         SetDepthTags(tiff.get(), image) && WritePixels(tiff.get(), image, progress, aborted);
}

}  // namespace

bool CKIPTiffSaver::Save(const std::string& path, CKIPImage* image, ProgressCallback progress) {
  SetLastFileName(path);
  if (image == nullptr || !CheckImageToSave(image)) return false;
  image->fileFormat = kFileFormatTiff;
  BufferedFile file(kBufferSize);
  if (!file.OpenWrite(path, true)) {
    ReportCannotSave("TIFF", path);
    return false;
  }
  platform::ClearEscapeKey();
  bool aborted = false;
  const bool encoded = Encode(file, *image, *this, progress, &aborted);
  if (!file.Close() || !encoded) {
    if (!aborted) ReportCannotWriteImage(path);
    platform::RemoveFile(path);
    return false;
  }
  image->fileSize = FileSizeOf(path);
  return true;
}

}  // namespace zyr
