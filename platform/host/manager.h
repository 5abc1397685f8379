// Test control of the manager double.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace zyr::platform::host {

struct ManagerCall {
  void* origin = nullptr;
  void* destination = nullptr;
  uint32_t dataGroup = 0;
  uint16_t dataArgumentType = 0;
  uint16_t message = 0;
  void* data = nullptr;
};
// Calls that reached the manager. Without a manager none does.
const std::vector<ManagerCall>& ManagerCalls();

// Runs inside each call, as an application does that starts its transfer there.
void OnManagerCall(std::function<void(const ManagerCall&)> action);
// There is a manager at first.
void SetManagerPresent(bool present);

void ResetManager();

}  // namespace zyr::platform::host
