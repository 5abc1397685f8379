#include "tools/zyracquire/win32/watchdog.h"

#include <windows.h>

#include <cstdio>
#include <string>

#include "tools/zyracquire/options.h"

namespace zyr {
namespace {

using std::chrono::milliseconds;

constexpr int64_t kGraceMs = 5000;
constexpr milliseconds kLookEvery{100};
constexpr UINT kAnswerMs = 1000;

std::string ClassOf(HWND window) {
  char name[32] = "";
  GetClassNameA(window, name, sizeof name);
  return name;
}

// Not GetWindowText, which waits for ever for a thread that hangs.
std::string TextOf(HWND window) {
  char text[4096] = "";
  DWORD_PTR length = 0;
  SendMessageTimeoutA(window, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text),
                      SMTO_ABORTIFHUNG, kAnswerMs, &length);
  return text;
}

struct BoxParts {
  std::string text;
  bool hasButton = false;
  bool hasOther = false;
};

BOOL CALLBACK LookAtPart(HWND part, LPARAM parameter) {
  auto& parts = *reinterpret_cast<BoxParts*>(parameter);
  const std::string name = ClassOf(part);
  if (name == "Button") {
    parts.hasButton = true;
  } else if (name == "Static") {
    // The other label of a box is its icon.
    const std::string text = TextOf(part);
    if (text.size() > parts.text.size()) parts.text = text;
  } else {
    parts.hasOther = true;
  }
  return TRUE;
}

struct Box {
  HWND window = nullptr;
  std::string text;
};

// A message box is a dialog of nothing but a text, an icon and buttons.
BOOL CALLBACK LookForBox(HWND window, LPARAM parameter) {
  if (!IsWindowVisible(window) || ClassOf(window) != "#32770") return TRUE;
  BoxParts parts;
  EnumChildWindows(window, LookAtPart, reinterpret_cast<LPARAM>(&parts));
  if (!parts.hasButton || parts.hasOther || parts.text.empty()) return TRUE;
  auto& box = *reinterpret_cast<Box*>(parameter);
  box.window = window;
  box.text = parts.text;
  return FALSE;
}

void ConfirmBox(DWORD thread) {
  Box box;
  EnumThreadWindows(thread, LookForBox, reinterpret_cast<LPARAM>(&box));
  if (box.window == nullptr) return;
  std::printf("The source shows a message, '%s': %s\n", TextOf(box.window).c_str(),
              box.text.c_str());
  std::fflush(stdout);
  DWORD_PTR answer = 0;
  SendMessageTimeoutA(box.window, DM_GETDEFID, 0, 0, SMTO_ABORTIFHUNG, kAnswerMs, &answer);
  const WORD button = HIWORD(answer) == DC_HASDEFID ? LOWORD(answer) : IDOK;
  PostMessageA(box.window, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
               reinterpret_cast<LPARAM>(GetDlgItem(box.window, button)));
  for (int i = 0; i < 20 && IsWindow(box.window); ++i) std::this_thread::sleep_for(kLookEvery / 2);
}

}  // namespace

Watchdog::Watchdog(uint32_t seconds, bool confirmBoxes)
    : seconds_(seconds),
      confirmBoxes_(confirmBoxes),
      watchedThread_(GetCurrentThreadId()),
      lastSign_(Now()),
      thread_([this] { Watch(); }) {}

Watchdog::~Watchdog() {
  stop_ = true;
  thread_.join();
}

void Watchdog::Watch() {
  while (!stop_) {
    std::this_thread::sleep_for(kLookEvery);
    if (confirmBoxes_) ConfirmBox(watchedThread_);
    if (seconds_ == 0 || Now() - lastSign_ < int64_t{seconds_} * 1000 + kGraceMs) continue;
    std::fflush(stdout);
    std::fprintf(stderr,
                 "zyracquire: the source has not answered for %u seconds; perhaps it shows a "
                 "message. This program "
                 "ends now.\n",
                 seconds_);
    std::fflush(stderr);
    // Not exit(): what the hanging thread holds would never be given up.
    TerminateProcess(GetCurrentProcess(), kExitTimeout);
  }
}

}  // namespace zyr
