// Ends a program whose data source no longer answers, and answers for a user who is not there.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <thread>

namespace zyr {

// A source works on the program's own thread, so that a message box or a loop in it stops
// everything else there. This thread watches from outside. Construct it on the thread to be
// watched.
class Watchdog {
 public:
  // After `seconds` and a grace without a sign of life the process ends with kExitTimeout; 0:
  // never.
  Watchdog(uint32_t seconds, bool confirmBoxes);
  ~Watchdog();
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;

  void SignOfLife() { lastSign_ = Now(); }

 private:
  static int64_t Now() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
  }
  void Watch();

  const uint32_t seconds_;
  const bool confirmBoxes_;
  const unsigned long watchedThread_;
  std::atomic<int64_t> lastSign_;
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};

}  // namespace zyr
