// Which sensor the next capture uses.
#pragma once

#include <optional>
#include <string>

#include "acquire/capture_dialog/capture_dialog_view.h"
#include "acquire/iface/iface.h"

namespace zyr {

// User-interface thread only.
class SensorChoice {
 public:
  // Both must outlive this object.
  SensorChoice(IFace& sensors, CaptureDialogView& view) : sensors_(sensors), view_(view) {}

  // The user's choice as the settings have it, or a newer one that could not be stored.
  DeviceEntry Selected() const;
  bool IsAnySelected() const;
  // From now on the settings count.
  void ForgetUnsaved() { unsaved_.reset(); }
  // Asks the user, unless the settings say otherwise and the selected sensor is there; when forced,
  // always. False, with the last error set, if the user gives no answer. Handles window messages.
  bool Select(bool forced);
  // What the button for it says about the present choice.
  std::string Tip() const;

 private:
  bool NeedsNoQuestion() const;
  void Store(const DeviceEntry& sensor);

  IFace& sensors_;
  CaptureDialogView& view_;
  std::optional<DeviceEntry> unsaved_;
};

}  // namespace zyr
