#include "KTX/RCV/KTX_RCV_CivilTime.h"

#include <gtest/gtest.h>

namespace KTX::RCV::TEST {
namespace {

TEST(CivilTime, KnowsTheDaysOfEveryMonth) {
  struct {
    int year, month, day;
    bool isDate;
  } const cases[] = {{2000, 2, 29, true},   {1900, 2, 29, false}, {1900, 2, 28, true},
                     {2024, 2, 29, true},   {2023, 2, 29, false}, {2023, 4, 30, true},
                     {2023, 4, 31, false},  {2023, 12, 31, true}, {2023, 12, 32, false},
                     {2023, 0, 1, false},   {2023, 13, 1, false}, {2023, 1, 0, false},
                     {1899, 12, 31, false}, {9999, 12, 31, true}, {10000, 1, 1, false}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.year * 10000 + c.month * 100 + c.day);
    EXPECT_EQ(c.isDate, isDate(c.year, c.month, c.day));
  }
}

TEST(CivilTime, CountsEveryDayFrom1900To2200) {
  std::int64_t days = -25567;
  for (int year = 1900; year <= 2200; ++year) {
    for (int month = 1; month <= 12; ++month) {
      for (int day = 1; isDate(year, month, day); ++day) {
        ASSERT_EQ(days, daysSince1970(year, month, day));
        CivilTimeC const back = civilTimeOf(days * 86400000 + 45296789);
        ASSERT_EQ(year, back.year);
        ASSERT_EQ(month, back.month);
        ASSERT_EQ(day, back.day);
        ASSERT_EQ(12, back.hour);
        ASSERT_EQ(34, back.minute);
        ASSERT_EQ(56, back.second);
        ASSERT_EQ(789000000, back.nanosecond);
        ++days;
      }
    }
  }
  EXPECT_EQ(0, daysSince1970(1970, 1, 1));
}

TEST(CivilTime, CountsSecondsFromTheFirstDateToTheLast) {
  struct {
    CivilTimeC time;
    std::int64_t seconds;
  } const cases[] = {{{2019, 4, 22, 21, 19, 20, -127759}, 1555967960},
                     {{1900, 1, 1, 0, 0, 0, 0}, -2208988800},
                     {{1969, 12, 31, 23, 59, 59, 0}, -1},
                     // The last second that fits into 64 bits of nanoseconds, and the next.
                     {{2262, 4, 11, 23, 47, 16, 854775807}, 9223372036},
                     {{2262, 4, 11, 23, 47, 17, 0}, 9223372037},
                     {{9999, 12, 31, 23, 59, 59, 999000000}, 253402300799}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.seconds);
    EXPECT_EQ(c.seconds, secondsSince1970(c.time));
  }
}

TEST(CivilTime, NamesTheFirstAndTheLastMillisecond) {
  EXPECT_EQ(1900, civilTimeOf(FIRST_CIVIL_UNIX_MS).year);
  EXPECT_EQ(1899, civilTimeOf(FIRST_CIVIL_UNIX_MS - 1).year);
  EXPECT_EQ(9999, civilTimeOf(LAST_CIVIL_UNIX_MS).year);
  EXPECT_EQ(10000, civilTimeOf(LAST_CIVIL_UNIX_MS + 1).year);
}

TEST(CivilTime, HasADateForEveryNumberOfMilliseconds) {
  constexpr std::int64_t START_OF_YEAR_0 = -62167219200000;
  struct {
    std::int64_t unixMs;
    CivilTimeC time;
  } const cases[] = {{START_OF_YEAR_0, {0, 1, 1, 0, 0, 0, 0}},
                     {START_OF_YEAR_0 - 1, {-1, 12, 31, 23, 59, 59, 999000000}},
                     {START_OF_YEAR_0 + 60 * 86400000LL, {0, 3, 1, 0, 0, 0, 0}},
                     {INT64_MAX, {292278994, 8, 17, 7, 12, 55, 807000000}},
                     {INT64_MIN, {-292275055, 5, 16, 16, 47, 4, 192000000}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.unixMs);
    CivilTimeC const time = civilTimeOf(c.unixMs);
    EXPECT_EQ(c.time.year, time.year);
    EXPECT_EQ(c.time.month, time.month);
    EXPECT_EQ(c.time.day, time.day);
    EXPECT_EQ(c.time.hour, time.hour);
    EXPECT_EQ(c.time.minute, time.minute);
    EXPECT_EQ(c.time.second, time.second);
    EXPECT_EQ(c.time.nanosecond, time.nanosecond);
  }
}

}  // namespace
}  // namespace KTX::RCV::TEST
