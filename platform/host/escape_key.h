// Test control of the escape key double.
#pragma once

#include <cstdint>
#include <vector>

namespace zyr::platform::host {

inline constexpr uint32_t kEscapeKey = 0x1B;  // the virtual key's number

struct KeyMessage {
  uint32_t key = 0;
  bool down = true;
};

// The user presses and releases the key: it counts as pressed, and both messages are queued.
void PressEscape();
void QueueKey(const KeyMessage& key);
// Keyboard messages that nobody has taken.
std::vector<KeyMessage> QueuedKeys();

// Presses Escape by itself at the `count`th question from now on, of either kind; 0 never.
void PressEscapeAtQuestion(int count);

// The next `count` questions of an operation come too soon after each other. Without this none
// does, so an operation's questions can be counted.
void AnswerTooSoon(int count);

void ResetEscapeKey();

}  // namespace zyr::platform::host
