#pragma once

namespace zyr {

// At least `count` captures in series through the manager, returned in groups, the source opened
// anew for each. Prints what the process holds near the start and at the end, a line for each
// figure; ends the process with status 1 if one has grown.
int Soak(unsigned count);

}  // namespace zyr
