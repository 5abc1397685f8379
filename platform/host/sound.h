// Test control of the sound double.
#pragma once

#include <cstdint>
#include <vector>

namespace zyr::platform::host {

// In the order in which they began.
const std::vector<uint16_t>& PlayedSounds();
// One plays until it is stopped.
bool IsSoundPlaying();

void ResetSounds();

}  // namespace zyr::platform::host
