// The tree of the options: groups, and their pages below them.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <vector>

#include "settings/pages/options_dialog_view.h"

namespace zyr {

// Where something is in the tree. A group stands for its first page.
struct TreePlace {
  size_t group = 0;
  size_t page = 0;

  bool operator==(const TreePlace&) const = default;
};

// Speaks for a tree view of the dialog's template. User-interface thread only, while the window
// lives.
class OptionsTree {
 public:
  OptionsTree() = default;
  OptionsTree(const OptionsTree&) = delete;
  OptionsTree& operator=(const OptionsTree&) = delete;

  void Attach(HWND tree);
  // In place of those before, all open.
  void Set(const std::vector<OptionsTreeGroup>& groups);
  // Selects it, unless its group is selected and shows it. There is no telling of that by
  // IsSelecting.
  void Mark(const TreePlace& place);
  std::optional<TreePlace> Selected() const;
  // While Set and Mark change the selection.
  bool IsSelecting() const { return selecting_; }

  // What it takes to show every name in full, in pixels.
  int FullWidth() const;
  void FillTip(NMHDR& notification) const;  // TVN_GETINFOTIP

 private:
  // A tree view's item, which needs a header that not everybody likes to include.
  using Item = void*;

  struct Row {
    Item item;
    TreePlace place;
    bool isGroup;
  };

  void Add(Item parent, const std::string& text, const TreePlace& place);
  const Row* RowOf(Item item) const;

  HWND tree_ = nullptr;
  std::vector<OptionsTreeGroup> groups_;
  std::vector<Row> rows_;
  bool selecting_ = false;
};

}  // namespace zyr
