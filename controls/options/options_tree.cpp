#include "controls/options/options_tree.h"

// After the system's header.
#include <commctrl.h>

#include <algorithm>
#include <string>

#include "controls/dialog_font.h"
#include "controls/text_size.h"
#include "foundation/support/raised_flag.h"

namespace zyr {
namespace {

// Pixels of a plain screen.
constexpr int kTipWidth = 320;
constexpr int kAroundText = 6;  // above and below together
constexpr int kBesideText = 8;
constexpr int kIndent = 19;

}  // namespace

void OptionsTree::Attach(HWND tree) {
  tree_ = tree;
  TreeView_SetItemHeight(tree, LineHeight(tree) + Scaled(kAroundText));
  TreeView_SetIndent(tree, Scaled(kIndent));
  SendMessageA(TreeView_GetToolTips(tree), TTM_SETMAXTIPWIDTH, 0, Scaled(kTipWidth));
}

void OptionsTree::Set(const std::vector<OptionsTreeGroup>& groups) {
  const RaisedFlag selecting(selecting_);
  groups_ = groups;
  rows_.clear();
  TreeView_DeleteAllItems(tree_);
  for (size_t group = 0; group < groups.size(); ++group) {
    Add(nullptr, groups[group].title, {group, 0});
    const Item parent = rows_.back().item;
    for (size_t page = 0; page < groups[group].pages.size(); ++page) {
      Add(parent, groups[group].pages[page], {group, page});
    }
    TreeView_Expand(tree_, static_cast<HTREEITEM>(parent), TVE_EXPAND);
  }
  TreeView_EnsureVisible(tree_, TreeView_GetRoot(tree_));
}

void OptionsTree::Add(Item parent, const std::string& text, const TreePlace& place) {
  std::string copy = text;
  TVINSERTSTRUCTA insert = {};
  insert.hParent = parent != nullptr ? static_cast<HTREEITEM>(parent) : TVI_ROOT;
  insert.hInsertAfter = TVI_LAST;
  insert.item.mask = TVIF_TEXT;
  insert.item.pszText = copy.data();
  const auto item = reinterpret_cast<Item>(
      SendMessageA(tree_, TVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&insert)));
  rows_.push_back({item, place, parent == nullptr});
}

void OptionsTree::Mark(const TreePlace& place) {
  if (Selected() == place) return;
  const auto row = std::find_if(rows_.begin(), rows_.end(), [&place](const Row& known) {
    return known.place == place && !known.isGroup;
  });
  if (row == rows_.end()) return;
  const RaisedFlag selecting(selecting_);
  TreeView_SelectItem(tree_, static_cast<HTREEITEM>(row->item));
  // Where names are wide it has moved sideways for the end of one.
  SendMessageA(tree_, WM_HSCROLL, MAKEWPARAM(SB_THUMBPOSITION, 0), 0);
}

const OptionsTree::Row* OptionsTree::RowOf(Item item) const {
  const auto row = std::find_if(rows_.begin(), rows_.end(),
                                [item](const Row& known) { return known.item == item; });
  return item != nullptr && row != rows_.end() ? &*row : nullptr;
}

std::optional<TreePlace> OptionsTree::Selected() const {
  const Row* const row = RowOf(TreeView_GetSelection(tree_));
  if (row == nullptr) return std::nullopt;
  return row->place;
}

int OptionsTree::FullWidth() const {
  LONG right = 0;
  for (const Row& row : rows_) {
    RECT text;
    if (TreeView_GetItemRect(tree_, static_cast<HTREEITEM>(row.item), &text, TRUE)) {
      right = std::max(right, text.right);
    }
  }
  return static_cast<int>(right) + GetScrollPos(tree_, SB_HORZ) + GetSystemMetrics(SM_CXVSCROLL) +
         Scaled(kBesideText);
}

void OptionsTree::FillTip(NMHDR& notification) const {
  auto& tip = reinterpret_cast<NMTVGETINFOTIPA&>(notification);
  const Row* const row = RowOf(tip.hItem);
  if (row == nullptr || row->place.group >= groups_.size()) return;
  lstrcpynA(tip.pszText, groups_[row->place.group].description.c_str(), tip.cchTextMax);
}

}  // namespace zyr
