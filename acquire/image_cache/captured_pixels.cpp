#include "acquire/image_cache/captured_pixels.h"

#include <cstring>
#include <memory>
#include <new>

#include "imaging/image/deep_image.h"
#include "imaging/image/grey.h"
#include "imaging/image/packed_dib.h"
#include "imaging/image/raw_pixels.h"

namespace zyr {
namespace {

constexpr uint32_t kStoredDeepDepth = 12;

// The image's description without the pixels; null if it cannot be stored.
template <typename Picture>
bool Describe(const Picture& picture, uint32_t bitsPerPixel, ImageDescription* description) {
  picture.GetSize(&description->width, &description->height);
  picture.GetResolution(&description->xResolution, &description->yResolution);
  description->bitsPerPixel = bitsPerPixel;
  return IsStorable(*description);
}

void Store(const ImageDescription& description, std::vector<uint8_t> pixels, CachedImage* image) {
  static_cast<ImageDescription&>(*image) = description;
  image->SetPixelData(std::move(pixels));
}

// A capture's levels are spread over 16 bits; whoever receives the image counts on the depth that
// it is stored with, and would take deeper samples for others. Nothing is lost: sensors have 12
// bits.
bool TakeDeep(const CKIPDeepImage& picture, CachedImage* image) {
  ImageDescription description = *image;
  if (!Describe(picture, kStoredDeepDepth, &description)) return false;
  const uint32_t surplus = picture.GetBits() - kStoredDeepDepth;
  std::vector<uint8_t> pixels(description.PixelDataSize());
  uint8_t* target = pixels.data();
  for (uint32_t row = 0; row < description.height; ++row) {
    const uint16_t* const samples = picture.GetRow(row);
    for (uint32_t column = 0; column < description.width; ++column, target += sizeof(uint16_t)) {
      const auto sample = static_cast<uint16_t>(samples[column] >> surplus);
      std::memcpy(target, &sample, sizeof sample);
    }
  }
  Store(description, std::move(pixels), image);
  return true;
}

bool TakeGrey(const CKIPImage& picture, CachedImage* image) {
  ImageDescription description = *image;
  if (!Describe(picture, 8, &description)) return false;
  std::vector<uint8_t> pixels(description.PixelDataSize());
  if (!CopyImageToRaw8(picture, pixels.data(), 0)) return false;
  Store(description, std::move(pixels), image);
  return true;
}

bool HoldsGreyLevels(const CKIPImage& picture) {
  return picture.bitsPerPixel() == 8 && picture.palette() == NewIdentityPalette();
}

}  // namespace

bool TakeCapturedPixels(platform::GlobalHandle handle, CachedImage* image) try {
  if (const auto deep = DeepImageFromPackedDibHandle(handle, nullptr)) {
    return TakeDeep(*deep, image);
  }
  const std::unique_ptr<CKIPImage> picture = ImageFromPackedDibHandle(handle, nullptr);
  if (picture == nullptr) return false;
  if (HoldsGreyLevels(*picture)) return TakeGrey(*picture, image);
  const std::unique_ptr<CKIPImage> grey = ConvertToGrey8(*picture, nullptr);
  return grey != nullptr && TakeGrey(*grey, image);
} catch (const std::bad_alloc&) {
  return false;
}

}  // namespace zyr
