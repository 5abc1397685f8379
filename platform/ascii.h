// Letters without regard to case, as names of files, devices and settings compare: A to Z only,
// whatever the locale. Blanks likewise.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace zyr {

constexpr char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

inline std::string LowerAscii(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = LowerAscii(c);
  return lower;
}

inline bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
}

// Without the blanks at both ends.
constexpr std::string_view TrimmedText(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\n\v\f\r";
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  text.remove_suffix(text.size() - (text.find_last_not_of(kBlanks) + 1));
  return text;
}

}  // namespace zyr
