#include "acquire/image_cache/image_enhancement.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <utility>

#include "imaging/image/deep_image.h"
#include "imaging/image/grey.h"
#include "imaging/image/image.h"
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
constexpr uint32_t kSampleBits = 16;

// The values of the setting.
enum NoiseRemoval : uint32_t { kFastNoiseRemoval = 1, kMedianOf3 = 2, kMedianOf5 = 3 };

// The dialogs set no mask's size. One of some hundred columns would take hours.
constexpr uint32_t kWidestMask = 31;

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

// Runs `work(offset, word)` over the samples, four to a word; the last word is filled up with 0.
template <typename Work>
void ForEachWord(std::span<const uint8_t> samples, Work work) {
  uint64_t word = 0;
  size_t offset = 0;
  for (; offset + sizeof word <= samples.size(); offset += sizeof word) {
    std::memcpy(&word, samples.data() + offset, sizeof word);
    work(offset, word);
  }
  word = 0;
  std::memcpy(&word, samples.data() + offset, samples.size() - offset);
  work(offset, word);
}

constexpr uint64_t InAllFour(uint32_t sample) { return sample * 0x0001'0001'0001'0001u; }

bool HasDeeperSamples(std::span<const uint8_t> samples, uint32_t mask) {
  uint64_t inUse = 0;
  ForEachWord(samples, [&](size_t, uint64_t word) { inUse |= word; });
  return (inUse & ~InAllFour(mask)) != 0;
}

void CopyShifted(std::span<const uint8_t> samples, uint32_t shift, uint32_t mask, uint8_t* target) {
  ForEachWord(samples, [&](size_t offset, uint64_t word) {
    const uint64_t shifted = word >> shift & InAllFour(mask);
    std::memcpy(target + offset, &shifted, std::min(sizeof word, samples.size() - offset));
  });
}

// A fresh capture is spread over 16 bits, whatever the depth that it is kept with; everyone who
// receives the image counts on the latter. Nothing is lost: sensors have 12 bits.
std::unique_ptr<CKIPDeepImage> DeepPictureOf(const ImageDescription& image,
                                             std::span<const uint8_t> pixels) {
  auto picture = std::make_unique<CKIPDeepImage>();
  if (!picture->Create(image.width, image.height, image.width, image.bitsPerPixel,
                       image.xResolution, image.yResolution)) {
    return nullptr;
  }
  const bool isDeeper = HasDeeperSamples(pixels, picture->GetMask());
  CopyShifted(pixels, isDeeper ? kSampleBits - image.bitsPerPixel : 0, picture->GetMask(),
              reinterpret_cast<uint8_t*>(picture->GetPixels()));
  return picture;
}

// A mask of one element has no neighbours to weigh, and sharpening by it would leave black.
bool IsActive(const MaskFilterSetting& filter) {
  return filter.enabled && filter.factor != 0 && filter.dimension > 1 &&
         filter.dimension <= kWidestMask;
}

int32_t PercentOf(const MaskFilterSetting& filter) {
  return static_cast<int32_t>(
      std::min<uint32_t>(filter.factor, std::numeric_limits<int32_t>::max()));
}

template <typename Image>
void ReplaceBy(std::unique_ptr<Image> result, std::unique_ptr<Image>* image) {
  if (result != nullptr) *image = std::move(result);
}

}  // namespace

// One of both. Rows run as they do in the image.
struct ImageEnhancement::Picture {
  std::unique_ptr<CKIPImage> grey;
  std::unique_ptr<CKIPDeepImage> deep;

  // Null if the image has no pixels.
  static std::unique_ptr<Picture> Of(CachedImage& image) try {
    const std::span<const uint8_t> pixels = image.PixelData();
    if (pixels.empty()) return nullptr;
    auto picture = std::make_unique<Picture>();
    if (image.BytesPerPixel() == 1) {
      picture->grey = GreyPictureOf(image, pixels);
    } else {
      picture->deep = DeepPictureOf(image, pixels);
    }
    return picture->grey != nullptr || picture->deep != nullptr ? std::move(picture) : nullptr;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }

  // The pixels without gaps between the rows.
  std::vector<uint8_t> Pixels() const {
    if (deep != nullptr) {
      const auto* first = reinterpret_cast<const uint8_t*>(deep->GetPixels());
      return {first, first + size_t{deep->GetWidth()} * deep->GetHeight() * sizeof(uint16_t)};
    }
    std::vector<uint8_t> pixels;
    pixels.reserve(size_t{grey->width()} * grey->height());
    for (uint32_t row = 0; row < grey->height(); ++row) {
      const uint8_t* first = grey->MemoryRow(row);
      pixels.insert(pixels.end(), first, first + grey->width());
    }
    return pixels;
  }

  // Replaces the picture by what the operation for its kind makes of it, if that is anything.
  template <typename OnGrey, typename OnDeep>
  void Change(OnGrey onGrey, OnDeep onDeep) {
    if (grey != nullptr) ReplaceBy(onGrey(grey.get()), &grey);
    if (deep != nullptr) ReplaceBy(onDeep(deep.get()), &deep);
  }

  void TakeMedians(uint32_t size) {
    CKIPMask window;
    window.MakeIdentity(size);
    Change([&](const CKIPImage* image) { return MedianFilter(image, window, nullptr); },
           [&](const CKIPDeepImage* image) { return DeepMedianFilter(image, size, nullptr); });
  }

  void Weigh(const CKIPMask& mask) {
    Change([&](const CKIPImage* image) { return ApplyMask(image, mask, nullptr); },
           [&](const CKIPDeepImage* image) { return DeepApplyMask(image, mask, nullptr); });
  }
};

ImageEnhancement::ImageEnhancement(CachedImage& image)
    : image_(image), system_(image.isZyr303 ? "ZYR303" : "ZYR2000"), picture_(Picture::Of(image)) {}

ImageEnhancement::~ImageEnhancement() = default;

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
      return picture_->Change(
          [](const CKIPImage* image) { return FastNoiseReduction(image, nullptr); },
          [](const CKIPDeepImage* image) { return DeepFastNoiseReduction(image, nullptr); });
    case kMedianOf3:
      return picture_->TakeMedians(3);
    case kMedianOf5:
      return picture_->TakeMedians(5);
    default:
      return;
  }
}

void ImageEnhancement::ApplySharpening() {
  const MaskFilterSetting filter = GetSharpening(system_);
  if (picture_ == nullptr || !IsActive(filter)) return;
  CKIPMask mask;
  mask.MakeSharpen(filter.dimension, PercentOf(filter));
  picture_->Weigh(mask);
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
  picture_->Weigh(mask);
}

bool ImageEnhancement::Store() try {
  if (picture_ == nullptr) return false;
  image_.SetPixelData(picture_->Pixels());
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

}  // namespace zyr
