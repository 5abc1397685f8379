#include "platform/host/clipboard.h"

#include <utility>

#include "platform/clipboard.h"

namespace zyr::platform {
namespace {

struct State {
  std::vector<uint8_t> dib;
  Window owner = nullptr;
  size_t changes = 0;
  bool held = false;
};

State& TheState() {
  static State state;
  return state;
}

std::vector<uint8_t> BytesOf(GlobalHandle handle) {
  const LockedBlock block(handle);
  const auto* bytes = static_cast<const uint8_t*>(block.address());
  return bytes != nullptr ? std::vector<uint8_t>(bytes, bytes + block.size())
                          : std::vector<uint8_t>();
}

}  // namespace

// The block is freed in any case: what it held stands for the system's.
bool PutDibOnClipboard(Window owner, GlobalHandle packedDib) {
  State& state = TheState();
  std::vector<uint8_t> dib = BytesOf(packedDib);
  FreeBlock(packedDib);
  if (dib.empty() || state.held) return false;
  state.dib = std::move(dib);
  state.owner = owner;
  ++state.changes;
  return true;
}

namespace host {

const std::vector<uint8_t>& ClipboardDib() { return TheState().dib; }
Window ClipboardOwner() { return TheState().owner; }
size_t ClipboardChanges() { return TheState().changes; }
void SetClipboardHeld(bool held) { TheState().held = held; }
void ResetClipboard() { TheState() = {}; }

}  // namespace host
}  // namespace zyr::platform
