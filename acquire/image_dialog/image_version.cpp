#include "acquire/image_dialog/image_version.h"

#include <new>
#include <utility>

namespace zyr {

std::shared_ptr<ImageVersion> ImageVersion::Of(CachedImage& image) {
  auto version = std::make_shared<ImageVersion>();
  version->Keep(image);
  return version->pixels_.empty() ? nullptr : version;
}

std::shared_ptr<ImageVersion> ImageVersion::Of(std::shared_ptr<ImageVersion> parent,
                                               CachedImage& image, ImageOperations done) {
  if (done.empty()) return parent;
  auto version = std::make_shared<ImageVersion>();
  // All versions that are made of the parent share its pixels.
  if (parent->Repeats() + done.size() > kMostRepeats) parent->Keep(image);
  version->parent_ = std::move(parent);
  version->operations_ = std::move(done);
  return version;
}

std::unique_ptr<CachedImage> ImageVersion::Restore() const try {
  if (parent_ == nullptr) {
    auto image = std::make_unique<CachedImage>();
    static_cast<ImageDescription&>(*image) = description_;
    image->SetPixelData(pixels_);
    return image;
  }
  std::unique_ptr<CachedImage> image = parent_->Restore();
  if (image == nullptr || !Repeat(operations_, *image)) return nullptr;
  return image;
} catch (const std::bad_alloc&) {
  return nullptr;
}

size_t ImageVersion::Repeats() const {
  return parent_ == nullptr ? 0 : parent_->Repeats() + operations_.size();
}

void ImageVersion::Keep(CachedImage& image) {
  const std::span<const uint8_t> pixels = image.PixelData();
  description_ = image;
  pixels_.assign(pixels.begin(), pixels.end());
  if (pixels_.empty()) return;
  operations_.clear();
  parent_.reset();
}

}  // namespace zyr
