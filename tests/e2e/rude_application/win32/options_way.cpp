#include "tests/e2e/rude_application/win32/options_way.h"

// After the system's header.
#include <commctrl.h>

#include <utility>

namespace zyr {
namespace {

constexpr unsigned kPatience = 15'000;  // milliseconds
constexpr int kPickDirectory = 3270;    // on the page of the scan-to location

HTREEITEM TreeItem(HWND tree, WPARAM relation, HTREEITEM item) {
  return reinterpret_cast<HTREEITEM>(
      SendMessageA(tree, TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)));
}

HWND OptionsTree(const Application& application) {
  return GetDlgItem(application.DialogWith(kOptionsTree), kOptionsTree);
}

void SelectInTree(const Application& application, HTREEITEM item) {
  SendMessageA(OptionsTree(application), TVM_SELECTITEM, TVGN_CARET,
               reinterpret_cast<LPARAM>(item));
}

void OpenHardwarePage(const Application& application) {
  const HWND tree = OptionsTree(application);
  HTREEITEM group = TreeItem(tree, TVGN_ROOT, nullptr);
  while (const HTREEITEM next = TreeItem(tree, TVGN_NEXT, group)) group = next;
  SelectInTree(application, group);
}

void OpenScanToPage(const Application& application) {
  const HWND tree = OptionsTree(application);
  const HTREEITEM group = TreeItem(tree, TVGN_ROOT, nullptr);
  SelectInTree(application, TreeItem(tree, TVGN_NEXT, TreeItem(tree, TVGN_CHILD, group)));
}

BOOL CALLBACK TakePickButton(HWND window, LPARAM found) {
  if (GetDlgCtrlID(window) != kPickDirectory) return TRUE;
  *reinterpret_cast<HWND*>(found) = window;
  return FALSE;
}

HWND PickButton(const Application& application) {
  HWND found = nullptr;
  EnumChildWindows(application.DialogWith(kOptionsTree), TakePickButton,
                   reinterpret_cast<LPARAM>(&found));
  return found;
}

}  // namespace

OptionsWay WayToOptions(Application& application) {
  return {{[&] { return application.IsEnabled(kButtonAcquire); },
           [&] { application.Post(kButtonOptions); }},
          {[&] { return OptionsTree(application) != nullptr; }, [] {}}};
}

OptionsWay WayToPassword(Application& application) {
  OptionsWay way = WayToOptions(application);
  way.back().what = [&] { OpenHardwarePage(application); };
  way.push_back({[&] { return application.DialogWith(kPassword) != nullptr; }, [] {}});
  return way;
}

OptionsWay WayToDirectories(Application& application) {
  OptionsWay way = WayToOptions(application);
  way.back().what = [&] { OpenScanToPage(application); };
  way.push_back({[&] { return PickButton(application) != nullptr; },
                 [&] {
                   const HWND button = PickButton(application);
                   PostMessageA(GetParent(button), WM_COMMAND,
                                MAKEWPARAM(kPickDirectory, BN_CLICKED),
                                reinterpret_cast<LPARAM>(button));
                 }});
  way.push_back({[&] { return application.DialogWith(kDirectoryTree) != nullptr; }, [] {}});
  return way;
}

void DuringOptions(Application& application, OptionsWay way, const std::function<void()>& deed) {
  way.back().what = deed;
  application.Schedule(std::move(way));
  Require(application.PumpUntil([&] { return application.IsScheduleDone(); }, kPatience),
          "the options do not open, or do not go");
}

void RequireNoOptions(const Application& application) {
  for (const int control : {int{kOptionsTree}, int{kPassword}, int{kDirectoryTree}}) {
    Require(application.DialogWith(control) == nullptr, "a dialog of the options stays");
  }
}

}  // namespace zyr
