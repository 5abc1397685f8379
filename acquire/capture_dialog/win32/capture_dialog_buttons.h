// The buttons of the capture dialog.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "controls/icon_button.h"
#include "controls/mnemonics.h"
#include "controls/tool_tips.h"

namespace zyr {

// User-interface thread only, while the window lives.
class CaptureDialogButtons {
 public:
  // Gives the buttons of the dialog's template their pictures and mnemonics.
  void Attach(HWND dialog);

  // Nothing else may take the keyboard from a button: one that is disabled while it has it hands it
  // to `refuge`, where it does no harm, and gets it back from there once it is enabled again.
  void SetEnabled(uint32_t command, bool enabled, HWND refuge);
  void SetVisible(uint32_t command, bool visible, HWND refuge);
  // The keyboard was at `before`, and a refuge that was hidden may have passed it on.
  void FollowFocus(HWND before);
  void SetCaption(uint32_t command, const std::string& caption);
  void SetTip(uint32_t command, const std::string& tip);
  // Cancel or Stop.
  void SetStopIcon(bool stop);
  // Whether the user could press it: Enter, Escape and mnemonics do not ask.
  bool IsUsable(uint32_t command) const;

 private:
  HWND Button(uint32_t command) const { return GetDlgItem(dialog_, static_cast<int>(command)); }
  void LeaveIfFocused(HWND button, HWND refuge);
  void ReturnTo(HWND button);

  HWND dialog_ = nullptr;
  ButtonIcons icons_;
  Mnemonics mnemonics_;
  ToolTips tips_;
  HWND left_ = nullptr;    // the button that had the keyboard
  HWND refuge_ = nullptr;  // the window that has it since
};

}  // namespace zyr
