// CaptureDialog: the window of an acquisition, in which the user takes images and returns them to
// the application. This is what it does; what it shows is in its view.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "acquire/capture_dialog/capture_dialog_owner.h"
#include "acquire/capture_dialog/capture_dialog_view.h"
#include "acquire/image_cache/image_cache.h"

namespace zyr {

// Held by shared pointer: an event keeps the object alive until it is handled, even if the owner
// lets go of it meanwhile. User-interface thread only.
class CaptureDialog : public std::enable_shared_from_this<CaptureDialog> {
 public:
  // Private messages of the window.
  static constexpr uint32_t kMessageRefreshThumbnails = 1079;

  CaptureDialog(CaptureDialogOwner& owner, ImageCache& images, CaptureDialogViewFactory makeView);
  ~CaptureDialog();  // destroys the window

  // Makes and shows the window and decides how to go on. False if the window cannot be made. True
  // with a window already closed if required files are missing.
  bool Create(platform::Window parent);
  platform::Window window() const;

  // Events of the view.
  void OnCommand(uint32_t command);
  void OnReturnTimer();
  void OnRefreshThumbnails();

  // "Return Image(s)".
  void ReturnImages();
  // "Cancel", and the window's closing.
  void CancelOrClose();
  void RefreshButtons();

  void ShowStatus(StatusKind kind, const std::string& title, const std::string& text);
  void ShowStatusDetail(const std::string& text);
  void ShowInfo(const std::string& title, const std::string& text);

 private:
  // False if the acquisition cannot go on.
  bool CheckRequiredFiles();
  void DecideHowToStart();
  void DeleteImages(uint32_t command);
  bool HasWindow() const;

  CaptureDialogOwner& owner_;
  ImageCache& images_;
  std::unique_ptr<CaptureDialogView> view_;
  std::string lastStatusText_;
  bool closing_ = false;
};

}  // namespace zyr
