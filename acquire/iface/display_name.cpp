#include "acquire/iface/display_name.h"

#include <string_view>

namespace zyr {
namespace {

struct Renaming {
  std::string_view from;
  std::string_view to;
};
// In this order. The last one takes back the prefix of what already had it.
constexpr Renaming kRenamings[] = {{"LUMORAY", "ZYR303"},
                                   {"LUMO", "ZYR"},
                                   {"Lumo", "ZYR"},
                                   {"2000", "ZYR2000"},
                                   {"ZYRZYR2000", "ZYR2000"}};

}  // namespace

std::string RenameForDisplay(std::string text) {
  for (const Renaming& renaming : kRenamings) {
    for (size_t at = text.find(renaming.from); at != std::string::npos;
         at = text.find(renaming.from, at + renaming.to.size())) {
      text.replace(at, renaming.from.size(), renaming.to);
    }
  }
  return text;
}

}  // namespace zyr
