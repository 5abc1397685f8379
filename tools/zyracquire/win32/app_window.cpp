#include "tools/zyracquire/win32/app_window.h"

#include <windows.h>

#include <chrono>

namespace zyr {
namespace {

constexpr char kClassName[] = "zyracquire";
// A source or manager of old may have something to tell and not wake anybody for it.
constexpr DWORD kAskEveryMs = 250;

// What the source makes of a message. True if it is the source's own.
bool Offer(Manager* manager, TW_IDENTITY* source, MSG* message, TW_UINT16* answer) {
  TW_EVENT event{message, MSG_NULL};
  const TW_UINT16 result = manager->Call(source, DG_CONTROL, DAT_EVENT, MSG_PROCESSEVENT, &event);
  *answer = event.TWMessage;
  return result == TWRC_DSEVENT;
}

bool ToEvent(TW_UINT16 answer, SourceEvent* event) {
  if (answer == MSG_XFERREADY) {
    *event = SourceEvent::kXferReady;
    return true;
  }
  if (answer == MSG_CLOSEDSREQ || answer == MSG_CLOSEDSOK) {
    *event = SourceEvent::kCloseRequest;
    return true;
  }
  return false;
}

// Works off the queue. True once the source has something to do.
bool Pump(Manager* manager, TW_IDENTITY* source, SourceEvent* event) {
  MSG message{};
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      *event = SourceEvent::kCloseRequest;
      return true;
    }
    TW_UINT16 answer = MSG_NULL;
    const bool taken = Offer(manager, source, &message, &answer);
    if (ToEvent(answer, event)) return true;
    if (taken) continue;
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  return false;
}

}  // namespace

AppWindow::AppWindow() {
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = DefWindowProcA;
  windowClass.hInstance = GetModuleHandleA(nullptr);
  windowClass.lpszClassName = kClassName;
  RegisterClassA(&windowClass);
  // Never shown; the source's window is.
  window_ =
      CreateWindowExA(0, kClassName, "zyracquire", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                      CW_USEDEFAULT, 640, 480, nullptr, nullptr, windowClass.hInstance, nullptr);
}

AppWindow::~AppWindow() {
  if (window_ != nullptr) DestroyWindow(static_cast<HWND>(window_));
}

SourceEvent AppWindow::Wait(Manager* manager, TW_IDENTITY* source, Watchdog* watchdog,
                            uint32_t timeoutSeconds) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point deadline = Clock::now() + std::chrono::seconds(timeoutSeconds);
  SourceEvent event = SourceEvent::kTimeout;
  for (;;) {
    if (Pump(manager, source, &event)) return event;
    watchdog->SignOfLife();
    if (timeoutSeconds != 0 && Clock::now() >= deadline) return SourceEvent::kTimeout;
    if (MsgWaitForMultipleObjects(0, nullptr, FALSE, kAskEveryMs, QS_ALLINPUT) != WAIT_TIMEOUT)
      continue;
    MSG nothing{};
    nothing.hwnd = static_cast<HWND>(window_);
    nothing.message = WM_NULL;
    TW_UINT16 answer = MSG_NULL;
    Offer(manager, source, &nothing, &answer);
    if (ToEvent(answer, &event)) return event;
  }
}

}  // namespace zyr
