// Names of sensors as the user reads them.
#pragma once

#include <string>

namespace zyr {

// Puts the names under which sensors are sold in the place of those that the hardware and its
// settings use ("2000", "LUMORAY"). A name that has been through here stays as it is.
std::string RenameForDisplay(std::string text);

}  // namespace zyr
