// The file of a captured image: its description and behind that its pixels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "foundation/support/buffered_file.h"
#include "imaging/image/packed_dib.h"

namespace zyr {

inline constexpr char kCacheFileBaseName[] = "CACHEDRAW";
inline constexpr char kCacheFileExtension[] = "RAW";
inline constexpr char kPreviewExtension[] = "JPG";
// Files that are still being written. No name of theirs is taken for a cache file's.
inline constexpr char kUnfinishedExtension[] = "TMP";

inline constexpr size_t kCacheFileBuffer = 51'200;

// What is known of an image without its pixels, in the order of the file.
struct ImageDescription {
  bool isZyr303 = false;
  uint32_t bitsPerPixel = 0;  // of a new image 8, or 12 for every greater depth
  uint32_t width = 0;
  uint32_t height = 0;
  uint32_t xResolution = 0;  // dots per inch
  uint32_t yResolution = 0;
  uint32_t captureTime = 0;  // seconds since 1970
  uint32_t frameNumber = 1;
  std::string sensorId;

  bool operator==(const ImageDescription&) const = default;
  // Size and resolution of a capture may change, when it is edited.
  bool IsSameCapture(const ImageDescription& other) const {
    return captureTime == other.captureTime && frameNumber == other.frameNumber &&
           sensorId == other.sensorId;
  }

  size_t BytesPerPixel() const { return bitsPerPixel == 8 ? 1 : 2; }
  size_t RowBytes() const { return width * BytesPerPixel(); }
  size_t PixelDataSize() const { return RowBytes() * height; }
};

// False for a size of zero, a depth outside 1 to 16, and for more bytes than any sensor's image
// has.
bool IsStorable(const ImageDescription& description);

// Opens the file and reads the description; the file then stands at its pixels, which are all
// there. Null if it is no whole cache file.
std::optional<ImageDescription> OpenCacheFile(BufferedFile& file, const std::string& path);

// Writes a file of that name, with the rows as they are or turned over. True once it would survive
// a power loss. Otherwise what was written is removed.
bool WriteCacheFile(const std::string& path, const ImageDescription& description,
                    std::span<const uint8_t> pixels, RowOrder order);

}  // namespace zyr
