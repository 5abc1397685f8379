// What the directory selection dialog shows.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "platform/messages.h"

namespace zyr {

class DirectorySelection;

// What a node of the tree looks like.
enum class DirectoryKind { kFixedDrive, kRemovableDrive, kNetworkDrive, kOpticalDrive, kFolder };

// Calls back into its dialog: OnInitDialog before the window is seen, OnExpand for a node that is
// to be opened and has none below it, OnSelect, OnNewDirectory, OnOK. Texts come translated.
// User-interface thread only. Once the window is gone, operations do nothing.
class DirectorySelectionView {
 public:
  using Node = size_t;
  static constexpr Node kNoNode = 0;

  virtual ~DirectorySelectionView() = default;

  // Modal: true for End(true). False, too, if there can be no window.
  virtual bool Run(DirectorySelection* dialog, platform::Window owner) = 0;
  virtual platform::Window window() const = 0;
  virtual void End(bool accepted) = 0;

  virtual void SetHead(const std::string& text) = 0;
  // Below `parent`, and next to its child `after`, or the first of all for kNoNode; below kNoNode
  // stand the drives. It bears a sign that it can be opened. A number is never used again.
  virtual Node AddNode(Node parent, Node after, const std::string& label, DirectoryKind kind) = 0;
  // With all below it.
  virtual void RemoveNode(Node node) = 0;
  virtual void Expand(Node node) = 0;
  // Whether it bears that sign.
  virtual void SetCanBeOpened(Node node, bool can) = 0;
  // Selects it and brings it into view; with OnSelect.
  virtual void Select(Node node) = 0;
  virtual void SetNewDirectoryEnabled(bool enabled) = 0;

  // The small dialog for a name; false for Cancel. `name` is what stands in its field at first, and
  // then what the user has typed.
  virtual bool AskForName(std::string* name) = 0;
};

}  // namespace zyr
