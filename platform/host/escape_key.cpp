#include "platform/host/escape_key.h"

#include <mutex>

#include "platform/escape_key.h"

namespace zyr::platform {
namespace {

struct State {
  std::mutex mutex;
  bool pressed = false;
  std::vector<host::KeyMessage> queue;
  int questionsUntilPress = 0;
  int questionsTooSoon = 0;
};

State& TheState() {
  static State state;
  return state;
}

void Press(State& state) {
  state.pressed = true;
  state.queue.push_back({host::kEscapeKey, true});
  state.queue.push_back({host::kEscapeKey, false});
}

void CountQuestion(State& state) {
  if (state.questionsUntilPress > 0 && --state.questionsUntilPress == 0) Press(state);
}

}  // namespace

void ClearEscapeKey() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.pressed = false;
}

bool EscapeKeyWasPressed() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  CountQuestion(state);
  const bool pressed = state.pressed;
  state.pressed = false;
  return pressed;
}

EscapeAnswer TakeEscapeMessage() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  CountQuestion(state);
  if (state.questionsTooSoon > 0) {
    --state.questionsTooSoon;
    return EscapeAnswer::kTooSoon;
  }
  const size_t taken = std::erase_if(
      state.queue, [](const host::KeyMessage& message) { return message.key == host::kEscapeKey; });
  return taken != 0 ? EscapeAnswer::kYes : EscapeAnswer::kNo;
}

namespace host {

void PressEscape() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  Press(state);
}

void QueueKey(const KeyMessage& key) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.queue.push_back(key);
}

std::vector<KeyMessage> QueuedKeys() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.queue;
}

void PressEscapeAtQuestion(int count) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.questionsUntilPress = count;
}

void AnswerTooSoon(int count) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.questionsTooSoon = count;
}

void ResetEscapeKey() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.pressed = false;
  state.queue.clear();
  state.questionsUntilPress = 0;
  state.questionsTooSoon = 0;
}

}  // namespace host
}  // namespace zyr::platform
