#include "foundation/support/registry.h"

#include <algorithm>
#include <array>
#include <bit>
#include <initializer_list>
#include <new>
#include <utility>

#include "foundation/support/error.h"
#include "foundation/support/little_endian.h"

namespace zyr {
namespace {

using platform::KeyAccess;
using platform::RegistryKey;
using platform::RegistryValue;
using platform::ValueType;

// A real number as stored: the magic number, four bytes without meaning, the double. What
// has another size is of the wrong type, as is what lacks the number.
constexpr size_t kRealSize = 16;
constexpr size_t kRealNumberOffset = 8;
constexpr uint32_t kRealMagic = 0x23B895E3;

bool FailType() {
  SetError(kErrorIncompatibleType, "The specified key and value contained an incompatible type");
  return false;
}

// Null, with the error set, if the value is missing or of none of the types.
std::optional<RegistryValue> ReadValue(RootKey root, const std::string& path,
                                       const std::string& name,
                                       std::initializer_list<ValueType> types) {
  const auto key = RegOpen(root, path, KeyAccess::kRead);
  if (!key) return std::nullopt;
  auto value = key->Read(name);
  if (!value) {
    SetError(kErrorKeyOrValueNotFound, "Unable to open the value '%s' under the key %s",
             name.c_str(), path.c_str());
    return std::nullopt;
  }
  if (std::find(types.begin(), types.end(), value->type) == types.end()) {
    FailType();
    return std::nullopt;
  }
  return value;
}

bool WriteValue(RootKey root, const std::string& path, const std::string& name,
                const RegistryValue& value) {
  auto key = RegistryKey::Open(root, path, KeyAccess::kWrite);
  if (!key) key = RegCreate(root, path);
  if (key && key->Write(name, value)) return true;
  SetError(kErrorCannotWrite, "Unable to write or create the value '%s' under the key %s",
           name.c_str(), path.c_str());
  return false;
}

}  // namespace

std::optional<RegistryKey> RegOpen(RootKey root, const std::string& path, KeyAccess access) {
  auto key = RegistryKey::Open(root, path, access);
  if (!key) SetError(kErrorKeyOrValueNotFound, "Unable to open the key %s", path.c_str());
  return key;
}

std::optional<RegistryKey> RegCreate(RootKey root, const std::string& path) {
  auto key = RegistryKey::Create(root, path);
  if (!key) SetError(kErrorCannotCreateKey, "Unable to create the key %s", path.c_str());
  return key;
}

bool RegGetDword(RootKey root, const std::string& path, const std::string& name, uint32_t* value) {
  auto stored = ReadValue(root, path, name, {ValueType::kDword, ValueType::kDwordBigEndian});
  if (!stored) return false;
  std::vector<uint8_t>& bytes = stored->data;
  if (bytes.size() != sizeof *value) {
    SetError(kErrorKeyOrValueNotFound, "Unable to obtain the value '%s' under the key %s",
             name.c_str(), path.c_str());
    return false;
  }
  if (stored->type == ValueType::kDwordBigEndian) std::reverse(bytes.begin(), bytes.end());
  *value = LoadLittleEndian<uint32_t>(bytes.data());
  return true;
}

bool RegGetBool(RootKey root, const std::string& path, const std::string& name, bool* value) {
  uint32_t number = 0;
  if (!RegGetDword(root, path, name, &number)) return false;
  *value = number != 0;
  return true;
}

bool RegGetLong(RootKey root, const std::string& path, const std::string& name, int32_t* value) {
  uint32_t number = 0;
  if (!RegGetDword(root, path, name, &number)) return false;
  *value = static_cast<int32_t>(number);
  return true;
}

bool RegGetString(RootKey root, const std::string& path, const std::string& name,
                  std::string* value) try {
  const auto stored = ReadValue(
      root, path, name, {ValueType::kString, ValueType::kExpandString, ValueType::kMultiString});
  if (!stored) return false;
  // The zero at the end may be missing, and of a list only the first text counts.
  const std::vector<uint8_t>& bytes = stored->data;
  value->assign(bytes.begin(), std::find(bytes.begin(), bytes.end(), 0));
  return true;
} catch (const std::bad_alloc&) {
  SetError(kErrorKeyOrValueNotFound, "There was not enough memory to retrieve the value");
  return false;
}

bool RegGetBinary(RootKey root, const std::string& path, const std::string& name,
                  std::span<uint8_t> bytes) {
  const auto stored = ReadValue(root, path, name, {ValueType::kBinary});
  if (!stored) return false;
  if (stored->data.size() != bytes.size()) {
    SetError(kErrorDifferentSize, "The specified key and value contained data of a different size");
    return false;
  }
  std::copy(stored->data.begin(), stored->data.end(), bytes.begin());
  return true;
}

bool RegGetDouble(RootKey root, const std::string& path, const std::string& name, double* value) {
  const auto stored = ReadValue(root, path, name, {ValueType::kBinary});
  if (!stored) return false;
  const std::vector<uint8_t>& bytes = stored->data;
  if (bytes.size() != kRealSize || LoadLittleEndian<uint32_t>(bytes.data()) != kRealMagic) {
    return FailType();
  }
  *value = std::bit_cast<double>(LoadLittleEndian<uint64_t>(bytes.data() + kRealNumberOffset));
  return true;
}

bool RegSetDword(RootKey root, const std::string& path, const std::string& name, uint32_t value) {
  RegistryValue stored{ValueType::kDword, std::vector<uint8_t>(sizeof value)};
  StoreLittleEndian(stored.data.data(), value);
  return WriteValue(root, path, name, stored);
}

bool RegSetBool(RootKey root, const std::string& path, const std::string& name, bool value) {
  return RegSetDword(root, path, name, value ? 1 : 0);
}

bool RegSetString(RootKey root, const std::string& path, const std::string& name,
                  const std::string& value) {
  const char* const text = value.c_str();
  const size_t size = std::char_traits<char>::length(text) + 1;
  return WriteValue(root, path, name, {ValueType::kString, {text, text + size}});
}

bool RegSetBinary(RootKey root, const std::string& path, const std::string& name,
                  std::span<const uint8_t> bytes) {
  return WriteValue(root, path, name, {ValueType::kBinary, {bytes.begin(), bytes.end()}});
}

bool RegSetDouble(RootKey root, const std::string& path, const std::string& name, double value) {
  std::array<uint8_t, kRealSize> bytes{};
  StoreLittleEndian(bytes.data(), kRealMagic);
  StoreLittleEndian(bytes.data() + kRealNumberOffset, std::bit_cast<uint64_t>(value));
  return RegSetBinary(root, path, name, bytes);
}

}  // namespace zyr
