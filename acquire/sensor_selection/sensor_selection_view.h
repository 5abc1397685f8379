// What the sensor selection dialog shows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/messages.h"

namespace zyr {

class SensorSelection;

struct SensorRow {
  std::string name;
  std::string sensorId;
  std::string deviceId;
};

// Calls back into its dialog: OnInitDialog before the window is seen, OnRefreshTimer every second
// from then on, OnOK for OK, Enter and a double click on a row. Texts come translated. Once the
// window is gone, operations do nothing. User-interface thread only.
class SensorSelectionView {
 public:
  virtual ~SensorSelectionView() = default;

  // Modal: returns once End was called or the user has cancelled; true for End(true). False, too,
  // if the window cannot be made.
  virtual bool Run(SensorSelection* dialog, platform::Window owner) = 0;
  virtual platform::Window window() const = 0;
  virtual void End(bool accepted) = 0;

  virtual void SetColumns(const std::vector<std::string>& titles) = 0;  // of automatic width
  // Bold. Colours in the platform's order of bytes, red lowest.
  virtual void SetMessage(const std::string& text, uint32_t color) = 0;
  // What the letters of the message stand on; without one the window shows through.
  virtual void SetMessageSecondColor(std::optional<uint32_t> color) = 0;
  // The list's rows in place of those before.
  virtual void SetRows(const std::vector<SensorRow>& rows) = 0;
  virtual void SetListVisible(bool visible) = 0;
  // The arrow keys go on from there.
  virtual void SelectRow(size_t row) = 0;
  virtual std::optional<size_t> SelectedRow() const = 0;
};

}  // namespace zyr
