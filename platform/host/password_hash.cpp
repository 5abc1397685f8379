#include "platform/host/password_hash.h"

#include <mutex>

#include "platform/password_hash.h"

namespace zyr::platform {
namespace {

struct State {
  std::mutex mutex;
  bool failRandom = false;
  bool failKeys = false;
  int keys = 0;
  uint64_t seed = 0;  // differs from call to call
};

State& TheState() {
  static State state;
  return state;
}

// Spreads a change of any bit over the whole number.
uint64_t Mixed(uint64_t number) {
  number = (number ^ number >> 30) * 0xBF58476D1CE4E5B9;
  number = (number ^ number >> 27) * 0x94D049BB133111EB;
  return number ^ number >> 31;
}

template <typename Bytes>
uint64_t Absorb(uint64_t seed, const Bytes& bytes) {
  for (const auto byte : bytes) seed = Mixed(seed ^ static_cast<uint8_t>(byte)) + 1;
  return Mixed(seed ^ bytes.size()) + 1;
}

std::vector<uint8_t> BytesFrom(uint64_t seed, size_t count) {
  std::vector<uint8_t> bytes(count);
  for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(Mixed(++seed));
  return bytes;
}

}  // namespace

std::optional<std::vector<uint8_t>> RandomBytes(size_t count) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  if (state.failRandom) return std::nullopt;
  state.seed += 0x1000;
  return BytesFrom(state.seed, count);
}

std::optional<std::vector<uint8_t>> DerivePasswordKey(const std::string& password,
                                                      const std::vector<uint8_t>& salt,
                                                      uint32_t iterations, size_t bytes) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  ++state.keys;
  if (state.failKeys || iterations == 0 || bytes == 0) return std::nullopt;
  return BytesFrom(Mixed(Absorb(Absorb(iterations, salt), password)), bytes);
}

namespace host {

void FailRandomBytes(bool fail) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.failRandom = fail;
}

void FailPasswordKeys(bool fail) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.failKeys = fail;
}

int DerivedPasswordKeys() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.keys;
}

void ResetPasswordHash() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.failRandom = state.failKeys = false;
  state.keys = 0;
}

}  // namespace host
}  // namespace zyr::platform
