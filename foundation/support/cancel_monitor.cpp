#include <atomic>

#include "foundation/support/progress.h"
#include "platform/escape_key.h"

namespace zyr::cancel_monitor {
namespace {

std::atomic<bool> g_cancelled = false;

}  // namespace

void Reset() { g_cancelled = false; }

bool IsCancelled() {
  if (!g_cancelled && platform::TakeEscapeMessage()) g_cancelled = true;
  return g_cancelled;
}

}  // namespace zyr::cancel_monitor
