// The tree of drives and directories.
#pragma once

#include <windows.h>
// After the system's header.
#include <commctrl.h>

#include <string>
#include <vector>

#include "foundation/support/directory_selection_view.h"

namespace zyr {

// Numbers for the items of a tree view control. User-interface thread only.
class DirectoryTree {
 public:
  using Node = DirectorySelectionView::Node;
  static constexpr Node kNoNode = DirectorySelectionView::kNoNode;

  DirectoryTree() = default;
  ~DirectoryTree();
  DirectoryTree(const DirectoryTree&) = delete;
  DirectoryTree& operator=(const DirectoryTree&) = delete;

  // Until Detach, which is to be called while the control is still there.
  void Attach(HWND tree);
  void Detach();

  Node Add(Node parent, Node after, const std::string& label, DirectoryKind kind);
  void Remove(Node node);
  void Expand(Node node);
  void SetCanBeOpened(Node node, bool can);
  void Select(Node node);
  bool HasChildren(Node node) const;

  // The control is deleting an item.
  void OnDeleted(const TVITEMA& item);
  static Node NodeOf(const TVITEMA& item) { return static_cast<Node>(item.lParam); }

 private:
  HTREEITEM ItemOf(Node node) const;
  LRESULT Send(UINT message, WPARAM wParam, LPARAM lParam) const {
    return SendMessageA(tree_, message, wParam, lParam);
  }

  HWND tree_ = nullptr;
  HIMAGELIST images_ = nullptr;
  std::vector<HTREEITEM> items_;  // by their numbers; null for those that are no more
};

}  // namespace zyr
