// Version resources of executable files.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace zyr::platform {

// Language and code page of the first \VarFileInfo\Translation entry as the eight hexadecimal
// digits that name a string block ("040904b0"); null if the file has none.
std::optional<std::string> VersionTranslation(const std::string& path);

// The text \StringFileInfo\<block>\<name>; null if the file has none.
std::optional<std::string> VersionString(const std::string& path, const std::string& block,
                                         const std::string& name);

// The numbers of the version resource's fixed part, major first; null if the file has none.
using VersionNumbers = std::array<uint16_t, 4>;
std::optional<VersionNumbers> FixedFileVersion(const std::string& path);

}  // namespace zyr::platform
