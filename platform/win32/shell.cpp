#include "platform/shell.h"

#include "platform/win32/system.h"
// After the system's headers.
#include <shellapi.h>

namespace zyr::platform {

int OpenWithShell(const std::string& path) {
  const HINSTANCE answer =
      ShellExecuteA(nullptr, "open", path.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
  return static_cast<int>(reinterpret_cast<intptr_t>(answer));  // no module: a small number
}

}  // namespace zyr::platform
