#include "platform/password_hash.h"

#include "platform/win32/system.h"
// After the system's header.
#include <bcrypt.h>

namespace zyr::platform {
namespace {

bool Succeeded(NTSTATUS status) { return status >= 0; }

// HMAC with SHA-256.
class KeyedHash {
 public:
  KeyedHash() {
    if (!Succeeded(BCryptOpenAlgorithmProvider(&handle_, BCRYPT_SHA256_ALGORITHM, nullptr,
                                               BCRYPT_ALG_HANDLE_HMAC_FLAG))) {
      handle_ = nullptr;
    }
  }
  ~KeyedHash() {
    if (handle_ != nullptr) BCryptCloseAlgorithmProvider(handle_, 0);
  }
  KeyedHash(const KeyedHash&) = delete;
  KeyedHash& operator=(const KeyedHash&) = delete;

  BCRYPT_ALG_HANDLE handle() const { return handle_; }

 private:
  BCRYPT_ALG_HANDLE handle_ = nullptr;
};

// What the system only reads, but takes as if it wrote there.
template <typename Bytes>
PUCHAR Input(const Bytes& bytes) {
  return reinterpret_cast<PUCHAR>(const_cast<typename Bytes::value_type*>(bytes.data()));
}

}  // namespace

std::optional<std::vector<uint8_t>> RandomBytes(size_t count) {
  std::vector<uint8_t> bytes(count);
  const NTSTATUS status = BCryptGenRandom(nullptr, bytes.data(), static_cast<ULONG>(count),
                                          BCRYPT_USE_SYSTEM_PREFERRED_RNG);
  if (!Succeeded(status)) return std::nullopt;
  return bytes;
}

std::optional<std::vector<uint8_t>> DerivePasswordKey(const std::string& password,
                                                      const std::vector<uint8_t>& salt,
                                                      uint32_t iterations, size_t bytes) {
  const KeyedHash hash;
  if (hash.handle() == nullptr || iterations == 0 || bytes == 0) return std::nullopt;
  std::vector<uint8_t> key(bytes);
  const NTSTATUS status = BCryptDeriveKeyPBKDF2(
      hash.handle(), Input(password), static_cast<ULONG>(password.size()), Input(salt),
      static_cast<ULONG>(salt.size()), iterations, key.data(), static_cast<ULONG>(bytes), 0);
  if (!Succeeded(status)) return std::nullopt;
  return key;
}

}  // namespace zyr::platform
