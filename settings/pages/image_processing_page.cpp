#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "settings/pages/page_makers.h"
#include "settings/store.h"

namespace zyr {
namespace {

enum : uint32_t {
  kBrightness = 1,
  kContrast,
  kGamma,
  kNoise,
  kSharpen,
  kSharpenMask,
  kEdges,
  kEdgesMask,
  kSmooth,
  kSmoothMask,
  kDefaults,
};

constexpr int32_t kMostPercent = 100;  // of brightness and contrast, either way
constexpr int32_t kMostGamma = 500;
constexpr double kGammaSteps = 100.0;  // positions of the slider to a gamma of 1
constexpr int32_t kLeastFactor = 1;
constexpr int32_t kMostFactor = 100;

int32_t Limited(uint32_t value) {
  return static_cast<int32_t>(std::min<uint32_t>(value, std::numeric_limits<int32_t>::max()));
}

int32_t GammaPosition(double gamma) {
  const double position = std::round(gamma * kGammaSteps);
  if (!(position > 0)) return 0;  // nor a number at all
  return position < kMostGamma ? static_cast<int32_t>(position) : kMostGamma;
}

// A setting, and what its control made of it: the control may have no such value. What the user
// has left alone is stored as it was.
template <typename T>
class Kept {
 public:
  void Remember(T setting, int32_t shown) {
    setting_ = setting;
    shown_ = shown;
  }
  T Or(T changed, int32_t now) const { return now == shown_ ? setting_ : changed; }

 private:
  T setting_{};
  int32_t shown_ = 0;
};

struct Filter {
  uint32_t checkBox;
  uint32_t mask;
  const char* label;
  MaskFilterSetting (*get)(const std::string& system);
  bool (*set)(const std::string& system, const MaskFilterSetting& value);
  MaskFilterSetting SystemDefaults::*byDefault;
};

constexpr Filter kFilters[] = {
    {kSharpen, kSharpenMask, PhraseKey("Allow sharpening"), GetSharpening, SetSharpening,
     &SystemDefaults::sharpening},
    {kEdges, kEdgesMask, PhraseKey("Allow Laplace edge enhancement"), GetLaplace, SetLaplace,
     &SystemDefaults::laplace},
    {kSmooth, kSmoothMask, PhraseKey("Allow smoothing"), GetSmoothing, SetSmoothing,
     &SystemDefaults::smoothing},
};

class CPrefPage_ImageProcessing : public CPrefPage {
 public:
  explicit CPrefPage_ImageProcessing(const std::string& system) : system_(system) {}

  std::string Title() const override {
    return FormatText(GetFormatPhrase("%s Image Processing").c_str(), system_.c_str());
  }

  std::vector<PageField> Fields() const override {
    std::vector<PageField> fields = {
        {kBrightness,
         FieldKind::kSlider,
         PhraseKey("Brightness:"),
         {},
         -kMostPercent,
         kMostPercent},
        {kContrast, FieldKind::kSlider, PhraseKey("Contrast:"), {}, -kMostPercent, kMostPercent},
        {kGamma, FieldKind::kSlider, PhraseKey("Gamma:"), {}, 0, kMostGamma},
        // In the order of the setting's values.
        {kNoise,
         FieldKind::kChoice,
         PhraseKey("Noise Reduction:"),
         {PhraseKey("None"), PhraseKey("Fast (5 pixels)"), PhraseKey("Standard (3 x 3 pixels)"),
          PhraseKey("Strong (5 x 5 pixels)")}}};
    for (const Filter& filter : kFilters) {
      fields.push_back({filter.checkBox, FieldKind::kCheckBox, filter.label});
      fields.push_back(
          {filter.mask, FieldKind::kMask, "", {}, kLeastFactor, kMostFactor, filter.checkBox});
    }
    fields.push_back({kDefaults, FieldKind::kButton, PhraseKey("Defaults")});
    return fields;
  }

  void OnInitPage() override {
    ShowAdjustment(GetImageAdjustment(system_));
    ShowNoise(GetMedian(system_));
    for (const Filter& filter : kFilters) ShowFilter(filter, filter.get(system_));
  }

  void OnChanged(uint32_t field) override {
    for (const Filter& filter : kFilters) {
      if (field == filter.checkBox) EnableMask(filter);
    }
  }

  void OnButton(uint32_t field) override {
    if (field != kDefaults || !AskForDefaults()) return;
    const SystemDefaults defaults = DefaultsOf(system_);
    ShowAdjustment(defaults.adjustment);
    ShowNoise(defaults.median);
    for (const Filter& filter : kFilters) ShowFilter(filter, defaults.*filter.byDefault);
  }

 protected:
  bool Apply() override {
    bool saved = SetImageAdjustment(system_, Adjustment());
    const int32_t noise = controls().Value(kNoise);
    saved &= SetMedian(system_, noise_.Or(static_cast<uint32_t>(noise), noise));
    for (const Filter& filter : kFilters) saved &= filter.set(system_, SettingOf(filter));
    return TellUnlessSaved(saved, Scope::kSensorFamily);
  }

 private:
  struct KeptMask {
    Kept<uint32_t> size;
    Kept<uint32_t> factor;
  };

  int32_t ShowOnSlider(uint32_t field, int32_t position) const {
    controls().SetValue(field, position);
    return controls().Value(field);
  }

  void ShowAdjustment(const ImageAdjustment& value) {
    const auto percent = [](int32_t of) { return std::clamp(of, -kMostPercent, kMostPercent); };
    brightness_.Remember(value.brightness, ShowOnSlider(kBrightness, percent(value.brightness)));
    contrast_.Remember(value.contrast, ShowOnSlider(kContrast, percent(value.contrast)));
    gamma_.Remember(value.gamma, ShowOnSlider(kGamma, GammaPosition(value.gamma)));
  }

  ImageAdjustment Adjustment() const {
    const int32_t brightness = controls().Value(kBrightness);
    const int32_t contrast = controls().Value(kContrast);
    const int32_t gamma = controls().Value(kGamma);
    return {brightness_.Or(brightness, brightness), contrast_.Or(contrast, contrast),
            gamma_.Or(gamma / kGammaSteps, gamma)};
  }

  void ShowNoise(uint32_t median) {
    if (!controls().SetValue(kNoise, Limited(median))) controls().SetValue(kNoise, -1);
    noise_.Remember(median, controls().Value(kNoise));
  }

  void ShowFilter(const Filter& filter, const MaskFilterSetting& value) {
    controls().SetValue(filter.checkBox, value.enabled ? 1 : 0);
    const int32_t factor = std::clamp(Limited(value.factor), kLeastFactor, kMostFactor);
    controls().SetMask(filter.mask, {value.dimension, factor});
    const MaskOperation shown = controls().Mask(filter.mask);
    KeptMask& kept = KeptOf(filter);
    kept.size.Remember(value.dimension, Limited(shown.size));
    kept.factor.Remember(value.factor, shown.factor);
    EnableMask(filter);
  }

  MaskFilterSetting SettingOf(const Filter& filter) {
    const MaskOperation now = controls().Mask(filter.mask);
    const KeptMask& kept = KeptOf(filter);
    return {controls().Value(filter.checkBox) == 1, kept.size.Or(now.size, Limited(now.size)),
            kept.factor.Or(static_cast<uint32_t>(now.factor), now.factor)};
  }

  void EnableMask(const Filter& filter) const {
    controls().SetEnabled(filter.mask, controls().Value(filter.checkBox) == 1);
  }

  KeptMask& KeptOf(const Filter& filter) { return masks_[&filter - kFilters]; }

  const std::string system_;
  Kept<int32_t> brightness_;
  Kept<int32_t> contrast_;
  Kept<double> gamma_;
  Kept<uint32_t> noise_;
  KeptMask masks_[std::size(kFilters)];
};

}  // namespace

std::unique_ptr<CPrefPage> MakeImageProcessingPage(OptionsServices&, const std::string& system) {
  return std::make_unique<CPrefPage_ImageProcessing>(system);
}

}  // namespace zyr
