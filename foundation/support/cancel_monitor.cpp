#include <algorithm>
#include <atomic>

#include "foundation/support/progress.h"
#include "platform/escape_key.h"

namespace zyr::cancel_monitor {
namespace {

// Rows may suddenly take longer than the ones before: the most of them to pass in good faith.
constexpr uint32_t kMostUnasked = 255;

std::atomic<bool> g_cancelled = false;
std::atomic<uint32_t> g_suspensions = 0;
std::atomic<uint32_t> g_pace = 0;  // how many questions the last answer was good for

void SetPace(uint32_t pace) {
  g_pace.store(pace, std::memory_order_relaxed);
  internal::unaskedQuestions.store(pace, std::memory_order_relaxed);
}

}  // namespace

Suspension::Suspension() { ++g_suspensions; }
Suspension::~Suspension() { --g_suspensions; }

void Reset() {
  g_cancelled.store(false, std::memory_order_relaxed);
  SetPace(0);
}

// While the platform finds the questions too frequent, ever more of them pass unasked: each time
// a quarter of those so far, so that an answer is late by a quarter of the platform's patience.
bool internal::AskPlatform() {
  if (g_suspensions.load(std::memory_order_relaxed) != 0) return false;
  if (g_cancelled.load(std::memory_order_relaxed)) return true;
  const platform::EscapeAnswer answer = platform::TakeEscapeMessage();
  const bool tooSoon = answer == platform::EscapeAnswer::kTooSoon;
  const uint32_t pace = g_pace.load(std::memory_order_relaxed);
  SetPace(tooSoon ? std::min(pace + pace / 4 + 1, kMostUnasked) : 0);
  if (answer != platform::EscapeAnswer::kYes) return false;
  g_cancelled.store(true, std::memory_order_relaxed);
  return true;
}

}  // namespace zyr::cancel_monitor
