#include "settings/password/hardware_password.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "foundation/support/error.h"
#include "foundation/support/little_endian.h"
#include "foundation/support/registry.h"
#include "platform/password_hash.h"
#include "settings/password/password_tries.h"
#include "settings/settings_key.h"

namespace zyr {
namespace {

constexpr char kValue[] = "HardwarePassword";

// The value: version and iterations, of four bytes each, lowest first, then the salt and the key.
constexpr size_t kIterationsOffset = 4;
constexpr size_t kSaltOffset = 8;
constexpr size_t kSaltSize = 16;
constexpr size_t kKeyOffset = kSaltOffset + kSaltSize;
constexpr size_t kKeySize = 32;
constexpr size_t kValueSize = kKeyOffset + kKeySize;
constexpr uint32_t kVersion = 1;

// An eighth of a second of work for a slow machine. What is stored may have another number, but not
// one that leaves no work to a guesser or that would stop the program for minutes.
constexpr uint32_t kIterations = 60'000;
constexpr uint32_t kFewestIterations = 1'000;
constexpr uint32_t kMostIterations = 1'000'000;

using Bytes = std::vector<uint8_t>;

struct StoredPassword {
  uint32_t iterations = 0;
  Bytes salt;
  Bytes key;
};

struct State {
  std::mutex mutex;
  PasswordTries tries;
};

State& TheState() {
  static State state;
  return state;
}

// Null if nobody can have stored it so.
std::optional<StoredPassword> Load() {
  std::array<uint8_t, kValueSize> value{};
  if (!RegGetBinary(kSettingsRoot, kSettingsKey, kValue, value)) return std::nullopt;
  if (LoadLittleEndian<uint32_t>(value.data()) != kVersion) return std::nullopt;
  StoredPassword stored;
  stored.iterations = LoadLittleEndian<uint32_t>(value.data() + kIterationsOffset);
  if (stored.iterations < kFewestIterations || stored.iterations > kMostIterations) {
    return std::nullopt;
  }
  stored.salt.assign(value.begin() + kSaltOffset, value.begin() + kKeyOffset);
  stored.key.assign(value.begin() + kKeyOffset, value.end());
  return stored;
}

bool Save(const StoredPassword& password) {
  std::array<uint8_t, kValueSize> value{};
  StoreLittleEndian(value.data(), kVersion);
  StoreLittleEndian(value.data() + kIterationsOffset, password.iterations);
  std::copy(password.salt.begin(), password.salt.end(), value.begin() + kSaltOffset);
  std::copy(password.key.begin(), password.key.end(), value.begin() + kKeyOffset);
  return RegSetBinary(kSettingsRoot, kSettingsKey, kValue, value);
}

// Takes as long wherever they differ.
bool AreEqual(const Bytes& a, const Bytes& b) {
  if (a.size() != b.size()) return false;
  uint8_t difference = 0;
  for (size_t i = 0; i < a.size(); ++i) difference |= static_cast<uint8_t>(a[i] ^ b[i]);
  return difference == 0;
}

bool Matches(const std::string& password) {
  const std::optional<StoredPassword> stored = Load();
  if (!stored) return false;
  const auto key =
      platform::DerivePasswordKey(password, stored->salt, stored->iterations, stored->key.size());
  return key && AreEqual(*key, stored->key);
}

std::optional<StoredPassword> Hashed(const std::string& password) {
  auto salt = platform::RandomBytes(kSaltSize);
  if (!salt) return std::nullopt;
  auto key = platform::DerivePasswordKey(password, *salt, kIterations, kKeySize);
  if (!key) return std::nullopt;
  return StoredPassword{kIterations, std::move(*salt), std::move(*key)};
}

}  // namespace

bool IsHardwarePasswordSet() {
  const auto key =
      platform::RegistryKey::Open(kSettingsRoot, kSettingsKey, platform::KeyAccess::kRead);
  return key && key->Read(kValue);
}

bool SetHardwarePassword(const std::string& password) {
  if (password.size() < kShortestHardwarePassword) {
    SetError(kErrorUnclassified, "The password must have at least %lu characters.",
             Lu(kShortestHardwarePassword));
    return false;
  }
  const std::optional<StoredPassword> hashed = Hashed(password);
  if (!hashed) {
    SetError(kErrorUnclassified, "This computer is unable to encrypt the password.");
    return false;
  }
  if (!Save(*hashed)) return false;
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.tries.Forget();
  return true;
}

bool CheckHardwarePassword(const std::string& password) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  if (state.tries.SecondsLeft() > 0) return false;
  const bool right = Matches(password);
  if (right) {
    state.tries.Forget();
  } else {
    state.tries.AddWrongOne();
  }
  return right;
}

uint32_t SecondsUntilNextTry() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.tries.SecondsLeft();
}

}  // namespace zyr
