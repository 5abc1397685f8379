#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "settings/pages/check_boxes.h"
#include "settings/pages/page_makers.h"
#include "settings/store.h"

namespace zyr {
namespace {

enum : uint32_t { kAlwaysPrompt = 1, kSensor };

constexpr CheckBoxSetting kBoxes[] = {
    {kAlwaysPrompt, PhraseKey("Always prompt for which sensor should be used"),
     GetAlwaysPromptForSensor, SetAlwaysPromptForSensor},
};

class CPrefPage_SensorSelection : public CPrefPage {
 public:
  explicit CPrefPage_SensorSelection(OptionsServices& services) : services_(services) {}

  std::string Title() const override { return GetPhrase("Sensor Selection"); }

  std::vector<PageField> Fields() const override {
    return {FieldOf(kBoxes[0]),
            {kSensor, FieldKind::kPicked, PhraseKey("Currently Selected Sensor:")}};
  }

  void OnInitPage() override {
    LoadCheckBoxes(controls(), kBoxes);
    sensor_ = {GetSelectedSensorNAME(), GetSelectedSensorID(), GetSelectedSensorHWID()};
    ShowSensor();
  }

  void OnButton(uint32_t field) override {
    if (field != kSensor) return;
    const auto chosen = services_.SelectSensor(sensor_, controls().window());
    if (!chosen) return;
    sensor_ = *chosen;
    ShowSensor();
  }

 protected:
  bool Apply() override {
    bool saved = SaveCheckBoxes(controls(), kBoxes);
    saved &= SetSelectedSensorNAME(sensor_.name);
    saved &= SetSelectedSensorID(sensor_.sensorId);
    saved &= SetSelectedSensorHWID(sensor_.hardwareId);
    return TellUnlessSaved(saved, Scope::kSensorFamily);
  }

 private:
  void ShowSensor() const {
    const std::string format = GetFormatPhrase("%s  ( %s )");
    const std::string name = services_.DisplayName(sensor_.name);
    controls().SetText(kSensor,
                       sensor_.hardwareId.empty()
                           ? GetPhrase("<None Selected>")
                           : FormatText(format.c_str(), name.c_str(), sensor_.sensorId.c_str()));
  }

  OptionsServices& services_;
  SelectedSensor sensor_;
};

}  // namespace

std::unique_ptr<CPrefPage> MakeSensorSelectionPage(OptionsServices& services, const std::string&) {
  return std::make_unique<CPrefPage_SensorSelection>(services);
}

}  // namespace zyr
