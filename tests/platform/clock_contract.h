// What both implementations of the clock keep to.
#pragma once

#include <gtest/gtest.h>

#include <ctime>
#include <iomanip>
#include <sstream>

#include "platform/clock.h"

namespace zyr::platform {

inline std::string TextOfLocal(const char* local) {
  std::tm time = {};
  std::istringstream(local) >> std::get_time(&time, "%Y-%m-%d %H:%M:%S");
  time.tm_isdst = -1;
  return LongDateTimeText(std::mktime(&time));
}

TEST(ClockContract, LongDatesAreEnglishAndHoursTwelve) {
  EXPECT_EQ(TextOfLocal("2026-11-21 13:05:09"), "Saturday, November 21, 2026  1:05:09PM");
  EXPECT_EQ(TextOfLocal("2024-02-29 00:00:00"), "Thursday, February 29, 2024  12:00:00AM");
  EXPECT_EQ(TextOfLocal("2025-01-05 12:59:59"), "Sunday, January 05, 2025  12:59:59PM");
  EXPECT_EQ(TextOfLocal("2025-07-01 11:00:30"), "Tuesday, July 01, 2025  11:00:30AM");
}

TEST(ClockContract, ClocksAgreeAndRunForward) {
  const int64_t now = Now();
  EXPECT_LE(std::time(nullptr) - now, 2);
  const TimeOfDay time = UtcTimeOfDay();
  const int64_t inDay = time.hour * 3600 + time.minute * 60 + time.second;
  EXPECT_LE((inDay - now % 86400 + 86400) % 86400, 2);
  const uint64_t before = Ticks();
  SleepFor(30);
  EXPECT_GE(Ticks() - before, 15u);
}

}  // namespace zyr::platform
