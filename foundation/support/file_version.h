// The version of an executable file as its resource tells it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace zyr {

// The product version's text as it stands, such as "1.1.0.1"; empty if the file has none.
std::string GetFileVersionText(const std::string& path);

// Major, minor and build number of a version text; null if it does not begin with three numbers.
std::optional<std::array<uint32_t, 3>> ParseVersionNumbers(const std::string& text);

// "Version 1.1 Build 0", translated; empty if the numbers cannot be had.
std::string GetVersionDisplay(const std::string& path);

}  // namespace zyr
