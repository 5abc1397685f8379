#include "platform/escape_key.h"

#include <atomic>
#include <vector>

#include "platform/win32/system.h"

namespace zyr::platform {
namespace {

bool IsEscape(const MSG& message) {
  const bool isKey = message.message == WM_KEYDOWN || message.message == WM_KEYUP ||
                     message.message == WM_SYSKEYDOWN || message.message == WM_SYSKEYUP;
  return isKey && message.wParam == VK_ESCAPE;
}

void PutBack(const MSG& message) {
  if (message.message == WM_QUIT) {
    PostQuitMessage(static_cast<int>(message.wParam));
  } else if (message.hwnd != nullptr) {
    PostMessageA(message.hwnd, message.message, message.wParam, message.lParam);
  } else {
    PostThreadMessageA(GetCurrentThreadId(), message.message, message.wParam, message.lParam);
  }
}

}  // namespace

void ClearEscapeKey() { GetAsyncKeyState(VK_ESCAPE); }

bool EscapeKeyWasPressed() { return (GetAsyncKeyState(VK_ESCAPE) & 1) != 0; }

// Operations ask once for every row of an image, and each look into the queue is a call of the
// system (under Wine of another process): one in so many milliseconds is as good for the user's
// finger.
EscapeAnswer TakeEscapeMessage() {
  constexpr ULONGLONG kLookEvery = 10;
  static std::atomic<ULONGLONG> lastQuestion = 0;
  static std::atomic<ULONGLONG> nextLook = 0;
  // Moves in steps of some 16 ms, but is read in no time, unlike the performance counter.
  const ULONGLONG now = GetTickCount64();
  if (now == lastQuestion) return EscapeAnswer::kTooSoon;
  lastQuestion = now;
  if (now < nextLook) return EscapeAnswer::kNo;
  nextLook = now + kLookEvery;
  EscapeAnswer answer = EscapeAnswer::kNo;
  std::vector<MSG> others;
  // Drained first and put back at the end, so that nothing is met twice. PeekMessage hands out
  // WM_QUIT whatever range is asked for. Sent messages are left out: their handlers could come back
  // into an operation that is under way.
  constexpr UINT kWhat = PM_REMOVE | PM_QS_INPUT | PM_QS_POSTMESSAGE;
  MSG message;
  while (PeekMessageA(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, kWhat)) {
    if (IsEscape(message)) {
      answer = EscapeAnswer::kYes;
    } else {
      others.push_back(message);
    }
  }
  for (const MSG& other : others) PutBack(other);
  return answer;
}

}  // namespace zyr::platform
