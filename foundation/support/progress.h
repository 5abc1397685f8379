// How long operations report progress and are cancelled.
#pragma once

namespace zyr {

// Receives a fraction from 0 to 1; null for nobody.
using ProgressCallback = void (*)(double fraction);

inline void Report(ProgressCallback progress, double fraction) {
  if (progress != nullptr) progress(fraction);
}

// One for the process: operations run one at a time. An operation resets it as it starts and asks
// once per row; the answer stays true once Escape was pressed.
namespace cancel_monitor {
void Reset();
bool IsCancelled();
}  // namespace cancel_monitor

}  // namespace zyr
