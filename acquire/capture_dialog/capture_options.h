// The options dialog, opened from the capture dialog.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "acquire/capture_dialog/capture_dialog_owner.h"
#include "acquire/capture_dialog/capture_dialog_view.h"
#include "acquire/iface/iface.h"
#include "acquire/image_cache/image_cache.h"
#include "settings/pages/options_services.h"

namespace zyr {

// User-interface thread only.
class CaptureOptions : private OptionsServices {
 public:
  // All of them must outlive this object.
  CaptureOptions(CaptureDialogOwner& owner, const ImageCache& images, IFace& sensors,
                 CaptureDialogView& view)
      : owner_(owner), images_(images), sensors_(sensors), view_(view) {}

  // Modal, after a question to who may not write settings. True if the user has accepted; the
  // window may be gone then.
  bool Run();
  // Whether a sensor was chosen in it.
  bool HasChosenSensor() const { return hasChosenSensor_; }

 private:
  size_t CachedImageCount() const override { return images_.GetCount(); }
  void SetGrayscaleDepth(uint32_t bits) override { owner_.SetGrayscaleDepth(bits); }
  void FillSettingsList(SettingsListControl* list) const override {
    owner_.FillSettingsList(list);
  }
  std::string DisplayName(const std::string& name) const override;
  std::optional<SelectedSensor> SelectSensor(const SelectedSensor& present,
                                             platform::Window owner) override;
  std::optional<std::string> SelectDirectory(const std::string& present,
                                             platform::Window owner) override;

  CaptureDialogOwner& owner_;
  const ImageCache& images_;
  IFace& sensors_;
  CaptureDialogView& view_;
  bool hasChosenSensor_ = false;
};

}  // namespace zyr
