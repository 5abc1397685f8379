#include "platform/host/directories.h"

#include "platform/directories.h"

namespace zyr::platform {
namespace {

host::Directories& TheDirectories() {
  static host::Directories directories;
  return directories;
}

}  // namespace

std::string WindowsDirectory() { return TheDirectories().windowsDirectory; }
std::string ModulePath() { return TheDirectories().modulePath; }
std::string HostProgramPath() { return TheDirectories().hostProgramPath; }
std::string HostProgramArgument() { return TheDirectories().hostProgramArgument; }

namespace host {

void SetDirectories(const Directories& directories) { TheDirectories() = directories; }
void ResetDirectories() { TheDirectories() = {}; }

}  // namespace host
}  // namespace zyr::platform
