#include "platform/host/registry.h"

#include <map>
#include <mutex>
#include <string_view>
#include <utility>

#include "platform/ascii.h"

namespace zyr::platform {
namespace {

struct Named {
  std::string name;
  RegistryValue value;
};

struct Key {
  std::string path;
  std::map<std::string, Named> values;  // by name in lower case
};

using KeyName = std::pair<RootKey, std::string>;  // the path in lower case

struct State {
  std::mutex mutex;
  std::map<KeyName, Key> keys;
  bool denyWrites = false;
  bool failWrites = false;
  int openKeys = 0;
  int writes = 0;
};

State& TheState() {
  static State state;
  return state;
}

// Without separators at the ends.
std::string Trimmed(std::string_view path) {
  while (!path.empty() && path.back() == '\\') path.remove_suffix(1);
  while (!path.empty() && path.front() == '\\') path.remove_prefix(1);
  return std::string(path);
}

KeyName NameOf(RootKey root, const std::string& path) { return {root, LowerAscii(Trimmed(path))}; }

Key* FindKey(State& state, const KeyName& name) {
  const auto found = state.keys.find(name);
  return found == state.keys.end() ? nullptr : &found->second;
}

void MakeKey(State& state, RootKey root, const std::string& path) {
  const std::string whole = Trimmed(path);
  for (size_t end = whole.find('\\'); end != std::string::npos; end = whole.find('\\', end + 1)) {
    const std::string parent = whole.substr(0, end);
    state.keys.try_emplace(NameOf(root, parent), Key{parent, {}});
  }
  state.keys.try_emplace(NameOf(root, whole), Key{whole, {}});
}

}  // namespace

struct RegistryKey::Impl {
  Impl(KeyName keyName, bool mayWrite) : name(std::move(keyName)), writable(mayWrite) {
    ++TheState().openKeys;
  }
  ~Impl() {
    const std::lock_guard lock(TheState().mutex);
    --TheState().openKeys;
  }
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  KeyName name;
  bool writable;
};

RegistryKey::RegistryKey(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
RegistryKey::RegistryKey(RegistryKey&&) noexcept = default;
RegistryKey& RegistryKey::operator=(RegistryKey&&) noexcept = default;
RegistryKey::~RegistryKey() = default;

std::optional<RegistryKey> RegistryKey::Open(RootKey root, const std::string& path,
                                             KeyAccess access) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  const bool writing = access == KeyAccess::kWrite;
  if (FindKey(state, NameOf(root, path)) == nullptr) return std::nullopt;
  if (writing && state.denyWrites) return std::nullopt;
  return RegistryKey(std::make_unique<Impl>(NameOf(root, path), writing));
}

std::optional<RegistryKey> RegistryKey::Create(RootKey root, const std::string& path) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  if (state.denyWrites) return std::nullopt;
  MakeKey(state, root, path);
  return RegistryKey(std::make_unique<Impl>(NameOf(root, path), true));
}

std::optional<RegistryValue> RegistryKey::Read(const std::string& name) const {
  if (impl_ == nullptr) return std::nullopt;
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  const Key* key = FindKey(state, impl_->name);
  if (key == nullptr) return std::nullopt;
  const auto found = key->values.find(LowerAscii(name));
  if (found == key->values.end()) return std::nullopt;
  return found->second.value;
}

bool RegistryKey::Write(const std::string& name, const RegistryValue& value) {
  if (impl_ == nullptr || !impl_->writable) return false;
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  Key* key = FindKey(state, impl_->name);
  if (key == nullptr || state.failWrites) return false;
  key->values[LowerAscii(name)] = {name, value};
  ++state.writes;
  return true;
}

namespace host {

void ClearRegistry() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.keys.clear();
  state.denyWrites = state.failWrites = false;
  state.writes = 0;
}

void DenyRegistryWrites(bool deny) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.denyWrites = deny;
}

void FailRegistryWrites(bool fail) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.failWrites = fail;
}

void PokeValue(RootKey root, const std::string& path, const std::string& name,
               const RegistryValue& value) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  MakeKey(state, root, path);
  FindKey(state, NameOf(root, path))->values[LowerAscii(name)] = {name, value};
}

void PokeDword(RootKey root, const std::string& path, const std::string& name, uint32_t number) {
  RegistryValue value{ValueType::kDword, {}};
  for (int shift = 0; shift < 32; shift += 8) {
    value.data.push_back(static_cast<uint8_t>(number >> shift));
  }
  PokeValue(root, path, name, value);
}

void PokeString(RootKey root, const std::string& path, const std::string& name,
                const std::string& text) {
  RegistryValue value{ValueType::kString, {text.begin(), text.end()}};
  value.data.push_back(0);
  PokeValue(root, path, name, value);
}

std::optional<RegistryValue> PeekValue(RootKey root, const std::string& path,
                                       const std::string& name) {
  const std::optional<RegistryKey> key = RegistryKey::Open(root, path, KeyAccess::kRead);
  return key ? key->Read(name) : std::nullopt;
}

bool RemoveValue(RootKey root, const std::string& path, const std::string& name) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  Key* key = FindKey(state, NameOf(root, path));
  return key != nullptr && key->values.erase(LowerAscii(name)) != 0;
}

bool HasKey(RootKey root, const std::string& path) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return FindKey(state, NameOf(root, path)) != nullptr;
}

std::vector<StoredValue> DumpRegistry(RootKey root) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  std::vector<StoredValue> values;
  for (const auto& [name, key] : state.keys) {
    if (name.first != root) continue;
    for (const auto& [lower, named] : key.values) {
      values.push_back({key.path, named.name, named.value});
    }
  }
  return values;
}

int OpenRegistryKeys() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.openKeys;
}

int RegistryWrites() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.writes;
}

}  // namespace host
}  // namespace zyr::platform
