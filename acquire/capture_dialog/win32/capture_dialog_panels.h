// The large area of the capture dialog: status lines, call for the exposure, thumbnails.
#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <string>

#include "acquire/capture_dialog/capture_dialog_view.h"
#include "controls/exposure_panel.h"
#include "controls/status_list.h"
#include "controls/thumbnail_grid.h"

namespace zyr {

// The window classes of the panels are there while an object lives. User-interface thread only.
class CaptureDialogPanels {
 public:
  // `images` must outlive this object.
  void Attach(HWND dialog, ThumbnailSource* images);

  void SetSplit(bool split);
  void Show(CapturePanel panel);
  // The panel that is seen, and that takes the keyboard if no button can: of two the one with the
  // lines or the call.
  HWND Seen() const;
  // Turns the wheel on the panel below the pointer, or else on the one that is seen.
  LRESULT OnWheel(WPARAM wParam, LPARAM lParam);

  void ClearStatus() { status_.Clear(); }
  int32_t AddStatus(StatusKind kind, const std::string& title, const std::string& text);
  void SetStatus(int32_t line, const std::string& title, const std::string& text) {
    status_.SetLine(line, title, text);
  }
  void SetLastStatusText(const std::string& text) { status_.SetLastText(text); }
  void SetExposureText(const std::string& text) { exposure_.SetText(text); }
  ThumbnailGrid& thumbnails() { return thumbnails_; }

 private:
  HWND Window(CapturePanel panel) const;
  bool IsShown(CapturePanel panel) const;
  void Apply();

  HWND dialog_ = nullptr;
  StatusList status_;
  ExposurePanel exposure_;
  ThumbnailGrid thumbnails_;
  bool split_ = false;
  CapturePanel panel_ = CapturePanel::kStatus;   // the last one asked for
  CapturePanel beside_ = CapturePanel::kStatus;  // what shares the room with the thumbnails
  bool turning_ = false;
};

}  // namespace zyr
