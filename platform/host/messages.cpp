#include "platform/host/messages.h"

#include <algorithm>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <utility>

namespace zyr::platform {
namespace {

constexpr uintptr_t kFirstWindow = 0x10010;
constexpr uintptr_t kWindowStep = 2;

struct State {
  std::mutex mutex;
  std::map<Window, host::FakeWindow::Handler> windows;
  uintptr_t nextWindow = kFirstWindow;  // never used again
  std::deque<host::PostedMessage> queue;
  std::function<bool(Window, void*)> offer;
};

State& TheState() {
  static State state;
  return state;
}

// A copy, so that a handler may destroy its own window.
std::optional<host::FakeWindow::Handler> HandlerOf(Window window) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  const auto found = state.windows.find(window);
  if (found == state.windows.end()) return std::nullopt;
  return found->second;
}

void Forget(Window window) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.windows.erase(window);
  std::erase_if(state.queue, [&](const host::PostedMessage& m) { return m.window == window; });
}

}  // namespace

bool IsWindowAlive(Window window) { return HandlerOf(window).has_value(); }

void DestroyWindowOf(Window window) {
  SendToWindow(window, host::kDestroyMessage, 0, 0);
  Forget(window);
}

bool PostToWindow(Window window, uint32_t message, uintptr_t wParam, intptr_t lParam) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  if (state.windows.count(window) == 0) return false;
  state.queue.push_back({window, message, wParam, lParam});
  return true;
}

bool TakePosted(Window window, uint32_t message, uintptr_t* wParam, intptr_t* lParam) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  const auto found = std::find_if(
      state.queue.begin(), state.queue.end(),
      [&](const host::PostedMessage& m) { return m.window == window && m.message == message; });
  if (found == state.queue.end()) return false;
  *wParam = found->wParam;
  *lParam = found->lParam;
  state.queue.erase(found);
  return true;
}

intptr_t SendToWindow(Window window, uint32_t message, uintptr_t wParam, intptr_t lParam) {
  const auto handler = HandlerOf(window);
  return handler && *handler ? (*handler)(message, wParam, lParam) : 0;
}

bool OfferToDialog(Window dialog, void* event) {
  std::function<bool(Window, void*)> offer;
  {
    State& state = TheState();
    const std::lock_guard lock(state.mutex);
    if (state.windows.count(dialog) == 0) return false;
    offer = state.offer;
  }
  return offer && offer(dialog, event);
}

namespace host {

FakeWindow::FakeWindow(Handler handler) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  window_ = reinterpret_cast<Window>(state.nextWindow);
  state.nextWindow += kWindowStep;
  state.windows[window_] = std::move(handler);
}

FakeWindow::~FakeWindow() { Forget(window_); }

std::vector<PostedMessage> QueuedMessages() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return {state.queue.begin(), state.queue.end()};
}

bool PumpOneMessage() {
  PostedMessage next;
  {
    State& state = TheState();
    const std::lock_guard lock(state.mutex);
    if (state.queue.empty()) return false;
    next = state.queue.front();
    state.queue.pop_front();
  }
  SendToWindow(next.window, next.message, next.wParam, next.lParam);
  return true;
}

size_t PumpMessages(size_t most) {
  size_t handled = 0;
  while (handled < most && PumpOneMessage()) ++handled;
  return handled;
}

void OnOfferToDialog(std::function<bool(Window dialog, void* event)> answer) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.offer = std::move(answer);
}

void ResetMessages() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.queue.clear();
  state.offer = nullptr;
}

}  // namespace host
}  // namespace zyr::platform
