#include "imaging/viewer/viewer_picture.h"

#include <new>
#include <utility>

#include "imaging/image/grey.h"
#include "imaging/operations/geometry/flip.h"
#include "imaging/operations/levels/brightness_contrast.h"
#include "imaging/operations/levels/gamma.h"

namespace zyr {
void ViewerPicture::SetSource(const CKIPImage* image) {
  std::unique_ptr<CKIPImage> upright;
  if (image != nullptr && image->flipped) {
    upright = FlipVertical(image, nullptr);
    if (upright != nullptr) upright->flipped = false;
    image = upright.get();
  }
  Clear();
  if (image == nullptr || !image->IsValid()) return;
  owned_ = std::move(upright);
  source_ = image;
  sourceIsGrey_ = image->IsGrey();
}

void ViewerPicture::SetSource(std::unique_ptr<CKIPImage> image) {
  SetSource(image.get());
  if (source_ == image.get()) owned_ = std::move(image);
}

void ViewerPicture::Clear() {
  ShowSource();
  source_ = nullptr;
  owned_.reset();
  sourceIsGrey_ = false;
}

void ViewerPicture::ShowSource() {
  showsSource_ = true;
  derived_.reset();
  derivedHasSourcePixels_ = false;
}

void ViewerPicture::ShowCopy() {
  if (source_ == nullptr) return;
  derived_.reset();
  derived_ = source_->Clone(true);
  showsSource_ = false;
  derivedHasSourcePixels_ = true;
}

void ViewerPicture::Show(std::unique_ptr<CKIPImage> result) {
  if (result == nullptr) return;
  derived_ = std::move(result);
  showsSource_ = false;
  derivedHasSourcePixels_ = false;
}

void ViewerPicture::ShowGrey() {
  if (source_ != nullptr && !sourceIsGrey_) Show(ConvertToGrey8(*source_, nullptr));
}

CKIPImage* ViewerPicture::GreyCopy() try {
  if (!derivedHasSourcePixels_ || derived_ == nullptr) ShowCopy();
  if (derived_ == nullptr) return nullptr;
  derived_->palette().resize(256);
  MakeIdentityPalette(derived_->palette().data());
  return derived_.get();
} catch (const std::bad_alloc&) {
  derived_.reset();
  return nullptr;
}

void ViewerPicture::AdjustBrightnessContrast(int32_t brightness, int32_t contrast) {
  if (source_ == nullptr) return;
  if (!sourceIsGrey_) {
    ShowSource();
    derived_ = zyr::AdjustBrightnessContrast(source_, brightness, contrast, kKeepNoColor, nullptr);
    showsSource_ = false;
  } else if (CKIPImage* copy = GreyCopy()) {
    AdjustPaletteBrightnessContrast(copy, brightness, contrast);
  }
}

void ViewerPicture::AdjustGamma(double gamma) {
  if (source_ == nullptr) return;
  if (!sourceIsGrey_) {
    ShowSource();
    derived_ = zyr::AdjustGamma(source_, gamma, gamma, gamma, kKeepNoColor, nullptr);
    showsSource_ = false;
  } else if (CKIPImage* copy = GreyCopy()) {
    if (gamma == 0) copy->palette() = source_->palette();
    AdjustPaletteGamma(copy, gamma, gamma, gamma, kKeepNoColor);
  }
}

}  // namespace zyr
