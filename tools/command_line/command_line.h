// Command lines as all tools here take them: options with a value behind a blank or an equals sign,
// flags, and words.
#pragma once

#include <charconv>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zyr {

struct Option {
  const char* name;
  // Takes the value; false if it is none of this option's. Null for a flag.
  std::function<bool(const std::string&)> take;
  bool* flag = nullptr;
};

// What each option's value may be, and where it goes.
template <typename Value>
using Words = std::vector<std::pair<const char*, Value>>;

template <typename Value, typename Target>
Option OneOf(const char* name, const Words<Value>& words, Target* target) {
  return {name, [&words, target](const std::string& text) {
            for (const auto& [word, value] : words) {
              if (text != word) continue;
              *target = value;
              return true;
            }
            return false;
          }};
}

// The whole of `text` as a decimal number from `least` to `most`; false otherwise.
template <typename Number>
bool ParseNumber(const std::string& text, Number least, Number most, Number* number) {
  Number value{};
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end || value < least || value > most) return false;
  *number = value;
  return true;
}

template <typename Number>
Option NumberOption(const char* name, Number least, Number most, Number* target) {
  return {name,
          [=](const std::string& text) { return ParseNumber(text, least, most, target); }};
}

// A text that is not empty.
Option TextOption(const char* name, std::string* target);
Option Flag(const char* name, bool* target);

// Empty, or what is wrong, as a sentence. Arguments that are no options go to `words`; with null
// there may be none.
std::string ParseCommandLine(const std::vector<std::string>& arguments,
                             const std::vector<Option>& options,
                             std::vector<std::string>* words = nullptr);

}  // namespace zyr
