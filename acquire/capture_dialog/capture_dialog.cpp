#include "acquire/capture_dialog/capture_dialog.h"

#include "acquire/capture_dialog/capture_options.h"
#include "acquire/iface/status_sink.h"
#include "foundation/support/files.h"
#include "foundation/support/phrase_lookup.h"
#include "foundation/support/raised_flag.h"
#include "platform/directories.h"
#include "platform/prompt.h"
#include "platform/shell.h"
#include "settings/directories.h"
#include "settings/store.h"

namespace zyr {
namespace {

using platform::PromptKind;

constexpr uint32_t kReturnDelay = 100;  // milliseconds
constexpr int kLeastShellSuccess = 33;

// Kinds of status lines that no part of a capture sends at present.
enum : uintptr_t { kStatusLinePlain = 0, kStatusLineError = 1 };

struct Tip {
  uint32_t command;
  const char* text;
};
constexpr Tip kTips[] = {
    {kCommandAcquireImage,
     PhraseKey("Click on this option to acquire a single image from a ZYR digital x-ray system.")},
    {kCommandAcquireSeries,
     PhraseKey(
         "Click on this option to acquire a series of images from a ZYR digital x-ray system.")},
    {kCommandDeleteSelected, PhraseKey("Click on this option to delete the selected images.")},
    {kCommandDeleteAll,
     PhraseKey("Click on this option to delete all of the currently acquired images.")},
    {kCommandOptions, PhraseKey("This option permits you to change the preferences and settings.")},
    {kCommandThumbnails, PhraseKey("Sets the number of rows and columns of thumbnails that should "
                                   "be displayed simultaneously.")},
    {kCommandHelp, PhraseKey("Displays the on-line help for the ZYR TWAIN source.")},
    {kCommandManualTrigger,
     PhraseKey(
         "Manually triggers the hardware.  This option is primarily used during testing of the "
         "hardware and the hardware interface.")},
};

// What is disabled while a capture runs, beside what RefreshButtons decides on.
constexpr uint32_t kIdleCommands[] = {kCommandAcquireImage, kCommandAcquireSeries,
                                      kCommandSelectSensor, kCommandThumbnails, kCommandOptions};

std::string SettingsFileIn(const std::string& folder) { return folder + "\\Settings.XML"; }

// `format` names the file by "%s".
void TellOfFile(platform::Window owner, const char* title, const char* format,
                const std::string& path, PromptKind kind) {
  platform::ShowPrompt(owner, FormatText(GetFormatPhrase(format).c_str(), path.c_str()),
                       GetPhrase(title), kind);
}

}  // namespace

CaptureDialog::CaptureDialog(CaptureDialogOwner& owner, ImageCache& images, IFace& sensors,
                             CaptureDialogViewFactory makeView)
    : owner_(owner),
      images_(images),
      sensors_(sensors),
      view_(makeView()),
      status_(*view_),
      choice_(sensors, *view_) {}

// The view can no longer tell of its window's end.
CaptureDialog::~CaptureDialog() {
  if (!windowGone_) GiveUpCapture();
}

platform::Window CaptureDialog::window() const { return view_->window(); }

bool CaptureDialog::HasWindow() const { return !windowGone_ && platform::IsWindowAlive(window()); }

bool CaptureDialog::Create(platform::Window parent) {
  const auto self = shared_from_this();
  if (!view_->Create(this, parent)) return false;
  images_.LoadAll();
  SetTips();
  ApplyThumbnailGrid();
  const bool canGoOn = CheckRequiredFiles();
  if (!HasWindow()) return true;  // the application closed it behind a message box
  if (!canGoOn) {
    owner_.NotifyCloseDSReq();
    view_->Close();
    return true;
  }
  RestoreWindowPlacement(window());
  ShowFirstSteps();
  view_->Show();
  RefreshButtons();
  DecideHowToStart();
  return true;
}

void CaptureDialog::SetTips() {
  for (const Tip& tip : kTips) view_->SetButtonTip(tip.command, GetPhrase(tip.text));
  view_->SetButtonTip(kCommandSelectSensor, choice_.Tip());
}

void CaptureDialog::ShowFirstSteps() {
  ShowInfo(GetPhrase("What Is This Message Area?"),
           GetPhrase("As the TWAIN source progresses through the various stages of image capture, "
                     "status messages indicating the current step in the acquisition process will "
                     "be displayed in this area.  After an image has been acquired, this area will "
                     "change into an image display area."));
  ShowInfo(GetPhrase("Step #1: Acquire New Image"),
           GetPhrase("To acquire an image from the ZYR hardware, click on the 'Acquire Images' "
                     "button."));
}

// The delay leaves the application's window messages time before the images go out.
void CaptureDialog::DecideHowToStart() {
  if (images_.GetCount() != 0) {
    RefreshThumbnails();
    if (GetReturnImmediatelyIfAvailable()) view_->StartReturnTimer(kReturnDelay);
  } else if (GetProceedDirectlyToScan()) {
    OnCommand(GetSISingleCaptureMode() ? kCommandAcquireImage : kCommandAcquireSeries);
  }
}

bool CaptureDialog::CheckRequiredFiles() {
  if (!GetCheckForConflicts()) return true;
  const std::string required = SettingsFileIn(GetSourceDirectory());
  if (!FileExists(required)) {
    TellOfFile(
        window(), PhraseKey("Required ZYR Files Are Missing"),
        PhraseKey(
            "One or more files required to acquire images from the ZYR are missing.  Please be "
            "sure that the following file(s) are available and then retry the operation.\n\n%s"),
        required, PromptKind::kError);
    return false;
  }
  const std::string conflicting = SettingsFileIn(DirectoryOf(platform::HostProgramPath()));
  if (FileExists(conflicting)) {
    TellOfFile(
        window(), PhraseKey("WARNING! Possible Conflicting Files"),
        PhraseKey(
            "WARNING! A potential conflicting file exists in this application's directory.  "
            "Please check to be sure that the following files do not conflict with this TWAIN "
            "source.\n\n%s"),
        conflicting, PromptKind::kWarning);
  }
  return true;
}

void CaptureDialog::OnCommand(uint32_t command) {
  const auto self = shared_from_this();
  switch (command) {
    case kCommandCancel:
      return CancelOrClose();
    case kCommandManualTrigger:
      if (capturing_ && finishExpected_) sensors_.ManualTrigger();
      return;
    case kCommandHelp:
      return OpenHelp();
    default:
      break;
  }
  if (IsBusy() || modalStands_) return;
  errorStands_ = false;
  switch (command) {
    case kCommandAcquireSeries:
      EnterSeriesMode();
      return StartCapture();
    case kCommandAcquireImage:
      return StartCapture();
    case kCommandReturnImages:
      return ReturnImages();
    default:
      return OnModalCommand(command);
  }
}

// Its buttons cannot be reached behind a dialog, but a command that was sent can.
void CaptureDialog::OnModalCommand(uint32_t command) {
  const RaisedFlag modalStands(modalStands_);
  switch (command) {
    case kCommandSelectSensor:
      return SelectSensorByHand();
    case kCommandOptions:
      return OpenOptions();
    case kCommandDeleteSelected:
    case kCommandDeleteAll:
      return DeleteImages(command);
    case kCommandThumbnails:
      return ChooseThumbnailGrid();
    default:
      return;
  }
}

intptr_t CaptureDialog::OnMessage(uint32_t message, uintptr_t wParam, intptr_t lParam) {
  const auto self = shared_from_this();
  switch (message) {
    case kMessageStatusLine:
      // The dialog manager has a message of that number, too.
      if (lParam == 0) return 0;
      return OnStatusLine(wParam, *reinterpret_cast<const StatusRecord*>(lParam));
    case kMessageExposureReady:
      OnExposureReady();
      return 0;
    case kMessageCaptureFinished:
      OnCaptureFinished(wParam != 0, reinterpret_cast<platform::GlobalHandle>(lParam));
      return 0;
    case kMessageRefreshThumbnails:
      RefreshThumbnails();
      return 0;
    default:
      return 0;
  }
}

intptr_t CaptureDialog::OnStatusLine(uintptr_t kind, const StatusRecord& record) {
  switch (kind) {
    case kStatusLineUpdate:
      status_.Rewrite(record.line, record.title, record.text);
      return record.line;
    case kStatusLinePlain:
    case kStatusLineNew:
      return AddStatus(kStatusInformation, record.title, record.text);
    case kStatusLineError:
      return AddStatus(kStatusError, record.title, record.text);
    case kStatusLineFinal:
      return AddStatus(kStatusFinal, record.title, record.text);
    default:
      return kNoStatusLine;
  }
}

void CaptureDialog::OnReturnTimer() {
  const auto self = shared_from_this();
  view_->StopReturnTimer();
  if (!IsBusy() && !modalStands_) ReturnImages();  // a user may have been faster
}

void CaptureDialog::OnWindowGone() {
  const auto self = weak_from_this().lock();  // none while the object is being deleted
  windowGone_ = true;
  GiveUpCapture();
}

void CaptureDialog::SelectSensorByHand() {
  choice_.Select(true);
  ShowSensorAnew();
}

void CaptureDialog::OpenOptions() {
  CaptureOptions options(owner_, images_, sensors_, *view_);
  if (!options.Run()) return;
  if (options.HasChosenSensor()) choice_.ForgetUnsaved();
  ShowSensorAnew();
}

void CaptureDialog::ShowSensorAnew() {
  if (!HasWindow()) return;
  view_->SetButtonTip(kCommandSelectSensor, choice_.Tip());
  ShowSensor();
  if (images_.GetCount() != 0) RefreshThumbnails();
}

void CaptureDialog::ChooseThumbnailGrid() {
  const auto size = view_->AskForThumbnailGrid({GetThumbnailRows(), GetThumbnailCols()});
  if (!size) return;
  SetThumbnailRows(size->rows);
  SetThumbnailCols(size->columns);
  view_->SetThumbnailGrid(*size);
}

void CaptureDialog::OpenHelp() {
  const std::string path = GetSourceDirectory() + "\\ZYRTWAIN.CHM";
  if (platform::OpenWithShell(path) >= kLeastShellSuccess) return;
  TellOfFile(
      window(), PhraseKey("Unable To Open Help"),
      PhraseKey("The on-line help could not be opened.  Please be sure that the following file is "
                "available and then retry the operation.\n\n%s"),
      path, PromptKind::kWarning);
}

// A capture is told to end and ends with its last message. One that is being set up, or ends
// already, is not interrupted.
void CaptureDialog::CancelOrClose() {
  if (settingUp_ || abort_requested || closing_) return;
  const auto self = shared_from_this();
  if (capturing_) {
    abort_requested = true;
    sensors_.ManualTrigger();
    capturing_ = false;
    ShowPanel(CapturePanel::kStatus);  // nobody may be called upon to fire any more
    return;
  }
  closing_ = true;
  images_.SaveRemaining();
  SaveWindowPlacement(window());
  owner_.NotifyCloseDSReq();
  view_->Close();
}

void CaptureDialog::EnableButtons(bool enable) {
  for (const uint32_t command : kIdleCommands) view_->SetButtonEnabled(command, enable);
  RefreshButtons();
}

void CaptureDialog::RefreshButtons() {
  const bool any = !IsBusy() && images_.GetCount() != 0;
  view_->SetButtonEnabled(kCommandReturnImages, any);
  view_->SetButtonEnabled(kCommandDeleteSelected, any && images_.AnySelected());
  view_->SetButtonEnabled(kCommandDeleteAll, any);
}

void CaptureDialog::ShowStatus(StatusKind kind, const std::string& title, const std::string& text) {
  AddStatus(kind, title, text);
}

int32_t CaptureDialog::AddStatus(StatusKind kind, const std::string& title,
                                 const std::string& text) {
  if (kind == kStatusError) errorStands_ = true;
  ShowPanel(CapturePanel::kStatus);
  return status_.Add(kind, title, text);
}

void CaptureDialog::ShowPanel(CapturePanel panel) {
  panel_ = panel;
  view_->ShowPanel(panel);
}

// Thumbnails that took the place of an error would hide it before anybody could read it.
void CaptureDialog::ArrangePanels() {
  split_ = seriesMode_ || (errorStands_ && images_.GetCount() != 0);
  view_->SetSplitLayout(split_);
}

void CaptureDialog::ShowStatusDetail(const std::string& text) { status_.AddDetail(text); }

void CaptureDialog::ShowInfo(const std::string& title, const std::string& text) {
  ShowStatus(kStatusInformation, title, text);
}

}  // namespace zyr
