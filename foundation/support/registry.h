// One call per registry value. Each opens and closes the key itself, returns true on success and
// records a failure with SetError, leaving the output untouched. Any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "platform/registry.h"

namespace zyr {

using platform::RootKey;

std::optional<platform::RegistryKey> RegOpen(RootKey root, const std::string& path,
                                             platform::KeyAccess access);
std::optional<platform::RegistryKey> RegCreate(RootKey root, const std::string& path);

bool RegGetDword(RootKey root, const std::string& path, const std::string& name, uint32_t* value);
bool RegGetBool(RootKey root, const std::string& path, const std::string& name, bool* value);
bool RegGetLong(RootKey root, const std::string& path, const std::string& name, int32_t* value);
bool RegGetString(RootKey root, const std::string& path, const std::string& name,
                  std::string* value);
// The stored size must be exactly that of `bytes`.
bool RegGetBinary(RootKey root, const std::string& path, const std::string& name,
                  std::span<uint8_t> bytes);
bool RegGetDouble(RootKey root, const std::string& path, const std::string& name, double* value);

bool RegSetDword(RootKey root, const std::string& path, const std::string& name, uint32_t value);
bool RegSetBool(RootKey root, const std::string& path, const std::string& name, bool value);
bool RegSetString(RootKey root, const std::string& path, const std::string& name,
                  const std::string& value);
bool RegSetBinary(RootKey root, const std::string& path, const std::string& name,
                  std::span<const uint8_t> bytes);
bool RegSetDouble(RootKey root, const std::string& path, const std::string& name, double value);

}  // namespace zyr
