// GammaDialog: gamma, brightness and contrast by hand, with a preview.
#pragma once

#include <memory>

#include "acquire/image_dialog/gamma_dialog_view.h"
#include "acquire/image_dialog/image_operations.h"

namespace zyr {

// User-interface thread only.
class GammaDialog {
 public:
  static constexpr uint32_t kPreviewDelay = 1000;  // milliseconds after the last movement

  // Both must outlive this object; the image does not change.
  GammaDialog(GammaDialogView& view, CachedImage& workingImage);
  GammaDialog(const GammaDialog&) = delete;
  GammaDialog& operator=(const GammaDialog&) = delete;

  // Modal. True if the user has accepted the preview as it stands: later movements do not count.
  bool Run(platform::Window owner);
  // The preview, and what of the adjustments has made it; null if there was no memory for one.
  std::unique_ptr<CachedImage> TakePreview();
  const ImageOperations& operations() const { return operations_; }

  // Events of the view.
  void OnInitDialog();
  void OnSlider();  // whichever was moved
  void OnTimer();
  void OnOK();
  void OnCancel();

 private:
  void ShowLabels();
  void MakePreview(bool resetZoom);
  void End(bool accepted);

  GammaDialogView& view_;
  CachedImage& workingImage_;
  std::unique_ptr<CachedImage> preview_;
  ImageOperations operations_;
};

}  // namespace zyr
