// Opening documents with the programs registered for them.
#pragma once

#include <string>

namespace zyr::platform {

// Opens the file with its program; the answer is above 32 on success, otherwise the shell's error
// number.
int OpenWithShell(const std::string& path);

}  // namespace zyr::platform
