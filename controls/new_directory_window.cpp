#include "controls/new_directory_window.h"

#include <windows.h>

#include <algorithm>

#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "controls/mnemonics.h"
#include "controls/modal_dialog.h"
#include "controls/text_size.h"
#include "resources/resource.h"

namespace zyr {
namespace {

// Pixels of a plain screen.
constexpr int kMargin = 10;
constexpr int kGap = 6;         // between a label and its field
constexpr int kAroundText = 8;  // in a button or field, on both sides together
constexpr int kLeastWidth = 320;
constexpr SIZE kLeastButton = {84, 26};

constexpr WPARAM kLongestName = 255;

class NewDirectoryWindow : private ModalDialog {
 public:
  NewDirectoryWindow(platform::Window owner, std::string* name) : owner_(owner), name_(name) {}
  bool Run() { return RunModal(IDD_KSP_SELECTDIRECTORY_NEWDIR, owner_); }

 private:
  void Initialise() override;
  INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam) override;

  void Arrange() const;
  SIZE ButtonSize() const;
  void Move(int control, LONG left, LONG top, LONG width, LONG height) const {
    MoveWindow(Control(control), left, top, width, height, FALSE);
  }

  platform::Window owner_;
  std::string* name_;
};

void NewDirectoryWindow::Initialise() {
  Mnemonics mnemonics;
  MarkCaption(Control(IDC_NEW_DIRECTORY_LABEL), mnemonics);
  Arrange();
  CenterAbove(hwnd(), UsableOwner(owner_));
  const HWND field = Control(IDC_NEW_DIRECTORY_NAME);
  SendMessageA(field, EM_SETLIMITTEXT, kLongestName, 0);
  SetWindowTextA(field, name_->c_str());
  SendMessageA(field, EM_SETSEL, 0, -1);
  SetFocus(field);
}

SIZE NewDirectoryWindow::ButtonSize() const {
  SIZE size = {Scaled(kLeastButton.cx), Scaled(kLeastButton.cy)};
  for (const int id : {IDOK, IDCANCEL}) {
    const SIZE text = TextSize(Control(id), WindowText(Control(id)));
    size.cx = std::max(size.cx, text.cx + 3 * Scaled(kAroundText));
    size.cy = std::max(size.cy, text.cy + Scaled(kAroundText));
  }
  return size;
}

void NewDirectoryWindow::Arrange() const {
  const LONG margin = Scaled(kMargin);
  const HWND label = Control(IDC_NEW_DIRECTORY_LABEL);
  const SIZE text = TextSize(label, WindowText(label));
  const SIZE button = ButtonSize();
  const LONG width = std::max({LONG{Scaled(kLeastWidth)}, text.cx, 2 * button.cx + margin});
  const LONG fieldHeight = text.cy + Scaled(kAroundText);

  LONG top = margin;
  Move(IDC_NEW_DIRECTORY_LABEL, margin, top, width, text.cy);
  top += text.cy + Scaled(kGap);
  Move(IDC_NEW_DIRECTORY_NAME, margin, top, width, fieldHeight);
  top += fieldHeight + 2 * margin;
  Move(IDCANCEL, margin + width - button.cx, top, button.cx, button.cy);
  Move(IDOK, width - 2 * button.cx, top, button.cx, button.cy);

  const SIZE outer = WithFrameOnScreen(hwnd(), {width + 2 * margin, top + button.cy + margin});
  ResizeWindow(hwnd(), outer.cx, outer.cy);
}

INT_PTR NewDirectoryWindow::Handle(UINT message, WPARAM wParam, LPARAM) {
  if (message != WM_COMMAND) return FALSE;
  if (LOWORD(wParam) == IDOK) {
    *name_ = WindowText(Control(IDC_NEW_DIRECTORY_NAME));
    EndModal(true);
  }
  if (LOWORD(wParam) == IDCANCEL) EndModal(false);
  return TRUE;
}

}  // namespace

bool AskForDirectoryName(platform::Window owner, std::string* name) {
  return NewDirectoryWindow(owner, name).Run();
}

}  // namespace zyr
