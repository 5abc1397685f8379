// Windows of the user interface, addressed by handle. All calls on the thread that owns the
// windows, except PostToWindow and SendToWindow, which any thread may call.
#pragma once

#include <cstdint>

namespace zyr::platform {

using Window = void*;

bool IsWindowAlive(Window window);
void DestroyWindowOf(Window window);

// Queues the message and returns; false if the window is gone.
bool PostToWindow(Window window, uint32_t message, uintptr_t wParam, intptr_t lParam);
// Takes the window's oldest queued message of that number out of the queue, unhandled; false if
// there is none.
bool TakePosted(Window window, uint32_t message, uintptr_t* wParam, intptr_t* lParam);
// Runs the window's handler and returns its result; 0 if the window is gone.
intptr_t SendToWindow(Window window, uint32_t message, uintptr_t wParam, intptr_t lParam);

// Offers the application's window message (a MSG record) to a modeless dialog: true if the message
// was for the dialog and has been dealt with. False for a null or destroyed window.
bool OfferToDialog(Window dialog, void* event);

}  // namespace zyr::platform
