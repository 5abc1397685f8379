#include "platform/manager.h"

#include <memory>

#include "platform/win32/system.h"

namespace zyr::platform {
namespace {

using DsmEntry = uint16_t(WINAPI*)(void* origin, void* destination, uint32_t dataGroup,
                                   uint16_t dataArgumentType, uint16_t message, void* data);

struct LibraryFreer {
  using pointer = HMODULE;
  void operator()(HMODULE module) const { FreeLibrary(module); }
};
using Library = std::unique_ptr<HMODULE, LibraryFreer>;

// Held for the length of the call, during which the application may close its manager. A process
// that has TWAINDSM.dll loaded must not be led to the other manager, which does not know this
// source's application.
Library FindManager() {
  HMODULE loaded = nullptr;
  if (GetModuleHandleExA(0, "TWAINDSM.dll", &loaded)) return Library(loaded);
  return Library(LoadLibraryA("TWAIN_32.DLL"));
}

}  // namespace

bool CallManager(void* origin, void* destination, uint32_t dataGroup, uint16_t dataArgumentType,
                 uint16_t message, void* data) {
  const Library manager = FindManager();
  if (manager == nullptr) return false;
  const auto entry = reinterpret_cast<DsmEntry>(
      reinterpret_cast<void*>(GetProcAddress(manager.get(), "DSM_Entry")));
  if (entry == nullptr) return false;
  entry(origin, destination, dataGroup, dataArgumentType, message, data);
  PostThreadMessageA(GetCurrentThreadId(), WM_NULL, 0, 0);
  return true;
}

}  // namespace zyr::platform
