#include "tests/e2e/rude_application/win32/settings_access.h"

#include <windows.h>

#include <sddl.h>

namespace zyr {
namespace {

constexpr char kEverybody[] = "D:(A;;KA;;;WD)";
constexpr char kReadersOnly[] = "D:(D;;0x0006;;;WD)(A;;KA;;;WD)";  // no values, no keys below it

}  // namespace

bool AllowWritingSettings(bool allow) {
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE\\ZYR\\TWAIN", 0, WRITE_DAC, &key) !=
      ERROR_SUCCESS) {
    return false;
  }
  PSECURITY_DESCRIPTOR rights = nullptr;
  const bool done = ConvertStringSecurityDescriptorToSecurityDescriptorA(
                        allow ? kEverybody : kReadersOnly, SDDL_REVISION_1, &rights, nullptr) &&
                    RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, rights) == ERROR_SUCCESS;
  LocalFree(rights);
  RegCloseKey(key);
  return done;
}

}  // namespace zyr
