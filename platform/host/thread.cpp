#include "platform/host/thread.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace zyr::platform {
namespace {

constexpr uint32_t kNotEnoughMemory = 8;

struct Started {
  std::function<uint32_t()> procedure;
  bool isHeld = false;
  bool isOver = false;
};

struct State {
  ~State() {
    for (std::thread& thread : running) thread.join();
  }

  std::mutex mutex;
  std::condition_variable someEnded;
  std::vector<std::thread> running;  // ended ones too
  std::deque<std::shared_ptr<Started>> held;
  bool hold = false;
  bool failNext = false;
  size_t started = 0;
  size_t timeCritical = 0;
};

State& TheState() {
  static State state;
  return state;
}

void Run(Started& thread) {
  thread.procedure();
  thread.procedure = nullptr;
  State& state = TheState();
  {
    const std::lock_guard lock(state.mutex);
    thread.isOver = true;
  }
  state.someEnded.notify_all();
}

class HostThread : public Thread {
 public:
  explicit HostThread(std::shared_ptr<Started> started) : started_(std::move(started)) {}

  void MakeTimeCritical() override {
    State& state = TheState();
    const std::lock_guard lock(state.mutex);
    ++state.timeCritical;
  }

  // Nothing would ever end a wait for a held thread.
  bool Join(uint32_t milliseconds) override {
    State& state = TheState();
    std::unique_lock lock(state.mutex);
    if (started_->isHeld) return started_->isOver;
    return state.someEnded.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                    [this] { return started_->isOver; });
  }

 private:
  std::shared_ptr<Started> started_;
};

}  // namespace

std::unique_ptr<Thread> StartThread(std::function<uint32_t()> procedure, uint32_t* error) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  if (std::exchange(state.failNext, false)) {
    if (error != nullptr) *error = kNotEnoughMemory;
    return nullptr;
  }
  auto started = std::make_shared<Started>();
  started->procedure = std::move(procedure);
  started->isHeld = state.hold;
  ++state.started;
  if (state.hold) {
    state.held.push_back(started);
  } else {
    state.running.emplace_back([started] { Run(*started); });
  }
  return std::make_unique<HostThread>(std::move(started));
}

namespace host {

void HoldThreads(bool hold) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.hold = hold;
}

bool RunHeldThread() {
  State& state = TheState();
  std::shared_ptr<Started> next;
  {
    const std::lock_guard lock(state.mutex);
    if (state.held.empty()) return false;
    next = state.held.front();
    state.held.pop_front();
  }
  Run(*next);
  return true;
}

size_t HeldThreads() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.held.size();
}

size_t StartedThreads() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.started;
}

size_t TimeCriticalThreads() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.timeCritical;
}

void FailNextThread() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.failNext = true;
}

void ResetThreads() {
  State& state = TheState();
  std::vector<std::thread> running;
  std::deque<std::shared_ptr<Started>> held;
  {
    const std::lock_guard lock(state.mutex);
    running.swap(state.running);
    held.swap(state.held);
    state.hold = state.failNext = false;
    state.started = state.timeCritical = 0;
  }
  for (std::thread& thread : running) thread.join();
}

}  // namespace host
}  // namespace zyr::platform
