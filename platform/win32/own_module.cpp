#include "platform/own_module.h"

#include <atomic>
#include <exception>
#include <utility>

#include "platform/thread.h"
#include "platform/win32/system.h"

namespace zyr::platform {
namespace {

// How this module goes.
//
// A thread of the module has a reference of its own, which the system lets go of as the thread
// ends. The application's thread has one more reference while a window of ours is open, and since
// any call of ours that has others run inside it: they may have done the program's last call, and
// lead back here. It goes in one of two ways:
// - At the end of the entry's outermost call, if nobody came in through the entry meanwhile: the
//   caller then still has a reference, so that this one is not the last. So a program that closes
//   the source before it unloads the module has it unloaded at once.
// - Otherwise it may be the last, and nothing may return into this module from its release. A timer
//   waits until no call of ours is under way, and then a thread sends a message to a window of a
//   class of the system's. The application's thread can handle that only when it looks for messages
//   again: outside this module, or inside a call that has come meanwhile, with its own reference.
constexpr UINT kPatience = 1000;  // milliseconds, for a program that is about to close the source
constexpr UINT_PTR kTimer = 1;

bool processIsEnding = false;

std::atomic<DWORD> applicationThread = 0;  // of the last visit

// Of that thread alone.
int visits = 0;                 // under way, one inside the other
bool calledFromInside = false;  // the entry was, or could be, during the outermost visit
Window openWindow = nullptr;    // keeps its value when the window is gone
HMODULE reference = nullptr;
HWND anchor = nullptr;  // has the timer

void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD);

// The anchor dies with its thread, which may be another one than before.
void Hold() {
  if (reference == nullptr) reference = ReferenceOwnModule();
  if (IsWindow(anchor)) return;
  anchor =
      CreateWindowExA(0, "STATIC", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  if (anchor != nullptr) SetTimer(anchor, kTimer, kPatience, OnTimer);
}

// For a caller that has a reference. An anchor of another thread's stays, and its timer lets go.
void LetGo() {
  if (IsWindow(anchor) && !DestroyWindow(anchor)) return;
  anchor = nullptr;
  if (reference != nullptr) FreeLibrary(std::exchange(reference, nullptr));
}

void LetGoOutside() {
  const HMODULE module = reference;
  const HWND window = anchor;
  const auto thread = StartThread(
      [module, window] {
        SendMessageA(window, WM_CLOSE, 0, 0);  // which destroys it
        FreeLibrary(module);
        return 0u;
      },
      nullptr);
  if (thread == nullptr) return;  // the timer comes again
  KillTimer(anchor, kTimer);
  reference = nullptr;
  anchor = nullptr;
}

void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) {
  if (visits != 0 || IsWindowAlive(openWindow)) return;
  try {
    LetGoOutside();
  } catch (const std::exception&) {  // no memory now
  }
}

void Enter() {
  if (visits++ != 0) return;
  calledFromInside = false;
  applicationThread = GetCurrentThreadId();
}

}  // namespace

HMODULE OwnModule() {
  HMODULE module = nullptr;
  GetModuleHandleExA(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<const char*>(&OwnModule), &module);
  return module;
}

HMODULE ReferenceOwnModule() {
  HMODULE module = nullptr;
  GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                     reinterpret_cast<const char*>(&OwnModule), &module);
  return module;
}

bool ProcessIsEnding() { return processIsEnding; }

EntryVisit::EntryVisit() {
  Enter();
  if (visits == 1) return;
  calledFromInside = true;
  Hold();
}

EntryVisit::~EntryVisit() {
  if (--visits != 0) return;
  if (IsWindowAlive(openWindow)) {
    Hold();
  } else if (!calledFromInside) {
    LetGo();
  }
}

WindowVisit::WindowVisit() {
  Enter();
  Hold();
}

WindowVisit::~WindowVisit() { --visits; }

// As if called from inside: the reference may be the last one when the call comes to its end.
LoopVisit::LoopVisit() : counts_(GetCurrentThreadId() == applicationThread) {
  if (!counts_) return;
  Enter();
  calledFromInside = true;
  Hold();
}

LoopVisit::~LoopVisit() {
  if (counts_) --visits;
}

void StayLoadedWith(Window window) { openWindow = window; }

}  // namespace zyr::platform

// Called before the module's objects are destroyed; `reserved` is null when a program unloads the
// module.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* reserved) {
  if (reason == DLL_PROCESS_DETACH && reserved != nullptr) zyr::platform::processIsEnding = true;
  return TRUE;
}
