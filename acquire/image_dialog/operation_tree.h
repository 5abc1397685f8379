// The operations of the image dialog as its user finds them: groups, items, texts.
#pragma once

#include <cstdint>
#include <span>

namespace zyr {

// Texts are English, in the code page of the dialogs.
struct OperationItem {
  uint32_t id = 0;  // an ImageCommand
  const char* name = "";
  const char* description = "";  // the tool tip; empty if it is set at run time
  bool separatorAfter = false;
};

struct OperationGroup {
  uint32_t id = 0;  // mostly that of one of the items
  const char* name = "";
  const char* description = "";
  const char* button = "";  // of the dialog's top row, which opens the group
  std::span<const OperationItem> items;
};

std::span<const OperationGroup> OperationTree();

}  // namespace zyr
