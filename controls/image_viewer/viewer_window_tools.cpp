// Tool bars, popups and the full screen.
#include "controls/image_viewer/viewer_window.h"

#include <utility>

#include "controls/dialog_font.h"
#include "controls/image_viewer/viewer_popups.h"
#include "platform/clipboard.h"

namespace zyr {
namespace {

constexpr int kPopupOffset = 40;  // pixels of a plain screen

uint32_t CommandOf(uint32_t tool) {
  switch (tool) {
    case kToolPan:
      return kViewerPan;
    case kToolMagnify:
    case kToolPanFromMagnify:
      return kViewerMagnify;
    case kToolSpotMagnify:
      return kViewerSpotMagnify;
    case kToolSpotEnhance:
      return kViewerSpotEnhance;
    case kToolSpotColorize:
      return kViewerImageOperations;
    case kToolBrightnessContrast:
      return kViewerBrightnessContrast;
    case kToolGamma:
      return kViewerGamma;
    default:
      return 0;
  }
}

}  // namespace

void ViewerWindow::CopyToClipboard(platform::GlobalHandle packedDib) {
  platform::PutDibOnClipboard(window_, packedDib);
}

void ViewerWindow::UpdateToolBars() {
  if (!Alive()) return;
  const uint32_t wanted = control_.toolBarsAllowed();
  const bool needed = wanted != 0 || IsFullScreen();
  if (wanted != toolBarsShown_ || needed != (toolBars_ != nullptr)) {
    toolBarsShown_ = wanted;
    toolBars_.reset();
    if (needed) toolBars_ = std::make_unique<ViewerToolBars>(window_, wanted, IsFullScreen());
    ArrangeToolBars();
  }
  if (toolBars_ != nullptr) toolBars_->SetCurrent(CommandOf(control_.tool()));
}

void ViewerWindow::ArrangeToolBars() {
  const int before = std::exchange(
      top_, toolBars_ != nullptr ? toolBars_->Arrange(static_cast<int>(Client().right)) : 0);
  if (top_ == before) return;
  ::InvalidateRect(window_, nullptr, FALSE);
  control_.OnSize();
}

// At the button that asked for it, if it did, or at the pointer.
POINT ViewerWindow::PopupPlace() const {
  POINT pointer = {};
  GetCursorPos(&pointer);
  const HWND under = WindowFromPoint(pointer);
  if (toolBars_ != nullptr && under != window_) {
    if (const auto below = toolBars_->Below(kViewerImageOperations)) return *below;
  }
  if (under == window_) return pointer;
  const ViewPoint origin = ClientOrigin();
  return {origin.x + Scaled(kPopupOffset), origin.y + Scaled(kPopupOffset)};
}

uint32_t ViewerWindow::TrackOperationsPopup() {
  if (!Alive() || popupStands_) return 0;
  popupStands_ = true;
  const uint32_t choice = ChooseOperation(
      window_, PopupPlace(), control_.tool() == kToolSpotColorize ? control_.spectrum() : 0);
  popupStands_ = false;
  return Alive() ? choice : 0;
}

void ViewerWindow::TrackSpotPopup() {
  if (!Alive() || popupStands_) return;
  const bool magnifies = control_.tool() == kToolSpotMagnify;
  POINT pointer = {};
  GetCursorPos(&pointer);
  popupStands_ = true;
  const auto chosen = ChooseSpot(
      window_, pointer, {control_.spotSize(), magnifies ? control_.spotMagnification() : 0});
  popupStands_ = false;
  if (!Alive() || !chosen) return;
  control_.SetSpot(chosen->size, magnifies ? chosen->magnification : control_.spotMagnification());
}

bool ViewerWindow::OpenFullScreen() {
  if (!Alive() || IsFullScreen() || control_.displayImage() == nullptr) return false;
  if (fullScreen_ == nullptr) {
    auto opened = std::make_unique<CKIPImageViewerControlFullScreenWnd>([self = weak_from_this()] {
      const auto held = self.lock();
      if (held != nullptr) held->CloseFullScreen();
    });
    if (!opened->Open(window_)) return false;
    GiveToFullScreen(opened->viewer());
    fullScreen_ = std::move(opened);
  }
  fullScreen_->Show();
  return true;
}

// The picture as it is displayed stays ours; the other one only looks at it.
void ViewerWindow::GiveToFullScreen(CKIPImageViewerControl& other) {
  handedOver_ = control_.displayImage();
  other.SetSpot(control_.spotSize(), control_.spotMagnification());
  other.SetToolBarsAllowed(control_.toolBarsAllowed());
  other.SetImage(const_cast<CKIPImage*>(handedOver_), true);
  other.ZoomToFit();
  if (control_.tool() == kToolSpotColorize) {
    other.OnOperation(control_.spectrum());
  } else {
    other.SetTool(control_.tool(), false);
  }
}

// What is shown may change meanwhile, as when its owner gives us another picture.
void ViewerWindow::FollowInFullScreen() {
  if (fullScreen_ == nullptr || control_.displayImage() == handedOver_) return;
  handedOver_ = control_.displayImage();
  if (handedOver_ == nullptr) return CloseFullScreen();
  fullScreen_->viewer().SetImage(const_cast<CKIPImage*>(handedOver_), false);
  fullScreen_->viewer().ZoomToFit();
}

// The keyboard goes back first, lest another program's window comes to the front.
void ViewerWindow::CloseFullScreen() {
  if (IsFullScreen()) return leave_();
  const auto gone = std::exchange(fullScreen_, nullptr);
  if (gone == nullptr) return;
  handedOver_ = nullptr;
  const CKIPImageViewerControl& other = gone->viewer();
  control_.SetSpot(other.spotSize(), other.spotMagnification());
  if (!Alive() || gone->window() == nullptr) return;
  SetForegroundWindow(GetAncestor(window_, GA_ROOT));
  SetFocus(window_);
}

void ViewerWindow::OnCommand(WORD command, HWND button) {
  if (toolBars_ == nullptr) return;
  if (toolBars_->PressedByMouse()) SetFocus(window_);
  if (toolBars_ == nullptr) return;
  if (command == ViewerToolBars::kExpander) {
    toolBars_->ToggleBar(button);
    ArrangeToolBars();
    return;
  }
  control_.OnCommand(command);
}

}  // namespace zyr
