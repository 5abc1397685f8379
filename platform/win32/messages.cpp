#include "platform/messages.h"

#include "platform/global_memory.h"
#include "platform/win32/system.h"

namespace zyr::platform {

// Each call asks first whether the window lives: a null handle would mean the calling thread, and
// HWND_BROADCAST every window there is.
bool IsWindowAlive(Window window) { return IsWindow(static_cast<HWND>(window)); }

void DestroyWindowOf(Window window) {
  if (IsWindowAlive(window)) DestroyWindow(static_cast<HWND>(window));
}

bool PostToWindow(Window window, uint32_t message, uintptr_t wParam, intptr_t lParam) {
  return IsWindowAlive(window) && PostMessageA(static_cast<HWND>(window), message, wParam, lParam);
}

// WM_QUIT comes for any range of messages; the application's loop must still see it.
bool TakePosted(Window window, uint32_t message, uintptr_t* wParam, intptr_t* lParam) {
  MSG taken;
  if (!IsWindowAlive(window) ||
      !PeekMessageA(&taken, static_cast<HWND>(window), message, message, PM_REMOVE)) {
    return false;
  }
  if (taken.message == WM_QUIT) {
    PostQuitMessage(static_cast<int>(taken.wParam));
    return false;
  }
  *wParam = taken.wParam;
  *lParam = taken.lParam;
  return true;
}

intptr_t SendToWindow(Window window, uint32_t message, uintptr_t wParam, intptr_t lParam) {
  return IsWindowAlive(window) ? SendMessageA(static_cast<HWND>(window), message, wParam, lParam)
                               : 0;
}

bool OfferToDialog(Window dialog, void* event) {
  return IsWindowAlive(dialog) && IsReadable(event, sizeof(MSG)) &&
         IsDialogMessageA(static_cast<HWND>(dialog), static_cast<MSG*>(event));
}

}  // namespace zyr::platform
