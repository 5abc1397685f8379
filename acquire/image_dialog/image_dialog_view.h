// What the image dialog shows.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "acquire/image_dialog/gamma_dialog_view.h"
#include "imaging/viewer/image_viewer_control.h"
#include "platform/global_memory.h"
#include "platform/messages.h"

namespace zyr {

class ImageDialog;

// Commands of the dialog's operations.
enum ImageCommand : uint32_t {
  kImageUndo = 0x8004,
  kImageRedo = 0x8005,
  kImageCopy = 0x8007,
  kImageAdjust = 0x8008,  // gamma, brightness and contrast by hand
  kImageFlipVertical = 0x800A,
  kImageFlipHorizontal = 0x800B,
  kImageRotate90 = 0x800D,
  kImageRotate180 = 0x800E,
  kImageRotate270 = 0x800F,
  kImageEqualize = 0x8011,
  kImageNormalize = 0x8012,
  kImageAutoBrightnessContrast = 0x8013,
  kImageSmooth = 0x8014,
  kImageSharpen = 0x8015,
  kImageEdgeEnhance = 0x8016,
  kImageFastNoiseReduction = 0x8017,
  kImageNoiseReduction = 0x8018,
  kImageOriginal = 0x8019,
  kImageInvert = 0x801A,
};

// Calls back into its dialog: OnInitDialog before the window is seen, OnCommand, OnOK, OnCancel.
// Texts come translated. User-interface thread only; once the window is gone, operations do
// nothing.
class ImageDialogView {
 public:
  virtual ~ImageDialogView() = default;

  // Modal: returns once End was called, the window was closed or its owner has gone; true for
  // End(true). False, too, if the window cannot be made.
  virtual bool Run(ImageDialog* dialog, platform::Window owner) = 0;
  virtual platform::Window window() const = 0;
  virtual void End(bool accepted) = 0;

  virtual CKIPImageViewerControl& viewer() = 0;
  virtual void SetItemEnabled(uint32_t command, bool enabled) = 0;
  virtual void SetItemDescription(uint32_t command, const std::string& description) = 0;
  virtual void SetStatus(const std::string& text) = 0;
  // Takes the packed bitmap over. False if the clipboard cannot be had.
  virtual bool CopyToClipboard(platform::GlobalHandle packedDib) = 0;
  virtual std::unique_ptr<GammaDialogView> MakeGammaDialogView() = 0;
};

}  // namespace zyr
