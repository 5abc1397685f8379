// How long operations report progress and are cancelled.
#pragma once

#include <atomic>
#include <cstdint>

namespace zyr {

// Receives a fraction from 0 to 1; null for nobody.
using ProgressCallback = void (*)(double fraction);

inline void Report(ProgressCallback progress, double fraction) {
  if (progress != nullptr) progress(fraction);
}

// One for the process: operations run one at a time. An operation resets it as it starts and asks
// once per row; the answer stays true once Escape was pressed. Rows of some ten nanoseconds may
// ask: most of their questions are answered here, and the keyboard is looked at every few
// milliseconds.
namespace cancel_monitor {
// While one stands nothing is cancelled, and Escape is left alone.
class Suspension {
 public:
  Suspension();
  ~Suspension();
  Suspension(const Suspension&) = delete;
  Suspension& operator=(const Suspension&) = delete;
};

namespace internal {
// How many questions are answered "no" before the platform is asked again.
inline std::atomic<uint32_t> unaskedQuestions = 0;
bool AskPlatform();
}  // namespace internal

void Reset();

inline bool IsCancelled() {
  // Two steps instead of a slow atomic one: a lost count does no harm.
  const uint32_t unasked = internal::unaskedQuestions.load(std::memory_order_relaxed);
  if (unasked == 0) return internal::AskPlatform();
  internal::unaskedQuestions.store(unasked - 1, std::memory_order_relaxed);
  return false;
}
}  // namespace cancel_monitor

}  // namespace zyr
