#include "tools/command_line/command_line.h"

namespace zyr {
namespace {

const Option* FindOption(const std::vector<Option>& options, const std::string& name) {
  for (const Option& option : options) {
    if (name == option.name) return &option;
  }
  return nullptr;
}

// A negative number is no option.
bool IsWord(const std::string& argument) {
  return argument.rfind('-', 0) != 0 || argument.find_first_of("0123456789") == 1;
}

}  // namespace

Option TextOption(const char* name, std::string* target) {
  return {name, [target](const std::string& text) {
            *target = text;
            return !text.empty();
          }};
}

Option Flag(const char* name, bool* target) { return {name, nullptr, target}; }

std::string ParseCommandLine(const std::vector<std::string>& arguments,
                             const std::vector<Option>& options, std::vector<std::string>* words) {
  for (size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (words != nullptr && IsWord(argument)) {
      words->push_back(argument);
      continue;
    }
    // Both `--name value` and `--name=value`.
    const size_t sign = argument.rfind("--", 0) == 0 ? argument.find('=') : std::string::npos;
    const std::string name = argument.substr(0, sign);
    const Option* option = FindOption(options, name);
    if (option == nullptr) return "There is no option '" + name + "'.";
    if (option->flag != nullptr) {
      if (sign != std::string::npos) return name + " takes no value.";
      *option->flag = true;
      continue;
    }
    if (sign == std::string::npos && i + 1 == arguments.size()) return name + " needs a value.";
    const std::string value =
        sign == std::string::npos ? arguments[++i] : argument.substr(sign + 1);
    if (!option->take(value)) return name + " does not take '" + value + "'.";
  }
  return {};
}

}  // namespace zyr
