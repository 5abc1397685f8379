#include "acquire/image_dialog/operation_history.h"

#include <utility>

namespace zyr {

void CKIPOperationHistory::Push(Image image, std::string description) {
  PushUndo({std::move(image), std::move(description)});
}

void CKIPOperationHistory::PushUndo(CKIPOperationEntry entry) {
  List one;
  one.push_back(std::move(entry));
  MoveToFront(one, undoList_);
}

void CKIPOperationHistory::PushRedo(CKIPOperationEntry entry) {
  List one;
  one.push_back(std::move(entry));
  MoveToFront(one, redoList_);
}

// The head of `one`.
void CKIPOperationHistory::MoveToFront(List& one, List& list) const {
  while (limit != 0 && list.size() >= limit) list.pop_back();
  list.splice(list.begin(), one, one.begin());
}

CKIPOperationHistory::Image CKIPOperationHistory::Move(List& from, List& to, Image current) const {
  if (from.empty()) return nullptr;
  from.front().image.swap(current);
  MoveToFront(from, to);
  return current;
}

CKIPOperationHistory::Image CKIPOperationHistory::Undo(Image current) {
  return Move(undoList_, redoList_, std::move(current));
}

CKIPOperationHistory::Image CKIPOperationHistory::Redo(Image current) {
  return Move(redoList_, undoList_, std::move(current));
}

void CKIPOperationHistory::Clear() {
  undoList_.clear();
  redoList_.clear();
}

CKIPOperationHistory::Image CKIPOperationHistory::NextUndo() const {
  return undoList_.empty() ? nullptr : undoList_.front().image;
}

CKIPOperationHistory::Image CKIPOperationHistory::NextRedo() const {
  return redoList_.empty() ? nullptr : redoList_.front().image;
}

std::string CKIPOperationHistory::GetUndoDescription() const {
  return undoList_.empty() ? std::string() : undoList_.front().description;
}

std::string CKIPOperationHistory::GetRedoDescription() const {
  return redoList_.empty() ? std::string() : redoList_.front().description;
}

}  // namespace zyr
