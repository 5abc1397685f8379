#include "tools/zyrdialog/win32/dialog_controls.h"

// After the system's header.
#include <commctrl.h>

#include <optional>
#include <vector>

namespace zyr {
namespace {

constexpr UINT kAnswerWithin = 5000;  // milliseconds

// No pointer may go along, but with the messages that Windows itself carries over.
std::optional<LRESULT> Ask(HWND control, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
  DWORD_PTR answer = 0;
  if (!SendMessageTimeoutA(control, message, wParam, lParam, SMTO_ABORTIFHUNG, kAnswerWithin,
                           &answer)) {
    return std::nullopt;
  }
  return static_cast<LRESULT>(answer);
}

int AskNumber(HWND control, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
  return static_cast<int>(Ask(control, message, wParam, lParam).value_or(-1));
}

bool IsOfClass(HWND control, const char* name) {
  char own[64] = "";
  GetClassNameA(control, own, sizeof own);
  return lstrcmpiA(own, name) == 0;
}

bool IsTickBox(HWND control) {
  const LONG kind = GetWindowLongA(control, GWL_STYLE) & BS_TYPEMASK;
  return IsOfClass(control, WC_BUTTONA) &&
         (kind == BS_CHECKBOX || kind == BS_AUTOCHECKBOX || kind == BS_RADIOBUTTON ||
          kind == BS_AUTORADIOBUTTON || kind == BS_3STATE || kind == BS_AUTO3STATE);
}

// A list of one of the three kinds, with what tells its owner of a choice.
struct ListKind {
  const char* className;
  UINT count;
  UINT selected;
  WPARAM selectedFrom;
  LPARAM selectedFlags;
  UINT select;  // 0: by the keyboard
  WORD notification;
};
constexpr ListKind kListKinds[] = {
    {WC_COMBOBOXA, CB_GETCOUNT, CB_GETCURSEL, 0, 0, CB_SETCURSEL, CBN_SELCHANGE},
    {WC_LISTBOXA, LB_GETCOUNT, LB_GETCURSEL, 0, 0, LB_SETCURSEL, LBN_SELCHANGE},
    {WC_LISTVIEWA, LVM_GETITEMCOUNT, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED, 0, 0},
};

const ListKind* ListKindOf(HWND control) {
  for (const ListKind& kind : kListKinds) {
    if (IsOfClass(control, kind.className)) return &kind;
  }
  return nullptr;
}

int SelectedOf(HWND list, const ListKind& kind) {
  return AskNumber(list, kind.selected, kind.selectedFrom, kind.selectedFlags);
}

HTREEITEM NextOf(HWND tree, WPARAM relation, HTREEITEM item) {
  return reinterpret_cast<HTREEITEM>(
      Ask(tree, TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)).value_or(0));
}

HTREEITEM ItemAt(HWND tree, const std::vector<uint32_t>& path) {
  HTREEITEM item = nullptr;
  for (const uint32_t index : path) {
    item = item == nullptr ? NextOf(tree, TVGN_ROOT, nullptr) : NextOf(tree, TVGN_CHILD, item);
    for (uint32_t i = 0; i < index && item != nullptr; ++i) item = NextOf(tree, TVGN_NEXT, item);
    if (item == nullptr) break;
  }
  return item;
}

std::string PathOfSelected(HWND tree) {
  std::string path;
  HTREEITEM item = NextOf(tree, TVGN_CARET, nullptr);
  for (; item != nullptr; item = NextOf(tree, TVGN_PARENT, item)) {
    unsigned index = 0;
    HTREEITEM before = NextOf(tree, TVGN_PREVIOUS, item);
    for (; before != nullptr; before = NextOf(tree, TVGN_PREVIOUS, before)) ++index;
    path = std::to_string(index) + (path.empty() ? "" : "/") + path;
  }
  return path;
}

void NotifyOwner(HWND control, WORD notification) {
  PostMessageA(GetParent(control), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(control), notification),
               reinterpret_cast<LPARAM>(control));
}

// Posted: what it leads to may take longer than anybody should wait for an answer.
bool Tick(HWND box, bool wanted, bool* asked) {
  if (AskNumber(box, BM_GETCHECK) == (wanted ? BST_CHECKED : BST_UNCHECKED)) return true;
  if (!*asked) *asked = PostMessageA(box, BM_CLICK, 0, 0);
  return false;
}

bool Choose(HWND list, int index, bool* asked) {
  const ListKind* const kind = ListKindOf(list);
  if (kind == nullptr || index >= AskNumber(list, kind->count)) return false;
  if (SelectedOf(list, *kind) == index) return true;
  if (*asked) return false;
  *asked = true;
  if (kind->select != 0) {
    Ask(list, kind->select, static_cast<WPARAM>(index));
    NotifyOwner(list, kind->notification);
    return true;
  }
  PostMessageA(list, WM_KEYDOWN, VK_HOME, 0);
  for (int i = 0; i < index; ++i) PostMessageA(list, WM_KEYDOWN, VK_DOWN, 0);
  return false;
}

// As when the user lets go of what was dragged.
bool Slide(HWND slider, int position) {
  if (position < AskNumber(slider, TBM_GETRANGEMIN) ||
      position > AskNumber(slider, TBM_GETRANGEMAX)) {
    return false;
  }
  Ask(slider, TBM_SETPOS, TRUE, position);
  const UINT message =
      (GetWindowLongA(slider, GWL_STYLE) & TBS_VERT) != 0 ? WM_VSCROLL : WM_HSCROLL;
  for (const WPARAM request : {MAKEWPARAM(TB_THUMBTRACK, position), MAKEWPARAM(TB_ENDTRACK, 0)}) {
    PostMessageA(GetParent(slider), message, request, reinterpret_cast<LPARAM>(slider));
  }
  return true;
}

// Letter by letter: the field may take only some, and only so many.
bool Type(HWND field, const std::string& text) {
  Ask(field, EM_SETSEL, 0, -1);
  Ask(field, WM_CLEAR);
  for (const char letter : text) Ask(field, WM_CHAR, static_cast<BYTE>(letter));
  return true;
}

bool WorkTree(HWND tree, const DialogStep& step) {
  const HTREEITEM item = ItemAt(tree, step.path);
  if (item == nullptr) return false;
  const auto parameter = reinterpret_cast<LPARAM>(item);
  return step.action == DialogAction::kExpand
             ? PostMessageA(tree, TVM_EXPAND, TVE_EXPAND, parameter)
             : PostMessageA(tree, TVM_SELECTITEM, TVGN_CARET, parameter);
}

struct Search {
  int id;
  HWND found = nullptr;
};

BOOL CALLBACK Visit(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  if (GetDlgCtrlID(window) != search.id) return TRUE;
  const bool seen = IsWindowVisible(window);
  if (seen || search.found == nullptr) search.found = window;
  return !seen;
}

}  // namespace

HWND FindControl(HWND dialog, uint32_t id) {
  const HWND own = GetDlgItem(dialog, static_cast<int>(id));
  if (own != nullptr || dialog == nullptr) return own;
  Search search{static_cast<int>(id)};
  EnumChildWindows(dialog, Visit, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

std::string TextOf(HWND control) {
  std::vector<char> text(1 << 16);
  Ask(control, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
  return text.data();
}

std::string ValueOf(HWND control) {
  if (IsTickBox(control)) return std::to_string(AskNumber(control, BM_GETCHECK));
  if (const ListKind* const kind = ListKindOf(control)) {
    return std::to_string(SelectedOf(control, *kind));
  }
  if (IsOfClass(control, TRACKBAR_CLASSA)) return std::to_string(AskNumber(control, TBM_GETPOS));
  if (IsOfClass(control, WC_TREEVIEWA)) return PathOfSelected(control);
  return TextOf(control);
}

bool CanBeUsed(HWND control) {
  return control != nullptr && IsWindowVisible(control) && IsWindowEnabled(control) &&
         IsWindowEnabled(GetAncestor(control, GA_ROOT));
}

bool SetControl(HWND control, const DialogStep& step, bool* asked) {
  if (!CanBeUsed(control)) return false;
  switch (step.action) {
    case DialogAction::kCheck:
      return Tick(control, true, asked);
    case DialogAction::kUncheck:
      return Tick(control, false, asked);
    case DialogAction::kChoose:
      return Choose(control, step.number, asked);
    case DialogAction::kSlide:
      return Slide(control, step.number);
    case DialogAction::kType:
      return Type(control, step.words);
    default:
      return WorkTree(control, step);
  }
}

}  // namespace zyr
