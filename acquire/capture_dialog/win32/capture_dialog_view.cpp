#include "acquire/capture_dialog/win32/capture_dialog_view.h"

#include <windows.h>
// After the system's header.
#include <commctrl.h>

#include <algorithm>
#include <optional>

#include "acquire/capture_dialog/capture_dialog.h"
#include "acquire/capture_dialog/win32/capture_dialog_layout.h"
#include "controls/activation_context.h"
#include "controls/dialog_font.h"
#include "controls/status_list.h"
#include "foundation/support/phrase_lookup.h"
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
static_assert(CaptureDialog::kMessageRefreshThumbnails == WM_USER + 55);

constexpr UINT_PTR kReturnTimer = 1;
constexpr int kTipWidth = 320;  // pixels of a plain screen

struct Tip {
  uint32_t command;
  const char* text;
};
constexpr Tip kTips[] = {
    {kCommandAcquireImage,
     "Click on this option to acquire a single image from a ZYR digital x-ray system."},
    {kCommandAcquireSeries,
     "Click on this option to acquire a series of images from a ZYR digital x-ray system."},
    {kCommandDeleteSelected, "Click on this option to delete the selected images."},
    {kCommandDeleteAll, "Click on this option to delete all of the currently acquired images."},
    {kCommandOptions, "This option permits you to change the preferences and settings."},
    {kCommandThumbnails,
     "Sets the number of rows and columns of thumbnails that should be displayed simultaneously."},
    {kCommandHelp, "Displays the on-line help for the ZYR TWAIN source."},
    {kCommandManualTrigger,
     "Manually triggers the hardware.  This option is primarily used during testing of the "
     "hardware "
     "and the hardware interface."},
};

StatusIcon IconOf(StatusKind kind) {
  switch (kind) {
    case kStatusError:
      return StatusIcon::kError;
    case kStatusStep:
      return StatusIcon::kStep;
    case kStatusFinal:
      return StatusIcon::kFinal;
    case kStatusInformation:
      break;
  }
  return StatusIcon::kInformation;
}

// Applications pass null, the desktop and handles that are long gone.
HWND UsableOwner(platform::Window parent) {
  const auto window = static_cast<HWND>(parent);
  if (!IsWindow(window) || window == GetDesktopWindow()) return nullptr;
  return GetAncestor(window, GA_ROOT);
}

std::string CaptionOf(HWND window) {
  std::string caption(static_cast<size_t>(GetWindowTextLengthA(window)) + 1, '\0');
  caption.resize(static_cast<size_t>(
      GetWindowTextA(window, caption.data(), static_cast<int>(caption.size()))));
  return caption;
}

void TranslateCaption(HWND window) {
  const std::string caption = CaptionOf(window);
  const std::string translated = GetPhrase(caption.c_str());
  if (translated != caption) SetWindowTextA(window, translated.c_str());
}

// The part of the owner's screen that belongs to windows.
RECT WorkAreaOf(HWND window) {
  MONITORINFO monitor = {};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoA(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
  return monitor.rcWork;
}

// In the middle of the owner's screen, and no larger than that.
void Center(HWND window, HWND owner) {
  const RECT area = WorkAreaOf(owner != nullptr ? owner : window);
  RECT outer;
  GetWindowRect(window, &outer);
  const int width = std::min(outer.right - outer.left, area.right - area.left);
  const int height = std::min(outer.bottom - outer.top, area.bottom - area.top);
  SetWindowPos(window, nullptr, (area.left + area.right - width) / 2,
               (area.top + area.bottom - height) / 2, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

class Win32CaptureDialogView : public CaptureDialogView {
 public:
  ~Win32CaptureDialogView() override;

  bool Create(CaptureDialog* dialog, platform::Window parent) override;
  platform::Window window() const override { return window_; }
  void Show() override;
  void Close() override;

  void SetButtonEnabled(uint32_t command, bool enabled) override;
  void ClearStatus() override { status_.Clear(); }
  void AddStatus(StatusKind kind, const std::string& title, const std::string& text) override {
    status_.Add(IconOf(kind), title, text);
  }
  void SetLastStatusText(const std::string& text) override { status_.SetLastText(text); }

  void StartReturnTimer(uint32_t milliseconds) override;
  void StopReturnTimer() override;

 private:
  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  INT_PTR Handle(CaptureDialog* dialog, UINT message, WPARAM wParam, LPARAM lParam);

  void Initialise(HWND window);
  void AddTips();
  void OnCommand(CaptureDialog& dialog, WPARAM wParam);
  HWND Control(uint32_t id) const { return GetDlgItem(window_, static_cast<int>(id)); }

  std::weak_ptr<CaptureDialog> dialog_;
  StatusList status_;
  std::optional<CaptureDialogLayout> layout_;
  SIZE templateSize_ = {};  // dialog units
  HWND window_ = nullptr;   // keeps its value when the window is gone
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
  const ActivationContext look;
  const HWND owner = UsableOwner(parent);
  const std::vector<uint8_t> bytes = TemplateWithMessageFont(IDD_CAPTURE_DIALOG);
  if (bytes.empty()) return false;
  templateSize_ = TemplateSize(bytes);
  CreateDialogIndirectParamA(static_cast<HINSTANCE>(platform::OwnResources()),
                             reinterpret_cast<const DLGTEMPLATE*>(bytes.data()), owner, Procedure,
                             reinterpret_cast<LPARAM>(this));
  if (!complete_) Close();
  if (alive_) Center(window_, owner);
  return alive_;
}

void Win32CaptureDialogView::Show() {
  if (alive_) ShowWindow(window_, SW_SHOW);
}

void Win32CaptureDialogView::Close() {
  if (alive_) DestroyWindow(window_);
}

// A disabled button that has the keyboard would keep it for ever.
void Win32CaptureDialogView::SetButtonEnabled(uint32_t command, bool enabled) {
  if (!alive_) return;
  const HWND button = Control(command);
  if (!enabled && GetFocus() == button) SetFocus(Control(IDC_STATUS_PANEL));
  EnableWindow(button, enabled);
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
  status_.Attach(Control(IDC_STATUS_PANEL));
  layout_.emplace(window, templateSize_);
  layout_->Apply();
  TranslateCaption(window);
  for (HWND control = GetWindow(window, GW_CHILD); control != nullptr;
       control = GetWindow(control, GW_HWNDNEXT)) {
    TranslateCaption(control);
  }
  AddTips();
  complete_ = true;
}

void Win32CaptureDialogView::AddTips() {
  const HWND tips = CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr,
                                    WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT,
                                    CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, window_, nullptr,
                                    static_cast<HINSTANCE>(platform::OwnResources()), nullptr);
  SendMessageA(tips, TTM_SETMAXTIPWIDTH, 0, Scaled(kTipWidth));
  for (const Tip& tip : kTips) {
    std::string text = GetPhrase(tip.text);
    TTTOOLINFOA tool = {};
    tool.cbSize = sizeof tool;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = window_;
    tool.uId = reinterpret_cast<UINT_PTR>(Control(tip.command));
    tool.lpszText = text.data();
    SendMessageA(tips, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
  }
}

INT_PTR Win32CaptureDialogView::Handle(CaptureDialog* dialog, UINT message, WPARAM wParam,
                                       LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      SetFocus(Control(IDC_STATUS_PANEL));
      return FALSE;
    case WM_SIZE:
      if (layout_ && wParam != SIZE_MINIMIZED) layout_->Apply();
      return TRUE;
    case WM_GETMINMAXINFO:
      if (layout_) reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = layout_->LeastSize();
      return TRUE;
    // Both go on to the dialog manager, which frees its own part there.
    case WM_DESTROY:
      alive_ = false;
      return FALSE;
    case WM_NCDESTROY:
      SetWindowLongPtrA(window_, DWLP_USER, 0);
      return FALSE;
    default:
      break;
  }
  if (dialog == nullptr) return FALSE;
  switch (message) {
    case WM_COMMAND:
      OnCommand(*dialog, wParam);
      return TRUE;
    case WM_CLOSE:
      dialog->CancelOrClose();
      return TRUE;
    case WM_TIMER:
      dialog->OnReturnTimer();
      return TRUE;
    case CaptureDialog::kMessageRefreshThumbnails:
      dialog->OnRefreshThumbnails();
      return TRUE;
    default:
      return FALSE;
  }
}

// Enter and Escape send their commands whether or not their buttons are enabled.
void Win32CaptureDialogView::OnCommand(CaptureDialog& dialog, WPARAM wParam) {
  if (HIWORD(wParam) != BN_CLICKED || !IsWindowEnabled(Control(LOWORD(wParam)))) return;
  dialog.OnCommand(LOWORD(wParam));
}

}  // namespace

CaptureDialogViewFactory Win32CaptureDialogViews() {
  return [] { return std::make_unique<Win32CaptureDialogView>(); };
}

}  // namespace zyr
