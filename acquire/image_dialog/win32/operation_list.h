// The image dialog's operations as a tree of groups and items.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "acquire/image_dialog/win32/operation_states.h"

namespace zyr {

// Speaks for a tree view of the dialog's template. User-interface thread only, while the window
// lives.
class OperationList {
 public:
  explicit OperationList(const OperationStates& states) : states_(states) {}
  OperationList(const OperationList&) = delete;
  OperationList& operator=(const OperationList&) = delete;

  // Fills it, with all groups open.
  void Attach(HWND tree);
  // After a change of the states.
  void Refresh() const;
  // What it takes to show every name in full, in pixels.
  int FullWidth() const;

  // A notification of the tree: the dialog procedure's result, null for what it leaves to others.
  // A double click on an item and Enter post the item's command to the dialog.
  std::optional<LRESULT> OnNotify(NMHDR& notification) const;
  // Of the row that the keyboard is at.
  std::string SelectedDescription() const;

 private:
  struct Row {
    uint32_t command = 0;  // 0 for a group
    std::string description;
  };

  // A tree view's item, which needs a header that not everybody likes to include.
  using Item = void*;

  Item Add(Item parent, const char* name, Row row);
  const Row* RowOf(Item item) const;
  const Row* SelectedRow() const;
  std::string DescriptionOf(const Row& row) const;
  bool Run(Item item) const;
  LRESULT DrawItem(NMHDR& notification) const;

  const OperationStates& states_;
  HWND tree_ = nullptr;
  std::vector<Row> rows_;  // by the items' parameters
  std::vector<Item> items_;
};

}  // namespace zyr
