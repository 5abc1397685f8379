// Texts that are kept in golden/ and compared line by line. A golden file is a C++ raw string, so
// that every build has it without looking for it.
#pragma once

#include <cstdio>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace zyr::test {

// Tells the first line that differs, and prints the whole for whoever means the change:
//   hardware_test --gtest_filter=...  | sed -n '/^>>>> NAME/,/^<<<</p'
inline void ExpectGolden(const std::string& name, const std::string& golden,
                         const std::string& actual) {
  if (actual == golden) return;
  std::istringstream goldenLines(golden);
  std::istringstream actualLines(actual);
  std::string expected;
  std::string line;
  for (int number = 1;; ++number) {
    const bool hasExpected = static_cast<bool>(std::getline(goldenLines, expected));
    const bool hasLine = static_cast<bool>(std::getline(actualLines, line));
    if (!hasExpected) expected = "(the end)";
    if (!hasLine) line = "(the end)";
    if (expected == line && hasLine) continue;
    ADD_FAILURE() << "golden/" << name << " line " << number << "\n  was: " << expected
                  << "\n  is:  " << line;
    break;
  }
  std::printf(">>>> %s\n%s<<<<\n", name.c_str(), actual.c_str());
}

}  // namespace zyr::test
