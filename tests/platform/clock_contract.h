// What both implementations of the clock keep to.
#pragma once

#include <gtest/gtest.h>

#include <ctime>

#include "platform/clock.h"

namespace zyr::platform {

inline std::string TextOfLocal(int year, int month, int day, int hour, int minute, int second) {
  std::tm local = {};
  local.tm_year = year - 1900;
  local.tm_mon = month - 1;
  local.tm_mday = day;
  local.tm_hour = hour;
  local.tm_min = minute;
  local.tm_sec = second;
  local.tm_isdst = -1;
  return LongDateTimeText(std::mktime(&local));
}

TEST(ClockContract, LongDatesAreEnglishAndHoursTwelve) {
  EXPECT_EQ(TextOfLocal(2026, 11, 21, 13, 5, 9), "Saturday, November 21, 2026  1:05:09PM");
  EXPECT_EQ(TextOfLocal(2024, 2, 29, 0, 0, 0), "Thursday, February 29, 2024  12:00:00AM");
  EXPECT_EQ(TextOfLocal(2025, 1, 5, 12, 59, 59), "Sunday, January 05, 2025  12:59:59PM");
  EXPECT_EQ(TextOfLocal(2025, 7, 1, 11, 0, 30), "Tuesday, July 01, 2025  11:00:30AM");
}

TEST(ClockContract, ClocksAgreeAndRunForward) {
  const int64_t now = Now();
  EXPECT_NEAR(static_cast<double>(now), static_cast<double>(std::time(nullptr)), 2.0);
  const TimeOfDay time = UtcTimeOfDay();
  const int64_t inDay = time.hour * 3600 + time.minute * 60 + time.second;
  EXPECT_LE((inDay - now % 86400 + 86400) % 86400, 2);
  const uint64_t before = Ticks();
  SleepFor(30);
  EXPECT_GE(Ticks() - before, 15u);
}

}  // namespace zyr::platform
