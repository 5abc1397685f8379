#include "acquire/image_cache/image_enhancement.h"

#include <cmath>
#include <limits>

#include "settings/store.h"
#include "tests/acquire/acquire_test.h"
#include "tests/hardware/golden_text.h"

namespace zyr::test {
namespace {

using Bytes = std::vector<uint8_t>;
using Step = void (ImageEnhancement::*)();

constexpr Step kNoise = &ImageEnhancement::ApplyNoiseRemoval;
const std::vector<Step> kMaskSteps = {&ImageEnhancement::ApplySharpening,
                                      &ImageEnhancement::ApplyLaplace,
                                      &ImageEnhancement::ApplySmoothing};
const std::vector<Step> kSteps = {&ImageEnhancement::ApplyAutomaticBrightnessContrast,
                                  &ImageEnhancement::ApplyImageAdjustment,
                                  kNoise,
                                  kMaskSteps[0],
                                  kMaskSteps[1],
                                  kMaskSteps[2]};

// Of each family, depth and settings: the CRC-32 of the pixels after each step alone and after all.
constexpr char kGolden[] =
#include "tests/acquire/golden/enhanced.inc"
    ;

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

void ExpectNoEffect(const std::vector<Step>& steps, const std::string& system = "ZYR2000") {
  for (const uint32_t bits : {8u, 12u}) {
    const auto image = Make(bits, system);
    EXPECT_EQ(After(*image, steps), PixelsOf(*image)) << system << ' ' << bits;
  }
}

void NewSettings(const std::string&) {}

void OtherSettings(const std::string& system) {
  SetImageAdjustment(system, {-20, 35, 2.2});
  SetMedian(system, 3);
  SetSharpening(system, {true, 5, 80});
  SetLaplace(system, {true, 3, 7});
  SetSmoothing(system, {true, 7, 30});
}

void LeastSettings(const std::string& system) {
  SetImageAdjustment(system, {0, 0, 1});
  SetMedian(system, 0);
  SetSharpening(system, {false, 3, 50});
  SetLaplace(system, {false, 3, 3});
  SetSmoothing(system, {false, 3, 50});
}

using EnhancementTest = AcquireTest;

TEST_F(EnhancementTest, EachStepFollowsTheSettingsOfTheFamily) {
  std::string enhanced = "family bits: crcs, with new, other and least settings\n";
  for (const std::string system : {"ZYR2000", "ZYR303"}) {
    for (const uint32_t bits : {8u, 12u}) {
      for (const auto set : {NewSettings, OtherSettings, LeastSettings}) {
        host::ClearRegistry();
        set(system);
        enhanced += system + ' ' + std::to_string(bits) + ':';
        for (const Step step : kSteps) enhanced += ' ' + CrcOf(After(*Make(bits, system), {step}));
        enhanced += ' ' + CrcOf(After(*Make(bits, system), kSteps)) + '\n';
      }
    }
  }
  ExpectGolden("enhanced.inc", kGolden, enhanced);
}

TEST_F(EnhancementTest, HostileSettingsNeitherCrashNorBlankThePicture) {
  for (const uint32_t median : {4u, 77u, 0xFFFFFFFFu}) {
    SetMedian("ZYR2000", median);
    ExpectNoEffect({kNoise});
  }
  constexpr MaskFilterSetting kVoid[] = {
      {true, 0, 50}, {true, 1, 50}, {true, 3, 0}, {true, 1000, 50}, {true, 0xFFFFFFFF, 0xFFFFFFFF}};
  for (const MaskFilterSetting& filter : kVoid) {
    SetSharpening("ZYR2000", filter);
    SetLaplace("ZYR2000", filter);
    SetSmoothing("ZYR2000", filter);
    ExpectNoEffect(kMaskSteps);
  }
  SetSharpening("ZYR303", {true, 2, 0x80000000});
  SetLaplace("ZYR303", {true, 30, 0xFFFFFFFF});
  SetSmoothing("ZYR303", {true, 31, 0xFFFFFFFF});
  for (const double gamma : {0.0, -1.0, std::nan(""), std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::denorm_min()}) {
    SetImageAdjustment("ZYR303", {0, 0, gamma});
    if (!(gamma > 0)) ExpectNoEffect({kSteps[1]}, "ZYR303");
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
