#include "settings/password/password_tries.h"

#include <algorithm>
#include <limits>

#include "foundation/support/registry.h"
#include "platform/clock.h"
#include "settings/settings_key.h"

namespace zyr {
namespace {

constexpr char kCount[] = "HardwarePasswordTries";
constexpr char kTriedAt[] = "HardwarePasswordTriedAt";

constexpr uint32_t kLongestWait = 60;  // seconds
constexpr uint32_t kDoublings = 6;     // and it is reached
constexpr uint64_t kMillisecondsPerSecond = 1000;

int64_t SecondsAfter(uint32_t wrongTries) {
  if (wrongTries == 0) return 0;
  return std::min(kLongestWait, 1u << std::min(wrongTries - 1, kDoublings));
}

}  // namespace

uint32_t PasswordTries::SecondsLeft() {
  TakeOverChanges();
  const uint64_t now = platform::Ticks();
  if (now >= waitEnds_) return 0;
  const uint64_t left = waitEnds_ - now;
  return static_cast<uint32_t>((left + kMillisecondsPerSecond - 1) / kMillisecondsPerSecond);
}

void PasswordTries::AddWrongOne() {
  TakeOverChanges();
  if (count_ < std::numeric_limits<uint32_t>::max()) ++count_;
  WaitFor(SecondsAfter(count_));
  Save();
}

void PasswordTries::Forget() {
  TakeOverChanges();
  if (count_ == 0) return;
  count_ = 0;
  WaitFor(0);
  Save();
}

PasswordTries::Stored PasswordTries::Load() {
  Stored stored;
  RegGetDword(kSettingsRoot, kSettingsKey, kCount, &stored.count);
  RegGetDword(kSettingsRoot, kSettingsKey, kTriedAt, &stored.triedAt);
  return stored;
}

void PasswordTries::Save() {
  const auto now = static_cast<uint32_t>(platform::Now());
  RegSetDword(kSettingsRoot, kSettingsKey, kTriedAt, now);
  RegSetDword(kSettingsRoot, kSettingsKey, kCount, count_);
  seen_ = Load();
}

// Another program has counted a try or forgotten all, or this one starts. A last try in the future
// tells that the clock has been set back meanwhile: the wait begins anew then.
void PasswordTries::TakeOverChanges() {
  const Stored stored = Load();
  if (stored == seen_) return;
  seen_ = stored;
  count_ = stored.count;
  const int64_t passed = std::max<int64_t>(platform::Now() - stored.triedAt, 0);
  const int64_t whole = SecondsAfter(count_);
  WaitFor(std::max<int64_t>(whole - passed, 0));
}

void PasswordTries::WaitFor(int64_t seconds) {
  waitEnds_ = platform::Ticks() + static_cast<uint64_t>(seconds) * kMillisecondsPerSecond;
}

}  // namespace zyr
