#include "readers/CivilTime.h"

#include <gtest/gtest.h>

namespace KTX::VORTIME::TEST {
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

TEST(CivilTime, CountsNanosecondsAroundASecond) {
  CivilTimeC time;
  time.year = 2019;
  time.month = 4;
  time.day = 22;
  time.hour = 21;
  time.minute = 19;
  time.second = 20;
  time.nanosecond = -127759;
  EXPECT_EQ(1555967960000000000 - 127759, nanosecondsSince1970(time));
}

}  // namespace
}  // namespace KTX::VORTIME::TEST
