#include "settings/directories.h"

#include "foundation/support/format.h"
#include "platform/directories.h"

namespace zyr {
namespace {

// Each manager looks for the sources of its own bitness.
constexpr const char* kTwainFolder = sizeof(void*) == 8 ? "TWAIN_64" : "TWAIN_32";

}  // namespace

std::string GetWindowsDirectory() {
  static const std::string directory = platform::WindowsDirectory();
  return directory;
}

std::string GetTwainDirectory() {
  return FormatText("%s\\%s", GetWindowsDirectory().c_str(), kTwainFolder);
}

std::string GetSourceDirectory() { return FormatText("%s\\ZYR", GetTwainDirectory().c_str()); }

std::string GetLanguagesDirectory() {
  return FormatText("%s\\Languages", GetSourceDirectory().c_str());
}

}  // namespace zyr
