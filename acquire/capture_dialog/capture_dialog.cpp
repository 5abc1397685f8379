#include "acquire/capture_dialog/capture_dialog.h"

#include <utility>

#include "foundation/log/log.h"
#include "foundation/support/files.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/directories.h"
#include "platform/progress_window.h"
#include "platform/prompt.h"
#include "settings/directories.h"
#include "settings/store.h"

namespace zyr {
namespace {

using platform::PromptKind;

constexpr uint32_t kReturnDelay = 100;  // milliseconds

constexpr char kFirstStep[] = "Step #1: Acquire New Image";

std::string SettingsFileIn(const std::string& folder) { return folder + "\\Settings.XML"; }

struct Question {
  const char* title;
  const char* text;
};

constexpr Question kDeleteSelectedQuestion = {
    "Delete Selected Images",
    "Are you sure that you want to delete the selected images?  If you chose to delete these "
    "images they will be lost forever."};
constexpr Question kDeleteAllQuestion = {
    "Delete All Images",
    "Are you sure that you want to delete ALL of the images?  If you chose to delete these images "
    "they will be lost forever."};

bool IsConfirmed(platform::Window owner, const Question& question) {
  return platform::ShowPrompt(owner, GetPhrase(question.text), GetPhrase(question.title),
                              PromptKind::kQuestion);
}

// `format` names the file by "%s".
void TellOfFile(platform::Window owner, const char* title, const char* format,
                const std::string& path, PromptKind kind) {
  platform::ShowPrompt(owner, FormatText(GetFormatPhrase(format).c_str(), path.c_str()),
                       GetPhrase(title), kind);
}

}  // namespace

CaptureDialog::CaptureDialog(CaptureDialogOwner& owner, ImageCache& images,
                             CaptureDialogViewFactory makeView)
    : owner_(owner), images_(images), view_(makeView()) {}

CaptureDialog::~CaptureDialog() = default;

platform::Window CaptureDialog::window() const { return view_->window(); }

bool CaptureDialog::HasWindow() const { return platform::IsWindowAlive(window()); }

bool CaptureDialog::Create(platform::Window parent) {
  const auto self = shared_from_this();
  if (!view_->Create(this, parent)) return false;
  images_.LoadAll();
  const bool canGoOn = CheckRequiredFiles();
  if (!HasWindow()) return true;  // the application closed it behind a message box
  if (!canGoOn) {
    owner_.NotifyCloseDSReq();
    view_->Close();
    return true;
  }
  RestoreWindowPlacement(window());
  ShowInfo(GetPhrase("What Is This Message Area?"),
           GetPhrase("As the TWAIN source progresses through the various stages of image capture, "
                     "status messages indicating the current step in the acquisition process will "
                     "be displayed in this area.  After an image has been acquired, this area will "
                     "change into an image display area."));
  ShowInfo(GetPhrase(kFirstStep),
           GetPhrase("To acquire an image from the ZYR hardware, click on the 'Acquire Images' "
                     "button."));
  view_->Show();
  RefreshButtons();
  DecideHowToStart();
  return true;
}

// Leaves the application's window messages time before the images go out.
void CaptureDialog::DecideHowToStart() {
  if (images_.GetCount() == 0) return;
  OnRefreshThumbnails();
  if (GetReturnImmediatelyIfAvailable()) view_->StartReturnTimer(kReturnDelay);
}

bool CaptureDialog::CheckRequiredFiles() {
  if (!GetCheckForConflicts()) return true;
  const std::string required = SettingsFileIn(GetSourceDirectory());
  if (!FileExists(required)) {
    TellOfFile(window(), "Required ZYR Files Are Missing",
               "One or more files required to acquire images from the ZYR are missing.  Please be "
               "sure that the following file(s) are available and then retry the operation.\n\n%s",
               required, PromptKind::kError);
    return false;
  }
  const std::string conflicting = SettingsFileIn(DirectoryOf(platform::HostProgramPath()));
  if (FileExists(conflicting)) {
    TellOfFile(window(), "WARNING! Possible Conflicting Files",
               "WARNING! A potential conflicting file exists in this application's directory.  "
               "Please check to be sure that the following files do not conflict with this TWAIN "
               "source.\n\n%s",
               conflicting, PromptKind::kWarning);
  }
  return true;
}

void CaptureDialog::OnCommand(uint32_t command) {
  const auto self = shared_from_this();
  switch (command) {
    case kCommandReturnImages:
      return ReturnImages();
    case kCommandCancel:
      return CancelOrClose();
    case kCommandDeleteSelected:
    case kCommandDeleteAll:
      return DeleteImages(command);
    default:
      return;
  }
}

void CaptureDialog::OnReturnTimer() {
  const auto self = shared_from_this();
  view_->StopReturnTimer();
  ReturnImages();
}

void CaptureDialog::OnRefreshThumbnails() {
  if (!HasWindow()) return;
  const auto self = shared_from_this();
  if (images_.GetCount() == 0) {
    ShowInfo(GetPhrase(kFirstStep),
             GetPhrase("To acquire an image from the ZYR hardware, click on one of the 'Acquire "
                       "Image' buttons."));
  }
  RefreshButtons();
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
  SaveWindowPlacement(window());
  platform::ProgressWindow progress(GetPhrase("Preparing images for return"));
  const size_t count = images_.GetCount();
  for (size_t i = 0; i < count; ++i) {
    progress.Advance(static_cast<double>(i) / static_cast<double>(count));
    images_.GetAt(i)->TurnTopDown();
  }
  owner_.NotifyXferReady();
}

void CaptureDialog::CancelOrClose() {
  if (std::exchange(closing_, true)) return;
  const auto self = shared_from_this();
  SaveWindowPlacement(window());
  owner_.NotifyCloseDSReq();
  view_->Close();
}

void CaptureDialog::DeleteImages(uint32_t command) {
  const bool all = command == kCommandDeleteAll;
  if (!IsConfirmed(window(), all ? kDeleteAllQuestion : kDeleteSelectedQuestion)) return;
  if (all) {
    images_.DeleteAll();
  } else {
    images_.DeleteSelected();
  }
  OnRefreshThumbnails();
}

void CaptureDialog::RefreshButtons() {
  const bool any = images_.GetCount() != 0;
  view_->SetButtonEnabled(kCommandReturnImages, any);
  view_->SetButtonEnabled(kCommandDeleteSelected, images_.AnySelected());
  view_->SetButtonEnabled(kCommandDeleteAll, any);
}

void CaptureDialog::ShowStatus(StatusKind kind, const std::string& title,
                               const std::string& text) {
  lastStatusText_ = text;
  view_->AddStatus(kind, title, text);
  Log().WriteLine("CAPTURE STATUS MESSAGE: %s -> %s", title.c_str(), text.c_str());
}

void CaptureDialog::ShowStatusDetail(const std::string& text) {
  lastStatusText_ += '\n' + text;
  view_->SetLastStatusText(lastStatusText_);
  Log().WriteLine("     %s", text.c_str());
}

void CaptureDialog::ShowInfo(const std::string& title, const std::string& text) {
  ShowStatus(kStatusInformation, title, text);
}

}  // namespace zyr
