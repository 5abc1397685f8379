#include "acquire/image_dialog/image_dialog.h"

#include <new>
#include <string>
#include <utility>

#include "acquire/image_dialog/gamma_dialog.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "foundation/support/progress.h"
#include "imaging/image/packed_dib.h"
#include "platform/progress_window.h"
#include "platform/wait_cursor.h"

namespace zyr {
namespace {

struct MenuOperation {
  uint32_t command;
  const char* description;  // of the step
  ImageOperation (*operation)();
};
constexpr MenuOperation kMenuOperations[] = {
    {kImageInvert, PhraseKey("Invert"), &ImageOperation::Invert},
    {kImageRotate270, PhraseKey("Rotate 90 Counter-Clockwise"),
     [] { return ImageOperation::Rotate(270); }},
    {kImageRotate180, PhraseKey("Rotate 180"), [] { return ImageOperation::Rotate(180); }},
    {kImageRotate90, PhraseKey("Rotate 90"), [] { return ImageOperation::Rotate(90); }},
    {kImageFlipHorizontal, PhraseKey("Flip Horizontally"), &ImageOperation::FlipHorizontal},
    {kImageFlipVertical, PhraseKey("Flip Vertically"), &ImageOperation::FlipVertical},
    {kImageSharpen, PhraseKey("Sharpen"), [] { return ImageOperation::Sharpen(3, 50); }},
    {kImageNoiseReduction, PhraseKey("Noise Reduction"),
     [] { return ImageOperation::RemoveNoise(3); }},
    {kImageFastNoiseReduction, PhraseKey("Fast Noise Reduction"), &ImageOperation::RemoveNoiseFast},
    {kImageAutoBrightnessContrast, PhraseKey("Automatic Brightness/Contrast"),
     &ImageOperation::AutoBrightnessContrast},
    {kImageEdgeEnhance, PhraseKey("Edge Enhancement"),
     [] { return ImageOperation::EnhanceEdges(3, 3); }},
    {kImageEqualize, PhraseKey("Equalize"), &ImageOperation::Equalize},
    {kImageNormalize, PhraseKey("Normalize"), &ImageOperation::Normalize},
    {kImageSmooth, PhraseKey("Smooth"), [] { return ImageOperation::Smooth(3, 100); }},
};

std::string TextOr(std::string text, const char* otherwise) {
  return text.empty() ? GetPhrase(otherwise) : text;
}

std::string Describe(const ImageDescription& image) {
  return FormatText(GetFormatPhrase("Size: %lu pixels x %lu pixels  (%lu DPI x %lu DPI)").c_str(),
                    Lu(image.width), Lu(image.height), Lu(image.xResolution),
                    Lu(image.yResolution)) +
         "   " + FormatText(GetFormatPhrase("Bits-Per-Pixel: %lu").c_str(), Lu(image.bitsPerPixel));
}

// False without memory. A step that cannot be shown is none: the user would be left with an empty
// window.
bool PreparePicture(CachedImage& image) {
  const cancel_monitor::Suspension suspension;
  return image.PrepareImage() != nullptr;
}

}  // namespace

ImageDialog::ImageDialog(ImageDialogView& view, ImageCache& images)
    : view_(view), images_(images) {}

bool ImageDialog::SetImage(CachedImage* original) try {
  Release();
  originalImage_ = images_.Share(original);
  if (originalImage_ == nullptr) return false;
  const bool wasInMemory = originalImage_->HasPixelsInMemory();
  std::unique_ptr<CachedImage> clone = originalImage_->Clone();
  if (!wasInMemory) originalImage_->DropPixels();
  if (clone == nullptr || !PreparePicture(*clone)) return false;
  originalVersion_ = ImageVersion::Of(*clone);
  workingVersion_ = originalVersion_;
  workingImage_ = std::move(clone);
  return true;
} catch (const std::bad_alloc&) {
  Release();
  return false;
}

bool ImageDialog::Run(platform::Window owner) {
  ended_ = false;
  const bool accepted = view_.Run(this, owner);
  ended_ = true;
  view_.viewer().Clear();
  Release();
  return accepted;
}

void ImageDialog::Release() {
  history_.Clear();
  workingImage_.reset();
  workingVersion_.reset();
  originalVersion_.reset();
  originalImage_.reset();
  modified_ = false;
}

void ImageDialog::OnInitDialog() {
  if (workingImage_ != nullptr) {
    ShowPicture(workingImage_->image8.get(), true);
    view_.viewer().ZoomToOneOrFit();
  }
  Refresh();
}

void ImageDialog::OnOK() {
  if (busy_ || std::exchange(ended_, true)) return;
  if (modified_) StoreWorkingImage();
  view_.End(true);
}

void ImageDialog::OnCancel() {
  if (!std::exchange(ended_, true)) view_.End(false);
}

// What the application, or another process, has fetched and deleted must not come back.
void ImageDialog::StoreWorkingImage() try {
  if (images_.Share(originalImage_.get()) == nullptr || !originalImage_->IsStillThere()) return;
  if (originalImage_->TakeContents(*workingImage_)) originalImage_->Save();
} catch (const std::bad_alloc&) {
  // Not saved yet.
}

// The application's messages go on during a command: a second one could come in.
void ImageDialog::OnCommand(uint32_t command) {
  if (workingImage_ == nullptr || ended_ || std::exchange(busy_, true)) return;
  try {
    Dispatch(command);
  } catch (const std::bad_alloc&) {
    // The step is refused.
  }
  busy_ = false;
}

void ImageDialog::Dispatch(uint32_t command) {
  switch (command) {
    case kImageUndo:
      return Undo();
    case kImageRedo:
      return Redo();
    case kImageOriginal:
      return RevertToOriginal();
    case kImageCopy:
      return CopyToClipboard();
    case kImageAdjust:
      return AdjustByHand();
  }
  for (const MenuOperation& item : kMenuOperations) {
    if (item.command == command) return ApplyOperation(item.description, item.operation());
  }
}

void ImageDialog::ApplyOperation(const char* description, const ImageOperation& operation) {
  std::unique_ptr<CachedImage> clone = workingImage_->Clone();
  if (clone == nullptr) return;
  ImageOperations done = Apply({operation}, *clone);
  PushStep(description, std::move(clone), std::move(done));
}

void ImageDialog::AdjustByHand() {
  const std::unique_ptr<GammaDialogView> view = view_.MakeGammaDialogView();
  if (view == nullptr) return;
  GammaDialog dialog(*view, *workingImage_);
  if (!dialog.Run(view_.window()) || ended_) return;
  std::unique_ptr<CachedImage> preview = dialog.TakePreview();
  if (preview != nullptr)
    PushStep(PhraseKey("Adjust GBC"), std::move(preview), dialog.operations());
}

// Also a step that has changed nothing is one.
void ImageDialog::PushStep(const char* description, std::unique_ptr<CachedImage> result,
                           ImageOperations done) {
  if (!PreparePicture(*result)) return;
  std::shared_ptr<ImageVersion> version =
      ImageVersion::Of(workingVersion_, *workingImage_, std::move(done));
  history_.Push(workingVersion_, GetPhrase(description));
  ReplaceWorkingImage(std::move(result), std::move(version), true);
}

void ImageDialog::Undo() {
  const std::shared_ptr<ImageVersion> version = history_.NextUndo();
  std::unique_ptr<CachedImage> image = version == nullptr ? nullptr : version->Restore();
  if (image == nullptr || !PreparePicture(*image)) return;
  history_.Undo(workingVersion_);
  ReplaceWorkingImage(std::move(image), version, history_.CanUndo());
}

void ImageDialog::Redo() {
  const std::shared_ptr<ImageVersion> version = history_.NextRedo();
  std::unique_ptr<CachedImage> image = version == nullptr ? nullptr : version->Restore();
  if (image == nullptr || !PreparePicture(*image)) return;
  history_.Redo(workingVersion_);
  ReplaceWorkingImage(std::move(image), version, true);
}

// From what the dialog keeps: the application may have taken the image away.
void ImageDialog::RevertToOriginal() {
  const platform::ProgressWindow progress(GetPhrase("Original"));
  std::unique_ptr<CachedImage> image = originalVersion_->Restore();
  if (image == nullptr || !PreparePicture(*image)) return;
  history_.Clear();
  ReplaceWorkingImage(std::move(image), originalVersion_, false);
}

void ImageDialog::CopyToClipboard() {
  const platform::WaitCursor waitCursor;
  const CKIPImage* const picture = workingImage_->PrepareImage();
  if (picture == nullptr) return;
  const platform::GlobalHandle dib = PackedDibFromImage(*picture);
  if (dib != nullptr) view_.CopyToClipboard(dib);
}

// The viewer looks into the image until it has another one.
void ImageDialog::ReplaceWorkingImage(std::unique_ptr<CachedImage> image,
                                      std::shared_ptr<ImageVersion> version, bool modified) {
  ShowPicture(image->image8.get(), false);
  workingImage_ = std::move(image);
  workingVersion_ = std::move(version);
  modified_ = modified;
  Refresh();
}

// The viewer takes the picture before it needs memory for anything else.
void ImageDialog::ShowPicture(CKIPImage* picture, bool resetZoom) try {
  view_.viewer().SetImage(picture, resetZoom);
} catch (const std::bad_alloc&) {
}

void ImageDialog::Refresh() {
  view_.SetItemEnabled(kImageUndo, history_.CanUndo());
  view_.SetItemEnabled(kImageRedo, history_.CanRedo());
  view_.SetItemEnabled(kImageOriginal, history_.CanUndo());
  view_.SetItemDescription(kImageUndo, TextOr(history_.GetUndoDescription(),
                                              PhraseKey("Undoes the previous operation")));
  view_.SetItemDescription(kImageRedo, TextOr(history_.GetRedoDescription(),
                                              PhraseKey("Redoes the previously undone operation")));
  view_.SetStatus(workingImage_ == nullptr ? std::string() : Describe(*workingImage_));
}

}  // namespace zyr
