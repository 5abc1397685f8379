#include <charconv>
#include <limits>
#include <string_view>

#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/ascii.h"
#include "settings/pages/page_makers.h"
#include "settings/store.h"

namespace zyr {
namespace {

enum : uint32_t {
  kSensitivity = 1,
  kThreshold,
  kIntegrationTime,
  kBinned,
  kExtendedFlush,
  kDefaults,
};

// What a number outside its range is replaced by is no default: it is what the hardware always
// takes.
struct NumberRange {
  uint32_t least;
  uint32_t most;
  uint32_t replacement;

  uint32_t Of(uint32_t value) const { return value < least || value > most ? replacement : value; }
};
constexpr NumberRange kThresholds{1, 255, 8};
constexpr NumberRange kIntegrationTimes{200, 1000, 300};  // milliseconds

// 0 for what is no number, or too great a one.
uint32_t NumberIn(std::string_view typed) {
  const std::string_view text = TrimmedText(typed);
  uint32_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end ? number : 0;
}

class CPrefPage_HardwareControl : public CPrefPage {
 public:
  explicit CPrefPage_HardwareControl(const std::string& system) : system_(system) {}

  std::string Title() const override {
    return FormatText(GetFormatPhrase("%s Hardware Settings").c_str(), system_.c_str());
  }

  std::vector<PageField> Fields() const override {
    return {
        {kSensitivity,
         FieldKind::kChoice,
         PhraseKey("Detection Sensitivity"),
         {"1", "2", "3", "4", "5", "6", "7"}},
        {kThreshold, FieldKind::kNumber, PhraseKey("Detection Threshold")},
        {kIntegrationTime, FieldKind::kNumber, PhraseKey("Integration Time")},
        {kBinned, FieldKind::kCheckBox, PhraseKey("Return binned image")},
        {kExtendedFlush, FieldKind::kCheckBox, PhraseKey("Use extended 2000 sensor flush times")},
        {kDefaults, FieldKind::kButton, PhraseKey("Defaults")}};
  }

  void OnInitPage() override {
    Show(GetSensitivity(system_), GetThreshold(system_), GetIntegrationTime(system_));
    controls().SetValue(kBinned, GetBinning(system_) ? 1 : 0);
    controls().SetValue(kExtendedFlush, GetExtendedFlush(system_) ? 1 : 0);
    const bool hasBoth = !EqualIgnoringCase(system_, "ZYR303");
    controls().SetEnabled(kBinned, hasBoth);
    controls().SetEnabled(kExtendedFlush, hasBoth);
  }

  void OnButton(uint32_t field) override {
    if (field != kDefaults || !AskForDefaults()) return;
    const SystemDefaults defaults = DefaultsOf(system_);
    Show(defaults.sensitivity, defaults.threshold, defaults.integrationTime);
    controls().SetValue(kBinned, defaults.binning ? 1 : 0);
    // The flush times are part of a site's set-up, which defaults leave alone.
  }

 protected:
  bool Apply() override {
    bool saved = true;
    const int32_t sensitivity = controls().Value(kSensitivity);
    if (sensitivity >= 0) saved &= SetSensitivity(system_, static_cast<uint32_t>(sensitivity) + 1);
    saved &= SetThreshold(system_, kThresholds.Of(NumberIn(controls().Text(kThreshold))));
    saved &= SetIntegrationTime(system_,
                                kIntegrationTimes.Of(NumberIn(controls().Text(kIntegrationTime))));
    saved &= SetBinning(system_, controls().Value(kBinned) == 1);
    saved &= SetExtendedFlush(system_, controls().Value(kExtendedFlush) == 1);
    return TellUnlessSaved(saved, Scope::kSensorFamily);
  }

 private:
  void Show(uint32_t sensitivity, uint32_t threshold, uint32_t integrationTime) const {
    const bool isIndex = sensitivity >= 1 && sensitivity <= std::numeric_limits<int32_t>::max();
    if (!isIndex || !controls().SetValue(kSensitivity, static_cast<int32_t>(sensitivity - 1))) {
      controls().SetValue(kSensitivity, 0);
    }
    controls().SetText(kThreshold, FormatText("%lu", Lu(threshold)));
    controls().SetText(kIntegrationTime, FormatText("%lu", Lu(integrationTime)));
  }

  const std::string system_;
};

}  // namespace

std::unique_ptr<CPrefPage> MakeHardwareControlPage(OptionsServices&, const std::string& system) {
  return std::make_unique<CPrefPage_HardwareControl>(system);
}

}  // namespace zyr
