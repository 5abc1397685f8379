#include "platform/host/clock.h"

#include <array>
#include <chrono>
#include <ctime>
#include <mutex>
#include <optional>
#include <thread>

#include "platform/clock.h"

namespace zyr::platform {
namespace {

constexpr int64_t kMillisecondsPerDay = 86'400'000;

struct State {
  std::mutex mutex;
  std::optional<int64_t> stoppedAt;  // milliseconds since 1970
  uint64_t ticks = 0;                // of the stopped clock
  uint64_t slept = 0;
};

State& TheState() {
  static State state;
  return state;
}

int64_t RealMilliseconds() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

uint64_t RealTicks() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

int64_t Milliseconds() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.stoppedAt.value_or(RealMilliseconds());
}

void Stop(State& state, int64_t milliseconds) {
  if (!state.stoppedAt) state.ticks = RealTicks();
  state.stoppedAt = milliseconds;
}

void Step(State& state, uint64_t milliseconds) {
  *state.stoppedAt += static_cast<int64_t>(milliseconds);
  state.ticks += milliseconds;
}

std::string TwoDigits(int number) {
  return {static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
}

}  // namespace

int64_t Now() {
  return std::chrono::floor<std::chrono::seconds>(std::chrono::milliseconds(Milliseconds()))
      .count();
}

TimeOfDay UtcTimeOfDay() {
  const int64_t inDay =
      (Milliseconds() % kMillisecondsPerDay + kMillisecondsPerDay) % kMillisecondsPerDay;
  const auto rest = static_cast<uint32_t>(inDay);
  return {rest / 3'600'000, rest / 60'000 % 60, rest / 1000 % 60, rest % 1000};
}

uint64_t Ticks() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.stoppedAt ? state.ticks : RealTicks();
}

void SleepFor(uint32_t milliseconds) {
  State& state = TheState();
  {
    const std::lock_guard lock(state.mutex);
    if (state.stoppedAt) {
      Step(state, milliseconds);
      state.slept += milliseconds;
      milliseconds = 0;
    }
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

std::string LongDateTimeText(int64_t time) {
  static constexpr std::array kDays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                       "Thursday", "Friday", "Saturday"};
  static constexpr std::array kMonths = {"January",   "February", "March",    "April",
                                         "May",       "June",     "July",     "August",
                                         "September", "October",  "November", "December"};
  const auto seconds = static_cast<std::time_t>(time);
  const std::lock_guard lock(TheState().mutex);  // localtime's record is shared
  const std::tm* local = std::localtime(&seconds);
  if (local == nullptr) return {};
  const int hour = local->tm_hour % 12 == 0 ? 12 : local->tm_hour % 12;
  return std::string(kDays.at(static_cast<size_t>(local->tm_wday))) + ", " +
         kMonths.at(static_cast<size_t>(local->tm_mon)) + " " + TwoDigits(local->tm_mday) + ", " +
         std::to_string(local->tm_year + 1900) + "  " + std::to_string(hour) + ":" +
         TwoDigits(local->tm_min) + ":" + TwoDigits(local->tm_sec) +
         (local->tm_hour < 12 ? "AM" : "PM");
}

namespace host {

void SetClock(int64_t time) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  Stop(state, time * 1000);
}

void AdvanceClock(uint64_t milliseconds) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  if (!state.stoppedAt) Stop(state, RealMilliseconds());
  Step(state, milliseconds);
}

uint64_t TimeSlept() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.slept;
}

void ResetClock() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.stoppedAt.reset();
  state.slept = 0;
}

}  // namespace host
}  // namespace zyr::platform
