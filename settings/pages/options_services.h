// What the options need of the rest of the source.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/messages.h"
#include "settings/settings_list.h"

namespace zyr {

// As in the settings SelectedSensorNAME, -ID and -HWID.
struct SelectedSensor {
  std::string name;
  std::string sensorId;
  std::string hardwareId;
};

// User-interface thread only.
class OptionsServices {
 public:
  virtual ~OptionsServices() = default;

  virtual size_t CachedImageCount() const = 0;
  // What is captured and returned from now on has so many bits, 8 or 16.
  virtual void SetGrayscaleDepth(uint32_t bits) = 0;
  virtual void FillSettingsList(SettingsListControl* list) const = 0;
  // The name of a sensor's family as the user reads it.
  virtual std::string DisplayName(const std::string& name) const = 0;

  // Modal dialogs; null if the user has cancelled. The owner may be gone afterwards.
  virtual std::optional<SelectedSensor> SelectSensor(const SelectedSensor& present,
                                                     platform::Window owner) = 0;
  virtual std::optional<std::string> SelectDirectory(const std::string& present,
                                                     platform::Window owner) = 0;
};

}  // namespace zyr
