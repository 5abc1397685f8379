// A group of the image dialog's operations as a popup menu.
#pragma once

#include <windows.h>

#include <cstdint>

#include "acquire/image_dialog/operation_tree.h"
#include "acquire/image_dialog/win32/operation_states.h"

namespace zyr {

// Must not go while it stands. User-interface thread only.
class OperationPopup {
 public:
  explicit OperationPopup(const OperationStates& states) : states_(states) {}
  OperationPopup(const OperationPopup&) = delete;
  OperationPopup& operator=(const OperationPopup&) = delete;

  // Below the button, or above it where there is no room. The owner gets WM_MENUSELECT. The command
  // that was chosen; 0 for none, and while a popup stands already.
  uint32_t Choose(HWND owner, HWND button, const OperationGroup& group);
  bool IsOpen() const { return open_ != nullptr; }
  // After a change of the states: in the popup that stands.
  void Refresh(uint32_t command);
  // Choose comes back.
  void Close();

 private:
  HMENU Make(const OperationGroup& group) const;

  const OperationStates& states_;
  HMENU open_ = nullptr;
};

}  // namespace zyr
