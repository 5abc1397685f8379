// PasswordTries: how long a user has to wait after wrong passwords.
#pragma once

#include <cstdint>
#include <optional>

namespace zyr {

// The first wrong try costs a second, each further one twice as much as the one before, up to a
// minute. The count is kept among the settings, so that neither closing the program nor starting it
// twice shortens the wait, and in this object too, for users who may not write there. Not more than
// one thread at a time.
class PasswordTries {
 public:
  uint32_t SecondsLeft();
  void AddWrongOne();
  void Forget();

 private:
  // Both 0 if they cannot be read.
  struct Stored {
    uint32_t count = 0;
    uint32_t triedAt = 0;  // seconds since 1970
    bool operator==(const Stored&) const = default;
  };

  static Stored Load();
  void Save();
  void TakeOverChanges();
  void WaitFor(int64_t seconds);

  uint32_t count_ = 0;
  uint64_t waitEnds_ = 0;       // by the clock that only runs forward: it cannot be set
  std::optional<Stored> seen_;  // what this object has written there or taken over
};

}  // namespace zyr
