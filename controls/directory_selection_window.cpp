#include "controls/directory_selection_window.h"

#include <windows.h>
// After the system's header.
#include <commctrl.h>

#include <algorithm>
#include <string>

#include "controls/button_icon_design.h"
#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "controls/directory_tree.h"
#include "controls/mnemonics.h"
#include "controls/modal_dialog.h"
#include "controls/new_directory_window.h"
#include "controls/pixel_icon.h"
#include "controls/text_size.h"
#include "controls/tool_tips.h"
#include "foundation/support/directory_selection.h"
#include "foundation/support/phrase_lookup.h"
#include "resources/resource.h"

namespace zyr {
namespace {

constexpr UINT kOpenNode = WM_APP + 1;  // wParam: its number

// Pixels of a plain screen.
constexpr int kMargin = 10;
constexpr int kAroundText = 8;  // in a button, on both sides together
constexpr SIZE kLeastButton = {84, 26};
constexpr SIZE kAroundIcon = {18, 10};
constexpr SIZE kFirst = {400, 460};
constexpr int kLeastTree = 120;
constexpr int kControls = 5;

// Where the user's colours have to be kept to, the picture has one, too.
Icon NewFolderIcon(int size) {
  std::vector<uint32_t> pixels = PixelsOfBitmap(IDB_KSP_NEWFOLDER, size);
  if (ColorsAreTheUsers()) {
    const COLORREF text = GetSysColor(COLOR_BTNTEXT);
    const uint32_t color = GetRValue(text) << 16 | GetGValue(text) << 8 | GetBValue(text);
    for (uint32_t& pixel : pixels) pixel = (pixel & 0xFF000000) | color;
  }
  return pixels.empty() ? nullptr : IconFromPixels(pixels, size);
}

class DirectorySelectionWindow : public DirectorySelectionView, private ModalDialog {
 public:
  bool Run(DirectorySelection* dialog, platform::Window owner) override;
  platform::Window window() const override { return hwnd(); }
  void End(bool accepted) override { EndModal(accepted); }

  void SetHead(const std::string& text) override;
  Node AddNode(Node parent, Node after, const std::string& label, DirectoryKind kind) override {
    return tree_.Add(parent, after, label, kind);
  }
  void RemoveNode(Node node) override { tree_.Remove(node); }
  void Expand(Node node) override { tree_.Expand(node); }
  void SetCanBeOpened(Node node, bool can) override { tree_.SetCanBeOpened(node, can); }
  void Select(Node node) override { tree_.Select(node); }
  void SetNewDirectoryEnabled(bool enabled) override;
  bool AskForName(std::string* name) override;

 private:
  void Initialise() override;
  INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam) override;
  void OnGone() override { tree_.Detach(); }

  void DressButtons();
  void Place();
  SIZE LeastSize() const;
  void Arrange() const;
  INT_PTR OnCommand(WORD command);
  INT_PTR OnNotify(const NMHDR& header);
  INT_PTR OnExpanding(const NMTREEVIEWA& notice);

  DirectorySelection* dialog_ = nullptr;
  HWND owner_ = nullptr;
  DirectoryTree tree_;
  ToolTips tips_;
  Icon newFolder_;
  SIZE button_ = {};
  SIZE newButton_ = {};
};

bool DirectorySelectionWindow::Run(DirectorySelection* dialog, platform::Window owner) {
  const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_TREEVIEW_CLASSES};
  InitCommonControlsEx(&classes);
  dialog_ = dialog;
  owner_ = UsableOwner(owner);
  return RunModal(IDD_KSP_SELECTDIRECTORY, owner);
}

void DirectorySelectionWindow::SetHead(const std::string& text) {
  if (hwnd() == nullptr) return;
  SetWindowTextA(Control(IDC_DIRECTORY_HEAD), text.c_str());
  Arrange();
}

// Without the keyboard on a disabled button, where it would be lost.
void DirectorySelectionWindow::SetNewDirectoryEnabled(bool enabled) {
  if (hwnd() == nullptr) return;
  const HWND button = Control(IDC_DIRECTORY_NEW);
  if (!enabled && GetFocus() == button) MoveFocusTo(Control(IDC_DIRECTORY_TREE));
  EnableWindow(button, enabled);
}

bool DirectorySelectionWindow::AskForName(std::string* name) {
  return hwnd() != nullptr && AskForDirectoryName(hwnd(), name);
}

void DirectorySelectionWindow::Initialise() {
  tree_.Attach(Control(IDC_DIRECTORY_TREE));
  DressButtons();
  Place();
  dialog_->OnInitDialog();
  SetFocus(Control(IDC_DIRECTORY_TREE));
}

void DirectorySelectionWindow::DressButtons() {
  const HWND button = Control(IDC_DIRECTORY_NEW);
  Mnemonics mnemonics;
  MarkCaption(button, mnemonics);  // it is not seen, but heard and typed
  tips_.Attach(hwnd());
  tips_.Set(button, GetPhrase("Creates a new directory"));

  button_ = {Scaled(kLeastButton.cx), Scaled(kLeastButton.cy)};
  SIZE text = {};
  for (const int id : {IDOK, IDCANCEL}) {
    text = TextSize(Control(id), WindowText(Control(id)));
    button_.cx = std::max(button_.cx, text.cx + 3 * Scaled(kAroundText));
    button_.cy = std::max(button_.cy, text.cy + Scaled(kAroundText));
  }
  const int size = ButtonIconSize(static_cast<int>(text.cy));
  newFolder_ = NewFolderIcon(size);
  SendMessageA(button, BM_SETIMAGE, IMAGE_ICON, reinterpret_cast<LPARAM>(newFolder_.get()));
  newButton_ = {size + Scaled(kAroundIcon.cx),
                std::max(button_.cy, LONG{size + Scaled(kAroundIcon.cy)})};
}

SIZE DirectorySelectionWindow::LeastSize() const {
  const LONG margin = Scaled(kMargin);
  const LONG width = newButton_.cx + 2 * button_.cx + 5 * margin;
  return WithFrameOnScreen(hwnd(), {width, 2 * Scaled(kLeastTree) + newButton_.cy + 4 * margin});
}

void DirectorySelectionWindow::Place() {
  const SIZE first = WithFrameOnScreen(hwnd(), {Scaled(kFirst.cx), Scaled(kFirst.cy)});
  const SIZE least = LeastSize();
  ResizeWindow(hwnd(), std::max(first.cx, least.cx), std::max(first.cy, least.cy));
  CenterAbove(hwnd(), owner_);
}

// The head takes the lines that it needs as long as a part of the tree is seen.
void DirectorySelectionWindow::Arrange() const {
  const LONG margin = Scaled(kMargin);
  RECT client;
  GetClientRect(hwnd(), &client);
  InflateRect(&client, -static_cast<int>(margin), -static_cast<int>(margin));
  const HWND head = Control(IDC_DIRECTORY_HEAD);
  const LONG rowTop = client.bottom - newButton_.cy;
  const LONG treeBottom = rowTop - margin;
  const LONG needed =
      WrappedTextHeight(head, WindowText(head), static_cast<int>(client.right - client.left));
  const LONG most = treeBottom - margin - Scaled(kLeastTree) - client.top;
  const LONG headBottom = client.top + std::clamp(needed, 0L, std::max(most, 0L));

  ControlMoves moves(hwnd(), kControls);
  moves.Move(IDC_DIRECTORY_HEAD, {client.left, client.top, client.right, headBottom});
  moves.Move(IDC_DIRECTORY_TREE, {client.left, headBottom + margin, client.right, treeBottom});
  moves.Move(IDC_DIRECTORY_NEW, {client.left, rowTop, client.left + newButton_.cx, client.bottom});
  const LONG top = rowTop + (newButton_.cy - button_.cy) / 2;
  RECT button = {client.right - button_.cx, top, client.right, top + button_.cy};
  moves.Move(IDCANCEL, button);
  OffsetRect(&button, static_cast<int>(-button_.cx - margin), 0);
  moves.Move(IDOK, button);
}

INT_PTR DirectorySelectionWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND:
      return OnCommand(LOWORD(wParam));
    case WM_NOTIFY:
      return OnNotify(*reinterpret_cast<const NMHDR*>(lParam));
    case kOpenNode:
      dialog_->OnExpand(static_cast<Node>(wParam));
      return TRUE;
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) Arrange();
      return TRUE;
    case WM_GETMINMAXINFO:
      SetLeastSize(lParam, LeastSize());
      return TRUE;
    default:
      return FALSE;
  }
}

INT_PTR DirectorySelectionWindow::OnCommand(WORD command) {
  if (command == IDOK) dialog_->OnOK();
  if (command == IDCANCEL) EndModal(false);
  if (command == IDC_DIRECTORY_NEW) dialog_->OnNewDirectory();
  return TRUE;
}

INT_PTR DirectorySelectionWindow::OnNotify(const NMHDR& header) {
  if (header.idFrom != IDC_DIRECTORY_TREE) return FALSE;
  const auto& notice = reinterpret_cast<const NMTREEVIEWA&>(header);
  switch (header.code) {
    case TVN_ITEMEXPANDINGA:
      return OnExpanding(notice);
    case TVN_SELCHANGEDA:
      if (notice.itemNew.hItem != nullptr) dialog_->OnSelect(DirectoryTree::NodeOf(notice.itemNew));
      return TRUE;
    case TVN_DELETEITEMA:
      tree_.OnDeleted(notice.itemOld);
      return TRUE;
    default:
      return FALSE;
  }
}

// Reading may bring up a notice, for which this is no time. And the key that opens all at once must
// not read the whole drive: later, each press opens one level more.
INT_PTR DirectorySelectionWindow::OnExpanding(const NMTREEVIEWA& notice) {
  const Node node = DirectoryTree::NodeOf(notice.itemNew);
  const bool later = notice.action == TVE_EXPAND && !tree_.HasChildren(node);
  if (later) PostMessageA(hwnd(), kOpenNode, node, 0);
  SetWindowLongPtrA(hwnd(), DWLP_MSGRESULT, later ? TRUE : FALSE);
  return TRUE;
}

}  // namespace

std::unique_ptr<DirectorySelectionView> MakeWin32DirectorySelectionView() {
  return std::make_unique<DirectorySelectionWindow>();
}

}  // namespace zyr
