// Command lines as a user types them.
#pragma once

#include <string>
#include <vector>

namespace zyr::test {

// Words apart by single spaces; '' is an empty one.
inline std::vector<std::string> Words(const std::string& line) {
  std::vector<std::string> words;
  for (size_t at = 0; at < line.size();) {
    const size_t end = std::min(line.find(' ', at), line.size());
    words.push_back(line.substr(at, end - at));
    if (words.back() == "''") words.back().clear();
    at = end + 1;
  }
  return words;
}

}  // namespace zyr::test
