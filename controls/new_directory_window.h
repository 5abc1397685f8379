// The small dialog for the name of a new directory.
#pragma once

#include <string>

#include "platform/messages.h"

namespace zyr {

// Modal; false for Cancel, or if the owner has gone. `name` is what stands in the field at first,
// and then what the user has typed. User-interface thread only.
bool AskForDirectoryName(platform::Window owner, std::string* name);

}  // namespace zyr
