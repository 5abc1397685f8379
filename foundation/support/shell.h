// Opening documents for the user.
#pragma once

#include <string>

namespace zyr {

// Opens the file with the program registered for it. On failure the last error says why in words.
bool ShellOpen(const std::string& path);

}  // namespace zyr
