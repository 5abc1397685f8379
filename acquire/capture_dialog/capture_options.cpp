#include "acquire/capture_dialog/capture_options.h"

#include "acquire/iface/display_name.h"
#include "acquire/sensor_selection/sensor_selection.h"
#include "foundation/support/directory_selection.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/prompt.h"
#include "settings/pages/options_dialog.h"
#include "settings/store.h"

namespace zyr {
namespace {

bool MayBeOpened(platform::Window owner) {
  return CanWriteSettings() ||
         platform::ShowPrompt(
             owner,
             GetPhrase("WARNING: The current logged in user does not have privileges to store "
                       "values to the system registry.  Any settings modified in the options will "
                       "not be saved for the next time this TWAIN source is activated.\n\nDo you "
                       "want to access the TWAIN options anyway?"),
             GetPhrase("Invalid Privileges!"), platform::PromptKind::kQuestion);
}

}  // namespace

bool CaptureOptions::Run() {
  const platform::Window owner = view_.window();
  if (!MayBeOpened(owner) || !platform::IsWindowAlive(owner)) return false;
  const auto view = view_.MakeOptionsDialogView();
  OptionsDialog dialog(*this, *view);
  return dialog.Run(owner);
}

std::string CaptureOptions::DisplayName(const std::string& name) const {
  return RenameForDisplay(name);
}

std::optional<SelectedSensor> CaptureOptions::SelectSensor(const SelectedSensor& present,
                                                           platform::Window owner) {
  const auto view = view_.MakeSensorSelectionView();
  SensorSelection selection(sensors_, *view);
  selection.selected = {present.name, present.sensorId, present.hardwareId};
  if (!selection.Run(owner)) return std::nullopt;
  hasChosenSensor_ = true;
  const auto& [name, sensorId, deviceId] = selection.selected;
  return SelectedSensor{name, sensorId, deviceId};
}

// Images on a medium that is taken out would be lost to the patient's chart.
std::optional<std::string> CaptureOptions::SelectDirectory(const std::string& present,
                                                           platform::Window owner) {
  const auto view = view_.MakeDirectorySelectionView();
  DirectorySelection selection(*view);
  selection.directory = present;
  selection.removableForbidden = true;
  if (!selection.Run(owner)) return std::nullopt;
  return selection.directory;
}

}  // namespace zyr
