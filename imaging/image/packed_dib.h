// Packed device-independent bitmaps: header, colour table and pixels in one block, the form of a
// native TWAIN transfer and of the capture thread's image handle.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"
#include "platform/global_memory.h"

namespace zyr {

// The 40 bytes of the header, little-endian, as they lie in the block.
struct BitmapInfoHeader {
  uint32_t biSize = 40;
  int32_t biWidth = 0;
  int32_t biHeight = 0;
  uint16_t biPlanes = 1;
  uint16_t biBitCount = 0;
  uint32_t biCompression = 0;
  uint32_t biSizeImage = 0;
  int32_t biXPelsPerMeter = 0;
  int32_t biYPelsPerMeter = 0;
  uint32_t biClrUsed = 0;
  uint32_t biClrImportant = 0;
};
static_assert(sizeof(BitmapInfoHeader) == 40);

// `dib` is `size` bytes; a header that asks for more than the block holds is refused as an invalid
// image. Null with the package's last error set.
std::unique_ptr<CKIPImage> ImageFromPackedDib(const uint8_t* dib, size_t size);
std::unique_ptr<CKIPDeepImage> DeepImageFromPackedDib(const uint8_t* dib, size_t size);

// Lock the handle, which stays the caller's. Null with a translated reason in `message` (may be
// null).
std::unique_ptr<CKIPImage> ImageFromPackedDibHandle(platform::GlobalHandle handle,
                                                    std::string* message);
std::unique_ptr<CKIPDeepImage> DeepImageFromPackedDibHandle(platform::GlobalHandle handle,
                                                            std::string* message);

enum class RowOrder { kAsStored, kReversed };

// A new movable block, the caller's; null without memory. `palette`, if given, takes the place of
// the image's own. kReversed turns the rows over on the way, as FlipVertical would.
platform::GlobalHandle PackedDibFromImage(const CKIPImage& image, const Palette* palette = nullptr,
                                          RowOrder order = RowOrder::kAsStored);
platform::GlobalHandle PackedDibFromDeepImage(const CKIPDeepImage& image);

}  // namespace zyr
