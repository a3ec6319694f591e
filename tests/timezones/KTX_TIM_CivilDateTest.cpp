#include "Posix/KTX_TIM_CivilDate.h"

#include <ctime>

#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

TEST(CivilDate, AgreesWithTheCLibraryOnEveryDayOfFourHundredYearsAndMore) {
  for (std::int64_t day = -200000; day <= 200000; ++day) {
    std::time_t const seconds = day * SECONDS_PER_DAY;
    std::tm fields{};
    gmtime_r(&seconds, &fields);
    CivilDateC const date = civilDate(day);
    ASSERT_EQ(fields.tm_year + 1900, date.year) << day;
    ASSERT_EQ(fields.tm_mon + 1, date.month) << day;
    ASSERT_EQ(fields.tm_mday, date.day) << day;
    ASSERT_EQ(fields.tm_wday, weekdayOf(day)) << day;
    ASSERT_EQ(day, daysSinceEpoch(date));
  }
}

TEST(CivilDate, GoesOnBeforeTheYearZero) {
  struct {
    std::int64_t day;
    CivilDateC date;
    std::int32_t weekday;
  } const cases[] = {{-719468, {0, 3, 1}, 3},     {-719469, {0, 2, 29}, 2},
                     {-719528, {0, 1, 1}, 6},     {-719529, {-1, 12, 31}, 5},
                     {-865625, {-400, 1, 1}, 6},  {-865626, {-401, 12, 31}, 5},
                     {-1011722, {-800, 1, 1}, 6}, {-1011663, {-800, 2, 29}, 2}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.day);
    CivilDateC const date = civilDate(c.day);
    EXPECT_EQ(c.date.year, date.year);
    EXPECT_EQ(c.date.month, date.month);
    EXPECT_EQ(c.date.day, date.day);
    EXPECT_EQ(c.weekday, weekdayOf(c.day));
    EXPECT_EQ(c.day, daysSinceEpoch(c.date));
  }
}

TEST(CivilDate, KnowsTheLengthOfEachMonth) {
  std::int32_t const common[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  struct {
    std::int64_t year;
    std::int32_t february;
  } const cases[] = {{2023, 28}, {2024, 29}, {1900, 28}, {2100, 28}, {2000, 29}, {1600, 29}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.year);
    for (std::int32_t month = 1; month <= 12; ++month) {
      EXPECT_EQ(month == 2 ? c.february : common[month - 1], daysInMonth(c.year, month)) << month;
    }
  }
}

TEST(CivilDate, CountsSecondsBefore1970InTheirOwnDayAndYear) {
  struct {
    std::int64_t seconds;
    std::int64_t day;
    std::int64_t year;
  } const cases[] = {
      {0, 0, 1970},       {86399, 0, 1970},   {86400, 1, 1970},        {-1, -1, 1969},
      {-86400, -1, 1969}, {-86401, -2, 1969}, {-31536000, -365, 1969}, {-31536001, -366, 1968}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.seconds);
    EXPECT_EQ(c.day, wholeDays(c.seconds));
    EXPECT_EQ(c.year, yearOf(c.seconds));
  }
  EXPECT_EQ(-31536000, startOfYear(1969));
  EXPECT_EQ(0, startOfYear(1970));
}

}  // namespace
}  // namespace KTX::TIM::TEST
