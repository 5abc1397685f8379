#include "controls/directory_tree.h"

#include <algorithm>
#include <iterator>

#include "controls/dialog_font.h"
#include "controls/directory_icons.h"
#include "controls/text_size.h"

namespace zyr {
namespace {

constexpr int kBetweenLines = 4;  // pixels of a plain screen

// In the order of their numbers.
constexpr DirectoryKind kKinds[] = {DirectoryKind::kFixedDrive, DirectoryKind::kRemovableDrive,
                                    DirectoryKind::kNetworkDrive, DirectoryKind::kOpticalDrive,
                                    DirectoryKind::kFolder};

HIMAGELIST DirectoryImages() {
  const int size = GetSystemMetrics(SM_CXSMICON);
  const HIMAGELIST images =
      ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, static_cast<int>(std::size(kKinds)), 0);
  for (const DirectoryKind kind : kKinds) {
    ImageList_ReplaceIcon(images, -1, DrawDirectoryIcon(kind, size).get());
  }
  return images;
}

}  // namespace

DirectoryTree::~DirectoryTree() { ImageList_Destroy(images_); }

void DirectoryTree::Attach(HWND tree) {
  tree_ = tree;
  items_ = {nullptr};
  images_ = DirectoryImages();
  Send(TVM_SETIMAGELIST, TVSIL_NORMAL, reinterpret_cast<LPARAM>(images_));
  const int line = std::max(LineHeight(tree), GetSystemMetrics(SM_CYSMICON));
  Send(TVM_SETITEMHEIGHT, static_cast<WPARAM>(line + Scaled(kBetweenLines)), 0);
}

void DirectoryTree::Detach() {
  Send(TVM_SETIMAGELIST, TVSIL_NORMAL, 0);
  tree_ = nullptr;
  items_.clear();
}

// Behind a given item, even the ten thousandth is put in place at once.
DirectoryTree::Node DirectoryTree::Add(Node parent, Node after, const std::string& label,
                                       DirectoryKind kind) {
  if (tree_ == nullptr) return kNoNode;
  std::string text = label;
  TVINSERTSTRUCTA insertion = {};
  insertion.hParent = parent == kNoNode ? TVI_ROOT : ItemOf(parent);
  insertion.hInsertAfter = after == kNoNode ? TVI_FIRST : ItemOf(after);
  TVITEMA& item = insertion.item;
  item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_CHILDREN | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
  item.pszText = text.data();
  item.lParam = static_cast<LPARAM>(items_.size());
  item.cChildren = 1;
  item.iImage = item.iSelectedImage = static_cast<int>(kind);
  items_.push_back(nullptr);
  const Node node = items_.size() - 1;
  items_[node] =
      reinterpret_cast<HTREEITEM>(Send(TVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&insertion)));
  return items_[node] != nullptr ? node : kNoNode;
}

void DirectoryTree::Remove(Node node) {
  const HTREEITEM item = ItemOf(node);
  if (item != nullptr) Send(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(item));
}

void DirectoryTree::Expand(Node node) {
  const HTREEITEM item = ItemOf(node);
  if (item != nullptr) Send(TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(item));
}

void DirectoryTree::SetCanBeOpened(Node node, bool can) {
  TVITEMA item = {};
  item.mask = TVIF_HANDLE | TVIF_CHILDREN;
  item.hItem = ItemOf(node);
  item.cChildren = can ? 1 : 0;
  if (item.hItem != nullptr) Send(TVM_SETITEMA, 0, reinterpret_cast<LPARAM>(&item));
}

void DirectoryTree::Select(Node node) {
  const HTREEITEM item = ItemOf(node);
  if (item == nullptr) return;
  Send(TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
  Send(TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(item));
}

bool DirectoryTree::HasChildren(Node node) const {
  const HTREEITEM item = ItemOf(node);
  return item != nullptr && Send(TVM_GETNEXTITEM, TVGN_CHILD, reinterpret_cast<LPARAM>(item)) != 0;
}

void DirectoryTree::OnDeleted(const TVITEMA& item) {
  const Node node = NodeOf(item);
  if (node < items_.size()) items_[node] = nullptr;
}

HTREEITEM DirectoryTree::ItemOf(Node node) const {
  return tree_ != nullptr && node < items_.size() ? items_[node] : nullptr;
}

}  // namespace zyr
