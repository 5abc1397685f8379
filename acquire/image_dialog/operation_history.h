// CKIPOperationHistory: the steps that can be undone and redone.
#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <string>

#include "acquire/image_dialog/image_version.h"

namespace zyr {

struct CKIPOperationEntry {
  std::shared_ptr<ImageVersion> image;  // on the undo list as it was before the step
  std::string description;              // translated
};

// A new step leaves the redo list as it is, on purpose: redo then jumps to the later image. What
// throws std::bad_alloc has changed nothing.
class CKIPOperationHistory {
 public:
  using Image = std::shared_ptr<ImageVersion>;

  uint32_t limit = 0;  // the most entries of a list, 0 for any number

  void Push(Image image, std::string description);
  // In front of the list. The oldest entries make room.
  void PushUndo(CKIPOperationEntry entry);
  void PushRedo(CKIPOperationEntry entry);

  // The image of the list's head, whose entry goes over to the other list with `current` in its
  // place; null, and nothing changes, if the list is empty. Cannot throw.
  Image Undo(Image current);
  Image Redo(Image current);
  void Clear();

  // What Undo and Redo would return.
  Image NextUndo() const;
  Image NextRedo() const;
  bool CanUndo() const { return !undoList_.empty(); }
  bool CanRedo() const { return !redoList_.empty(); }
  // Of the head; empty without one.
  std::string GetUndoDescription() const;
  std::string GetRedoDescription() const;

 private:
  using List = std::list<CKIPOperationEntry>;  // the most recent first

  void MoveToFront(List& one, List& list) const;
  Image Move(List& from, List& to, Image current) const;

  List undoList_;
  List redoList_;
};

}  // namespace zyr
