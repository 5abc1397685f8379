// CaptureDialog: the window of an acquisition, in which the user takes images and returns them to
// the application. This is what it does; what it shows is in its view.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "acquire/capture_dialog/capture_dialog_owner.h"
#include "acquire/capture_dialog/capture_dialog_view.h"
#include "acquire/capture_dialog/sensor_choice.h"
#include "acquire/capture_dialog/status_lines.h"
#include "acquire/iface/iface.h"
#include "acquire/image_cache/image_cache.h"
#include "platform/global_memory.h"

namespace zyr {

// Private messages of the window, beside those of the sensor interface.
inline constexpr uint32_t kMessageStatusLine = 1026;  // sent: kind of a line, StatusRecord
inline constexpr uint32_t kMessageRefreshThumbnails = 1079;

// Held by shared pointer: an event keeps the object alive until it is handled, even if the owner
// lets go of it meanwhile. User-interface thread only.
class CaptureDialog : public std::enable_shared_from_this<CaptureDialog> {
 public:
  // All of them must outlive the dialog.
  CaptureDialog(CaptureDialogOwner& owner, ImageCache& images, IFace& sensors,
                CaptureDialogViewFactory makeView);
  ~CaptureDialog();  // destroys the window

  // Makes and shows the window and decides how to go on. False if the window cannot be made. True
  // with a window already closed if required files are missing.
  bool Create(platform::Window parent);
  platform::Window window() const;

  // Events of the view.
  void OnCommand(uint32_t command);
  void OnReturnTimer();
  // Any private message of the window; the answer is its result.
  intptr_t OnMessage(uint32_t message, uintptr_t wParam, intptr_t lParam);
  void OnThumbnailSelected(size_t index, bool selected);
  void OnThumbnailOpened(size_t index);
  // Whatever destroyed the window: a capture under way is ended, and what it has taken is kept.
  void OnWindowGone();

  // What the view asks for.
  size_t ThumbnailCount() const { return images_.GetCount(); }
  bool IsThumbnailSelected(size_t index) const;
  // The image made small to fit so many pixels, upright; null if it cannot be shown.
  std::unique_ptr<CKIPImage> Thumbnail(size_t index, uint32_t mostWidth, uint32_t mostHeight);

  // "Return Image(s)".
  void ReturnImages();
  // "Cancel" or "Stop Capture", and the window's closing.
  void CancelOrClose();
  void RefreshButtons();

  void ShowStatus(StatusKind kind, const std::string& title, const std::string& text);
  void ShowStatusDetail(const std::string& text);
  void ShowInfo(const std::string& title, const std::string& text);

 private:
  // False if the acquisition cannot go on.
  bool CheckRequiredFiles();
  void SetTips();
  void ShowFirstSteps();
  void DecideHowToStart();
  void OpenHelp();
  void ChooseThumbnailGrid();
  void SelectSensorByHand();
  void OpenOptions();
  // After a change of what is told about it.
  void ShowSensorAnew();
  void OnModalCommand(uint32_t command);
  bool HasWindow() const;
  // From the press of a button until its last capture is dealt with, be it given up or not.
  bool IsBusy() const { return capturing_ || finishExpected_ || takingImage_; }
  void EnableButtons(bool enable);
  intptr_t OnStatusLine(uintptr_t kind, const StatusRecord& record);
  int32_t AddStatus(StatusKind kind, const std::string& title, const std::string& text);
  void ShowPanel(CapturePanel panel);
  void ArrangePanels();
  bool AreThumbnailsInView() const { return split_ || panel_ == CapturePanel::kThumbnails; }

  // The course of a capture.
  void StartCapture();
  bool PrepareCapture();
  bool ChooseSensor();
  bool OpenHardware();
  bool SpawnCaptureThread();
  bool InvokeCaptureThread();
  bool FailSetUp(const char* operation);
  void OnExposureReady();
  void OnCaptureFinished(bool failed, platform::GlobalHandle image);
  // True if the capture brings none that is wanted.
  bool TellIfNoImage(bool failed, platform::GlobalHandle image);
  void GoOnWithSeries();
  void FinishSingleCapture();
  void GoIdle();
  void EndWithoutImage();
  void GiveUpCapture();
  // The panels follow with ArrangePanels.
  void EnterSeriesMode();
  void LeaveSeriesMode();
  void ShowSensor();

  // What becomes of its image.
  void TakeImage(platform::GlobalHandle handle);  // takes it over
  void TellOfLostImage();
  void EnhanceImage(CachedImage& image);
  void SaveImage(CachedImage& image);
  void TellOfUnsavedImage();

  void RefreshThumbnails();
  void ShowThumbnailPanel();
  void ApplyThumbnailGrid();
  void DeleteImages(uint32_t command);

  CaptureDialogOwner& owner_;
  ImageCache& images_;
  IFace& sensors_;
  std::unique_ptr<CaptureDialogView> view_;
  StatusLines status_;
  SensorChoice choice_;
  DeviceEntry sensor_;  // of the present capture
  bool capturing_ = false;
  bool settingUp_ = false;
  bool seriesMode_ = false;
  bool finishExpected_ = false;  // a capture runs, and its last message has not been handled
  bool takingImage_ = false;
  bool modalStands_ = false;  // a dialog above the window, which keeps its buttons from the user
  bool errorStands_ = false;  // in the status lines, and the user has done nothing since
  bool split_ = false;
  CapturePanel panel_ = CapturePanel::kStatus;
  bool closing_ = false;
  bool windowGone_ = false;
};

}  // namespace zyr
