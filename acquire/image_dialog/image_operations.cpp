#include "acquire/image_dialog/image_operations.h"

#include <new>
#include <utility>

#include "acquire/image_cache/editable_picture.h"
#include "foundation/support/phrase_lookup.h"
#include "imaging/operations/geometry/flip.h"
#include "imaging/operations/geometry/rotate.h"
#include "imaging/operations/levels/brightness_contrast.h"
#include "imaging/operations/levels/gamma.h"
#include "imaging/operations/levels/histogram.h"
#include "imaging/operations/levels/invert.h"
#include "imaging/operations/masks/mask.h"
#include "imaging/operations/masks/mask_filters.h"
#include "imaging/operations/medians/fast_noise.h"
#include "imaging/operations/medians/median.h"
#include "platform/progress_window.h"

namespace zyr {
namespace {

// A progress window that operations can reach, which take a plain function.
class ProgressSlot {
 public:
  explicit ProgressSlot(const char* text)
      : window_(GetPhrase(text)), previous_(std::exchange(present_, &window_)) {}
  ~ProgressSlot() { present_ = previous_; }
  ProgressSlot(const ProgressSlot&) = delete;
  ProgressSlot& operator=(const ProgressSlot&) = delete;

  static void Advance(double fraction) { present_->Advance(fraction); }

 private:
  static platform::ProgressWindow* present_;  // of the user-interface thread

  platform::ProgressWindow window_;
  platform::ProgressWindow* previous_;
};

platform::ProgressWindow* ProgressSlot::present_ = nullptr;

// False if the operation gives nothing; the image has not changed then.
bool ApplyOne(const ImageOperation& operation, CachedImage& image, ProgressCallback progress) {
  const std::unique_ptr<EditablePicture> picture = EditablePicture::Of(image);
  if (picture == nullptr) return false;
  const auto on8Bits = [&](const CKIPImage* source) { return operation.on8Bits(source, progress); };
  const auto onDeep = [&](const CKIPDeepImage* source) {
    return operation.onDeep(source, progress);
  };
  if (!picture->Change(on8Bits, onDeep)) return false;
  std::vector<uint8_t> pixels = picture->Pixels();
  if (operation.turnsSides) {
    std::swap(image.width, image.height);
    std::swap(image.xResolution, image.yResolution);
  }
  image.SetPixelData(std::move(pixels));
  return true;
}

// For those that have no parameters.
template <typename Picture>
using Plain = std::unique_ptr<Picture> (*)(const Picture*, ProgressCallback);

ImageOperation Of(const char* progressText, Plain<CKIPImage> on8Bits, Plain<CKIPDeepImage> onDeep) {
  return {progressText, true, on8Bits, onDeep};
}

ImageOperation Spread(const char* progressText) {
  return {progressText, true,
          [](const CKIPImage* image, ProgressCallback progress) {
            return zyr::Normalize(image, nullptr, progress);
          },
          DeepNormalize};
}

}  // namespace

ImageOperation ImageOperation::Sharpen(uint32_t size, int32_t factor) {
  return {PhraseKey("Sharpening ..."), size > 1 && factor != 0,
          [=](const CKIPImage* image, ProgressCallback progress) {
            CKIPMask mask;
            mask.MakeSharpen(size, factor);
            return ApplyMask(image, mask, progress);
          },
          [=](const CKIPDeepImage* image, ProgressCallback progress) {
            return DeepSharpen(image, size, factor, progress);
          }};
}

// Tells the user of sharpening, too.
ImageOperation ImageOperation::Smooth(uint32_t size, int32_t factor) {
  return {PhraseKey("Sharpening ..."), size > 1 && factor != 0,
          [=](const CKIPImage* image, ProgressCallback progress) {
            CKIPMask mask;
            mask.MakeSmooth(size, factor);
            return ApplyMask(image, mask, progress);
          },
          [=](const CKIPDeepImage* image, ProgressCallback progress) {
            return DeepSmooth(image, size, factor, progress);
          }};
}

ImageOperation ImageOperation::EnhanceEdges(uint32_t size, double strength) {
  return {PhraseKey("Enhancing Edges ..."), strength != 0,
          [=](const CKIPImage* image, ProgressCallback progress) {
            CKIPMask mask;
            mask.MakeEdge(size, size, strength);
            return EdgeEnhance(image, mask, progress);
          },
          [=](const CKIPDeepImage* image, ProgressCallback progress) {
            return DeepEdgeEnhance(image, size, strength, progress);
          }};
}

ImageOperation ImageOperation::RemoveNoise(uint32_t size) {
  return {PhraseKey("Removing Noise ..."), true,
          [=](const CKIPImage* image, ProgressCallback progress) {
            CKIPMask window;
            window.MakeIdentity(size, size);
            return MedianFilter(image, window, progress);
          },
          [=](const CKIPDeepImage* image, ProgressCallback progress) {
            return DeepMedianFilter(image, size, progress);
          }};
}

ImageOperation ImageOperation::RemoveNoiseFast() {
  return Of(PhraseKey("Removing Noise ..."), FastNoiseReduction, DeepFastNoiseReduction);
}

ImageOperation ImageOperation::AdjustGamma(double gamma) {
  return {PhraseKey("Adjusting Gamma ..."), gamma != 0 && gamma != 1,
          [=](const CKIPImage* image, ProgressCallback progress) {
            return zyr::AdjustGamma(image, gamma, gamma, gamma, kKeepNoColor, progress);
          },
          [=](const CKIPDeepImage* image, ProgressCallback progress) {
            return DeepAdjustGamma(image, gamma, progress);
          }};
}

ImageOperation ImageOperation::AdjustBrightnessContrast(int32_t brightness, int32_t contrast) {
  return {PhraseKey("Adjusting BC ..."), brightness != 0 || contrast != 0,
          [=](const CKIPImage* image, ProgressCallback progress) {
            return zyr::AdjustBrightnessContrast(image, brightness, contrast, kKeepNoColor,
                                                 progress);
          },
          [=](const CKIPDeepImage* image, ProgressCallback progress) {
            return DeepAdjustBrightnessContrast(image, brightness, contrast, progress);
          }};
}

// The same as Normalize: the user finds it under both names.
ImageOperation ImageOperation::AutoBrightnessContrast() {
  return Spread(PhraseKey("Adjusting BC ..."));
}

ImageOperation ImageOperation::Normalize() { return Spread(PhraseKey("Normalizing ...")); }

ImageOperation ImageOperation::Equalize() {
  return {PhraseKey("Equalizing ..."), true,
          [](const CKIPImage* image, ProgressCallback progress) {
            return zyr::Equalize(image, nullptr, progress);
          },
          DeepEqualize};
}

ImageOperation ImageOperation::Invert() {
  return Of(PhraseKey("Invert ..."), zyr::Invert, DeepInvert);
}

ImageOperation ImageOperation::FlipHorizontal() {
  return Of(PhraseKey("Flipping ..."), zyr::FlipHorizontal, DeepFlipHorizontal);
}

ImageOperation ImageOperation::FlipVertical() {
  return Of(PhraseKey("Flipping ..."), zyr::FlipVertical, DeepFlipVertical);
}

ImageOperation ImageOperation::Rotate(uint32_t degrees) {
  constexpr const char* kText = PhraseKey("Rotating ...");
  ImageOperation operation;
  switch (degrees) {
    case 90:
      operation = Of(kText, Rotate90, DeepRotate90);
      break;
    case 180:
      operation = Of(kText, Rotate180, DeepRotate180);
      break;
    case 270:
      operation = Of(kText, Rotate270, DeepRotate270);
      break;
    default:
      operation = {kText, false, {}, {}};
  }
  operation.turnsSides = degrees == 90 || degrees == 270;
  return operation;
}

ImageOperations AdjustGammaBrightnessContrast(double gamma, int32_t brightness, int32_t contrast) {
  return {ImageOperation::AdjustGamma(gamma),
          ImageOperation::AdjustBrightnessContrast(brightness, contrast)};
}

ImageOperations Apply(const ImageOperations& operations, CachedImage& image) {
  ImageOperations done;
  done.reserve(operations.size());
  for (const ImageOperation& operation : operations) {
    const ProgressSlot slot(operation.progressText);
    if (!operation.applies) continue;
    if (ApplyOne(operation, image, ProgressSlot::Advance)) done.push_back(operation);
  }
  return done;
}

bool Repeat(const ImageOperations& operations, CachedImage& image) {
  const cancel_monitor::Suspension suspension;
  for (const ImageOperation& operation : operations) {
    if (!ApplyOne(operation, image, nullptr)) return false;
  }
  return true;
}

}  // namespace zyr
