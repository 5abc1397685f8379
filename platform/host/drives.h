// Test control of the drives double.
#pragma once

#include <vector>

#include "platform/drives.h"

namespace zyr::platform::host {

void SetDrives(std::vector<Drive> drives);

// A fixed drive C, labelled "System", and nothing else.
void ResetDrives();

}  // namespace zyr::platform::host
