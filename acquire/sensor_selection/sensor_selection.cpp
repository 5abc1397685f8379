#include "acquire/sensor_selection/sensor_selection.h"

#include "acquire/iface/display_name.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/ascii.h"
#include "platform/prompt.h"

namespace zyr {
namespace {

constexpr uint32_t kBlue = 0x800000;
constexpr uint32_t kRed = 0x80;
constexpr uint32_t kYellow = 0xFFFF;

bool IsSupported(const DeviceEntry& device) {
  return device.name == "2000" || device.name == "LUMORAY";
}

}  // namespace

bool SensorSelection::Run(platform::Window owner) { return view_.Run(this, owner); }

void SensorSelection::OnInitDialog() {
  devices_.clear();
  view_.SetColumns({GetPhrase("Device Name"), GetPhrase("Sensor ID"), GetPhrase("Device ID")});
  FillList(selected.deviceId);
}

// Asking the sensors for their names may ask the hardware, so it is done for changes only.
void SensorSelection::OnRefreshTimer() {
  if (sensors_.GetDeviceChanges() == changes_) return;
  const DeviceEntry* chosen = ChosenDevice();
  FillList(chosen != nullptr ? std::string(chosen->deviceId) : selected.deviceId);
}

// A sensor that is left over while the user chooses among several is not taken unasked.
void SensorSelection::FillList(const std::string& markedDeviceId) {
  const bool hadDevices = !devices_.empty();
  devices_.clear();
  const bool isInitialised = sensors_.Initialize() != 0;
  changes_ = sensors_.GetDeviceChanges();
  if (isInitialised) sensors_.GetDevices(&devices_);
  ShowMessage(isInitialised);
  ShowRows();
  MarkRow(markedDeviceId);
  if (auto_close && devices_.size() == 1 && !hadDevices) OnOK();
}

void SensorSelection::ShowMessage(bool isInitialised) {
  const bool isMissing = isInitialised && devices_.empty();
  const char* const text =
      isMissing ? PhraseKey("No ZYR devices detected. Please check your hardware connection.")
      : !isInitialised
          ? PhraseKey("Unable to initialize ZYR hardware interface.")
          : PhraseKey("Select that sensor that is to be used to capture the digital x-ray.");
  view_.SetMessage(GetPhrase(text), isMissing ? kRed : kBlue);
  view_.SetMessageSecondColor(isMissing ? std::optional(kYellow) : std::nullopt);
}

void SensorSelection::ShowRows() {
  std::vector<SensorRow> rows;
  for (const DeviceEntry& device : devices_) {
    rows.push_back({RenameForDisplay(device.name), device.sensorId, device.deviceId});
  }
  view_.SetRows(rows);
  view_.SetListVisible(!rows.empty());
}

// The first row stands in for a sensor that is not there.
void SensorSelection::MarkRow(const std::string& deviceId) {
  if (devices_.empty()) return;
  size_t row = 0;
  while (row < devices_.size() && !EqualIgnoringCase(devices_[row].deviceId, deviceId)) ++row;
  view_.SelectRow(row < devices_.size() ? row : 0);
}

const DeviceEntry* SensorSelection::ChosenDevice() const {
  const std::optional<size_t> row = view_.SelectedRow();
  return row && *row < devices_.size() ? &devices_[*row] : nullptr;
}

void SensorSelection::OnOK() {
  if (devices_.empty()) return view_.End(false);
  const DeviceEntry* chosen = ChosenDevice();
  if (chosen == nullptr) {
    return Warn(
        PhraseKey("No Sensor System Selected"),
        PhraseKey("You must select a ZYR hardware system before you can click on the 'OK' button"));
  }
  if (!IsSupported(*chosen)) {
    return Warn(
        PhraseKey("Unsupported ZYR Sensor System Selected"),
        PhraseKey("You may only select a ZYR 2000 or ZYR 303 sensor system with this sensor "
                  "extension.  Please select either the ZYR 2000 series or ZYR 303 series sensor "
                  "system."));
  }
  selected = *chosen;
  view_.End(true);
}

void SensorSelection::Warn(const char* title, const char* text) const {
  platform::ShowPrompt(view_.window(), GetPhrase(text), GetPhrase(title),
                       platform::PromptKind::kWarning);
}

}  // namespace zyr
