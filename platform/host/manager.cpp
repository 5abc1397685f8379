#include "platform/host/manager.h"

#include <utility>

#include "platform/manager.h"

namespace zyr::platform {
namespace {

struct State {
  bool present = true;
  std::vector<host::ManagerCall> calls;
  std::function<void(const host::ManagerCall&)> action;
};

State& TheState() {
  static State state;
  return state;
}

}  // namespace

bool CallManager(void* origin, void* destination, uint32_t dataGroup, uint16_t dataArgumentType,
                 uint16_t message, void* data) {
  State& state = TheState();
  if (!state.present) return false;
  const host::ManagerCall call{origin, destination, dataGroup, dataArgumentType, message, data};
  state.calls.push_back(call);
  if (const auto action = state.action) action(call);
  return true;
}

namespace host {

const std::vector<ManagerCall>& ManagerCalls() { return TheState().calls; }
void OnManagerCall(std::function<void(const ManagerCall&)> action) {
  TheState().action = std::move(action);
}
void SetManagerPresent(bool present) { TheState().present = present; }
void ResetManager() { TheState() = {}; }

}  // namespace host
}  // namespace zyr::platform
