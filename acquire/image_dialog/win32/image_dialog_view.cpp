#include "acquire/image_dialog/win32/image_dialog_view.h"

#include <windows.h>
// After the system's header.
#include <commctrl.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>

#include "acquire/image_dialog/image_dialog.h"
#include "acquire/image_dialog/win32/dialog_shortcuts.h"
#include "acquire/image_dialog/win32/gamma_dialog_view.h"
#include "acquire/image_dialog/win32/image_dialog_buttons.h"
#include "acquire/image_dialog/win32/image_dialog_layout.h"
#include "acquire/image_dialog/win32/operation_list.h"
#include "acquire/image_dialog/win32/operation_popup.h"
#include "acquire/image_dialog/win32/operation_states.h"
#include "controls/dialog_window.h"
#include "controls/image_viewer/image_viewer_window.h"
#include "controls/modal_dialog.h"
#include "platform/clipboard.h"
#include "resources/resource.h"

namespace zyr {
namespace {

constexpr ACCEL kShortcuts[] = {{FVIRTKEY | FCONTROL, 'Z', kImageUndo},
                                {FVIRTKEY | FCONTROL, 'Y', kImageRedo},
                                {FVIRTKEY | FCONTROL, 'C', kImageCopy}};
constexpr int kPercentOfScreen = 85;
constexpr WORD kMenuIsGone = 0xFFFF;

// What the user may do with the picture in the viewer, to see more and not to change it.
constexpr uint32_t kToolBars = kToolBarZoomIn | kToolBarZoomOut | kToolBarZoomToFit |
                               kToolBarFullScreen | kToolBarBrightnessContrast | kToolBarGamma |
                               kToolBarSpotMagnify | kToolBarSpotEnhance | kToolBarImageOperations |
                               kToolBarPan | kToolBarFreeZoom;

class Win32ImageDialogView : public ImageDialogView, private ModalDialog {
 public:
  bool Run(ImageDialog* dialog, platform::Window owner) override;
  platform::Window window() const override { return hwnd(); }
  void End(bool accepted) override;

  CKIPImageViewerControl& viewer() override { return viewer_.viewer(); }
  void SetItemEnabled(uint32_t command, bool enabled) override;
  void SetItemDescription(uint32_t command, const std::string& description) override;
  void SetStatus(const std::string& text) override;
  bool CopyToClipboard(platform::GlobalHandle packedDib) override {
    return platform::PutDibOnClipboard(window(), packedDib);
  }
  std::unique_ptr<GammaDialogView> MakeGammaDialogView() override {
    return MakeWin32GammaDialogView();
  }

 private:
  void Initialise() override;
  INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam) override;
  void OnGone() override;

  void Place();
  void OnCommand(WORD command);
  void ChooseFrom(const OperationGroup& group, HWND button);
  void Carry(uint32_t command);
  INT_PTR OnNotify(NMHDR& notification);
  void OnListNotify(const NMHDR& notification);
  void OnMenuSelect(WORD command, WORD flags);
  void SetListOpen(bool open);
  void ShowHint(const std::string& text);

  ImageDialog* dialog_ = nullptr;
  HWND owner_ = nullptr;
  OperationStates states_;
  OperationPopup popup_{states_};
  OperationList list_{states_};
  ImageDialogButtons buttons_;
  ImageViewerWindow viewer_;
  DialogShortcuts shortcuts_;
  std::optional<ImageDialogLayout> layout_;
  std::string status_;
  bool listOpen_ = false;
};

bool Win32ImageDialogView::Run(ImageDialog* dialog, platform::Window owner) {
  const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_TREEVIEW_CLASSES};
  InitCommonControlsEx(&classes);
  dialog_ = dialog;
  owner_ = UsableOwner(owner);
  return RunModal(IDD_IMAGE_DIALOG, owner);
}

// The loop of a popup would go on.
void Win32ImageDialogView::End(bool accepted) {
  popup_.Close();
  EndModal(accepted);
}

void Win32ImageDialogView::SetItemEnabled(uint32_t command, bool enabled) {
  states_.SetEnabled(command, enabled);
  popup_.Refresh(command);
  if (hwnd() != nullptr) list_.Refresh();
}

void Win32ImageDialogView::SetItemDescription(uint32_t command, const std::string& description) {
  states_.SetDescription(command, description);
}

void Win32ImageDialogView::SetStatus(const std::string& text) {
  status_ = text;
  ShowHint(text);
}

// In the place of the status, for a while.
void Win32ImageDialogView::ShowHint(const std::string& text) {
  if (hwnd() != nullptr) SetWindowTextA(Control(IDC_IMAGE_STATUS), text.c_str());
}

void Win32ImageDialogView::Initialise() {
  viewer_.Attach(Control(IDC_IMAGE_VIEWER));
  viewer().SetToolBarsAllowed(kToolBars);
  list_.Attach(Control(IDC_IMAGE_LIST));
  buttons_.Attach(hwnd());
  layout_.emplace(hwnd(), list_.FullWidth());
  Place();
  SetListOpen(layout_->HasRoomForList());
  shortcuts_.Attach(hwnd(), kShortcuts);
  dialog_->OnInitDialog();
  SetFocus(Control(IDC_IMAGE_VIEWER));
}

void Win32ImageDialogView::Place() {
  const RECT screen = WorkAreaOf(owner_ != nullptr ? owner_ : hwnd());
  const POINT least = layout_->LeastSize();
  const LONG width = (screen.right - screen.left) * kPercentOfScreen / 100;
  const LONG height = (screen.bottom - screen.top) * kPercentOfScreen / 100;
  ResizeWindow(hwnd(), std::max(width, least.x), std::max(height, least.y));
  CenterOnScreen(hwnd(), owner_);
}

// The list would otherwise keep the keyboard where nobody sees it.
void Win32ImageDialogView::SetListOpen(bool open) {
  const HWND list = Control(IDC_IMAGE_LIST);
  listOpen_ = open;
  if (!open && GetFocus() == list) MoveFocusTo(Control(IDC_IMAGE_VIEWER));
  layout_->Apply(open);
  ShowWindow(list, open ? SW_SHOWNA : SW_HIDE);
  buttons_.SetListOpen(open);
}

void Win32ImageDialogView::OnGone() {
  popup_.Close();
  shortcuts_.Detach();
  layout_.reset();
}

INT_PTR Win32ImageDialogView::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND:
      OnCommand(LOWORD(wParam));
      return TRUE;
    case WM_NOTIFY:
      return OnNotify(*reinterpret_cast<NMHDR*>(lParam));
    case WM_MENUSELECT:
      OnMenuSelect(LOWORD(wParam), HIWORD(wParam));
      return TRUE;
    case WM_DRAWITEM:
      if (wParam != IDC_IMAGE_LIST_HANDLE) return FALSE;
      buttons_.DrawHandle(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
      return TRUE;
    case WM_SIZE:
      if (layout_ && wParam != SIZE_MINIMIZED) layout_->Apply(listOpen_);
      return TRUE;
    case WM_GETMINMAXINFO:
      if (layout_) reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = layout_->LeastSize();
      return TRUE;
    // From controls that have no use for it.
    case WM_MOUSEWHEEL:
      SendMessageA(Control(IDC_IMAGE_VIEWER), message, wParam, lParam);
      return TRUE;
    default:
      return FALSE;
  }
}

void Win32ImageDialogView::OnCommand(WORD command) {
  switch (command) {
    case IDOK:
      return dialog_->OnOK();
    case IDCANCEL:
      return dialog_->OnCancel();
    case IDC_IMAGE_LIST_HANDLE:
      return SetListOpen(!listOpen_);
    default:
      break;
  }
  if (const OperationGroup* const group = ImageDialogButtons::GroupOf(command)) {
    return ChooseFrom(*group, Control(command));
  }
  Carry(command);
}

// The keyboard goes on to the picture: Enter is to close the dialog then, and not to open the popup
// again.
void Win32ImageDialogView::ChooseFrom(const OperationGroup& group, HWND button) {
  const uint32_t command = popup_.Choose(hwnd(), button, group);
  if (hwnd() == nullptr || command == 0) return;
  if (GetFocus() == button) MoveFocusTo(Control(IDC_IMAGE_VIEWER));
  Carry(command);
}

// Keys and the list offer what is disabled, too.
void Win32ImageDialogView::Carry(uint32_t command) {
  if (states_.IsEnabled(command)) dialog_->OnCommand(command);
}

INT_PTR Win32ImageDialogView::OnNotify(NMHDR& notification) {
  const bool isList = notification.idFrom == IDC_IMAGE_LIST;
  if (isList) OnListNotify(notification);
  const std::optional<LRESULT> result =
      isList ? list_.OnNotify(notification) : buttons_.OnNotify(notification);
  if (!result || hwnd() == nullptr) return FALSE;
  SetWindowLongPtrA(hwnd(), DWLP_MSGRESULT, *result);
  return TRUE;
}

// Who comes along the list by keyboard sees no tool tips.
void Win32ImageDialogView::OnListNotify(const NMHDR& notification) {
  if (notification.code == NM_KILLFOCUS) return ShowHint(status_);
  const bool moved = notification.code == TVN_SELCHANGEDA && GetFocus() == notification.hwndFrom;
  if (moved || notification.code == NM_SETFOCUS) ShowHint(list_.SelectedDescription());
}

void Win32ImageDialogView::OnMenuSelect(WORD command, WORD flags) {
  const bool isItem = flags != kMenuIsGone && (flags & (MF_POPUP | MF_SYSMENU)) == 0;
  ShowHint(isItem ? states_.Description(command) : status_);
}

}  // namespace

std::unique_ptr<ImageDialogView> MakeWin32ImageDialogView() {
  return std::make_unique<Win32ImageDialogView>();
}

}  // namespace zyr
