// Typed values under one hierarchical key: the operating system's registry.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zyr::platform {

enum class RootKey { kLocalMachine, kCurrentUser };

enum class KeyAccess { kRead, kWrite };

// The numbers are the registry's own type numbers.
enum class ValueType : uint32_t {
  kNone = 0,
  kString = 1,
  kExpandString = 2,
  kBinary = 3,
  kDword = 4,
  kDwordBigEndian = 5,
  kMultiString = 7,
};

// A value as stored. `data` holds exactly the stored bytes: a string may lack its terminating zero,
// a number may have any length. The reader judges both.
struct RegistryValue {
  ValueType type = ValueType::kNone;
  std::vector<uint8_t> data;
};

// An open key; closes itself. Movable. Distinct keys may be used on distinct threads.
class RegistryKey {
 public:
  // Null if the key does not exist or the access is denied.
  static std::optional<RegistryKey> Open(RootKey root, const std::string& path, KeyAccess access);
  // Opens or creates the key with its parents, non-volatile, for reading and writing.
  static std::optional<RegistryKey> Create(RootKey root, const std::string& path);

  RegistryKey(RegistryKey&&) noexcept;
  RegistryKey& operator=(RegistryKey&&) noexcept;
  ~RegistryKey();

  // Null if the value does not exist or cannot be read.
  std::optional<RegistryValue> Read(const std::string& name) const;
  bool Write(const std::string& name, const RegistryValue& value);

 private:
  struct Impl;
  explicit RegistryKey(std::unique_ptr<Impl> impl);
  std::unique_ptr<Impl> impl_;
};

}  // namespace zyr::platform
