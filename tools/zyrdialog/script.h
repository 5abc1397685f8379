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
  kCheck,    // a check box or a radio button, if it is not so already
  kUncheck,
  kChoose,   // an entry of a drop-down or another list, by its index
  kSlide,    // a slider to a position
  kType,     // a text in place of what is in an edit field
  kBranch,   // selects an item of a tree, if the dialog lets it
  kExpand,   // opens an item of a tree
  kValue,    // prints what the control is set to
  kIs,       // waits until it is set to that
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
  uint32_t inner = 0;  // the control within that one, if there is a number
  std::string words;
  int32_t number = 0;          // kChoose, kSlide
  std::vector<uint32_t> path;  // kBranch, kExpand: the index in each level of the tree
  uint32_t width = 0;          // kPause: milliseconds
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
