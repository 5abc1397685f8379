// What the dialog for gamma, brightness and contrast shows.
#pragma once

#include <cstdint>
#include <string>

#include "imaging/viewer/image_viewer_control.h"
#include "platform/messages.h"

namespace zyr {

class GammaDialog;

// Numbers of the sliders, as in the template.
enum GammaSlider : uint32_t {
  kSliderBrightness = 1013,
  kSliderContrast = 1014,
  kSliderGamma = 1015,
};

// Calls back into its dialog: OnInitDialog, OnSlider for each movement, OnTimer, OnOK. Texts come
// translated. User-interface thread only.
class GammaDialogView {
 public:
  virtual ~GammaDialogView() = default;

  // Modal: true for End(true).
  virtual bool Run(GammaDialog* dialog, platform::Window owner) = 0;
  virtual platform::Window window() const = 0;
  virtual void End(bool accepted) = 0;

  virtual CKIPImageViewerControl& viewer() = 0;
  virtual void SetSliderRange(uint32_t slider, int32_t least, int32_t most, int32_t position) = 0;
  virtual int32_t SliderPosition(uint32_t slider) const = 0;
  virtual void SetSliderLabel(uint32_t slider, const std::string& text) = 0;
  // One shot; starts anew while it runs.
  virtual void StartTimer(uint32_t milliseconds) = 0;
  virtual void StopTimer() = 0;
};

}  // namespace zyr
