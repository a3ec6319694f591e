// Every millisecond of two days at both precisions, and of a week through the day number.
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "values/KTX_TIM_CalendarSplit.h"
#include "values/KTX_TIM_Ranges.h"
#include "values/KTX_TIM_TestSeed.h"
#include "values/KTX_TIM_WeekTime.h"

namespace KTX::TIM::TEST {
namespace {

constexpr double INFINITE = std::numeric_limits<double>::infinity();

struct DateC {
  std::uint16_t year;
  std::uint8_t month;
  std::uint8_t day;
};

struct ClockC {
  std::uint8_t hour;
  std::uint8_t minute;
  std::uint8_t second;
  std::uint16_t milliseconds;
};

ClockC clockOf(std::uint32_t msOfDay) {
  return {
      static_cast<std::uint8_t>(msOfDay / 3600000), static_cast<std::uint8_t>(msOfDay / 60000 % 60),
      static_cast<std::uint8_t>(msOfDay / 1000 % 60), static_cast<std::uint16_t>(msOfDay % 1000)};
}

bool isSameClock(ClockC const& clock, CalendarFieldsC const& fields) {
  return clock.hour == fields.hour && clock.minute == fields.minute &&
         clock.second == fields.second && clock.milliseconds == fields.milliseconds;
}

std::string complaint(std::uint32_t firstWrong, std::uint32_t last) {
  return firstWrong == last ? std::string() : std::to_string(firstWrong);
}

/// The written rule: the fraction of the day, times the units of a day, rounded.
std::uint32_t plainHundredths(double dayNumber) {
  return static_cast<std::uint32_t>(std::round((dayNumber - std::trunc(dayNumber)) * 8640000));
}

bool isSameFields(CalendarFieldsC const& a, CalendarFieldsC const& b) {
  return a.year == b.year && a.month == b.month && a.day == b.day && a.hour == b.hour &&
         a.minute == b.minute && a.second == b.second && a.dayOfWeek == b.dayOfWeek &&
         a.milliseconds == b.milliseconds;
}

bool isSameTime(WeekTimeC const& a, WeekTimeC const& b) {
  return a.week == b.week && a.msOfWeek == b.msOfWeek;
}

// Flattened, or the linker would take the kernels' copies of an unoptimised build.
[[gnu::flatten]] std::uint32_t firstWrongMillisecond(DateC const& date,
                                                     std::uint32_t first,
                                                     std::uint32_t last) {
  for (std::uint32_t ms = first; ms < last; ++ms) {
    ClockC const clock = clockOf(ms);
    JoinedFieldsC const joined = {date.year,    date.month,   date.day,          clock.hour,
                                  clock.minute, clock.second, clock.milliseconds};
    double const dayNumber = joinDayNumber(joined);
    CalendarFieldsC const exact = splitDayNumber(dayNumber, 1);
    CalendarFieldsC const rounded = splitDayNumber(dayNumber, 0);
    std::uint32_t const roundedMs = plainHundredths(dayNumber) * 10;
    bool const isNextDay = roundedMs == MS_PER_DAY;
    bool const isRight = exact.year == date.year && exact.month == date.month &&
                         exact.day == date.day && isSameClock(clock, exact) &&
                         isSameClock(clockOf(isNextDay ? 0 : roundedMs), rounded) &&
                         (rounded.dayOfWeek == exact.dayOfWeek) != isNextDay &&
                         isSameTime(weekTimeOf(dayNumber), joinWeekTime(joined));
    if (!isRight) {
      return ms;
    }
  }
  return last;
}

TEST(TimeOfDay, GoesThroughTheDayNumberForEveryMillisecondOfTwoDays) {
  for (DateC const& date : {DateC{2024, 2, 29}, DateC{9999, 12, 30}}) {
    EXPECT_EQ("", checkRange(MS_PER_DAY,
                             [&](std::uint32_t first, std::uint32_t last) {
                               return complaint(firstWrongMillisecond(date, first, last), last);
                             }))
        << date.year;
  }
}

[[gnu::flatten]] std::uint32_t firstWrongSplit(std::uint16_t week,
                                               std::uint32_t first,
                                               std::uint32_t last) {
  // Steps through every last digit of the milliseconds.
  for (std::uint32_t ms = first; ms < last; ms += 7) {
    WeekTimeC const time{week, ms};
    if (!isSameFields(splitDayNumber(dayNumberOf(time), 0), splitWeekTime(time, 0))) {
      return ms;
    }
  }
  return last;
}

TEST(TimeOfDay, SplitsWeeksAsTheirDayNumberThroughADay) {
  EXPECT_EQ("", checkRange(MS_PER_DAY, [](std::uint32_t first, std::uint32_t last) {
              return complaint(firstWrongSplit(2304, first, last), last);
            }));
}

TEST(TimeOfDay, SplitsWeeksAsTheirDayNumberInEveryWeek) {
  std::mt19937_64 random(testSeed());
  for (std::uint32_t week = 0; week <= 65535; ++week) {
    auto const anyMs = static_cast<std::uint32_t>(random() % MS_PER_WEEK);
    std::uint32_t const half = anyMs / 10 * 10 + 5;
    for (std::uint32_t const ms : {anyMs, half - 1, half, half + 1, MS_PER_WEEK - 5}) {
      for (std::uint32_t const precision : {0U, 1U}) {
        WeekTimeC const time{static_cast<std::uint16_t>(week), ms};
        ASSERT_TRUE(isSameFields(splitDayNumber(dayNumberOf(time), precision),
                                 splitWeekTime(time, precision)))
            << week << ", " << ms << " precision " << precision;
      }
    }
  }
}

/// The plain form of a split: through the date library's instants.
std::string plainText(double dayNumber, std::uint32_t precision) {
  double const fraction = dayNumber - std::trunc(dayNumber);
  auto const microseconds =
      static_cast<std::int64_t>(precision == 0 ? std::round(fraction * 8640000) * 10000
                                               : std::round(fraction * 86400000) * 1000);
  boost::posix_time::ptime const instant =
      boost::posix_time::ptime(boost::gregorian::date(1858, 11, 17)) +
      boost::posix_time::microseconds(
          static_cast<std::int64_t>(std::trunc(dayNumber)) * 86400000000 + microseconds);
  auto const parts = instant.date().year_month_day();
  std::int64_t const ofDay = instant.time_of_day().total_microseconds();
  std::int64_t const rest = ofDay % 1000000;
  auto const milliseconds = static_cast<std::int64_t>(std::trunc(static_cast<double>(rest) / 1000));
  std::string text;
  for (std::int64_t const field :
       {static_cast<std::int64_t>(parts.year), static_cast<std::int64_t>(parts.month),
        static_cast<std::int64_t>(parts.day), ofDay / 3600000000, ofDay / 60000000 % 60,
        ofDay / 1000000 % 60, milliseconds / 10,
        static_cast<std::int64_t>(instant.date().day_of_week()) + 1, milliseconds}) {
    text += std::to_string(field) + ' ';
  }
  return text;
}

std::string textOf(YmdhmsC const& value) {
  std::string text;
  for (std::int64_t const field :
       {std::int64_t{value.year}, std::int64_t{value.month}, std::int64_t{value.day},
        std::int64_t{value.hour}, std::int64_t{value.minute}, std::int64_t{value.second},
        std::int64_t{value.hundredths}, std::int64_t{value.dayOfWeek}, value.milliseconds}) {
    text += std::to_string(field) + ' ';
  }
  return text;
}

TEST(TimeOfDay, SplitsAsTheDateLibraryDoes) {
  std::mt19937_64 random(testSeed());
  std::uniform_real_distribution<double> anyDay(0, 2973483.999);
  std::uniform_int_distribution<std::int32_t> wholeDay(1, 2973483);
  std::uniform_int_distribution<std::int32_t> half(0, 2 * 8640000 - 2);
  for (int i = 0; i < 100000; ++i) {
    double const candidates[] = {anyDay(random), wholeDay(random) + half(random) / 17280000.0,
                                 wholeDay(random) + half(random) * 5 / 172800000.0,
                                 std::ldexp(anyDay(random), -static_cast<int>(random() % 40))};
    for (double const dayNumber : candidates) {
      for (std::uint32_t const precision : {0U, 1U}) {
        ASSERT_EQ(plainText(dayNumber, precision), textOf(YmdhmsC(MjdTimeC(dayNumber), precision)))
            << std::hexfloat << dayNumber << " precision " << precision;
      }
    }
  }
}

TEST(TimeOfDay, JoinsAsTheWrittenSumForRandomFields) {
  std::mt19937_64 random(testSeed());
  for (int i = 0; i < 1000000; ++i) {
    std::uint64_t const bits = random();
    auto const year = static_cast<std::uint16_t>(bits);
    auto const month = static_cast<std::uint8_t>(bits >> 16);
    auto const day = static_cast<std::uint8_t>(bits >> 24);
    auto const hour = static_cast<std::uint8_t>(bits >> 32);
    auto const minute = static_cast<std::uint8_t>(bits >> 40);
    auto const second = static_cast<std::uint8_t>(bits >> 48);
    auto const ms = static_cast<std::int64_t>(bits >> 52) - 1000;
    auto const y = static_cast<std::int16_t>(month < 3 ? year - 1 : year);
    int const m = (month < 3 ? month + 12 : month) + 1;
    int const a = y / 100;
    int const b = a / 4 - a + 2;
    double const plain = std::trunc(365.25 * y) + std::trunc(30.6001 * m) - 679006 + b + day +
                         hour / 24.0 + minute / 1440.0 + second / 86400.0 +
                         static_cast<double>(ms) / 86400000.0;
    JoinedFieldsC const fields = {year, month, day, hour, minute, second, ms};
    ASSERT_EQ(plain, joinDayNumber(fields)) << bits;
    ASSERT_TRUE(isSameTime(weekTimeOf(plain), joinWeekTime(fields))) << bits;
  }
}

[[gnu::flatten]] std::uint32_t firstWrongBridge(std::uint16_t week,
                                                std::uint32_t first,
                                                std::uint32_t last) {
  for (std::uint32_t ms = first; ms < last; ++ms) {
    WeekTimeC const time{week, ms};
    if (!isSameTime(time, weekTimeOf(dayNumberOf(time)))) {
      return ms;
    }
  }
  return last;
}

TEST(TimeOfDay, GoesThroughTheDayNumberForEveryMillisecondOfAWeek) {
  EXPECT_EQ("", checkRange(MS_PER_WEEK, [](std::uint32_t first, std::uint32_t last) {
              return complaint(firstWrongBridge(2304, first, last), last);
            }));
}

TEST(TimeOfDay, GoesThroughTheDayNumberInEveryWeek) {
  std::mt19937_64 random(testSeed());
  std::uniform_int_distribution<std::uint32_t> anyMs(0, MS_PER_WEEK - 1);
  for (std::uint32_t week = 0; week <= 65535; ++week) {
    for (std::uint32_t const ms : {0U, 1U, MS_PER_WEEK - 1, anyMs(random), anyMs(random)}) {
      GPSTimeC const time(static_cast<std::uint16_t>(week), ms);
      MjdTimeC const number(time);
      ASSERT_EQ(GPS_EPOCH_MJD + week * 7.0 + ms / 1000.0 / 86400.0, number.getDayNumber()) << time;
      ASSERT_EQ(time, GpsTimeC(number)) << time;
    }
  }
}

TEST(TimeOfDay, GoesFromWeekToCalendarAndBackInMilliseconds) {
  std::mt19937_64 random(testSeed());
  std::uniform_int_distribution<std::uint32_t> anyMs(0, MS_PER_WEEK - 1);
  for (std::uint32_t week = 0; week <= 65535; ++week) {
    GPSTimeC const time(static_cast<std::uint16_t>(week), anyMs(random));
    ASSERT_EQ(time, GpsTimeC(YmdhmsC(MjdTimeC(time), 1))) << time;
  }
}

/// The written rule for day numbers from the epoch on: one rounding, by truncation of + 0.5.
GPSTimeC plainBridge(double dayNumber) {
  double const d = dayNumber - 44244;
  auto const week = static_cast<std::int32_t>(d / 7);
  auto const ms = static_cast<std::uint32_t>((d - week * 7.0) * 86400 * 1000 + 0.5);
  return GPSTimeC(static_cast<std::uint16_t>(week), ms);
}

TEST(TimeOfDay, BridgesAsTheWrittenRuleFromTheEpochOn) {
  std::mt19937_64 random(testSeed());
  std::uniform_real_distribution<double> anyDay(44244, 10000000);
  std::uniform_int_distribution<std::int32_t> halfMs(0, 1209600000);
  for (int i = 0; i < 300000; ++i) {
    double const halfway = 44244 + halfMs(random) / 172800000.0;
    double const wholeWeek = 44244 + 7.0 * i;
    double const candidates[] = {anyDay(random), halfway, wholeWeek,
                                 std::nextafter(wholeWeek, INFINITE),
                                 std::nextafter(wholeWeek + 7, 0)};
    for (double const dayNumber : candidates) {
      ASSERT_EQ(plainBridge(dayNumber), GpsTimeC(MjdTimeC(dayNumber)))
          << std::hexfloat << dayNumber;
    }
  }
}

TEST(TimeOfDay, BridgesDaysBeforeTheEpochToTheNearestMillisecondOfTheWrappedWeek) {
  struct {
    double dayNumber;
    GPSTimeC expected;
  } const cases[] = {{44244 - 1 / 86400000.0, {65535, 604799999}},
                     {44244 - 0.25 / 86400000.0, {0, 0}},
                     {44243.5, {65535, 561600000}},
                     {44237.0, {65535, 0}},
                     {44236.5, {65534, 561600000}},
                     {0.0, {59215, 259200000}},
                     {44244 - 65536 * 7.0, {0, 0}}};
  for (auto const& c : cases) {
    EXPECT_EQ(c.expected, GpsTimeC(MjdTimeC(c.dayNumber))) << c.dayNumber;
  }
}

TEST(TimeOfDay, BridgesAnyBitPatternOfADouble) {
  std::mt19937_64 random(testSeed());
  for (int i = 0; i < 300000; ++i) {
    std::uint64_t const bits = random();
    double dayNumber = 0;
    static_assert(sizeof(dayNumber) == sizeof(bits));
    std::memcpy(&dayNumber, &bits, sizeof(bits));
    ASSERT_LT(GpsTimeC(MjdTimeC(dayNumber)).getMsOfWeek(), MS_PER_WEEK)
        << std::hexfloat << dayNumber;
  }
  EXPECT_EQ(GPSTimeC(0, 0), GpsTimeC(MjdTimeC(std::nan(""))));
  for (double const extreme : {INFINITE, -INFINITE, 1e300, -1e300, 9.3e18, -9.3e18, 1e9, -1e9}) {
    EXPECT_LT(GpsTimeC(MjdTimeC(extreme)).getMsOfWeek(), MS_PER_WEEK) << extreme;
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
