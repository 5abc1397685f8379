// DirectorySelection: the dialog in which the user chooses a folder.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "foundation/support/directory_selection_view.h"

namespace zyr {

// The tree is read one level at a time, when the user opens it. User-interface thread only.
class DirectorySelection {
 public:
  explicit DirectorySelection(DirectorySelectionView& view) : view_(view) {}

  std::string head;                 // translated; empty for a general one
  std::string directory = "C:\\";   // selected at first, and the chosen one after Run
  bool removableForbidden = false;  // drives whose medium can be taken out

  // Modal. True if the user has chosen one; otherwise `directory` is as it was.
  bool Run(platform::Window owner);

  // Events of the view.
  void OnInitDialog();
  void OnExpand(DirectorySelectionView::Node node);
  void OnSelect(DirectorySelectionView::Node node);
  void OnNewDirectory();
  void OnOK();

 private:
  using Node = DirectorySelectionView::Node;
  static constexpr Node kNoNode = DirectorySelectionView::kNoNode;

  struct Entry {
    Node parent = kNoNode;
    std::string path = {};  // a drive's ends with a separator
    DirectoryKind kind = DirectoryKind::kFolder;
    bool listed = false;
    std::vector<Node> children = {};  // in their order in the tree
  };

  const Entry* Find(Node node) const;
  const std::string& PathOf(Node node) const { return nodes_.at(node).path; }
  Node DriveOf(Node node) const;
  Node ChildNamed(Node parent, const std::string& name) const;

  void AddDrives();
  Node AddNode(Node parent, size_t at, Entry entry, const std::string& label);
  Node AddFolder(Node parent, size_t at, const std::string& name);
  bool List(Node node);
  void Remove(Node node);
  void Forget(Node node);

  Node StartingNode();
  Node RootFor(const std::string& root);
  Node FirstDrive() const;
  Node Follow(Node root, const std::vector<std::string>& names);

  bool CanBeChosen(Node node);
  bool PathFits(Node node) const;
  void TellUnreadable(Node node);
  void TellVanished(Node node);

  bool MakeIn(Node parent, const std::string& name);
  void ShowNew(Node parent, const std::string& name);
  size_t PlaceOf(Node parent, const std::string& name) const;

  void Tell(const std::string& text, const char* title) const;

  DirectorySelectionView& view_;
  std::map<Node, Entry> nodes_;  // the drives are the children of kNoNode
  Node selected_ = kNoNode;
  std::string chosen_;
};

}  // namespace zyr
