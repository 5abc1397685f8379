// ImageDialog, "Image Display": the user looks at a captured image and edits a copy of it, with
// undo and redo, until OK. This is what it does; what it shows is in its view.
#pragma once

#include <cstdint>
#include <memory>

#include "acquire/image_cache/image_cache.h"
#include "acquire/image_dialog/image_dialog_view.h"
#include "acquire/image_dialog/image_operations.h"
#include "acquire/image_dialog/operation_history.h"

namespace zyr {

// User-interface thread only. Without memory a step does not take place, and all stays as it was.
class ImageDialog {
 public:
  // Both must outlive this object.
  ImageDialog(ImageDialogView& view, ImageCache& images);
  ImageDialog(const ImageDialog&) = delete;
  ImageDialog& operator=(const ImageDialog&) = delete;

  // What to show: an image of the cache. The application may take it out of there while the dialog
  // stands. False if its pixels are not to be had: the dialog then shows nothing.
  bool SetImage(CachedImage* original);
  // Modal. True for OK: if anything was changed, the image in the cache, its file and its preview
  // are now the edited ones; it is not saved (IsSaved) if the disk refused it, and stays as it was
  // if the application has removed it meanwhile.
  bool Run(platform::Window owner);

  // Events of the view.
  void OnInitDialog();
  void OnCommand(uint32_t command);  // an ImageCommand; others do nothing
  void OnOK();
  void OnCancel();

  bool modified() const { return modified_; }

 private:
  void Dispatch(uint32_t command);
  void ApplyOperation(const char* description, const ImageOperation& operation);
  void AdjustByHand();
  void Undo();
  void Redo();
  void RevertToOriginal();
  void CopyToClipboard();
  void PushStep(const char* description, std::unique_ptr<CachedImage> result, ImageOperations done);
  void ReplaceWorkingImage(std::unique_ptr<CachedImage> image,
                           std::shared_ptr<ImageVersion> version, bool modified);
  void ShowPicture(CKIPImage* picture, bool resetZoom);
  void Refresh();
  void StoreWorkingImage();
  void Release();

  ImageDialogView& view_;
  ImageCache& images_;
  std::shared_ptr<CachedImage> originalImage_;
  std::shared_ptr<ImageVersion> originalVersion_;
  std::unique_ptr<CachedImage> workingImage_;
  std::shared_ptr<ImageVersion> workingVersion_;
  CKIPOperationHistory history_;
  bool modified_ = false;
  bool busy_ = false;  // a command is carried out; the dialog for gamma may be standing
  bool ended_ = false;
};

}  // namespace zyr
