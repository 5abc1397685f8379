#include "acquire/image_dialog/win32/operation_popup.h"

#include <memory>
#include <string>

#include "acquire/image_dialog/image_dialog_view.h"
#include "controls/mnemonics.h"
#include "foundation/support/phrase_lookup.h"

namespace zyr {
namespace {

struct MenuDeleter {
  using pointer = HMENU;
  void operator()(HMENU menu) const { DestroyMenu(menu); }
};

// Behind a tab; empty without one.
std::string ShortcutOf(uint32_t command) {
  const char key = command == kImageUndo   ? 'Z'
                   : command == kImageRedo ? 'Y'
                   : command == kImageCopy ? 'C'
                                           : '\0';
  return key != '\0' ? '\t' + GetPhrase("Ctrl") + '+' + key : std::string();
}

UINT StateFlag(bool enabled) { return enabled ? MF_ENABLED : MF_GRAYED; }

}  // namespace

// Behind the last item there is nothing that a line could set apart.
HMENU OperationPopup::Make(const OperationGroup& group) const {
  const HMENU menu = CreatePopupMenu();
  Mnemonics mnemonics;
  for (const OperationItem& item : group.items) {
    const std::string text = mnemonics.Mark(GetPhrase(item.name)) + ShortcutOf(item.id);
    AppendMenuA(menu, MF_STRING | StateFlag(states_.IsEnabled(item.id)), item.id, text.c_str());
    if (item.separatorAfter && &item != &group.items.back()) {
      AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
    }
  }
  return menu;
}

uint32_t OperationPopup::Choose(HWND owner, HWND button, const OperationGroup& group) {
  if (IsOpen()) return 0;
  const std::unique_ptr<HMENU, MenuDeleter> menu(Make(group));
  TPMPARAMS beside = {};
  beside.cbSize = sizeof beside;
  GetWindowRect(button, &beside.rcExclude);
  open_ = menu.get();
  const BOOL chosen = TrackPopupMenuEx(
      open_, TPM_RETURNCMD | TPM_LEFTALIGN | TPM_TOPALIGN | TPM_VERTICAL | TPM_LEFTBUTTON,
      beside.rcExclude.left, beside.rcExclude.bottom, owner, &beside);
  open_ = nullptr;
  return static_cast<uint32_t>(chosen);
}

void OperationPopup::Refresh(uint32_t command) {
  if (!IsOpen()) return;
  EnableMenuItem(open_, command, MF_BYCOMMAND | StateFlag(states_.IsEnabled(command)));
}

void OperationPopup::Close() {
  if (IsOpen()) EndMenu();
}

}  // namespace zyr
