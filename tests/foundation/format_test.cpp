#include "foundation/support/format.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>

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
  for (const char* format : {"%d", "%i", "%5d|", "%-5d|", "%05d", "%+d", "% d", "%hhd", "%hd"}) {
    for (int value : {0, 7, -42, 70000, INT_MIN}) ExpectAsTheCLibrary(format, value);
  }
  for (const char* format : {"%u", "%o", "%#o", "%x", "%#X", "%08X", "%hhu", "%hu"}) {
    for (unsigned value : {0u, 255u, 65537u, ~0u}) ExpectAsTheCLibrary(format, value);
  }
  for (const char* format : {"%f", "%lf", "%.2lf", "%.0lf", "%-10.1lf|", "%+e", "%#g", "%A"}) {
    for (double value : {0.0, 0.5, -1.25, 1e20, HUGE_VAL}) ExpectAsTheCLibrary(format, value);
  }
  for (const char* format : {"%s", "[%8s]", "[%-8s]", "[%.2s]"})
    ExpectAsTheCLibrary(format, "word");
  ExpectAsTheCLibrary("%ld %lX", LONG_MIN, ~0ul);
  ExpectAsTheCLibrary("%lld %llu", LLONG_MIN, ~0ull);
  ExpectAsTheCLibrary("%zu %zd %td %jd %ju", size_t{5}, ptrdiff_t{-6}, ptrdiff_t{-7}, intmax_t{-8},
                      uintmax_t{9});
  ExpectAsTheCLibrary("%*d|%-*d|%.*f|%*.*lf", 6, 1, 6, 2, 2, 3.14159, -9, 1, 2.25);
  ExpectAsTheCLibrary("%.*s|%Lf|%c%c", -1, "whole", 1.5L, 'o', 'k');
  ExpectAsTheCLibrary("100%% of %lu: %s%s", 3ul, "", "end%");
}

TEST(FormatText, TakesAnyLengthAndNulls) {
  const std::string large(300'000, 'z');
  EXPECT_EQ(FormatText("<%s|%s>", large.c_str(), large.c_str()), "<" + large + "|" + large + ">");
  const char* const nothing = nullptr;
  EXPECT_EQ(FormatText("%s", nothing), "(null)");
}

TEST(FormatText, IsEmptyForDirectivesThatAreNone) {
  for (const char* format :
       {"%",       "a %",      "%d %y", "%1$s", "%l",
        "%5%",     "%n",       "%ls",   "%lc",  "%qd",
        "%99999d", "%.99999d", "%Ld",   "%hs",  "%'d",
        "%I64d",   "%-",       "%5.",   "%m",   static_cast<const char*>(nullptr)}) {
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
  const struct {
    const char* format;
    const char* other;
    bool same;
  } kCases[] = {
      {"Unable to open %s",
       "%s kann nicht ge\xF6"
       "ffnet werden",
       true},
      {"%lu of %s", "%5lu: %-3s", true},
      {"%.2lf", "%lf", true},
      {"plain", "einfach", true},
      {"100%%", "hundert", true},
      {"%s", "%s %%s", true},
      {"%*d", "%*d", true},
      {"%lu of %s", "%s of %lu", false},
      {"%s", "%s %s", false},
      {"%s %s", "%s", false},
      {"%s", "none", false},
      {"none", "%s", false},
      {"%lu", "%u", false},
      {"%lu", "%ld", false},
      {"%lu", "%llu", false},
      {"%d", "%s", false},
      {"%d", "%*d", false},
      {"%*d", "%d", false},
      {"%.3f", "%.*f", false},
      {"%s", "%1$s", false},
      {"%lu", "%lu%n", false},
      {"%s", "%s%", false},
      {"%s", "%", false},
      {"%d", "%999999999d", false},
      {"50% of", "50% of", true},  // "% o" is a directive
      {"50%", "50%", false},
      {nullptr, "x", false},
      {"x", nullptr, false},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(SameDirectives(c.format, c.other), c.same)
        << (c.format ? c.format : "null") << " / " << (c.other ? c.other : "null");
  }
}

}  // namespace
}  // namespace zyr
