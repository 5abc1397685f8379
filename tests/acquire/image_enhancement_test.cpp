#include "acquire/image_cache/image_enhancement.h"

#include <cmath>
#include <functional>
#include <limits>

#include "imaging/image/raw_pixels.h"
#include "imaging/operations/levels/brightness_contrast.h"
#include "imaging/operations/levels/gamma.h"
#include "imaging/operations/levels/histogram.h"
#include "imaging/operations/masks/mask_filters.h"
#include "imaging/operations/medians/fast_noise.h"
#include "imaging/operations/medians/median.h"
#include "settings/store.h"
#include "tests/acquire/acquire_test.h"

namespace zyr::test {
namespace {

using Bytes = std::vector<uint8_t>;
using Step = void (ImageEnhancement::*)();

constexpr Step kAutomatic = &ImageEnhancement::ApplyAutomaticBrightnessContrast;
constexpr Step kAdjustment = &ImageEnhancement::ApplyImageAdjustment;
constexpr Step kNoise = &ImageEnhancement::ApplyNoiseRemoval;
constexpr Step kSharpening = &ImageEnhancement::ApplySharpening;
constexpr Step kLaplace = &ImageEnhancement::ApplyLaplace;
constexpr Step kSmoothing = &ImageEnhancement::ApplySmoothing;
const std::vector<Step> kSteps = {kAutomatic,  kAdjustment, kNoise,
                                  kSharpening, kLaplace,    kSmoothing};
constexpr const char* kSystems[] = {"ZYR2000", "ZYR303"};

// An operation in both its forms.
struct Operation {
  std::function<std::unique_ptr<CKIPDeepImage>(const CKIPDeepImage*)> deep;
  std::function<std::unique_ptr<CKIPImage>(const CKIPImage*)> grey;
};

Operation Automatic() {
  return {[](auto* image) { return DeepAutoBrightnessContrast(image, 1, 1, nullptr); },
          [](auto* image) { return AutoBrightnessContrast(image, 1, 1, nullptr, nullptr); }};
}
Operation Gamma(double gamma) {
  return {
      [=](auto* image) { return DeepAdjustGamma(image, gamma, nullptr); },
      [=](auto* image) { return AdjustGamma(image, gamma, gamma, gamma, kKeepNoColor, nullptr); }};
}
Operation Levels(int32_t b, int32_t c) {
  return {
      [=](auto* image) { return DeepAdjustBrightnessContrast(image, b, c, nullptr); },
      [=](auto* image) { return AdjustBrightnessContrast(image, b, c, kKeepNoColor, nullptr); }};
}
Operation FastNoise() {
  return {[](auto* image) { return DeepFastNoiseReduction(image, nullptr); },
          [](auto* image) { return FastNoiseReduction(image, nullptr); }};
}
Operation Median(uint32_t size) {
  return {[=](auto* image) { return DeepMedianFilter(image, size, nullptr); },
          [=](auto* image) {
            CKIPMask mask;
            mask.MakeIdentity(size);
            return MedianFilter(image, mask, nullptr);
          }};
}
Operation Masked(void (*make)(CKIPMask&)) {
  return {[=](auto* image) {
            CKIPMask mask;
            make(mask);
            return DeepApplyMask(image, mask, nullptr);
          },
          [=](auto* image) {
            CKIPMask mask;
            make(mask);
            return ApplyMask(image, mask, nullptr);
          }};
}
Operation Edges(uint32_t size, double strength) {
  return {[=](auto* image) { return DeepEdgeEnhance(image, size, strength, nullptr); },
          [=](auto* image) {
            CKIPMask mask;
            mask.MakeEdge(size, size, strength);
            return EdgeEnhance(image, mask, nullptr);
          }};
}

// What the operations make of the image's first pixels, in the order in which they lie.
Bytes Expected(const ImageDescription& of, const std::vector<Operation>& operations) {
  Bytes pixels = PixelsOf(of);
  for (const Operation& operation : operations) {
    if (of.bitsPerPixel == 8) {
      const auto image =
          ImageFromRaw8(pixels.data(), of.width, of.height, true, 0, 1, 1, FirstRow::kBottom);
      EXPECT_TRUE(CopyImageToRaw8(*operation.grey(image.get()), pixels.data(), 0));
    } else {
      CKIPDeepImage image;
      image.Attach(reinterpret_cast<uint16_t*>(pixels.data()), of.width, of.height, of.width,
                   of.bitsPerPixel, false);
      const auto result = operation.deep(&image);
      std::memcpy(pixels.data(), result->GetPixels(), pixels.size());
    }
  }
  return pixels;
}

std::unique_ptr<CachedImage> Make(uint32_t bits, const std::string& system = "ZYR2000") {
  auto image = NewImage(37, 29, bits);
  image->isZyr303 = system == "ZYR303";
  return image;
}

Bytes After(CachedImage& image, const std::vector<Step>& steps) {
  ImageEnhancement enhancement(image);
  for (const Step step : steps) (enhancement.*step)();
  EXPECT_TRUE(enhancement.Store());
  return CopyOf(image.PixelData());
}

void ExpectStep(const std::string& system, Step step, const std::vector<Operation>& operations) {
  for (const uint32_t bits : {8u, 12u}) {
    const auto image = Make(bits, system);
    const Bytes expected = Expected(*image, operations);
    EXPECT_EQ(expected == PixelsOf(*image), operations.empty());
    EXPECT_EQ(After(*image, {step}), expected) << system << ' ' << bits;
  }
}

class EnhancementTest : public AcquireTest {};

TEST_F(EnhancementTest, EachStepFollowsTheSettingsOfTheFamily) {
  ExpectStep("ZYR2000", kAdjustment, {Gamma(0.7), Levels(0, 10)});
  ExpectStep("ZYR303", kAdjustment, {Gamma(0.75), Levels(0, 0)});
  SetImageAdjustment("ZYR2000", {-20, 35, 1});
  SetImageAdjustment("ZYR303", {15, -40, 2.2});
  ExpectStep("ZYR2000", kAdjustment, {Gamma(1), Levels(-20, 35)});
  ExpectStep("ZYR303", kAdjustment, {Gamma(2.2), Levels(15, -40)});
  ExpectStep("ZYR2000", kNoise, {Median(3)});
  ExpectStep("ZYR303", kNoise, {FastNoise()});
  ExpectStep("ZYR2000", kSmoothing, {});
  ExpectStep("ZYR303", kSmoothing, {Masked([](CKIPMask& mask) { mask.MakeSmooth(3, 50); })});
  for (const char* system : kSystems) {
    ExpectStep(system, kAutomatic, {Automatic()});
    SetMedian(system, 3);
    ExpectStep(system, kNoise, {Median(5)});
    SetMedian(system, 0);
    ExpectStep(system, kNoise, {});
    for (const Step step : {kSharpening, kLaplace}) ExpectStep(system, step, {});
    SetSharpening(system, {true, 5, 80});
    ExpectStep(system, kSharpening, {Masked([](CKIPMask& mask) { mask.MakeSharpen(5, 80); })});
    SetLaplace(system, {true, 3, 7});
    ExpectStep(system, kLaplace, {Edges(3, 7)});
    SetSmoothing(system, {true, 7, 30});
    ExpectStep(system, kSmoothing, {Masked([](CKIPMask& mask) { mask.MakeSmooth(7, 30); })});
  }
}

TEST_F(EnhancementTest, StepsBuildOnEachOtherAndAreKeptOnlyWhenStored) {
  const auto image = Make(12);
  ImageEnhancement(*image).ApplyAutomaticBrightnessContrast();
  EXPECT_EQ(CopyOf(image->PixelData()), PixelsOf(*image));
  EXPECT_EQ(After(*image, kSteps),
            Expected(*image, {Automatic(), Gamma(0.7), Levels(0, 10), Median(3)}));
}

TEST_F(EnhancementTest, HostileSettingsNeitherCrashNorBlankThePicture) {
  for (const uint32_t median : {4u, 77u, 0xFFFFFFFFu}) {
    SetMedian("ZYR2000", median);
    ExpectStep("ZYR2000", kNoise, {});
  }
  constexpr MaskFilterSetting kVoid[] = {
      {true, 0, 50}, {true, 1, 50}, {true, 3, 0}, {true, 1000, 50}, {true, 0xFFFFFFFF, 0xFFFFFFFF}};
  for (const MaskFilterSetting& filter : kVoid) {
    SetSharpening("ZYR2000", filter);
    SetLaplace("ZYR2000", filter);
    SetSmoothing("ZYR2000", filter);
    for (const Step step : {kSharpening, kLaplace, kSmoothing}) ExpectStep("ZYR2000", step, {});
  }
  SetSharpening("ZYR303", {true, 2, 0x80000000});
  SetLaplace("ZYR303", {true, 30, 0xFFFFFFFF});
  SetSmoothing("ZYR303", {true, 31, 0xFFFFFFFF});
  for (const double gamma : {0.0, -1.0, std::nan(""), std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::denorm_min()}) {
    SetImageAdjustment("ZYR303", {0, 0, gamma});
    if (!(gamma > 0)) ExpectStep("ZYR303", kAdjustment, {});
    SetImageAdjustment("ZYR303", {INT32_MIN, INT32_MAX, gamma});
    for (const uint32_t bits : {1u, 8u, 12u, 16u}) After(*Make(bits, "ZYR303"), kSteps);
    const auto deeper = Make(16, "ZYR303");
    deeper->bitsPerPixel = 12;  // than it says
    After(*deeper, kSteps);
  }
}

TEST_F(EnhancementTest, WithoutPixelsOrAfterEscapeNothingChanges) {
  for (const uint32_t bits : {8u, 12u}) {
    const auto image = Make(bits);
    host::PressEscapeAtQuestion(3);
    EXPECT_EQ(After(*image, {kNoise}), PixelsOf(*image));
    image->SetPixelData({});
    ImageEnhancement enhancement(*image);
    for (const Step step : kSteps) (enhancement.*step)();
    EXPECT_FALSE(enhancement.Store());
    EXPECT_FALSE(image->HasPixels());
  }
}

}  // namespace
}  // namespace zyr::test
