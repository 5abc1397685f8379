// The installation's folders, without a separator at the end.
#pragma once

#include <string>

namespace zyr {

std::string GetWindowsDirectory();    // asked once, then kept
std::string GetTwainDirectory();      // <Windows>\TWAIN_32, in a 64-bit module <Windows>\TWAIN_64
std::string GetSourceDirectory();     // <TWAIN>\ZYR
std::string GetLanguagesDirectory();  // <source>\Languages

}  // namespace zyr
