#include "platform/directories.h"

#include <cstddef>

#include "platform/win32/system.h"

namespace zyr::platform {
namespace {

constexpr size_t kLongestPath = 0x8000;

std::string FileOf(HMODULE module) {
  std::string path(MAX_PATH, '\0');
  for (;;) {
    const DWORD length = GetModuleFileNameA(module, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size() || path.size() >= kLongestPath) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

}  // namespace

std::string WindowsDirectory() {
  char path[1024];
  const UINT length = GetWindowsDirectoryA(path, sizeof path);
  std::string directory(path, length < sizeof path ? length : 0);
  if (!directory.empty() && directory.back() == '\\') directory.pop_back();
  return directory;
}

std::string ModulePath() { return FileOf(OwnModule()); }
std::string HostProgramPath() { return FileOf(nullptr); }

// Taken from the command line: the argument vector belongs to the program's C library, not to ours.
// The first argument ends at its closing quote or a blank; a backslash before a quote means nothing
// in it.
std::string HostProgramArgument() {
  std::string argument;
  bool quoted = false;
  for (const char* c = GetCommandLineA(); *c != '\0'; ++c) {
    if (!quoted && (*c == ' ' || *c == '\t')) break;
    if (*c == '"') {
      quoted = !quoted;
    } else {
      argument += *c;
    }
  }
  return argument;
}

}  // namespace zyr::platform
