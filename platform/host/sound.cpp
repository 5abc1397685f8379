#include "platform/host/sound.h"

#include "platform/sound.h"

namespace zyr::platform {
namespace {

struct State {
  std::vector<uint16_t> played;
  bool playing = false;
};

State& TheState() {
  static State state;
  return state;
}

}  // namespace

void PlaySoundResource(uint16_t id) {
  TheState().played.push_back(id);
  TheState().playing = true;
}

void StopSound() { TheState().playing = false; }

namespace host {

const std::vector<uint16_t>& PlayedSounds() { return TheState().played; }
bool IsSoundPlaying() { return TheState().playing; }
void ResetSounds() { TheState() = {}; }

}  // namespace host
}  // namespace zyr::platform
