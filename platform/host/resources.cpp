#include "platform/host/resources.h"

#include <map>
#include <utility>

#include "platform/ascii.h"

namespace zyr::platform {
namespace {

constexpr uintptr_t kHostProgram = 0x400000;
constexpr uintptr_t kOwnModule = 0x10000000;
constexpr uint32_t kNameNotFound = 1814;  // ERROR_RESOURCE_NAME_NOT_FOUND

using Key = std::pair<ResourceModule, std::string>;

struct State {
  ResourceModule current = host::HostProgramResources();
  std::map<Key, std::vector<uint8_t>> bitmaps;
};

State& TheState() {
  static State state;
  return state;
}

std::string TextOf(uint16_t id) { return "#" + std::to_string(id); }  // as Windows writes ids

}  // namespace

ResourceModule CurrentResources() { return TheState().current; }
ResourceModule OwnResources() { return reinterpret_cast<ResourceModule>(kOwnModule); }
void SetCurrentResources(ResourceModule module) { TheState().current = module; }

std::span<const uint8_t> BitmapResource(const std::string& name, uint32_t* error) {
  State& state = TheState();
  const auto found = state.bitmaps.find({state.current, LowerAscii(name)});
  if (found != state.bitmaps.end()) return found->second;
  *error = kNameNotFound;
  return {};
}

std::span<const uint8_t> BitmapResource(uint16_t id, uint32_t* error) {
  return BitmapResource(TextOf(id), error);
}

namespace host {

ResourceModule HostProgramResources() { return reinterpret_cast<ResourceModule>(kHostProgram); }

void AddBitmap(ResourceModule module, const std::string& name, std::vector<uint8_t> bytes) {
  TheState().bitmaps[{module, LowerAscii(name)}] = std::move(bytes);
}

void AddBitmap(ResourceModule module, uint16_t id, std::vector<uint8_t> bytes) {
  AddBitmap(module, TextOf(id), std::move(bytes));
}

void ResetResources() { TheState() = {}; }

}  // namespace host
}  // namespace zyr::platform
