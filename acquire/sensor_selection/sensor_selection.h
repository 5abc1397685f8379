// SensorSelection: the dialog in which the user chooses the sensor.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "acquire/iface/iface.h"
#include "acquire/sensor_selection/sensor_selection_view.h"

namespace zyr {

// User-interface thread only.
class SensorSelection {
 public:
  SensorSelection(IFace& sensors, SensorSelectionView& view) : sensors_(sensors), view_(view) {}

  // The sensor that is marked at first, and the chosen one after Run.
  DeviceEntry selected;
  bool auto_close = false;  // take the only sensor there is without asking

  // Modal. True if the user has chosen one; otherwise `selected` is as it was.
  bool Run(platform::Window owner);

  // Events of the view.
  void OnInitDialog();
  void OnRefreshTimer();
  void OnOK();

 private:
  void FillList(const std::string& markedDeviceId);
  void ShowMessage(bool isInitialised);
  void ShowRows();
  void MarkRow(const std::string& deviceId);
  const DeviceEntry* ChosenDevice() const;  // null without one
  void Warn(const char* title, const char* text) const;

  IFace& sensors_;
  SensorSelectionView& view_;
  std::vector<DeviceEntry> devices_;  // one for each row
  uint32_t changes_ = 0;              // of the sensors plugged in, as of `devices_`
};

}  // namespace zyr
