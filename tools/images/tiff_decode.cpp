// Grey TIFF files of 8 or 16 bits, in strips, by libtiff. The Windows builds have it without
// decompressors.
#include <algorithm>
#include <cstring>
#include <memory>

#include <tiffio.h>

#include "tools/images/picture_decoders.h"

namespace zyr {
namespace {

// A file in memory, as libtiff wants to call it.
struct MemoryFile {
  const std::vector<uint8_t>* bytes;
  uint64_t position = 0;
};

tmsize_t ReadMemory(thandle_t handle, void* target, tmsize_t size) {
  auto* file = static_cast<MemoryFile*>(handle);
  const uint64_t all = file->bytes->size();
  if (size < 0 || file->position >= all) return 0;
  const uint64_t count = std::min<uint64_t>(static_cast<uint64_t>(size), all - file->position);
  std::memcpy(target, file->bytes->data() + file->position, count);
  file->position += count;
  return static_cast<tmsize_t>(count);
}

tmsize_t WriteNothing(thandle_t, void*, tmsize_t) { return 0; }

toff_t SeekMemory(thandle_t handle, toff_t offset, int from) {
  auto* file = static_cast<MemoryFile*>(handle);
  const uint64_t base = from == SEEK_CUR   ? file->position
                        : from == SEEK_END ? file->bytes->size()
                                           : 0;
  return file->position = base + offset;
}

int CloseMemory(thandle_t) { return 0; }
toff_t SizeOfMemory(thandle_t handle) { return static_cast<MemoryFile*>(handle)->bytes->size(); }

struct TiffCloser {
  void operator()(TIFF* file) const { TIFFClose(file); }
};

struct Terms {
  uint32_t width = 0;
  uint32_t height = 0;
  uint16_t bits = 0;
  uint16_t samples = 0;
  uint16_t format = 0;
  uint16_t photometric = 0;
};

bool AreReadable(TIFF* tiff, const Terms& terms) {
  return (terms.bits == 8 || terms.bits == 16) && terms.samples == 1 &&
         terms.format == SAMPLEFORMAT_UINT &&
         (terms.photometric == PHOTOMETRIC_MINISBLACK ||
          terms.photometric == PHOTOMETRIC_MINISWHITE) &&
         IsSaneSize(terms.width, terms.height) && !TIFFIsTiled(tiff);
}

bool ReadRows(TIFF* tiff, const Terms& terms, GreyPicture* picture) {
  // Not less than what libtiff writes, whatever the file says of itself.
  std::vector<uint8_t> line(
      std::max<size_t>(static_cast<size_t>(TIFFScanlineSize64(tiff)), size_t{2} * terms.width));
  const uint32_t full = terms.bits == 8 ? 255 : 65535;
  for (uint32_t y = 0; y < terms.height; ++y) {
    if (TIFFReadScanline(tiff, line.data(), y, 0) < 0) return false;
    for (uint32_t x = 0; x < terms.width; ++x) {
      uint16_t sample = line[x];
      if (terms.bits == 16) std::memcpy(&sample, &line[size_t{2} * x], 2);
      if (terms.photometric == PHOTOMETRIC_MINISWHITE)
        sample = static_cast<uint16_t>(full - sample);
      picture->samples.push_back(sample);
    }
  }
  return true;
}

}  // namespace

bool IsTiff(const std::vector<uint8_t>& file) {
  return file.size() >= 8 &&
         (std::memcmp(file.data(), "II*\0", 4) == 0 || std::memcmp(file.data(), "MM\0*", 4) == 0);
}

std::optional<GreyPicture> DecodeTiff(const std::vector<uint8_t>& file, std::string* error) {
  TIFFSetErrorHandler(nullptr);
  TIFFSetWarningHandler(nullptr);
  MemoryFile memory{&file};
  const std::unique_ptr<TIFF, TiffCloser> tiff(TIFFClientOpen("picture", "rm", &memory, ReadMemory,
                                                              WriteNothing, SeekMemory, CloseMemory,
                                                              SizeOfMemory, nullptr, nullptr));
  if (tiff == nullptr) {
    *error = "is torn";
    return {};
  }
  Terms terms;
  TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &terms.width);
  TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &terms.height);
  TIFFGetFieldDefaulted(tiff.get(), TIFFTAG_BITSPERSAMPLE, &terms.bits);
  TIFFGetFieldDefaulted(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, &terms.samples);
  TIFFGetFieldDefaulted(tiff.get(), TIFFTAG_SAMPLEFORMAT, &terms.format);
  TIFFGetField(tiff.get(), TIFFTAG_PHOTOMETRIC, &terms.photometric);
  if (!AreReadable(tiff.get(), terms)) {
    *error = "is no grey TIFF of 8 or 16 bits in strips";
    return {};
  }
  GreyPicture picture;
  picture.width = terms.width;
  picture.height = terms.height;
  picture.bits = terms.bits;
  if (ReadRows(tiff.get(), terms, &picture)) return picture;
  *error = "is torn, or compressed in a way that is not read here";
  return {};
}

}  // namespace zyr
