#include "foundation/support/file_version.h"

#include <charconv>
#include <system_error>

#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/file_version.h"

namespace zyr {
namespace {

constexpr char kAmericanEnglishBlock[] = "040904B0";
constexpr char kVersionName[] = "ProductVersion";

}  // namespace

std::string GetFileVersionText(const std::string& path) {
  if (const auto translation = platform::VersionTranslation(path)) {
    const auto text = platform::VersionString(path, *translation, kVersionName);
    if (text) return *text;
  }
  return platform::VersionString(path, kAmericanEnglishBlock, kVersionName).value_or("");
}

std::optional<std::array<uint32_t, 3>> ParseVersionNumbers(const std::string& text) {
  std::array<uint32_t, 3> numbers{};
  const char* next = text.data();
  const char* const end = next + text.size();
  for (size_t i = 0; i < numbers.size(); ++i) {
    if (i > 0 && (next == end || *next++ != '.')) return std::nullopt;
    const auto [stop, error] = std::from_chars(next, end, numbers[i]);
    if (error != std::errc()) return std::nullopt;
    next = stop;
  }
  return numbers;
}

std::string GetVersionDisplay(const std::string& path) {
  const auto numbers = ParseVersionNumbers(GetFileVersionText(path));
  if (!numbers) return {};
  const auto [major, minor, build] = *numbers;
  return FormatText(GetFormatPhrase("Version %lu.%lu Build %lu").c_str(), Lu(major), Lu(minor),
                    Lu(build));
}

}  // namespace zyr
