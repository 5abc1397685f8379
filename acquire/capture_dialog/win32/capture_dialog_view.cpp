#include "acquire/capture_dialog/win32/capture_dialog_view.h"

#include <windows.h>

#include <optional>
#include <vector>

#include "acquire/capture_dialog/capture_dialog.h"
#include "acquire/capture_dialog/win32/capture_dialog_buttons.h"
#include "acquire/capture_dialog/win32/capture_dialog_layout.h"
#include "acquire/capture_dialog/win32/capture_dialog_panels.h"
#include "acquire/capture_dialog/win32/thumbnail_grid_dialog.h"
#include "acquire/image_dialog/win32/image_dialog_view.h"
#include "acquire/sensor_selection/win32/sensor_selection_view.h"
#include "controls/activation_context.h"
#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "controls/directory_selection_window.h"
#include "controls/options/options_window.h"
#include "platform/own_module.h"
#include "platform/resources.h"
#include "resources/resource.h"

namespace zyr {
namespace {

static_assert(ID_RETURN_IMAGES == kCommandReturnImages && ID_RETURN_IMAGES == IDOK);
static_assert(ID_CANCEL == kCommandCancel && ID_CANCEL == IDCANCEL);
static_assert(ID_OPTIONS == kCommandOptions && ID_THUMBNAILS == kCommandThumbnails);
static_assert(ID_DELETE_SELECTED == kCommandDeleteSelected && ID_DELETE_ALL == kCommandDeleteAll);
static_assert(ID_ACQUIRE_IMAGE == kCommandAcquireImage &&
              ID_ACQUIRE_SERIES == kCommandAcquireSeries);
static_assert(ID_SELECT_SENSOR == kCommandSelectSensor &&
              ID_MANUAL_TRIGGER == kCommandManualTrigger && ID_HELP == kCommandHelp);

constexpr UINT_PTR kReturnTimer = 1;

// What the grid asks, passed on to the dialog as long as it is there.
class ThumbnailsOfDialog : public ThumbnailSource {
 public:
  void SetDialog(std::weak_ptr<CaptureDialog> dialog) { dialog_ = std::move(dialog); }

  size_t Count() const override {
    const auto dialog = dialog_.lock();
    return dialog != nullptr ? dialog->ThumbnailCount() : 0;
  }
  bool IsSelected(size_t item) const override {
    const auto dialog = dialog_.lock();
    return dialog != nullptr && dialog->IsThumbnailSelected(item);
  }
  std::unique_ptr<CKIPImage> Picture(size_t item, uint32_t mostWidth,
                                     uint32_t mostHeight) override {
    const auto dialog = dialog_.lock();
    return dialog != nullptr ? dialog->Thumbnail(item, mostWidth, mostHeight) : nullptr;
  }

 private:
  std::weak_ptr<CaptureDialog> dialog_;
};

void OnThumbnail(CaptureDialog& dialog, WPARAM word, const ThumbnailEvent& event) {
  switch (word) {
    case kThumbnailSelectionChanged:
      return dialog.OnThumbnailSelected(event.item, event.selected);
    case kThumbnailOpenedByMouse:
    case kThumbnailOpenedByKey:
      return dialog.OnThumbnailOpened(event.item);
    default:
      return;
  }
}

class Win32CaptureDialogView : public CaptureDialogView {
 public:
  ~Win32CaptureDialogView() override;

  bool Create(CaptureDialog* dialog, platform::Window parent) override;
  platform::Window window() const override { return window_; }
  void Show() override;
  void Close() override;

  void SetButtonEnabled(uint32_t command, bool enabled) override;
  void SetButtonVisible(uint32_t command, bool visible) override;
  void SetButtonCaption(uint32_t command, const std::string& caption) override;
  void SetButtonTip(uint32_t command, const std::string& tip) override;

  void SetStopIcon(bool stop) override;
  void SetSplitLayout(bool split) override;
  void ShowPanel(CapturePanel panel) override;
  void SetExposureText(const std::string& text) override;

  void ClearStatus() override { panels_.ClearStatus(); }
  int32_t AddStatus(StatusKind kind, const std::string& title, const std::string& text) override {
    return panels_.AddStatus(kind, title, text);
  }
  void SetStatus(int32_t line, const std::string& title, const std::string& text) override {
    panels_.SetStatus(line, title, text);
  }
  void SetLastStatusText(const std::string& text) override { panels_.SetLastStatusText(text); }

  void SetThumbnailGrid(ThumbnailGridSize size) override;
  void RefreshThumbnails() override;

  std::unique_ptr<SensorSelectionView> MakeSensorSelectionView() override {
    return MakeWin32SensorSelectionView();
  }
  std::unique_ptr<ImageDialogView> MakeImageDialogView() override {
    return MakeWin32ImageDialogView();
  }
  std::unique_ptr<OptionsDialogView> MakeOptionsDialogView() override {
    return MakeWin32OptionsDialogView();
  }
  std::unique_ptr<DirectorySelectionView> MakeDirectorySelectionView() override {
    return MakeWin32DirectorySelectionView();
  }
  std::optional<ThumbnailGridSize> AskForThumbnailGrid(ThumbnailGridSize present) override;

  void StartReturnTimer(uint32_t milliseconds) override;
  void StopReturnTimer() override;

 private:
  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  INT_PTR Handle(CaptureDialog* dialog, UINT message, WPARAM wParam, LPARAM lParam);
  INT_PTR HandleForDialog(CaptureDialog& dialog, UINT message, WPARAM wParam, LPARAM lParam);

  void Initialise(HWND window);
  void OnDestroy(CaptureDialog* dialog);
  void OnCommand(CaptureDialog& dialog, WPARAM wParam);
  void ApplyLayout() const;

  std::weak_ptr<CaptureDialog> dialog_;
  ThumbnailsOfDialog thumbnailSource_;
  CaptureDialogPanels panels_;
  CaptureDialogButtons buttons_;
  std::optional<CaptureDialogLayout> layout_;
  HWND window_ = nullptr;  // keeps its value when the window is gone
  bool split_ = false;
  bool alive_ = false;
  bool complete_ = false;  // with all its controls
};

// A window of another thread, as when the module is unloaded there, cannot be destroyed; it must
// not find its way back here.
Win32CaptureDialogView::~Win32CaptureDialogView() {
  Close();
  if (alive_) SetWindowLongPtrA(window_, DWLP_USER, 0);
}

bool Win32CaptureDialogView::Create(CaptureDialog* dialog, platform::Window parent) {
  dialog_ = dialog->weak_from_this();
  thumbnailSource_.SetDialog(dialog_);
  const ActivationContext look;
  const HWND owner = UsableOwner(parent);
  const std::vector<uint8_t> bytes = TemplateWithMessageFont(IDD_CAPTURE_DIALOG);
  if (bytes.empty()) return false;
  CreateDialogIndirectParamA(static_cast<HINSTANCE>(platform::OwnResources()),
                             reinterpret_cast<const DLGTEMPLATE*>(bytes.data()), owner, Procedure,
                             reinterpret_cast<LPARAM>(this));
  if (!complete_) Close();
  if (alive_) CenterOnScreen(window_, owner);
  return alive_;
}

void Win32CaptureDialogView::Show() {
  if (!alive_) return;
  ShowWindow(window_, SW_SHOW);
  MoveFocusTo(GetDlgItem(window_, ID_ACQUIRE_IMAGE));
}

void Win32CaptureDialogView::Close() {
  if (alive_) DestroyWindow(window_);
}

void Win32CaptureDialogView::SetButtonEnabled(uint32_t command, bool enabled) {
  if (alive_) buttons_.SetEnabled(command, enabled, panels_.Seen());
}

void Win32CaptureDialogView::SetButtonVisible(uint32_t command, bool visible) {
  if (alive_) buttons_.SetVisible(command, visible, panels_.Seen());
}

void Win32CaptureDialogView::SetButtonCaption(uint32_t command, const std::string& caption) {
  if (!alive_) return;
  buttons_.SetCaption(command, caption);
  layout_->Measure();
  ApplyLayout();
}

void Win32CaptureDialogView::SetButtonTip(uint32_t command, const std::string& tip) {
  if (alive_) buttons_.SetTip(command, tip);
}

void Win32CaptureDialogView::SetStopIcon(bool stop) {
  if (alive_) buttons_.SetStopIcon(stop);
}

void Win32CaptureDialogView::SetSplitLayout(bool split) {
  if (!alive_ || split == split_) return;
  split_ = split;
  ApplyLayout();
  const HWND focused = GetFocus();
  panels_.SetSplit(split);
  buttons_.FollowFocus(focused);
}

void Win32CaptureDialogView::ShowPanel(CapturePanel panel) {
  if (!alive_) return;
  const HWND focused = GetFocus();
  panels_.Show(panel);
  buttons_.FollowFocus(focused);
}

void Win32CaptureDialogView::SetExposureText(const std::string& text) {
  if (alive_) panels_.SetExposureText(text);
}

void Win32CaptureDialogView::SetThumbnailGrid(ThumbnailGridSize size) {
  if (alive_) panels_.thumbnails().SetGrid(size.rows, size.columns);
}

void Win32CaptureDialogView::RefreshThumbnails() {
  if (alive_) panels_.thumbnails().Refresh();
}

std::optional<ThumbnailGridSize> Win32CaptureDialogView::AskForThumbnailGrid(
    ThumbnailGridSize present) {
  if (!alive_) return std::nullopt;
  return AskForThumbnailGridAbove(window_, present);
}

void Win32CaptureDialogView::StartReturnTimer(uint32_t milliseconds) {
  if (alive_) SetTimer(window_, kReturnTimer, milliseconds, nullptr);
}

void Win32CaptureDialogView::StopReturnTimer() {
  if (alive_) KillTimer(window_, kReturnTimer);
}

// The dialog is held until its event is handled: the application may let go of it meanwhile, and
// with it of this view.
INT_PTR CALLBACK Win32CaptureDialogView::Procedure(HWND window, UINT message, WPARAM wParam,
                                                   LPARAM lParam) {
  const platform::WindowVisit visit;
  if (message == WM_INITDIALOG) SetWindowLongPtrA(window, DWLP_USER, lParam);
  auto* view = reinterpret_cast<Win32CaptureDialogView*>(GetWindowLongPtrA(window, DWLP_USER));
  if (view == nullptr) return FALSE;
  const std::shared_ptr<CaptureDialog> dialog = view->dialog_.lock();
  try {
    if (message == WM_INITDIALOG) view->Initialise(window);
    return view->Handle(dialog.get(), message, wParam, lParam);
  } catch (...) {  // the application's message loop knows no exceptions
    return FALSE;
  }
}

void Win32CaptureDialogView::Initialise(HWND window) {
  window_ = window;
  alive_ = true;
  TranslateCaptions(window);
  panels_.Attach(window, &thumbnailSource_);
  buttons_.Attach(window);
  layout_.emplace(window);
  ApplyLayout();
  complete_ = true;
}

void Win32CaptureDialogView::ApplyLayout() const { layout_->Apply(split_); }

INT_PTR Win32CaptureDialogView::Handle(CaptureDialog* dialog, UINT message, WPARAM wParam,
                                       LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      return FALSE;  // the keyboard comes with Show
    case WM_SIZE:
      if (layout_ && wParam != SIZE_MINIMIZED) ApplyLayout();
      return TRUE;
    case WM_GETMINMAXINFO:
      if (layout_) reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = layout_->LeastSize();
      return TRUE;
    // Both go on to the dialog manager, which frees its own part there.
    case WM_DESTROY:
      OnDestroy(dialog);
      return FALSE;
    case WM_NCDESTROY:
      SetWindowLongPtrA(window_, DWLP_USER, 0);
      return FALSE;
    case WM_MOUSEWHEEL:
      panels_.OnWheel(wParam, lParam);
      return TRUE;
    default:
      return dialog != nullptr ? HandleForDialog(*dialog, message, wParam, lParam) : FALSE;
  }
}

// The window, and this view with it, may be gone after any of the dialog's events.
INT_PTR Win32CaptureDialogView::HandleForDialog(CaptureDialog& dialog, UINT message, WPARAM wParam,
                                                LPARAM lParam) {
  const HWND window = window_;
  switch (message) {
    case WM_COMMAND:
      OnCommand(dialog, wParam);
      return TRUE;
    case WM_CLOSE:
      dialog.CancelOrClose();
      return TRUE;
    case WM_TIMER:
      if (wParam == kReturnTimer) dialog.OnReturnTimer();
      return TRUE;
    // The dialog manager has messages of these two numbers, too; without a pointer they are its
    // own.
    case kMessageThumbnail:
      if (lParam == 0) return FALSE;
      OnThumbnail(dialog, wParam, *reinterpret_cast<const ThumbnailEvent*>(lParam));
      return TRUE;
    case kMessageStatusLine:
      if (lParam == 0) return FALSE;
      [[fallthrough]];
    case kMessageCaptureFinished:
    case kMessageExposureReady:
    case kMessageRefreshThumbnails: {
      const intptr_t result = dialog.OnMessage(message, wParam, lParam);
      SetWindowLongPtrA(window, DWLP_MSGRESULT, result);
      return TRUE;
    }
    default:
      return FALSE;
  }
}

// The window's queue is still there, with what the dialog has not been told so far.
void Win32CaptureDialogView::OnDestroy(CaptureDialog* dialog) {
  alive_ = false;
  if (dialog != nullptr) dialog->OnWindowGone();
}

// Enter and Escape send their commands whether or not their buttons are enabled.
void Win32CaptureDialogView::OnCommand(CaptureDialog& dialog, WPARAM wParam) {
  const uint32_t command = LOWORD(wParam);
  if (HIWORD(wParam) == BN_CLICKED && buttons_.IsUsable(command)) dialog.OnCommand(command);
}

}  // namespace

CaptureDialogViewFactory Win32CaptureDialogViews() {
  return [] { return std::make_unique<Win32CaptureDialogView>(); };
}

}  // namespace zyr
