// A table that settings are listed in, for the diagnosis by technical support.
#pragma once

#include <string>

namespace zyr {

// A two-column table of names and values.
class SettingsListControl {
 public:
  virtual ~SettingsListControl() = default;
  virtual void RemoveAllColumns() = 0;
  virtual void AddColumn(const std::string& title, int width) = 0;  // left aligned
  virtual void AddRow(const std::string& name, const std::string& value) = 0;
};

}  // namespace zyr
