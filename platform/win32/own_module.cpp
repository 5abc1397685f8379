#include "platform/win32/system.h"

namespace zyr::platform {

HMODULE OwnModule() {
  HMODULE module = nullptr;
  GetModuleHandleExA(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<const char*>(&OwnModule), &module);
  return module;
}

}  // namespace zyr::platform
