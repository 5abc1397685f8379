// Sounds among the module's resources.
#pragma once

#include <cstdint>

namespace zyr::platform {

// Begins to play the wave resource of this module and returns; a sound that plays already is cut
// off. Without a sound device, or while it is another program's, nothing is heard.
void PlaySoundResource(uint16_t id);
// Ends what plays: to be called before the module goes, since the system plays from its memory.
void StopSound();

}  // namespace zyr::platform
