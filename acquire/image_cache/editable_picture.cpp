#include "acquire/image_cache/editable_picture.h"

#include <cstring>
#include <new>
#include <span>

#include "imaging/image/grey.h"

namespace zyr {
namespace {

std::unique_ptr<CKIPImage> GreyPictureOf(const ImageDescription& image,
                                         std::span<const uint8_t> pixels) {
  auto picture = std::make_unique<CKIPImage>();
  picture->SetPalette(NewIdentityPalette());
  if (!picture->CreateUnfilled(
          {{}, image.width, image.height, image.xResolution, image.yResolution, 8})) {
    return nullptr;
  }
  for (uint32_t row = 0; row < image.height; ++row) {
    std::memcpy(picture->MemoryRow(row), pixels.data() + row * image.RowBytes(), image.RowBytes());
  }
  return picture;
}

std::unique_ptr<CKIPDeepImage> DeepPictureOf(const ImageDescription& image,
                                             std::span<const uint8_t> pixels) {
  auto picture = std::make_unique<CKIPDeepImage>();
  if (!picture->Create(image.width, image.height, image.width, image.bitsPerPixel,
                       image.xResolution, image.yResolution)) {
    return nullptr;
  }
  std::memcpy(picture->GetPixels(), pixels.data(), pixels.size());
  return picture;
}

}  // namespace

std::unique_ptr<EditablePicture> EditablePicture::Of(CachedImage& image) try {
  const std::span<const uint8_t> pixels = image.PixelData();
  if (pixels.empty()) return nullptr;
  auto picture = std::make_unique<EditablePicture>();
  if (image.BytesPerPixel() == 1) {
    picture->grey_ = GreyPictureOf(image, pixels);
  } else {
    picture->deep_ = DeepPictureOf(image, pixels);
  }
  return picture->grey_ != nullptr || picture->deep_ != nullptr ? std::move(picture) : nullptr;
} catch (const std::bad_alloc&) {
  return nullptr;
}

std::vector<uint8_t> EditablePicture::Pixels() const {
  if (deep_ != nullptr) {
    const auto* first = reinterpret_cast<const uint8_t*>(deep_->GetPixels());
    return {first, first + size_t{deep_->GetWidth()} * deep_->GetHeight() * sizeof(uint16_t)};
  }
  std::vector<uint8_t> pixels;
  pixels.reserve(size_t{grey_->width()} * grey_->height());
  for (uint32_t row = 0; row < grey_->height(); ++row) {
    const uint8_t* first = grey_->MemoryRow(row);
    pixels.insert(pixels.end(), first, first + grey_->width());
  }
  return pixels;
}

}  // namespace zyr
