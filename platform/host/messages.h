// Test control of the messages double: windows that run a test's handler, and one ordered queue.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "platform/messages.h"

namespace zyr::platform::host {

inline constexpr uint32_t kDestroyMessage = 0x0002;

// A window from construction until DestroyWindowOf or the end of this object. Posted messages reach
// the handler when the test pumps, sent ones at once on the sender's thread.
class FakeWindow {
 public:
  using Handler = std::function<intptr_t(uint32_t message, uintptr_t wParam, intptr_t lParam)>;

  explicit FakeWindow(Handler handler = {});
  // Tells nobody.
  ~FakeWindow();
  FakeWindow(const FakeWindow&) = delete;
  FakeWindow& operator=(const FakeWindow&) = delete;

  Window window() const { return window_; }
  bool alive() const { return IsWindowAlive(window_); }

 private:
  Window window_;
};

struct PostedMessage {
  Window window = nullptr;
  uint32_t message = 0;
  uintptr_t wParam = 0;
  intptr_t lParam = 0;
};
// Messages that are still queued, oldest first.
std::vector<PostedMessage> QueuedMessages();
// Handles the oldest message; false if there was none.
bool PumpOneMessage();
// Handles messages, new ones too, until none is left; how many. Stops after `most`, since a handler
// that posts to itself would keep it busy for ever.
size_t PumpMessages(size_t most = 10'000);

// Answers OfferToDialog for living windows; without one the answer is false.
void OnOfferToDialog(std::function<bool(Window dialog, void* event)> answer);

// Empties the queue and forgets the answer. Living windows stay.
void ResetMessages();

}  // namespace zyr::platform::host
