// The top row of the image dialog, and the handle that opens and closes the list of operations.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>

#include "acquire/image_dialog/operation_tree.h"
#include "controls/icon_button.h"
#include "controls/tool_tips.h"

namespace zyr {

// What the buttons of the groups have behind their captions, in pixels.
int MenuArrowWidth();

// User-interface thread only, while the window lives.
class ImageDialogButtons {
 public:
  // Gives the buttons of the dialog's template their pictures, captions, mnemonics and tips.
  void Attach(HWND dialog);
  // The group that such a button opens; null for other controls.
  static const OperationGroup* GroupOf(int control);

  // NM_CUSTOMDRAW of a button; null for what it leaves to others.
  std::optional<LRESULT> OnNotify(const NMHDR& notification) const;

  void SetListOpen(bool open);
  // WM_DRAWITEM of the handle.
  void DrawHandle(const DRAWITEMSTRUCT& draw) const;

 private:
  HWND dialog_ = nullptr;
  ButtonIcons icons_;
  ToolTips tips_;
  bool listOpen_ = false;
};

}  // namespace zyr
