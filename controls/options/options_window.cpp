#include "controls/options/options_window.h"

#include <windows.h>
// After the system's header.
#include <commctrl.h>

#include <algorithm>
#include <map>
#include <optional>
#include <string>

#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "controls/modal_dialog.h"
#include "controls/options/options_tree.h"
#include "controls/options/page_frame.h"
#include "controls/options/scroll_area.h"
#include "controls/password_window.h"
#include "controls/text_size.h"
#include "resources/resource.h"
#include "settings/pages/options_dialog.h"

namespace zyr {
namespace {

constexpr UINT kTreeSelection = WM_APP + 1;  // has changed, some time ago

constexpr int kTitlePercent = 150;  // of the message font's height
constexpr LONG kTitleWeight = 800;
constexpr LONG kTextWeight = 400;
constexpr wchar_t kHeadFont[] = L"Arial";

// Pixels of a plain screen.
constexpr int kMargin = 8;
constexpr int kBesideTree = 16;
constexpr SIZE kButton = {84, 26};
constexpr int kBesideCaption = 24;
constexpr int kAboveCaption = 10;  // and below it, together
constexpr int kBelowHead = 12;     // to the line, and from there to the page
constexpr int kLeastTree = 120;    // on a screen that is too small for everything
constexpr int kGoodTree = 220;

// Dialog units.
constexpr LONG kFirstPageWidth = 270;
constexpr SIZE kLeastPage = {150, 110};

constexpr int kPercentForTree = 45;
constexpr int kPercentOfScreen = 90;

LOGFONTW HeadFont(LONG weight, int percent) {
  LOGFONTW font = MessageFont();
  font.lfHeight = MulDiv(font.lfHeight, percent, 100);
  font.lfWeight = weight;
  lstrcpynW(font.lfFaceName, kHeadFont, LF_FACESIZE);
  return font;
}

SIZE ButtonSize(HWND button) {
  const SIZE text = TextSize(button, WindowText(button));
  return {std::max<LONG>(Scaled(kButton.cx), text.cx + Scaled(kBesideCaption)),
          std::max<LONG>(Scaled(kButton.cy), text.cy + Scaled(kAboveCaption))};
}

class Win32OptionsDialogView : public OptionsDialogView, private ModalDialog {
 public:
  bool Run(OptionsDialog* dialog, platform::Window owner) override;
  platform::Window window() const override { return hwnd(); }
  void End(bool accepted) override { EndModal(accepted); }

  void SetTree(const std::vector<OptionsTreeGroup>& groups) override;
  void MarkInTree(size_t group, size_t page) override;
  void SetHead(const std::string& title, const std::string& text) override;
  PageControls* MakePage(size_t page, const std::string& title,
                         const std::vector<PageField>& fields) override;
  void ShowPage(size_t page) override;
  std::unique_ptr<PasswordDialogView> MakePasswordDialogView() override {
    return MakeWin32PasswordDialogView();
  }

 private:
  void Initialise() override;
  INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam) override;
  void OnCommand(WPARAM wParam, LPARAM lParam);
  INT_PTR OnNotify(NMHDR& notification);
  void OnTreeSelection();

  // What the window has besides its client area.
  SIZE Frame() const;
  SIZE LeastSize() const;
  RECT Screen() const;
  SIZE InPixels(SIZE dialogUnits) const;
  void Place();
  void MakeRoomForPage();
  void Arrange() const;
  int ArrangeArea(SIZE room, int top) const;
  int ArrangeHead(int width, int top) const;
  int PageWidth() const;
  int GoodTreeWidth() const { return std::min(tree_.FullWidth(), Scaled(kGoodTree)); }
  int TreeWidth(int clientWidth) const;
  PageFrame* Shown() const;

  OptionsDialog* dialog_ = nullptr;
  HWND owner_ = nullptr;
  const Font titleFont_{HeadFont(kTitleWeight, kTitlePercent)};
  const Font textFont_{HeadFont(kTextWeight, 100)};
  const Font boldFont_{BoldMessageFont()};
  Mnemonics mnemonics_;  // of the buttons
  OptionsTree tree_;
  ScrollArea area_;
  std::map<size_t, std::unique_ptr<PageFrame>> pages_;
  std::optional<size_t> shown_;
  std::optional<TreePlace> selected_;  // what the dialog knows
  bool placed_ = false;
};

bool Win32OptionsDialogView::Run(OptionsDialog* dialog, platform::Window owner) {
  const INITCOMMONCONTROLSEX classes = {
      sizeof classes, ICC_BAR_CLASSES | ICC_TREEVIEW_CLASSES | ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&classes);
  dialog_ = dialog;
  owner_ = UsableOwner(owner);
  return RunModal(IDD_OPTIONS, owner);
}

// Buttons have a mnemonic only where the translation gives them one.
void Win32OptionsDialogView::Initialise() {
  for (const int button : {IDOK, IDCANCEL}) {
    if (WindowText(Control(button)).find('&') != std::string::npos) {
      MarkCaption(Control(button), mnemonics_);
    }
  }
  const HWND area = Control(IDC_OPTIONS_AREA);
  for (const int text : {IDC_OPTIONS_TITLE, IDC_OPTIONS_TEXT, IDC_OPTIONS_LINE}) {
    SetParent(Control(text), area);
  }
  SendMessageA(GetDlgItem(area, IDC_OPTIONS_TITLE), WM_SETFONT,
               reinterpret_cast<WPARAM>(titleFont_.handle()), FALSE);
  SendMessageA(GetDlgItem(area, IDC_OPTIONS_TEXT), WM_SETFONT,
               reinterpret_cast<WPARAM>(textFont_.handle()), FALSE);
  tree_.Attach(Control(IDC_OPTIONS_TREE));
  area_.Attach(area, [this](SIZE room, int top) { return ArrangeArea(room, top); });
  dialog_->OnInitDialog();
  if (hwnd() == nullptr) return;
  Place();
  SetFocus(Control(IDC_OPTIONS_TREE));
}

void Win32OptionsDialogView::SetTree(const std::vector<OptionsTreeGroup>& groups) {
  if (hwnd() != nullptr) tree_.Set(groups);
}

void Win32OptionsDialogView::MarkInTree(size_t group, size_t page) {
  if (hwnd() == nullptr) return;
  selected_ = TreePlace{group, page};
  tree_.Mark(*selected_);
}

void Win32OptionsDialogView::SetHead(const std::string& title, const std::string& text) {
  if (hwnd() == nullptr) return;
  SetWindowTextA(GetDlgItem(area_.window(), IDC_OPTIONS_TITLE), title.c_str());
  SetWindowTextA(GetDlgItem(area_.window(), IDC_OPTIONS_TEXT), text.c_str());
  area_.Refresh();
}

PageControls* Win32OptionsDialogView::MakePage(size_t page, const std::string& title,
                                               const std::vector<PageField>& fields) {
  if (hwnd() == nullptr) return nullptr;
  const auto font = reinterpret_cast<HFONT>(SendMessageA(hwnd(), WM_GETFONT, 0, 0));
  auto frame = std::make_unique<PageFrame>(
      area_.window(), page, title, fields, PageFrame::Fonts{font, boldFont_.handle()}, mnemonics_,
      PageFrame::Events{[this, page](uint32_t field) { dialog_->OnChanged(page, field); },
                        [this, page](uint32_t field) { dialog_->OnButton(page, field); }});
  if (frame->panel() == nullptr) return nullptr;
  area_.Follow(frame->panel());
  if (shown_ == page) shown_.reset();
  pages_[page] = std::move(frame);
  return pages_[page].get();
}

void Win32OptionsDialogView::ShowPage(size_t page) {
  const auto next = pages_.find(page);
  if (hwnd() == nullptr || next == pages_.end()) return;
  PageFrame* const before = Shown();
  shown_ = page;
  area_.ScrollTo(0);
  MakeRoomForPage();
  area_.Refresh();
  if (before != nullptr && before != next->second.get()) before->Show(false);
  next->second->Show(true);
}

PageFrame* Win32OptionsDialogView::Shown() const {
  return shown_ ? pages_.at(*shown_).get() : nullptr;
}

SIZE Win32OptionsDialogView::Frame() const {
  RECT outer;
  RECT inner;
  GetWindowRect(hwnd(), &outer);
  GetClientRect(hwnd(), &inner);
  return {outer.right - outer.left - inner.right, outer.bottom - outer.top - inner.bottom};
}

SIZE Win32OptionsDialogView::InPixels(SIZE dialogUnits) const {
  RECT area = {0, 0, dialogUnits.cx, dialogUnits.cy};
  MapDialogRect(hwnd(), &area);
  return {area.right, area.bottom};
}

RECT Win32OptionsDialogView::Screen() const {
  return WorkAreaOf(owner_ != nullptr ? owner_ : hwnd());
}

// What the pages need that have been made so far, so that nothing jumps between them.
int Win32OptionsDialogView::PageWidth() const {
  int width = 0;
  for (const auto& [number, page] : pages_) width = std::max(width, page->LeastWidth());
  return width + Scaled(kMargin) + GetSystemMetrics(SM_CXVSCROLL);
}

// As much as pages need, and never more than the screen has.
SIZE Win32OptionsDialogView::LeastSize() const {
  const SIZE least = InPixels(kLeastPage);
  const int margin = Scaled(kMargin);
  const SIZE frame = Frame();
  const LONG width = std::max<LONG>(PageWidth(), least.cx) + GoodTreeWidth() + Scaled(kBesideTree) +
                     2 * margin + frame.cx;
  const LONG height = least.cy + ButtonSize(Control(IDOK)).cy + 3 * margin + frame.cy;
  const RECT screen = Screen();
  return {std::min(width, screen.right - screen.left),
          std::min(height, screen.bottom - screen.top)};
}

// Wide enough for the tree and for texts of a good width.
void Win32OptionsDialogView::Place() {
  const RECT screen = Screen();
  const SIZE frame = Frame();
  RECT client;
  GetClientRect(hwnd(), &client);
  const SIZE least = LeastSize();
  const LONG page = std::max(InPixels({kFirstPageWidth, 0}).cx,
                             static_cast<LONG>(Shown() != nullptr ? Shown()->LeastWidth() : 0));
  const LONG wanted =
      tree_.FullWidth() + Scaled(kBesideTree) + page + 2 * Scaled(kMargin) + frame.cx;
  const LONG most = (screen.right - screen.left) * kPercentOfScreen / 100;
  const LONG highest = (screen.bottom - screen.top) * kPercentOfScreen / 100;
  ResizeWindow(hwnd(), std::max(std::min(wanted, most), least.cx),
               std::max(std::min(client.bottom + frame.cy, highest), least.cy));
  CenterAbove(hwnd(), owner_);
  placed_ = true;
  Arrange();
}

// Texts of another page may need more than the user has left them.
void Win32OptionsDialogView::MakeRoomForPage() {
  if (!placed_ || IsIconic(hwnd())) return;
  const SIZE least = LeastSize();
  RECT outer;
  GetWindowRect(hwnd(), &outer);
  if (outer.right - outer.left < least.cx) {
    ResizeWindow(hwnd(), least.cx, outer.bottom - outer.top);
  }
  Arrange();
}

// Its names in full, if the page has room enough then.
int Win32OptionsDialogView::TreeWidth(int clientWidth) const {
  const int room = clientWidth - 2 * Scaled(kMargin) - Scaled(kBesideTree);
  const int most = std::min(std::max({clientWidth * kPercentForTree / 100, GoodTreeWidth(),
                                      room - static_cast<int>(InPixels({kFirstPageWidth, 0}).cx)}),
                            room - PageWidth());
  return std::max(std::min(tree_.FullWidth(), most), Scaled(kLeastTree));
}

void Win32OptionsDialogView::Arrange() const {
  if (!placed_) return;
  const int margin = Scaled(kMargin);
  RECT client;
  GetClientRect(hwnd(), &client);
  const int tree = TreeWidth(static_cast<int>(client.right));
  InflateRect(&client, -margin, -margin);
  const SIZE ok = ButtonSize(Control(IDOK));
  const SIZE cancel = ButtonSize(Control(IDCANCEL));
  const auto width = static_cast<int>(std::max(ok.cx, cancel.cx));
  const auto height = static_cast<int>(ok.cy);
  const auto right = static_cast<int>(client.right);
  const auto buttons = static_cast<int>(client.bottom) - height;
  const int areaLeft = margin + tree + Scaled(kBesideTree);
  PlaceWindow(Control(IDC_OPTIONS_TREE), margin, margin, tree, buttons - 2 * margin);
  PlaceWindow(area_.window(), areaLeft, margin, right - areaLeft, buttons - 2 * margin);
  PlaceWindow(Control(IDOK), right - 2 * width - margin, buttons, width, height);
  PlaceWindow(Control(IDCANCEL), right - width, buttons, width, height);
}

// The head scrolls with the page: on a small screen there would be no room left below it.
int Win32OptionsDialogView::ArrangeArea(SIZE room, int top) const {
  const auto width = static_cast<int>(room.cx) - Scaled(kMargin);
  const int head = ArrangeHead(width, top);
  PageFrame* const page = Shown();
  if (page == nullptr) return head;
  const int height = page->Arrange(width, static_cast<int>(room.cy) - head);
  PlaceWindow(page->panel(), 0, top + head, width, height);
  return head + height;
}

int Win32OptionsDialogView::ArrangeHead(int width, int top) const {
  int height = 0;
  for (const int part : {IDC_OPTIONS_TITLE, IDC_OPTIONS_TEXT}) {
    const HWND control = GetDlgItem(area_.window(), part);
    const int lines = WrappedTextHeight(control, WindowText(control), width);
    PlaceWindow(control, 0, top + height, width, lines);
    height += lines + (part == IDC_OPTIONS_TITLE ? Scaled(kMargin) / 2 : 0);
  }
  height += Scaled(kBelowHead);
  PlaceWindow(GetDlgItem(area_.window(), IDC_OPTIONS_LINE), 0, top + height, width, 2);
  return height + Scaled(kBelowHead);
}

INT_PTR Win32OptionsDialogView::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND:
      OnCommand(wParam, lParam);
      return TRUE;
    case WM_NOTIFY:
      return OnNotify(*reinterpret_cast<NMHDR*>(lParam));
    case kTreeSelection:
      OnTreeSelection();
      return TRUE;
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) Arrange();
      return TRUE;
    case WM_GETMINMAXINFO:
      SetLeastSize(lParam, LeastSize());
      return TRUE;
    case WM_MOUSEWHEEL:
      area_.Turn(GET_WHEEL_DELTA_WPARAM(wParam));
      return TRUE;
    default:
      return FALSE;
  }
}

// Enter presses a page's button by way of the dialog.
void Win32OptionsDialogView::OnCommand(WPARAM wParam, LPARAM lParam) {
  const auto control = reinterpret_cast<HWND>(lParam);
  if (control != nullptr && IsChild(area_.window(), control)) {
    SendMessageA(GetParent(control), WM_COMMAND, wParam, lParam);
  } else if (LOWORD(wParam) == IDOK) {
    dialog_->OnOK();
  } else if (LOWORD(wParam) == IDCANCEL) {
    dialog_->OnCancel();
  }
}

// Posted: the tree is in the midst of its own work, and a password may be asked for.
INT_PTR Win32OptionsDialogView::OnNotify(NMHDR& notification) {
  if (notification.idFrom != IDC_OPTIONS_TREE) return FALSE;
  if (notification.code == static_cast<UINT>(TVN_SELCHANGEDA) && !tree_.IsSelecting()) {
    PostMessageA(hwnd(), kTreeSelection, 0, 0);
  }
  if (notification.code == static_cast<UINT>(TVN_GETINFOTIPA)) tree_.FillTip(notification);
  return FALSE;
}

void Win32OptionsDialogView::OnTreeSelection() {
  const std::optional<TreePlace> before = selected_;
  const std::optional<TreePlace> chosen = tree_.Selected();
  if (!chosen || chosen == before) return;
  if (dialog_->OnSelect(chosen->group, chosen->page)) {
    selected_ = chosen;
  } else if (hwnd() != nullptr && before) {
    MarkInTree(before->group, before->page);
  }
}

}  // namespace

std::unique_ptr<OptionsDialogView> MakeWin32OptionsDialogView() {
  return std::make_unique<Win32OptionsDialogView>();
}

}  // namespace zyr
