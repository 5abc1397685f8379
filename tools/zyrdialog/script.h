// The steps that zyrdialog is asked to take.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zyr {

enum class DialogAction {
  kWait,     // until the dialog is to be seen
  kGone,     // until it is not
  kPress,    // waits until the button can be pressed
  kCommand,  // posts a command that may have no button, once the dialog can be used
  kEnabled,  // these seven wait until it is so
  kDisabled,
  kVisible,
  kHidden,
  kFocused,
  kHas,    // the control's text has the words in it
  kSay,    // prints the control's text
  kPlace,  // prints the middle of the control on the screen
  kFrame,  // prints the rectangle of the window
  kSize,   // of the client area
  kPause,
};

struct DialogStep {
  DialogAction action = DialogAction::kWait;
  uint32_t control = 0;
  std::string words;
  uint32_t width = 0;  // kPause: milliseconds
  uint32_t height = 0;
};

struct DialogScript {
  bool help = false;
  std::string error;  // not empty: what is wrong with the command line
  std::string title = "ZYR TWAIN";
  uint32_t seconds = 30;  // for each step
  std::vector<DialogStep> steps;
};

DialogScript ParseDialogScript(const std::vector<std::string>& arguments);
extern const char kDialogHelp[];

}  // namespace zyr
