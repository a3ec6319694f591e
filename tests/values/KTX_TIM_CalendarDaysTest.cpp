// Every day from 1858-11-18 to 9999-12-31, every month of every year, and every FAT date and time.
#include <cmath>
#include <string>

#include <boost/date_time/gregorian/gregorian_types.hpp>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "values/KTX_TIM_CalendarSplit.h"

namespace KTX::TIM::TEST {
namespace {

/// Steps from day to day by the rules of the calendar alone.
class CalendarWalkC {
 public:
  // 1858-11-17, a Wednesday.
  int year = 1858;
  int month = 11;
  int day = 17;
  int dayOfWeek = 4;
  int dayOfYear = 321;

  int monthLength() const {
    static int const LENGTHS[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeapYear() ? 29 : LENGTHS[month - 1];
  }

  void step() {
    dayOfWeek = dayOfWeek == 7 ? 1 : dayOfWeek + 1;
    ++dayOfYear;
    if (++day > monthLength()) {
      day = 1;
      stepMonth();
    }
  }

 private:
  bool isLeapYear() const {
    if (year % 100 == 0) {
      return year % 400 == 0;
    }
    return year % 4 == 0;
  }

  void stepMonth() {
    if (++month > 12) {
      month = 1;
      dayOfYear = 1;
      ++year;
    }
  }
};

bool isSameDate(CalendarWalkC const& walk, YmdhmsC const& value) {
  return walk.year == value.year && walk.month == value.month && walk.day == value.day &&
         walk.dayOfWeek == value.dayOfWeek && value.hour == 0 && value.minute == 0 &&
         value.second == 0 && value.hundredths == 0 && value.milliseconds == 0;
}

bool isSameAsBoost(boost::gregorian::date const& date, YmdhmsC const& value) {
  auto const parts = date.year_month_day();
  return parts.year == value.year && parts.month == value.month && parts.day == value.day &&
         date.day_of_week() + 1 == value.dayOfWeek;
}

TEST(CalendarDays, AgreeWithAWalkThroughTheCalendarAndWithBoost) {
  boost::gregorian::date const dayZero(1858, 11, 17);
  CalendarWalkC walk;
  for (std::int32_t days = 1; days <= 2973483; ++days) {
    walk.step();
    MjdTimeC const time(days);
    YmdhmsC const value(time);
    bool const isRight = isSameDate(walk, value) && MjdTimeC(value).getDayNumber() == days &&
                         time.dayOfYear() == walk.dayOfYear &&
                         value.daysInMonth() == walk.monthLength() &&
                         isSameAsBoost(dayZero + boost::gregorian::days(days), value);
    ASSERT_TRUE(isRight) << days << ": " << walk.year << '-' << walk.month << '-' << walk.day;
  }
  EXPECT_EQ(9999, walk.year);
  EXPECT_EQ(365, walk.dayOfYear);
}

// The plain form of the day number, in doubles throughout.
double plainDayNumber(std::uint16_t year, int month, int day) {
  auto y = static_cast<std::int16_t>(month < 3 ? year - 1 : year);
  int const m = (month < 3 ? month + 12 : month) + 1;
  auto const a = static_cast<std::int16_t>(y / 100);
  auto const b = static_cast<std::int16_t>(a / 4 - a + 2);
  return std::trunc(365.25 * y) + std::trunc(30.6001 * m) - 679006 + b + day;
}

TEST(CalendarDays, JoinAsThePlainFormulaForEveryYearAndEveryMonthField) {
  for (std::uint32_t year = 0; year <= 65535; ++year) {
    for (int month = 0; month <= 255; ++month) {
      auto const y = static_cast<std::uint16_t>(year);
      int const day = static_cast<int>((year + static_cast<std::uint32_t>(month)) % 256);
      double const joined = joinDayNumber(
          {y, static_cast<std::uint8_t>(month), static_cast<std::uint8_t>(day), 0, 0, 0, 0});
      ASSERT_EQ(plainDayNumber(y, month, day), joined) << year << '-' << month << '-' << day;
    }
  }
}

bool isSameFat(std::uint16_t fatTime, std::uint16_t fatDate) {
  YmdhmsC const value(fatTime, fatDate);
  std::uint16_t packedTime = 1;
  std::uint16_t packedDate = 0;
  value.toFatDateTime(packedTime, packedDate);
  return value.year == fatDate / 512 + 1980 && value.month == fatDate / 32 % 16 &&
         value.day == fatDate % 32 && value.hour == fatTime / 2048 &&
         value.minute == fatTime / 32 % 64 && value.second == fatTime % 32 * 2 &&
         packedTime == fatTime && packedDate == fatDate;
}

TEST(CalendarDays, UnpackAndPackEveryFatDateAndEveryFatTime) {
  for (std::uint32_t word = 0; word <= 65535; ++word) {
    auto const bits = static_cast<std::uint16_t>(word);
    ASSERT_TRUE(isSameFat(0xBF7A, bits)) << "date " << word;
    ASSERT_TRUE(isSameFat(bits, 0x5866)) << "time " << word;
    ASSERT_EQ(MjdTimeC(YmdhmsC(bits, bits)).getDayNumber(), MjdTimeC(bits, bits).getDayNumber());
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
