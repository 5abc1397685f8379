// What the capture dialog shows: the thin side that knows windows and controls.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/messages.h"

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

// Calls back into its dialog's On... operations. User-interface thread only.
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
  virtual void ClearStatus() = 0;
  // Adds a line at the end and makes the status panel visible.
  virtual void AddStatus(StatusKind kind, const std::string& title, const std::string& text) = 0;
  // Replaces the text of the last line.
  virtual void SetLastStatusText(const std::string& text) = 0;

  // One shot: OnReturnTimer of the dialog after so many milliseconds.
  virtual void StartReturnTimer(uint32_t milliseconds) = 0;
  virtual void StopReturnTimer() = 0;
};

using CaptureDialogViewFactory = std::function<std::unique_ptr<CaptureDialogView>()>;

}  // namespace zyr
