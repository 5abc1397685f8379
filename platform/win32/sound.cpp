#include "platform/sound.h"

#include "platform/win32/system.h"
// After the system's headers.
#include <mmsystem.h>

namespace zyr::platform {
namespace {

constexpr DWORD kInBackground = SND_RESOURCE | SND_NOWAIT | SND_ASYNC;

}  // namespace

void PlaySoundResource(uint16_t id) {
  PlaySoundA(MAKEINTRESOURCEA(id), OwnModule(), kInBackground);
}

void StopSound() { PlaySoundA(nullptr, nullptr, 0); }

}  // namespace zyr::platform
