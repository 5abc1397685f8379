#pragma once

#include <string>

namespace zyr {

// Runs the one of that name, or "all" of them: those that can follow each other in one process, and
// the first one that ends it.
void RunScenarios(const std::string& names);

}  // namespace zyr
