#include "acquire/image_cache/image_enhancement.h"

#include <algorithm>
#include <limits>
#include <new>
#include <string>

#include "imaging/operations/levels/brightness_contrast.h"
#include "imaging/operations/levels/gamma.h"
#include "imaging/operations/levels/histogram.h"
#include "imaging/operations/masks/mask.h"
#include "imaging/operations/masks/mask_filters.h"
#include "imaging/operations/medians/fast_noise.h"
#include "imaging/operations/medians/median.h"
#include "settings/store.h"

namespace zyr {
namespace {

constexpr uint32_t kLeftOutPercent = 1;  // at either end of the levels

// The values of the setting.
enum NoiseRemoval : uint32_t { kFastNoiseRemoval = 1, kMedianOf3 = 2, kMedianOf5 = 3 };

// The dialogs set no mask's size. One of some hundred columns would take hours.
constexpr uint32_t kWidestMask = 31;

// A mask of one element has no neighbours to weigh, and sharpening by it would leave black.
bool IsActive(const MaskFilterSetting& filter) {
  return filter.enabled && filter.factor != 0 && filter.dimension > 1 &&
         filter.dimension <= kWidestMask;
}

int32_t PercentOf(const MaskFilterSetting& filter) {
  return static_cast<int32_t>(
      std::min<uint32_t>(filter.factor, std::numeric_limits<int32_t>::max()));
}

void TakeMedians(EditablePicture& picture, uint32_t size) {
  CKIPMask window;
  window.MakeIdentity(size);
  picture.Change(
      [&](const CKIPImage* image) { return MedianFilter(image, window, nullptr); },
      [&](const CKIPDeepImage* image) { return DeepMedianFilter(image, size, nullptr); });
}

void Weigh(EditablePicture& picture, const CKIPMask& mask) {
  picture.Change([&](const CKIPImage* image) { return ApplyMask(image, mask, nullptr); },
                 [&](const CKIPDeepImage* image) { return DeepApplyMask(image, mask, nullptr); });
}

}  // namespace

ImageEnhancement::ImageEnhancement(CachedImage& image)
    : image_(image),
      system_(image.isZyr303 ? "ZYR303" : "ZYR2000"),
      picture_(EditablePicture::Of(image)) {}

void ImageEnhancement::ApplyAutomaticBrightnessContrast() {
  if (picture_ == nullptr) return;
  picture_->Change(
      [](const CKIPImage* image) {
        return AutoBrightnessContrast(image, kLeftOutPercent, kLeftOutPercent, nullptr, nullptr);
      },
      [](const CKIPDeepImage* image) {
        return DeepAutoBrightnessContrast(image, kLeftOutPercent, kLeftOutPercent, nullptr);
      });
}

// Both operations run each time: on 8 bits even a gamma of 1 can lower levels.
void ImageEnhancement::ApplyImageAdjustment() {
  if (picture_ == nullptr) return;
  const ImageAdjustment to = GetImageAdjustment(system_);
  picture_->Change(
      [&](const CKIPImage* image) {
        return AdjustGamma(image, to.gamma, to.gamma, to.gamma, kKeepNoColor, nullptr);
      },
      [&](const CKIPDeepImage* image) { return DeepAdjustGamma(image, to.gamma, nullptr); });
  picture_->Change(
      [&](const CKIPImage* image) {
        return AdjustBrightnessContrast(image, to.brightness, to.contrast, kKeepNoColor, nullptr);
      },
      [&](const CKIPDeepImage* image) {
        return DeepAdjustBrightnessContrast(image, to.brightness, to.contrast, nullptr);
      });
}

void ImageEnhancement::ApplyNoiseRemoval() {
  if (picture_ == nullptr) return;
  switch (GetMedian(system_)) {
    case kFastNoiseRemoval:
      picture_->Change(
          [](const CKIPImage* image) { return FastNoiseReduction(image, nullptr); },
          [](const CKIPDeepImage* image) { return DeepFastNoiseReduction(image, nullptr); });
      return;
    case kMedianOf3:
      return TakeMedians(*picture_, 3);
    case kMedianOf5:
      return TakeMedians(*picture_, 5);
    default:
      return;
  }
}

void ImageEnhancement::ApplySharpening() {
  const MaskFilterSetting filter = GetSharpening(system_);
  if (picture_ == nullptr || !IsActive(filter)) return;
  CKIPMask mask;
  mask.MakeSharpen(filter.dimension, PercentOf(filter));
  Weigh(*picture_, mask);
}

void ImageEnhancement::ApplyLaplace() {
  const MaskFilterSetting filter = GetLaplace(system_);
  if (picture_ == nullptr || !IsActive(filter)) return;
  picture_->Change(
      [&](const CKIPImage* image) {
        CKIPMask mask;
        mask.MakeEdge(filter.dimension, filter.dimension, filter.factor);
        return EdgeEnhance(image, mask, nullptr);
      },
      [&](const CKIPDeepImage* image) {
        return DeepEdgeEnhance(image, filter.dimension, filter.factor, nullptr);
      });
}

void ImageEnhancement::ApplySmoothing() {
  const MaskFilterSetting filter = GetSmoothing(system_);
  if (picture_ == nullptr || !IsActive(filter)) return;
  CKIPMask mask;
  mask.MakeSmooth(filter.dimension, PercentOf(filter));
  Weigh(*picture_, mask);
}

bool ImageEnhancement::Store() try {
  if (picture_ == nullptr) return false;
  image_.SetPixelData(picture_->Pixels());
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

}  // namespace zyr
