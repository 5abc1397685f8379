// zyrdialog: see kDialogHelp.
#include <windows.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "tools/zyrdialog/script.h"
#include "tools/zyrdialog/win32/dialog_controls.h"

namespace zyr {
namespace {

constexpr DWORD kLookEvery = 20;  // milliseconds

HWND DialogOf(const DialogScript& script) {
  HWND window = nullptr;
  while ((window = FindWindowExA(nullptr, window, "#32770", script.title.c_str())) != nullptr) {
    if (IsWindowVisible(window)) return window;
  }
  return nullptr;
}

HWND ControlOf(const DialogScript& script, const DialogStep& step) {
  const HWND control = FindControl(DialogOf(script), step.control);
  return step.inner != 0 ? FindControl(control, step.inner) : control;
}

// Posted: what it leads to may take longer than anybody should wait for an answer.
bool Press(const DialogScript& script, const DialogStep& step) {
  const HWND button = ControlOf(script, step);
  return CanBeUsed(button) &&
         PostMessageA(GetParent(button), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(button), BN_CLICKED),
                      reinterpret_cast<LPARAM>(button));
}

bool Command(HWND dialog, const DialogStep& step) {
  return IsWindowEnabled(dialog) && PostMessageA(dialog, WM_COMMAND, step.control, 0);
}

bool HasKeyboard(HWND control) {
  GUITHREADINFO info = {};
  info.cbSize = sizeof info;
  return GetGUIThreadInfo(GetWindowThreadProcessId(control, nullptr), &info) &&
         info.hwndFocus == control;
}

bool PrintPlace(HWND control) {
  RECT place;
  if (!GetWindowRect(control, &place)) return false;
  std::printf("%ld %ld\n", (place.left + place.right) / 2, (place.top + place.bottom) / 2);
  return true;
}

bool PrintFrame(HWND dialog) {
  RECT frame;
  if (!GetWindowRect(dialog, &frame)) return false;
  std::printf("%ldx%ld+%ld+%ld\n", frame.right - frame.left, frame.bottom - frame.top, frame.left,
              frame.top);
  return true;
}

bool Resize(HWND dialog, const DialogStep& step) {
  RECT outer;
  RECT client;
  if (!GetWindowRect(dialog, &outer) || !GetClientRect(dialog, &client)) return false;
  const int width = static_cast<int>(step.width) + outer.right - outer.left - client.right;
  const int height = static_cast<int>(step.height) + outer.bottom - outer.top - client.bottom;
  return SetWindowPos(dialog, nullptr, 0, 0, width, height, SWP_NOZORDER | SWP_NOACTIVATE) != 0;
}

// Whether the step is done, or what it waits for is so.
bool Take(const DialogScript& script, const DialogStep& step, bool* asked) {
  switch (step.action) {
    case DialogAction::kWait:
      return DialogOf(script) != nullptr;
    case DialogAction::kGone:
      return DialogOf(script) == nullptr;
    case DialogAction::kFrame:
      return PrintFrame(DialogOf(script));
    case DialogAction::kSize:
      return Resize(DialogOf(script), step);
    case DialogAction::kPause:
      Sleep(step.width);
      return true;
    case DialogAction::kPress:
      return Press(script, step);
    case DialogAction::kCommand:
      return Command(DialogOf(script), step);
    default:
      break;
  }
  const HWND control = ControlOf(script, step);
  if (control == nullptr) return false;
  switch (step.action) {
    case DialogAction::kEnabled:
      return IsWindowEnabled(control) && IsWindowEnabled(GetAncestor(control, GA_ROOT));
    case DialogAction::kDisabled:
      return !IsWindowEnabled(control);
    case DialogAction::kVisible:
      return IsWindowVisible(control);
    case DialogAction::kHidden:
      return !IsWindowVisible(control);
    case DialogAction::kFocused:
      return HasKeyboard(control);
    case DialogAction::kHas:
      return TextOf(control).find(step.words) != std::string::npos;
    case DialogAction::kSay:
      std::printf("%s\n", TextOf(control).c_str());
      return true;
    case DialogAction::kPlace:
      return PrintPlace(control);
    case DialogAction::kValue:
      std::printf("%s\n", ValueOf(control).c_str());
      return true;
    case DialogAction::kIs:
      return ValueOf(control) == step.words;
    default:
      return SetControl(control, step, asked);
  }
}

bool TakeInTime(const DialogScript& script, const DialogStep& step) {
  const ULONGLONG end = GetTickCount64() + script.seconds * 1000ull;
  bool asked = false;
  while (!Take(script, step, &asked)) {
    if (GetTickCount64() >= end) return false;
    Sleep(kLookEvery);
  }
  return true;
}

// What there is to see, for whoever looks for the reason.
BOOL CALLBACK PrintWindow(HWND window, LPARAM) {
  char text[256] = "";
  if (IsWindowVisible(window) && GetWindowTextA(window, text, sizeof text) > 0) {
    std::fprintf(stderr, "  window '%s'%s\n", text, IsWindowEnabled(window) ? "" : ", disabled");
  }
  return TRUE;
}

int Run(const DialogScript& script) {
  if (script.help) {
    std::fputs(kDialogHelp, stdout);
    return 0;
  }
  if (!script.error.empty()) {
    std::fprintf(stderr, "zyrdialog: %s Try --help.\n", script.error.c_str());
    return 2;
  }
  for (size_t i = 0; i < script.steps.size(); ++i) {
    if (TakeInTime(script, script.steps[i])) continue;
    std::fprintf(stderr, "zyrdialog: step %u took longer than %u s; there are\n",
                 static_cast<unsigned>(i + 1), script.seconds);
    EnumWindows(PrintWindow, 0);
    return 1;
  }
  return 0;
}

}  // namespace
}  // namespace zyr

int main(int argc, char** argv) {
  return zyr::Run(zyr::ParseDialogScript({argv + 1, argv + argc}));
}
