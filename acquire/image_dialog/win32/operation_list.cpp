#include "acquire/image_dialog/win32/operation_list.h"

// After the system's header.
#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "controls/dialog_font.h"
#include "controls/text_size.h"
#include "foundation/support/phrase_lookup.h"

namespace zyr {
namespace {

// Pixels of a plain screen.
constexpr int kTipWidth = 320;
constexpr int kAroundText = 6;  // above and below together
constexpr int kBesideText = 8;
constexpr int kIndent = 19;

// With Enter the dialog would close.
LRESULT CALLBACK TakeEnter(HWND tree, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                           DWORD_PTR) {
  if (message == WM_NCDESTROY) RemoveWindowSubclass(tree, TakeEnter, id);
  const LRESULT result = DefSubclassProc(tree, message, wParam, lParam);
  return message == WM_GETDLGCODE && wParam == VK_RETURN ? result | DLGC_WANTMESSAGE : result;
}

HTREEITEM ItemUnderPointer(HWND tree) {
  TVHITTESTINFO hit = {};
  GetCursorPos(&hit.pt);
  ScreenToClient(tree, &hit.pt);
  TreeView_HitTest(tree, &hit);
  return (hit.flags & TVHT_ONITEM) != 0 ? hit.hItem : nullptr;
}

}  // namespace

void OperationList::Attach(HWND tree) {
  tree_ = tree;
  SetWindowSubclass(tree, TakeEnter, 1, 0);
  TreeView_SetItemHeight(tree, LineHeight(tree) + Scaled(kAroundText));
  TreeView_SetIndent(tree, Scaled(kIndent));
  SendMessageA(TreeView_GetToolTips(tree), TTM_SETMAXTIPWIDTH, 0, Scaled(kTipWidth));
  for (const OperationGroup& group : OperationTree()) {
    const Item parent = Add(nullptr, group.name, {0, group.description});
    for (const OperationItem& item : group.items) {
      Add(parent, item.name, {item.id, item.description});
    }
    TreeView_Expand(tree, static_cast<HTREEITEM>(parent), TVE_EXPAND);
  }
  TreeView_SelectItem(tree, TreeView_GetRoot(tree));
  TreeView_EnsureVisible(tree, TreeView_GetRoot(tree));
  // It is still narrow, and has moved sideways for the end of a long name.
  SendMessageA(tree, WM_HSCROLL, MAKEWPARAM(SB_THUMBPOSITION, 0), 0);
}

OperationList::Item OperationList::Add(Item parent, const char* name, Row row) {
  std::string text = GetPhrase(name);
  TVINSERTSTRUCTA insert = {};
  insert.hParent = parent != nullptr ? static_cast<HTREEITEM>(parent) : TVI_ROOT;
  insert.hInsertAfter = TVI_LAST;
  insert.item.mask = TVIF_TEXT | TVIF_PARAM;
  insert.item.pszText = text.data();
  insert.item.lParam = static_cast<LPARAM>(rows_.size());
  rows_.push_back(std::move(row));
  const auto item = reinterpret_cast<HTREEITEM>(
      SendMessageA(tree_, TVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&insert)));
  items_.push_back(item);
  return item;
}

void OperationList::Refresh() const { InvalidateRect(tree_, nullptr, FALSE); }

int OperationList::FullWidth() const {
  LONG right = 0;
  for (const Item item : items_) {
    RECT text;
    if (TreeView_GetItemRect(tree_, static_cast<HTREEITEM>(item), &text, TRUE)) {
      right = std::max(right, text.right);
    }
  }
  return static_cast<int>(right) + GetSystemMetrics(SM_CXVSCROLL) + Scaled(kBesideText);
}

const OperationList::Row* OperationList::RowOf(Item item) const {
  TVITEMA asked = {};
  asked.mask = TVIF_PARAM;
  asked.hItem = static_cast<HTREEITEM>(item);
  if (item == nullptr || !SendMessageA(tree_, TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&asked))) {
    return nullptr;
  }
  const auto index = static_cast<size_t>(asked.lParam);
  return index < rows_.size() ? &rows_[index] : nullptr;
}

const OperationList::Row* OperationList::SelectedRow() const {
  return RowOf(TreeView_GetSelection(tree_));
}

std::string OperationList::DescriptionOf(const Row& row) const {
  return row.command != 0 ? states_.Description(row.command) : GetPhrase(row.description.c_str());
}

std::string OperationList::SelectedDescription() const {
  const Row* const row = SelectedRow();
  return row != nullptr ? DescriptionOf(*row) : std::string();
}

// Posted: the tree is in the midst of its own work.
bool OperationList::Run(Item item) const {
  const Row* const row = RowOf(item);
  if (row == nullptr || row->command == 0) return false;
  PostMessageA(GetParent(tree_), WM_COMMAND, row->command, 0);
  return true;
}

std::optional<LRESULT> OperationList::OnNotify(NMHDR& notification) const {
  switch (notification.code) {
    case NM_DBLCLK:
      return Run(ItemUnderPointer(tree_));
    case NM_RETURN:
      if (!Run(TreeView_GetSelection(tree_))) {
        TreeView_Expand(tree_, TreeView_GetSelection(tree_), TVE_TOGGLE);
      }
      return TRUE;
    case TVN_GETINFOTIPA: {
      auto& tip = reinterpret_cast<NMTVGETINFOTIPA&>(notification);
      const Row* const row = RowOf(tip.hItem);
      if (row != nullptr) lstrcpynA(tip.pszText, DescriptionOf(*row).c_str(), tip.cchTextMax);
      return 0;
    }
    case NM_CUSTOMDRAW:
      return DrawItem(notification);
    default:
      return std::nullopt;
  }
}

LRESULT OperationList::DrawItem(NMHDR& notification) const {
  auto& draw = reinterpret_cast<NMTVCUSTOMDRAW&>(notification);
  if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  if (draw.nmcd.dwDrawStage != CDDS_ITEMPREPAINT) return CDRF_DODEFAULT;
  const auto index = static_cast<size_t>(draw.nmcd.lItemlParam);
  const bool pale = index < rows_.size() && !states_.IsEnabled(rows_[index].command);
  if (pale && (draw.nmcd.uItemState & CDIS_SELECTED) == 0) {
    draw.clrText = GetSysColor(COLOR_GRAYTEXT);
  }
  return CDRF_DODEFAULT;
}

}  // namespace zyr
