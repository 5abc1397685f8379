#include "foundation/support/format.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>

#include "foundation/support/phrase_lookup.h"

namespace zyr {
namespace {

template <typename... Arguments>
void ExpectAsTheCLibrary(const char* format, Arguments... arguments) {
  char expected[512];
  std::snprintf(expected, sizeof expected, format, arguments...);
  EXPECT_EQ(FormatText(format, arguments...), expected) << format;
}

TEST(FormatText, FillsEveryDirectiveAsTheCLibraryDoes) {
  for (const char* format : {"%d", "%5d|", "%-5d|", "%05d", "%+d", "% d", "%hhd", "%hd"}) {
    for (int value : {0, -42, 70000, INT_MIN}) ExpectAsTheCLibrary(format, value);
  }
  for (const char* format : {"%u", "%#o", "%x", "%#X", "%08X", "%hhu", "%hu"}) {
    for (unsigned value : {0u, 65537u, ~0u}) ExpectAsTheCLibrary(format, value);
  }
  for (const char* format : {"%lf", "%.2lf", "%.0f", "%-10.1lf|", "%+e", "%#g", "%A"}) {
    for (double value : {0.0, -1.25, 1e20, HUGE_VAL}) ExpectAsTheCLibrary(format, value);
  }
  ExpectAsTheCLibrary("%s [%8s] [%-8s] [%.2s]", "word", "word", "word", "word");
  ExpectAsTheCLibrary("%ld %lX %lld %llu", LONG_MIN, ~0ul, LLONG_MIN, ~0ull);
  ExpectAsTheCLibrary("%zu %zd %td %jd %ju", size_t{5}, ptrdiff_t{-6}, ptrdiff_t{-7}, intmax_t{-8},
                      uintmax_t{9});
  ExpectAsTheCLibrary("%*d|%-*d|%.*f|%*.*lf", 6, 1, 6, 2, 2, 3.14159, -9, 1, 2.25);
  ExpectAsTheCLibrary("%.*s|%Lf|%c%c|100%% %s", -1, "whole", 1.5L, 'o', 'k', "end%");
}

TEST(FormatText, IsEmptyForDirectivesThatAreNone) {
  EXPECT_EQ(FormatText("%s", static_cast<const char*>(nullptr)), "(null)");
  for (const char* format : {"a %", "%d %y", "%1$s", "%l", "%5%", "%n", "%ls", "%qd", "%99999d",
                             "%.99999d", "%I64d", "%5.", static_cast<const char*>(nullptr)}) {
    EXPECT_EQ(FormatText(format, 1, 2), "") << format;
  }
}

TEST(FormatText, WritesAPointWhateverTheHostProgramsLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  const char* chosen = nullptr;
  for (const char* name : {"de_DE.UTF-8", "de_DE", "fr_FR.UTF-8", "German_Germany.1252"}) {
    if (chosen == nullptr) chosen = std::setlocale(LC_ALL, name);
  }
  const bool comma = *std::localeconv()->decimal_point == ',';
  const std::string text = FormatText("%s %.2lf %lu, %.1f", "1,5", 2.25, 10000ul, 0.5);
  std::setlocale(LC_ALL, before.c_str());
  if (!comma) GTEST_SKIP() << "no locale with a decimal comma on this machine";
  EXPECT_EQ(text, "1,5 2.25 10000, 0.5");
}

TEST(SameDirectives, ComparesKindOrderAndNumber) {
  EXPECT_TRUE(SameDirectives("%lu of %s", "%5lu: %-3s %%s"));
  EXPECT_TRUE(SameDirectives("%*d", "%*d"));
  EXPECT_TRUE(SameDirectives("100%%", "hundert"));
  EXPECT_TRUE(SameDirectives("50% of", "50% of"));  // "% o" is a directive
  const std::pair<const char*, const char*> kDifferent[] = {{"%lu of %s", "%s of %lu"},
                                                            {"%s", "%s %s"},
                                                            {"%lu", "%u"},
                                                            {"%d", "%s"},
                                                            {"%d", "%*d"},
                                                            {"%lu", "%lu%n"},
                                                            {"%s", "%s%"},
                                                            {"%d", "%999999999d"}};
  for (const auto& [format, other] : kDifferent) {
    EXPECT_FALSE(SameDirectives(format, other)) << format << " / " << other;
  }
}

}  // namespace
}  // namespace zyr
