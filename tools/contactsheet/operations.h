// What the contact sheet shows.
#pragma once

#include <vector>

#include "tools/contactsheet/sheet.h"

namespace zyr {

// Every operation before and after, in both forms, on parts of the phantom.
std::vector<Entry> ShowOperations();

}  // namespace zyr
