// Matching of file names against a pattern of '*' and '?', shared by the implementations of
// files.h.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/ascii.h"

namespace zyr::platform {

// The whole name must match; '*' stands for any run of characters, '?' for one. No regard to case.
inline bool MatchesPattern(std::string_view name, std::string_view pattern) {
  size_t n = 0;
  size_t p = 0;
  size_t star = std::string_view::npos;  // the last '*' seen, and where its run ends so far
  size_t runEnd = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      runEnd = n;
    } else if (p < pattern.size() &&
               (pattern[p] == '?' || LowerAscii(pattern[p]) == LowerAscii(name[n]))) {
      ++p;
      ++n;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      n = ++runEnd;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

}  // namespace zyr::platform
