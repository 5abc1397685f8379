#include "platform/registry.h"

#include <utility>

#include "platform/win32/system.h"

namespace zyr::platform {
namespace {

HKEY NativeRoot(RootKey root) {
  return root == RootKey::kLocalMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

}  // namespace

struct RegistryKey::Impl {
  explicit Impl(HKEY handle) : key(handle) {}
  ~Impl() { RegCloseKey(key); }
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  HKEY key;
};

RegistryKey::RegistryKey(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
RegistryKey::RegistryKey(RegistryKey&&) noexcept = default;
RegistryKey& RegistryKey::operator=(RegistryKey&&) noexcept = default;
RegistryKey::~RegistryKey() = default;

std::optional<RegistryKey> RegistryKey::Open(RootKey root, const std::string& path,
                                             KeyAccess access) {
  const REGSAM rights = access == KeyAccess::kWrite ? KEY_READ | KEY_WRITE : KEY_READ;
  HKEY key = nullptr;
  if (RegOpenKeyExA(NativeRoot(root), path.c_str(), 0, rights, &key) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  return RegistryKey(std::make_unique<Impl>(key));
}

std::optional<RegistryKey> RegistryKey::Create(RootKey root, const std::string& path) {
  HKEY key = nullptr;
  if (RegCreateKeyExA(NativeRoot(root), path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                      KEY_ALL_ACCESS, nullptr, &key, nullptr) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  return RegistryKey(std::make_unique<Impl>(key));
}

std::optional<RegistryValue> RegistryKey::Read(const std::string& name) const {
  if (impl_ == nullptr) return std::nullopt;
  RegistryValue value;
  DWORD type = REG_NONE;
  DWORD size = 0;
  LSTATUS status = RegQueryValueExA(impl_->key, name.c_str(), nullptr, &type, nullptr, &size);
  // Another process may let the value grow between the two calls. One spare byte, since no bytes at
  // all would mean a question for the size.
  do {
    if (status != ERROR_SUCCESS && status != ERROR_MORE_DATA) return std::nullopt;
    value.data.resize(size_t{size} + 1);
    size = static_cast<DWORD>(value.data.size());
    status = RegQueryValueExA(impl_->key, name.c_str(), nullptr, &type, value.data.data(), &size);
  } while (status != ERROR_SUCCESS);
  value.type = static_cast<ValueType>(type);
  value.data.resize(size);
  return value;
}

bool RegistryKey::Write(const std::string& name, const RegistryValue& value) {
  if (impl_ == nullptr) return false;
  // Of a text without its terminating zero the system looks at the byte behind, and takes a zero
  // there as part of the text.
  std::vector<uint8_t> data = value.data;
  data.push_back(0xFF);
  return RegSetValueExA(impl_->key, name.c_str(), 0, static_cast<DWORD>(value.type), data.data(),
                        static_cast<DWORD>(value.data.size())) == ERROR_SUCCESS;
}

}  // namespace zyr::platform
