#include "acquire/capture_dialog/sensor_choice.h"

#include "acquire/sensor_selection/sensor_selection.h"
#include "foundation/support/error.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/prompt.h"
#include "settings/store.h"

namespace zyr {

DeviceEntry SensorChoice::Selected() const {
  if (unsaved_) return *unsaved_;
  return {GetSelectedSensorNAME(), GetSelectedSensorID(), GetSelectedSensorHWID()};
}

bool SensorChoice::IsAnySelected() const { return !Selected().deviceId.empty(); }

bool SensorChoice::NeedsNoQuestion() const {
  return !GetAlwaysPromptForSensor() && sensors_.IsDeviceAvailable(Selected().deviceId) != 0;
}

bool SensorChoice::Select(bool forced) {
  if (!forced && NeedsNoQuestion()) return true;
  const auto view = view_.MakeSensorSelectionView();
  SensorSelection selection(sensors_, *view);
  selection.selected = Selected();
  selection.auto_close = !forced;  // whoever wants a capture has no choice among one
  if (!selection.Run(view_.window())) {
    SetErrorText(kErrorUnclassified, GetPhrase("The user did not select a sensor"));
    return false;
  }
  Store(selection.selected);
  return true;
}

// A user who may not write settings can take images all the same.
void SensorChoice::Store(const DeviceEntry& sensor) {
  unsaved_ = sensor;
  if (SetSelectedSensorNAME(sensor.name) && SetSelectedSensorID(sensor.sensorId) &&
      SetSelectedSensorHWID(sensor.deviceId)) {
    unsaved_.reset();
    return;
  }
  const std::string format = GetFormatPhrase(
      "The TWAIN settings could not be saved.  The user may not have appropirate permissions to "
      "save values to the registry.\n\n%s");
  platform::ShowPrompt(view_.window(), FormatText(format.c_str(), LastErrorText().c_str()),
                       GetPhrase("Error Saving Settings"), platform::PromptKind::kError);
}

std::string SensorChoice::Tip() const {
  if (GetAlwaysPromptForSensor() || !IsAnySelected()) {
    return GetPhrase("You will be prompted to select a sensor each time you acquire an image.");
  }
  const DeviceEntry sensor = Selected();
  const std::string format =
      GetFormatPhrase("The following sensor will be used when you acquire an image.\n%s Sensor %s");
  return FormatText(format.c_str(), sensor.name.c_str(), sensor.sensorId.c_str());
}

}  // namespace zyr
