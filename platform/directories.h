// Where things are: the Windows folder, this module, the program that loaded it.
#pragma once

#include <string>

namespace zyr::platform {

// Without a separator at the end, as in "C:\Windows".
std::string WindowsDirectory();

// Full path of this module's own file, and of the program whose process this is.
std::string ModulePath();
std::string HostProgramPath();

// First element of the process's argument vector, as the program was started.
std::string HostProgramArgument();

}  // namespace zyr::platform
