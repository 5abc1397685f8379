// What the capture dialog shows: the thin side that knows windows and controls.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "acquire/image_dialog/image_dialog_view.h"
#include "acquire/sensor_selection/sensor_selection_view.h"
#include "foundation/support/directory_selection_view.h"
#include "platform/messages.h"
#include "settings/pages/options_dialog_view.h"

namespace zyr {

class CaptureDialog;

// Numbers of the dialog's commands, as in its template.
enum CaptureCommand : uint32_t {
  kCommandReturnImages = 1,
  kCommandCancel = 2,
  kCommandOptions = 2000,
  kCommandDeleteSelected = 2006,
  kCommandThumbnails = 2007,
  kCommandAcquireImage = 2010,
  kCommandSelectSensor = 2011,
  kCommandAcquireSeries = 2012,
  kCommandManualTrigger = 2013,
  kCommandHelp = 2014,
  kCommandDeleteAll = 2020,
};

// Bitmap numbers of the status lines.
enum StatusKind : uint32_t {
  kStatusInformation = 1000,
  kStatusError = 1001,
  kStatusStep = 1002,
  kStatusFinal = 30017,
};

// What fills the large area of the window.
enum class CapturePanel { kStatus, kExposure, kThumbnails };

struct ThumbnailGridSize {
  uint32_t rows = 0;
  uint32_t columns = 0;
};

// Calls back into its dialog: On... for what the user does, OnMessage for every private message of
// the window, and OnWindowGone as the last thing of all. Texts come translated. User-interface
// thread only. Once the window is gone, operations do nothing.
class CaptureDialogView {
 public:
  virtual ~CaptureDialogView() = default;  // destroys the window first

  // Makes the modeless window, hidden. False if it cannot be made.
  virtual bool Create(CaptureDialog* dialog, platform::Window parent) = 0;
  // The window's handle; keeps its value after the window is gone.
  virtual platform::Window window() const = 0;
  virtual void Show() = 0;
  virtual void Close() = 0;

  virtual void SetButtonEnabled(uint32_t command, bool enabled) = 0;
  virtual void SetButtonVisible(uint32_t command, bool visible) = 0;
  virtual void SetButtonCaption(uint32_t command, const std::string& caption) = 0;
  virtual void SetButtonTip(uint32_t command, const std::string& tip) = 0;

  // Whether the picture of the Cancel button is one for stopping.
  virtual void SetStopIcon(bool stop) = 0;

  // At first one panel is seen at a time. In the split layout the thumbnails stay in view, and the
  // other two share what room they leave.
  virtual void SetSplitLayout(bool split) = 0;
  virtual void ShowPanel(CapturePanel panel) = 0;
  virtual void SetExposureText(const std::string& text) = 0;

  virtual void ClearStatus() = 0;
  // Adds a line at the end; its number, counted from 0.
  virtual int32_t AddStatus(StatusKind kind, const std::string& title, const std::string& text) = 0;
  // Ignored past the end.
  virtual void SetStatus(int32_t line, const std::string& title, const std::string& text) = 0;
  // Replaces the text of the last line.
  virtual void SetLastStatusText(const std::string& text) = 0;

  virtual void SetThumbnailGrid(ThumbnailGridSize size) = 0;
  // The images are others than before, or look different: asks the dialog for them again, for those
  // that are in view, and not all at once.
  virtual void RefreshThumbnails() = 0;

  // Modal dialogs above the window, or above one of them.
  virtual std::unique_ptr<SensorSelectionView> MakeSensorSelectionView() = 0;
  virtual std::unique_ptr<ImageDialogView> MakeImageDialogView() = 0;
  virtual std::unique_ptr<OptionsDialogView> MakeOptionsDialogView() = 0;
  virtual std::unique_ptr<DirectorySelectionView> MakeDirectorySelectionView() = 0;
  // The user's choice; null for Cancel.
  virtual std::optional<ThumbnailGridSize> AskForThumbnailGrid(ThumbnailGridSize present) = 0;

  // One shot: OnReturnTimer of the dialog after so many milliseconds.
  virtual void StartReturnTimer(uint32_t milliseconds) = 0;
  virtual void StopReturnTimer() = 0;
};

using CaptureDialogViewFactory = std::function<std::unique_ptr<CaptureDialogView>()>;

}  // namespace zyr
