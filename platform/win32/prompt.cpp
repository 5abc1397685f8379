#include "platform/prompt.h"

#include <atomic>
#include <cstdio>

#include "platform/own_module.h"
#include "platform/win32/system.h"

namespace zyr::platform {
namespace {

std::atomic<bool> printed = false;

UINT StyleOf(PromptKind kind) {
  switch (kind) {
    case PromptKind::kQuestion:  // Enter in haste must not delete what took an exposure to get
      return MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2;
    case PromptKind::kWarning:
      return MB_OK | MB_ICONWARNING;
    case PromptKind::kError:
      break;
  }
  return MB_OK | MB_ICONERROR;
}

}  // namespace

bool ShowPrompt(Window owner, const std::string& text, const std::string& title, PromptKind kind) {
  if (printed) {
    std::fprintf(stderr, "%s: %s\n", title.c_str(), text.c_str());
    return true;
  }
  const LoopVisit visit;
  const HWND window = IsWindowAlive(owner) ? static_cast<HWND>(owner) : nullptr;
  // Without an owner no window would be disabled, and the user could go on behind the notice.
  const UINT modality = window == nullptr ? MB_TASKMODAL : MB_APPLMODAL;
  const int answer = MessageBoxA(window, text.c_str(), title.c_str(), StyleOf(kind) | modality);
  return kind != PromptKind::kQuestion || answer == IDYES;
}

void PrintPrompts() { printed = true; }

}  // namespace zyr::platform
