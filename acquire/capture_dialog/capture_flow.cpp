// The course of a capture, from the press of a button to the next one.
#include <string>
#include <utility>

#include "acquire/capture_dialog/capture_dialog.h"
#include "acquire/iface/display_name.h"
#include "acquire/iface/status_sink.h"
#include "foundation/log/log.h"
#include "foundation/support/error.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "foundation/support/raised_flag.h"
#include "hardware/device/device.h"
#include "hardware/device/sensor_settings.h"
#include "platform/sound.h"
#include "resources/resource.h"
#include "settings/store.h"

namespace zyr {
namespace {

// Milliseconds that a download gets to come to its end once the window is gone, and a capture to
// notice that it was given up.
constexpr uint32_t kLastPatience = 5000;

}  // namespace

void CaptureDialog::StartCapture() {
  if (IsBusy()) return;
  const auto self = shared_from_this();
  const RaisedFlag settingUp(settingUp_);
  capturing_ = true;
  abort_requested = false;
  EnableButtons(false);
  status_.Clear();
  ShowPanel(CapturePanel::kStatus);
  ArrangePanels();
  CaptureStatus().SetTarget(window(), kMessageStatusLine);
  CaptureStatus().SetRename(true);
  CaptureStatus().ResetLines();
  if (!PrepareCapture()) GoIdle();
}

// Boxes and dialogs come up here, behind which the window may go.
bool CaptureDialog::PrepareCapture() {
  ShowInfo(GetPhrase("Initializing The Hardware"),
           GetPhrase("Connecting to the ZYR hardware and initializing the system for x-ray "
                     "exposure"));
  const bool initialized = sensors_.Initialize() != 0;
  if (!HasWindow()) return false;
  if (!initialized) return FailSetUp("ZYRIFace.Initialize()");
  if (!ChooseSensor()) return false;
  ShowSensor();
  return OpenHardware() && SpawnCaptureThread();
}

bool CaptureDialog::ChooseSensor() {
  const bool chosen = choice_.Select(false);
  if (!HasWindow()) return false;
  if (!chosen) {
    ShowInfo(GetPhrase("Step #1: Acquire New Image"),
             GetPhrase("To acquire an image from the ZYR hardware, click on the 'Acquire Images' "
                       "button."));
    return false;
  }
  view_->SetButtonTip(kCommandSelectSensor, choice_.Tip());
  sensor_ = choice_.Selected();
  return true;
}

bool CaptureDialog::OpenHardware() {
  ShowStatusDetail(GetPhrase("Loading the hardware preferences"));
  if (!SensorSettings().Load()) return FailSetUp("HardwarePropertyManager.LoadPreferences()");
  ShowStatusDetail(GetPhrase("Opening the selected hardware"));
  Log().WriteLine("ZYRIFace.CreateZYRDevice()");
  const auto& [name, sensorId, deviceId] = sensor_;
  if (sensors_.CreateLumoDevice(name, sensorId, deviceId) == 0) {
    return FailSetUp("ZYRIFace.CreateZYRDevice()");
  }
  ShowStatusDetail(GetPhrase("Setting the hardware preferences"));
  if (sensors_.SetCaptureConfigurationPreferences(name, sensorId, deviceId) == 0) {
    return FailSetUp("ZYRIFace.SetCaptureConfigurationPreferences()");
  }
  if (HasWindow()) return true;
  sensors_.CloseZYRHardware();
  return false;
}

bool CaptureDialog::SpawnCaptureThread() {
  ShowStatusDetail(GetPhrase("Spawning Capture Thread"));
  if (GetDisplayManuallyTrigger()) view_->SetButtonVisible(kCommandManualTrigger, true);
  return InvokeCaptureThread() || FailSetUp("ZYRIFace.InvokeCaptureThread()");
}

// The thread of the capture before is waited for, and the window may go meanwhile.
bool CaptureDialog::InvokeCaptureThread() {
  finishExpected_ = sensors_.CaptureImage(window()) != 0;
  if (!HasWindow()) GiveUpCapture();
  return finishExpected_;
}

bool CaptureDialog::FailSetUp(const char* operation) {
  const std::string reason = LastErrorText();
  ShowStatus(kStatusError, GetPhrase("Hardware Error"), reason);
  Log().WriteLine("%s::%s", operation, reason.c_str());
  return false;
}

void CaptureDialog::ShowSensor() {
  if (!choice_.IsAnySelected()) {
    return ShowStatus(kStatusError, GetPhrase("No Sensor Is Selected!"),
                      GetPhrase("There is currently no ZYR sensor selected.  Please be sure to "
                                "select the ZYR hardware that should be used when acquiring an "
                                "image."));
  }
  const auto [name, sensorId, deviceId] = choice_.Selected();
  ShowInfo(
      RenameForDisplay(FormatText(GetFormatPhrase("Using %s Sensor ( %s )").c_str(), name.c_str(),
                                  sensorId.c_str())),
      RenameForDisplay(FormatText(GetFormatPhrase("Hardware ID: %s").c_str(), deviceId.c_str())));
}

// Once the user has cancelled, nobody may fire any more.
void CaptureDialog::OnExposureReady() {
  if (!capturing_ || !finishExpected_) return;
  view_->SetExposureText(GetPhrase("Ready For X-ray Exposure"));
  ShowPanel(CapturePanel::kExposure);
  platform::PlaySoundResource(IDR_EXPOSURE_SOUND);
}

// A message that no capture has sent is not ours, and what comes with it is no image.
void CaptureDialog::OnCaptureFinished(bool failed, platform::GlobalHandle image) {
  if (!std::exchange(finishExpected_, false)) return;
  if (TellIfNoImage(failed, image)) {
    if (image != nullptr) platform::FreeBlock(image);
    return EndWithoutImage();
  }
  {
    const RaisedFlag takingImage(takingImage_);
    TakeImage(image);
  }
  if (!HasWindow()) return;
  if (abort_requested) {  // from behind a box
    EndWithoutImage();
  } else if (seriesMode_) {
    GoOnWithSeries();
  } else {
    FinishSingleCapture();
  }
}

bool CaptureDialog::TellIfNoImage(bool failed, platform::GlobalHandle image) {
  if (failed) {
    const bool errorStood = errorStands_;
    ShowStatus(kStatusError, GetPhrase("Image Acquisition Error"),
               GetPhrase("Image acquisition canceled"));
    if (abort_requested) errorStands_ = errorStood;  // the user knows
  } else if (image == nullptr) {
    ShowStatus(kStatusError, GetPhrase("Unable To Download Image From Hardware!"), LastErrorText());
  } else if (abort_requested) {
    ShowInfo(GetPhrase("Step #1: Acquire New Image"),
             GetPhrase("To acquire an image from the ZYR hardware, click on one of the 'Acquire "
                       "Image' buttons."));
  } else {
    return false;
  }
  return true;
}

void CaptureDialog::GoOnWithSeries() {
  ShowInfo(GetPhrase("Enabling Capture"),
           GetPhrase("Putting the hardware in a state to detect the x-ray exposure."));
  ShowSensor();
  ShowInfo(GetPhrase("Preparing Hardware"),
           GetPhrase("Preparing the hardware to capture another image."));
  RefreshThumbnails();
  CaptureStatus().ResetLines();
  if (InvokeCaptureThread() || !HasWindow()) return;
  ShowStatus(kStatusError, GetPhrase("Unable To Reenable Hardware"), LastErrorText());
  GoIdle();
}

void CaptureDialog::FinishSingleCapture() {
  GoIdle();
  if (images_.GetCount() != 0 && GetReturnImmediatelyAfterCap()) return ReturnImages();
  RefreshThumbnails();
}

void CaptureDialog::EndWithoutImage() {
  GoIdle();
  RefreshThumbnails();
}

// When the window went, the sensors were let go of; by now they may be another dialog's.
void CaptureDialog::GoIdle() {
  if (!HasWindow()) return;
  sensors_.CloseZYRHardware();
  capturing_ = abort_requested = false;
  view_->SetButtonVisible(kCommandManualTrigger, false);
  EnableButtons(true);
  LeaveSeriesMode();
  ArrangePanels();
}

// Nobody is left to see the rest of it; but an exposure that has been made is not made again.
void CaptureDialog::GiveUpCapture() {
  if (!IsBusy()) return;
  capturing_ = false;
  const bool isWanted = std::exchange(finishExpected_, false) && !abort_requested;
  platform::StopSound();
  CaptureStatus().SetTarget(nullptr, 0);
  const platform::GlobalHandle image = isWanted ? sensors_.TakeImageOver(kLastPatience) : nullptr;
  if (!sensors_.EndCapture(kLastPatience)) Log().WriteLine("The capture thread does not end.");
  if (image != nullptr) TakeImage(image);
}

void CaptureDialog::EnterSeriesMode() {
  if (std::exchange(seriesMode_, true)) return;
  ApplyThumbnailGrid();
  view_->SetStopIcon(true);
  view_->SetButtonCaption(kCommandCancel, GetPhrase("Stop Capture"));
}

void CaptureDialog::LeaveSeriesMode() {
  if (!std::exchange(seriesMode_, false)) return;
  ApplyThumbnailGrid();
  view_->SetStopIcon(false);
  view_->SetButtonCaption(kCommandCancel, GetPhrase("Cancel"));
}

}  // namespace zyr
