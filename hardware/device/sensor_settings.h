// settings.xml in the module's folder: what is known of each sensor family.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "hardware/device/property_set.h"

namespace zyr {

// Filled on the thread that starts the hardware, read by all; no lock.
class SensorSettingsList {
 public:
  // Reads the file if it has changed. False on failure, with the last error set; if the file had
  // changed the list is empty then.
  bool Load();
  // True if the file is another than the one last loaded.
  bool NeedsReload() const;

  // The set of a family ("2000", "LUMORAY"), without regard to case; null if there is none.
  const PropertySet* Find(std::string_view name) const;
  // Copies the pairs of a family's set over those of `target`; false if there is no such set.
  bool CopyTo(std::string_view name, PropertySet* target) const;

  void Clear();

 private:
  std::vector<PropertySet> sets_;
  std::string timeStamp_;  // of the file at the last load
};

// The one list of the process, constructed at first use.
SensorSettingsList& SensorSettings();

}  // namespace zyr
