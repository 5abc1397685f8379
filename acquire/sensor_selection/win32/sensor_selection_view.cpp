#include "acquire/sensor_selection/win32/sensor_selection_view.h"

#include <windows.h>
// After the system's header.
#include <commctrl.h>

#include <algorithm>
#include <iterator>
#include <vector>

#include "acquire/sensor_selection/sensor_selection.h"
#include "controls/activation_context.h"
#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "platform/resources.h"
#include "resources/resource.h"

namespace zyr {
namespace {

constexpr UINT_PTR kRefreshTimer = 1;
constexpr UINT kRefreshInterval = 1000;  // milliseconds
constexpr int kTitleMargins = 24;        // pixels of a plain screen
constexpr UINT kChosen = LVIS_SELECTED | LVIS_FOCUSED;

// What a control does when the window gets larger: 1 where it follows.
struct Following {
  int control;
  LONG left;
  LONG top;
  LONG width;
  LONG height;
};
constexpr Following kFollowing[] = {{IDC_SENSOR_MESSAGE, 0, 0, 1, 0},
                                    {IDC_SENSOR_LIST, 0, 0, 1, 1},
                                    {IDOK, 1, 1, 0, 0},
                                    {IDCANCEL, 1, 1, 0, 0}};

RECT PlaceOf(HWND control) {
  RECT place;
  GetWindowRect(control, &place);
  MapWindowPoints(nullptr, GetParent(control), reinterpret_cast<POINT*>(&place), 2);
  return place;
}

void MoveTo(HWND control, const RECT& place) {
  SetWindowPos(control, nullptr, place.left, place.top, place.right - place.left,
               place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

class Win32SensorSelectionView : public SensorSelectionView {
 public:
  bool Run(SensorSelection* dialog, platform::Window owner) override;
  platform::Window window() const override { return window_; }
  void End(bool accepted) override;

  void SetColumns(const std::vector<std::string>& titles) override;
  void SetMessage(const std::string& text, uint32_t color) override;
  void SetMessageSecondColor(std::optional<uint32_t> color) override;
  void SetRows(const std::vector<SensorRow>& rows) override;
  void SetListVisible(bool visible) override;
  void SelectRow(size_t row) override;
  std::optional<size_t> SelectedRow() const override;

 private:
  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam);

  void Initialise(HWND window);
  void OnDestroy();
  void OnCommand(WORD id);
  void OnNotify(const NMHDR& notification);
  INT_PTR ColorMessage(HDC dc) const;
  void Place();
  void OnSize(SIZE client);
  void FitMessage();
  void FitColumns();

  HWND Control(int id) const { return GetDlgItem(window_, id); }
  HWND List() const { return Control(IDC_SENSOR_LIST); }

  SensorSelection* dialog_ = nullptr;
  HWND owner_ = nullptr;
  HWND window_ = nullptr;  // null when the window is gone
  POINT least_ = {};       // the window's outer size at first
  SIZE client_ = {};       // what the controls' places are made for
  LONG leastMessage_ = 0;  // the height that the message has at first
  Font bold_{BoldMessageFont()};
  std::vector<std::string> titles_;
  uint32_t color_ = 0;
  std::optional<uint32_t> secondColor_;
};

bool Win32SensorSelectionView::Run(SensorSelection* dialog, platform::Window owner) {
  const ActivationContext look;
  const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&classes);
  const std::vector<uint8_t> bytes = TemplateWithMessageFont(IDD_SENSOR_SELECTION);
  if (bytes.empty()) return false;
  dialog_ = dialog;
  owner_ = UsableOwner(owner);
  const INT_PTR result = DialogBoxIndirectParamA(static_cast<HINSTANCE>(platform::OwnResources()),
                                                 reinterpret_cast<const DLGTEMPLATE*>(bytes.data()),
                                                 owner_, Procedure, reinterpret_cast<LPARAM>(this));
  return result == IDOK;
}

void Win32SensorSelectionView::End(bool accepted) {
  if (window_ != nullptr) EndDialog(window_, accepted ? IDOK : IDCANCEL);
}

void Win32SensorSelectionView::SetColumns(const std::vector<std::string>& titles) {
  titles_ = titles;
  for (size_t i = 0; i < titles_.size(); ++i) {
    LVCOLUMNA column = {};
    column.mask = LVCF_TEXT;
    column.pszText = titles_[i].data();
    ListView_InsertColumn(List(), static_cast<int>(i), &column);
  }
}

void Win32SensorSelectionView::SetMessage(const std::string& text, uint32_t color) {
  color_ = color;
  SetWindowTextA(Control(IDC_SENSOR_MESSAGE), text.c_str());
  FitMessage();
}

void Win32SensorSelectionView::SetMessageSecondColor(std::optional<uint32_t> color) {
  secondColor_ = color;
  InvalidateRect(Control(IDC_SENSOR_MESSAGE), nullptr, TRUE);
}

void Win32SensorSelectionView::SetRows(const std::vector<SensorRow>& rows) {
  const HWND list = List();
  ListView_DeleteAllItems(list);
  for (size_t i = 0; i < rows.size(); ++i) {
    SensorRow row = rows[i];
    LVITEMA item = {};
    item.mask = LVIF_TEXT;
    item.iItem = static_cast<int>(i);
    item.pszText = row.name.data();
    ListView_InsertItem(list, &item);
    ListView_SetItemText(list, item.iItem, 1, row.sensorId.data());
    ListView_SetItemText(list, item.iItem, 2, row.deviceId.data());
  }
  FitColumns();
}

// A small screen may cut it down.
void Win32SensorSelectionView::Place() {
  RECT area;
  GetClientRect(window_, &area);
  client_ = {area.right, area.bottom};
  CenterOnScreen(window_, owner_);
  GetWindowRect(window_, &area);
  least_ = {area.right - area.left, area.bottom - area.top};
}

void Win32SensorSelectionView::OnSize(SIZE client) {
  const LONG right = client.cx - client_.cx;
  const LONG down = client.cy - client_.cy;
  client_ = client;
  HDWP moves = BeginDeferWindowPos(static_cast<int>(std::size(kFollowing)));
  for (const Following& follows : kFollowing) {
    if (moves == nullptr) return;  // out of memory
    const HWND control = Control(follows.control);
    const RECT place = PlaceOf(control);
    moves = DeferWindowPos(
        moves, control, nullptr, place.left + follows.left * right, place.top + follows.top * down,
        place.right - place.left + follows.width * right,
        place.bottom - place.top + follows.height * down, SWP_NOZORDER | SWP_NOACTIVATE);
  }
  if (moves != nullptr) EndDeferWindowPos(moves);
  FitMessage();
  FitColumns();
}

// As high as its text asks for, at the list's expense.
void Win32SensorSelectionView::FitMessage() {
  const HWND message = Control(IDC_SENSOR_MESSAGE);
  const std::string text = WindowText(message);
  RECT place = PlaceOf(message);
  RECT list = PlaceOf(List());
  RECT needed = {0, 0, place.right - place.left, 0};
  const HDC dc = GetDC(message);
  const HGDIOBJ previous = SelectObject(dc, bold_.handle());
  DrawTextA(dc, text.c_str(), -1, &needed, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
  SelectObject(dc, previous);
  ReleaseDC(message, dc);
  const LONG grows = std::max(needed.bottom, leastMessage_) - (place.bottom - place.top);
  if (grows == 0) return;
  place.bottom += grows;
  list.top = std::min(list.top + grows, list.bottom);
  MoveTo(message, place);
  MoveTo(List(), list);
}

// Wide enough for its title and its texts; the last one takes what is left.
void Win32SensorSelectionView::FitColumns() {
  const HWND list = List();
  for (size_t i = 0; i < titles_.size(); ++i) {
    const int column = static_cast<int>(i);
    ListView_SetColumnWidth(list, column, LVSCW_AUTOSIZE);
    const int ofTitle = ListView_GetStringWidth(list, titles_[i].c_str()) + Scaled(kTitleMargins);
    const int least = std::max(ListView_GetColumnWidth(list, column), ofTitle);
    ListView_SetColumnWidth(list, column, LVSCW_AUTOSIZE_USEHEADER);
    if (ListView_GetColumnWidth(list, column) < least) {
      ListView_SetColumnWidth(list, column, least);
    }
  }
}

// The keyboard follows: what is hidden would keep it for ever. Of another window it is not taken.
void Win32SensorSelectionView::SetListVisible(bool visible) {
  const bool wasVisible = (GetWindowLongA(List(), GWL_STYLE) & WS_VISIBLE) != 0;
  if (visible == wasVisible) return;
  const bool hasKeyboard = IsChild(window_, GetFocus());
  ShowWindow(List(), visible ? SW_SHOW : SW_HIDE);
  if (hasKeyboard) SetFocus(visible ? List() : Control(IDOK));
}

void Win32SensorSelectionView::SelectRow(size_t row) {
  const int index = static_cast<int>(row);
  ListView_SetItemState(List(), index, kChosen, kChosen);
  ListView_EnsureVisible(List(), index, FALSE);
}

std::optional<size_t> Win32SensorSelectionView::SelectedRow() const {
  if (window_ == nullptr) return std::nullopt;
  const int index = ListView_GetNextItem(List(), -1, LVNI_SELECTED);
  return index < 0 ? std::nullopt : std::optional(static_cast<size_t>(index));
}

INT_PTR CALLBACK Win32SensorSelectionView::Procedure(HWND window, UINT message, WPARAM wParam,
                                                     LPARAM lParam) {
  if (message == WM_INITDIALOG) SetWindowLongPtrA(window, DWLP_USER, lParam);
  auto* view = reinterpret_cast<Win32SensorSelectionView*>(GetWindowLongPtrA(window, DWLP_USER));
  if (view == nullptr) return FALSE;
  try {
    if (message == WM_INITDIALOG) view->Initialise(window);
    return view->Handle(message, wParam, lParam);
  } catch (...) {  // the loop that called this knows no exceptions
    view->End(false);
    return FALSE;
  }
}

void Win32SensorSelectionView::Initialise(HWND window) {
  window_ = window;
  TranslateCaptions(window);
  SendMessageA(Control(IDC_SENSOR_MESSAGE), WM_SETFONT, reinterpret_cast<WPARAM>(bold_.handle()),
               FALSE);
  ListView_SetExtendedListViewStyle(List(), LVS_EX_FULLROWSELECT);
  const RECT message = PlaceOf(Control(IDC_SENSOR_MESSAGE));
  leastMessage_ = message.bottom - message.top;
  Place();
  dialog_->OnInitDialog();
  if (window_ == nullptr) return;
  SetTimer(window_, kRefreshTimer, kRefreshInterval, nullptr);
  const bool hasRows = ListView_GetItemCount(List()) > 0;
  SetFocus(hasRows ? List() : Control(IDOK));
}

INT_PTR Win32SensorSelectionView::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND:
      OnCommand(LOWORD(wParam));
      return TRUE;
    case WM_NOTIFY:
      OnNotify(*reinterpret_cast<const NMHDR*>(lParam));
      return FALSE;
    case WM_TIMER:
      dialog_->OnRefreshTimer();
      return TRUE;
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) OnSize({LOWORD(lParam), HIWORD(lParam)});
      return TRUE;
    case WM_GETMINMAXINFO:
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = least_;
      return TRUE;
    case WM_CTLCOLORSTATIC:
      return reinterpret_cast<HWND>(lParam) == Control(IDC_SENSOR_MESSAGE)
                 ? ColorMessage(reinterpret_cast<HDC>(wParam))
                 : FALSE;
    case WM_DESTROY:
      OnDestroy();
      return FALSE;
    default:  // for WM_INITDIALOG: the focus is set
      return FALSE;
  }
}

// The dialog's own loop sleeps through a destruction by another message's handler.
void Win32SensorSelectionView::OnDestroy() {
  window_ = nullptr;
  PostThreadMessageA(GetCurrentThreadId(), WM_NULL, 0, 0);
}

void Win32SensorSelectionView::OnCommand(WORD id) {
  if (id == IDOK) dialog_->OnOK();
  if (id == IDCANCEL) End(false);
}

void Win32SensorSelectionView::OnNotify(const NMHDR& notification) {
  if (notification.idFrom != IDC_SENSOR_LIST || notification.code != NM_DBLCLK) return;
  if (reinterpret_cast<const NMITEMACTIVATE&>(notification).iItem >= 0) dialog_->OnOK();
}

INT_PTR Win32SensorSelectionView::ColorMessage(HDC dc) const {
  SetTextColor(dc, color_);
  SetBkColor(dc, secondColor_.value_or(GetSysColor(COLOR_3DFACE)));
  return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_3DFACE));
}

}  // namespace

std::unique_ptr<SensorSelectionView> MakeWin32SensorSelectionView() {
  return std::make_unique<Win32SensorSelectionView>();
}

}  // namespace zyr
