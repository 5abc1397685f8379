// What becomes of the captured images: kept, shown, returned, deleted.
#include <algorithm>
#include <new>
#include <utility>

#include "acquire/capture_dialog/capture_dialog.h"
#include "acquire/image_cache/image_enhancement.h"
#include "acquire/image_dialog/image_dialog.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "foundation/support/raised_flag.h"
#include "imaging/operations/geometry/shrink.h"
#include "platform/clock.h"
#include "platform/progress_window.h"
#include "platform/prompt.h"
#include "platform/wait_cursor.h"
#include "settings/store.h"

namespace zyr {
namespace {

using platform::PromptKind;

constexpr uint32_t kFirstFrame = 1;
constexpr uint32_t kMostInGrid = 100;  // rows or columns, whatever the settings say

struct EnhancementStep {
  const char* detail;
  void (ImageEnhancement::*apply)();
};
constexpr EnhancementStep kEnhancementSteps[] = {
    {PhraseKey("Applying automatic B/C"), &ImageEnhancement::ApplyAutomaticBrightnessContrast},
    {PhraseKey("Considering brightness, contrast and gamma"),
     &ImageEnhancement::ApplyImageAdjustment},
    {PhraseKey("Considering noise removal"), &ImageEnhancement::ApplyNoiseRemoval},
    {PhraseKey("Considering sharpening"), &ImageEnhancement::ApplySharpening},
    {PhraseKey("Considering laplace"), &ImageEnhancement::ApplyLaplace},
    {PhraseKey("Considering smoothing"), &ImageEnhancement::ApplySmoothing},
};

struct Question {
  const char* title;
  const char* text;
};
constexpr Question kDeleteSelectedQuestion = {
    PhraseKey("Delete Selected Images"),
    PhraseKey(
        "Are you sure that you want to delete the selected images?  If you chose to delete these "
        "images they will be lost forever.")};
constexpr Question kDeleteAllQuestion = {
    PhraseKey("Delete All Images"), PhraseKey("Are you sure that you want to delete ALL of the "
                                              "images?  If you chose to delete these images "
                                              "they will be lost forever.")};

bool IsConfirmed(platform::Window owner, const Question& question) {
  return platform::ShowPrompt(owner, GetPhrase(question.text), GetPhrase(question.title),
                              PromptKind::kQuestion);
}

// The longest side of a picture that, made smaller in proportion, fits into width x height.
uint32_t LimitToFit(const CKIPImage& picture, uint32_t width, uint32_t height) {
  const uint64_t longer = std::max(picture.width(), picture.height());
  const uint64_t byWidth = longer * width / picture.width();
  const uint64_t byHeight = longer * height / picture.height();
  return static_cast<uint32_t>(std::min({longer, byWidth, byHeight}));
}

}  // namespace

void CaptureDialog::TakeImage(platform::GlobalHandle handle) try {
  ShowStatus(kStatusStep, GetPhrase("Downloading Image From Hardware"),
             GetPhrase("The image has been acquired and is being downloaded from the ZYR "
                       "hardware."));
  CachedImage* const image = images_.AddFromHandle(
      sensor_.name, handle, static_cast<uint32_t>(platform::Now()), kFirstFrame, sensor_.sensorId);
  if (image == nullptr) return TellOfLostImage();
  ShowStatus(kStatusStep, GetPhrase("Performing Our Image Enhancements"),
             GetPhrase("Applying the image processing options"));
  EnhanceImage(*image);
  ShowStatusDetail(GetPhrase("Saving the image to the cache"));
  SaveImage(*image);
  images_.LimitMemory();
  // It goes out with those that the application has begun to fetch.
  if (owner_.IsDelivering()) image->TurnTopDown();
  ShowStatus(
      kStatusStep, GetPhrase("Image Successfully Downloaded"),
      FormatText("%s\n%s", images_.DescribeLast().c_str(), images_.DescribeLastSensor().c_str()));
} catch (const std::bad_alloc&) {
  TellOfLostImage();
}

void CaptureDialog::TellOfLostImage() {
  ShowStatus(kStatusError, GetPhrase("Unable To Download Image From Hardware!"),
             GetPhrase("Out of memory"));
}

void CaptureDialog::EnhanceImage(CachedImage& image) {
  ImageEnhancement enhancement(image);
  for (const EnhancementStep& step : kEnhancementSteps) {
    ShowStatusDetail(GetPhrase(step.detail));
    (enhancement.*step.apply)();
  }
  enhancement.Store();
}

void CaptureDialog::SaveImage(CachedImage& image) {
  if (image.Save()) return images_.SaveRemaining();
  TellOfUnsavedImage();
}

void CaptureDialog::TellOfUnsavedImage() {
  const std::string format = GetFormatPhrase(
      "The image could not be saved to the folder %s.  It is kept in memory and will be saved as "
      "soon as possible.  Please be sure that the folder is available and that there is enough "
      "free drive space.");
  ShowStatus(kStatusError, GetPhrase("Unable To Save Image!"),
             FormatText(format.c_str(), GetScanToPath().c_str()));
}

void CaptureDialog::ReturnImages() {
  const auto self = shared_from_this();
  if (images_.GetCount() == 0) {
    platform::ShowPrompt(
        window(),
        GetPhrase("There are no images available to return to the calling application.  Please "
                  "scan additional images by clicking on the 'Scan New Images' option or click on "
                  "the Cancel button."),
        GetPhrase("No Images Available"), PromptKind::kWarning);
    return;
  }
  images_.SaveRemaining();
  SaveWindowPlacement(window());
  platform::ProgressWindow progress(GetPhrase("Preparing images for return"));
  const size_t count = images_.GetCount();
  for (size_t i = 0; i < count; ++i) {
    progress.Advance(static_cast<double>(i) / static_cast<double>(count));
    images_.GetAt(i)->TurnTopDown();
  }
  owner_.NotifyXferReady();
}

void CaptureDialog::DeleteImages(uint32_t command) {
  const bool all = command == kCommandDeleteAll;
  if (!IsConfirmed(window(), all ? kDeleteAllQuestion : kDeleteSelectedQuestion)) return;
  if (all) {
    images_.DeleteAll();
  } else {
    images_.DeleteSelected();
  }
  RefreshThumbnails();
}

// While a capture runs, its panels stay: the user must not lose sight of what the sensor does.
void CaptureDialog::RefreshThumbnails() {
  if (!HasWindow()) return;
  const platform::WaitCursor waitCursor;
  RefreshButtons();
  if (!IsBusy()) ShowThumbnailPanel();
  view_->RefreshThumbnails();
}

void CaptureDialog::ShowThumbnailPanel() {
  ArrangePanels();
  if (images_.GetCount() == 0) {
    return ShowInfo(GetPhrase("Step #1: Acquire New Image"),
                    GetPhrase("To acquire an image from the ZYR hardware, click on one of the "
                              "'Acquire Image' buttons."));
  }
  if (!AreThumbnailsInView()) {
    ShowInfo(GetPhrase("Generating Displayable Image"),
             GetPhrase("The bit image is being converted into an image that can be displayed on "
                       "this computer."));
  }
  ShowPanel(CapturePanel::kThumbnails);
}

void CaptureDialog::ApplyThumbnailGrid() {
  view_->SetThumbnailGrid({std::clamp(GetThumbnailRows(), 1u, kMostInGrid),
                           std::clamp(GetThumbnailCols(), 1u, kMostInGrid)});
}

void CaptureDialog::OnThumbnailSelected(size_t index, bool selected) {
  const auto self = shared_from_this();
  images_.SetSelected(index, selected);
  RefreshButtons();
}

// The application may fetch and delete the image, or close this window, while the user looks at it.
void CaptureDialog::OnThumbnailOpened(size_t index) {
  if (IsBusy() || modalStands_) return;
  const auto self = shared_from_this();
  const RaisedFlag modalStands(modalStands_);
  errorStands_ = false;
  const std::unique_ptr<ImageDialogView> view = view_->MakeImageDialogView();
  ImageDialog dialog(*view, images_);
  CachedImage* const image = images_.GetAt(index);
  if (!dialog.SetImage(image) || !dialog.Run(window()) || !HasWindow()) return;
  if (images_.Share(image) != nullptr && !image->IsSaved()) TellOfUnsavedImage();
  RefreshThumbnails();
}

bool CaptureDialog::IsThumbnailSelected(size_t index) const {
  const CachedImage* image = images_.GetAt(index);
  return image != nullptr && image->selected;
}

// A thousand images may be looked at: none stays in memory for that.
std::unique_ptr<CKIPImage> CaptureDialog::Thumbnail(size_t index, uint32_t mostWidth,
                                                    uint32_t mostHeight) {
  CachedImage* const image = images_.GetAt(index);
  if (image == nullptr) return nullptr;
  const bool wasInMemory = image->HasPixelsInMemory();
  if (!image->EnsurePreview()) return nullptr;
  const std::unique_ptr<CKIPImage> preview = std::move(image->preview);
  image->image8.reset();
  if (!wasInMemory) image->DropPixels();
  const uint32_t limit = LimitToFit(*preview, mostWidth, mostHeight);
  return limit == 0 ? nullptr : ShrinkToLimit(preview.get(), limit, nullptr);
}

}  // namespace zyr
