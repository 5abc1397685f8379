// Test control of the directories double.
#pragma once

#include <string>

namespace zyr::platform::host {

struct Directories {
  std::string windowsDirectory = "C:\\Windows";
  std::string modulePath = "C:\\Windows\\TWAIN_32\\ZYR\\ZYRTWAIN.ds";
  std::string hostProgramPath = "C:\\App\\Imaging.exe";
  std::string hostProgramArgument = "C:\\App\\Imaging.exe";
};
void SetDirectories(const Directories& directories);

void ResetDirectories();

}  // namespace zyr::platform::host
