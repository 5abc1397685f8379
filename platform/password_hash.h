// What it takes to keep a password without keeping it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zyr::platform {

// Bytes that nobody can foresee; null if the system has none to give. Any thread.
std::optional<std::vector<uint8_t>> RandomBytes(size_t count);

// PBKDF2 with HMAC-SHA-256: so many bytes, the same for the same arguments. It takes time on
// purpose, in proportion to `iterations`. Null if the system cannot, or for none of either number.
// Any thread.
std::optional<std::vector<uint8_t>> DerivePasswordKey(const std::string& password,
                                                      const std::vector<uint8_t>& salt,
                                                      uint32_t iterations, size_t bytes);

}  // namespace zyr::platform
