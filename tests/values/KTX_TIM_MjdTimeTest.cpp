#include "KTX/TIM/KTX_TIM_MjdTime.h"

#include <cmath>
#include <limits>
#include <type_traits>

#include <boost/date_time/gregorian/greg_year.hpp>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "values/KTX_TIM_ZoneOffset.h"

namespace KTX::TIM::TEST {
namespace {

static_assert(!std::is_polymorphic_v<MjdTimeC>);
static_assert(!std::is_convertible_v<double, MjdTimeC>);

constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr auto UNKNOWN_BASE = static_cast<TimeBaseE>(7);

YmdhmsC calendar(std::uint16_t year, std::uint8_t month, std::uint8_t day) {
  YmdhmsC value = YmdhmsC::zero(TIMEBASE_UTC);
  value.year = year;
  value.month = month;
  value.day = day;
  return value;
}

TEST(MjdTime, IsUtcWhenBuiltFromANumber) {
  MjdTimeC const time(51544.5);
  EXPECT_EQ(51544.5, time.getDayNumber());
  EXPECT_EQ(TIMEBASE_UTC, time.getTimeBase());
}

TEST(MjdTime, IsBuiltFromWeekAndMilliseconds) {
  EXPECT_EQ(44244.0, MjdTimeC(GPSTimeC(0, 0)).getDayNumber());
  EXPECT_EQ(TIMEBASE_GPS, MjdTimeC(GPSTimeC(0, 0)).getTimeBase());
  // The milliseconds are divided by 1000 and by 86400 in turn; one division gives ...8726.
  EXPECT_EQ(58155.93303987268, MjdTimeC(GPSTimeC(1987, 253414645)).getDayNumber());
  EXPECT_EQ(502995.9999999884, MjdTimeC(GPSTimeC(65535, 604799999)).getDayNumber());
}

TEST(MjdTime, TakesTheBaseOfAGpsTime) {
  GpsTimeC gps(GPSTimeC(1, 0));
  gps.setTimeBase(TIMEBASE_LOCAL);
  EXPECT_EQ(44251.0, MjdTimeC(gps).getDayNumber());
  EXPECT_EQ(TIMEBASE_LOCAL, MjdTimeC(gps).getTimeBase());
}

TEST(MjdTime, IsBuiltFromACalendarValue) {
  struct {
    std::uint16_t year;
    std::uint8_t month;
    std::uint8_t day;
    double expected;
  } const cases[] = {{1858, 11, 17, 0},       {1858, 11, 16, -1},      {1980, 1, 6, 44244},
                     {2000, 1, 1, 51544},     {2000, 2, 29, 51603},    {2000, 3, 1, 51604},
                     {1600, 2, 29, -94494},   {9999, 12, 31, 2973483}, {0, 1, 1, -678940},
                     {65535, 12, 31, -678941}};  // the year is taken as -1
  for (auto const& c : cases) {
    EXPECT_EQ(c.expected, MjdTimeC(calendar(c.year, c.month, c.day)).getDayNumber())
        << c.year << '-' << int{c.month} << '-' << int{c.day};
  }
}

TEST(MjdTime, SumsTheFractionsFromLeftToRight) {
  YmdhmsC value = calendar(2010, 10, 18);
  value.hour = 4;
  value.minute = 23;
  value.second = 58;
  value.hundredths = 61;
  value.milliseconds = 618;
  EXPECT_EQ(55487.18331733796, MjdTimeC(value).getDayNumber());
}

TEST(MjdTime, ReadsTheHundredthsOfAnInconsistentFraction) {
  YmdhmsC value = calendar(2000, 1, 1);
  value.hundredths = 45;
  value.milliseconds = 123;
  EXPECT_EQ(51544 + 450 / 86400000.0, MjdTimeC(value).getDayNumber());
}

TEST(MjdTime, IsBuiltFromAFatPairAsLocalTime) {
  MjdTimeC const time(std::uint16_t{0xBF7A}, std::uint16_t{0x5867});
  EXPECT_EQ(TIMEBASE_LOCAL, time.getTimeBase());
  EXPECT_EQ(MjdTimeC(YmdhmsC(0xBF7A, 0x5867)).getDayNumber(), time.getDayNumber());
}

TEST(MjdTime, CountsTheDayOfTheYear) {
  struct {
    double dayNumber;
    std::int32_t expected;
  } const cases[] = {{51544, 1},   {51544.99, 1}, {51543.9999, 365},  // 1999-12-31
                     {51909, 366},                                    // 2000-12-31
                     {51910, 1},   {0.0, 678941}, {0.5, 321},        {2973483, 365}};
  for (auto const& c : cases) {
    EXPECT_EQ(c.expected, MjdTimeC(c.dayNumber).dayOfYear()) << c.dayNumber;
  }
}

TEST(MjdTime, CountsDayZeroInTheLastFiveMillisecondsOfAYear) {
  YmdhmsC value = calendar(2000, 12, 31);
  value.hour = 23;
  value.minute = 59;
  value.second = 59;
  value.hundredths = 99;
  value.milliseconds = 999;
  EXPECT_EQ(0, MjdTimeC(value).dayOfYear());
  value.milliseconds = 994;
  EXPECT_EQ(366, MjdTimeC(value).dayOfYear());
}

TEST(MjdTime, SaturatesTheDayOfTheYear) {
  EXPECT_EQ(std::numeric_limits<std::int32_t>::min(), MjdTimeC(-1e300).dayOfYear());
  EXPECT_EQ(std::numeric_limits<std::int32_t>::min(), MjdTimeC(-INFINITE).dayOfYear());
  EXPECT_EQ(0, MjdTimeC(std::nan("")).dayOfYear());
}

TEST(MjdTime, ThrowsForADayOfTheYearAfter9999) {
  EXPECT_THROW(MjdTimeC(2973484).dayOfYear(), boost::gregorian::bad_year);
}

TEST(MjdTime, ConvertsGpsToUtcThroughWholeMilliseconds) {
  MjdTimeC time(44244 + 1.0 / 2048, TIMEBASE_GPS);
  time.toUtc();
  EXPECT_EQ(44244.0002799537, time.getDayNumber());
  EXPECT_EQ(MjdTimeC(GPSTimeC(0, 24188)).getDayNumber(), time.getDayNumber());
  EXPECT_EQ(TIMEBASE_UTC, time.getTimeBase());
}

TEST(MjdTime, ConvertsUtcToGpsThroughWholeMilliseconds) {
  MjdTimeC time(44244 + 1.0 / 2048);
  time.toGps();
  EXPECT_EQ(MjdTimeC(GPSTimeC(0, 60188)).getDayNumber(), time.getDayNumber());
  EXPECT_EQ(TIMEBASE_GPS, time.getTimeBase());
}

TEST(MjdTime, TakesTwoRoadsFromLocalToUtc) {
  ZoneOffsetC const zone(60);
  double const dayNumber = 44300 + 1.0 / 2048;
  MjdTimeC throughMilliseconds(dayNumber, TIMEBASE_LOCAL);
  throughMilliseconds.toUtc();
  EXPECT_EQ(44299.95882162037, throughMilliseconds.getDayNumber());
  MjdTimeC throughDays(dayNumber, TIMEBASE_LOCAL);
  throughDays.localToUtc();
  EXPECT_EQ(44299.958821614586, throughDays.getDayNumber());
  MjdTimeC converted(dayNumber, TIMEBASE_LOCAL);
  EXPECT_TRUE(converted.convertTo(TIMEBASE_UTC));
  EXPECT_EQ(44299.958821614586, converted.getDayNumber());
  for (MjdTimeC const& time : {throughMilliseconds, throughDays, converted}) {
    EXPECT_EQ(TIMEBASE_UTC, time.getTimeBase());
  }
}

TEST(MjdTime, LocalTimeBefore1980SurvivesOnlyTheRoadThroughDays) {
  ZoneOffsetC const zone(60);
  MjdTimeC throughDays(40587, TIMEBASE_LOCAL);  // 1970-01-01
  throughDays.localToUtc();
  EXPECT_EQ(40587 - 60 / 1440.0, throughDays.getDayNumber());
  MjdTimeC throughMilliseconds(40587, TIMEBASE_LOCAL);
  throughMilliseconds.toUtc();
  EXPECT_EQ(40587 - 60 / 1440.0 + 65536 * 7.0, throughMilliseconds.getDayNumber());
}

TEST(MjdTime, TakesTheOffsetOffTheMillisecondsWithItsSign) {
  struct {
    std::int32_t offset;
    GPSTimeC expected;
  } const cases[] = {
      {-240, {2304, 14400000}},   {60, {2303, 601200000}}, {0, {2304, 0}},
      {1, {2303, 604740000}},     {-1, {2304, 60000}},     {32767, {2300, 453180000}},
      {-32768, {2307, 151680000}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.offset);
    ZoneOffsetC const zone(c.offset);
    GpsTimeC local(GPSTimeC(2304, 0));
    local.setTimeBase(TIMEBASE_LOCAL);
    MjdTimeC time(local);
    time.toUtc();
    EXPECT_EQ(c.expected, GpsTimeC(time));
  }
}

TEST(MjdTime, ShiftsBetweenUtcAndLocalByAFractionOfADay) {
  ZoneOffsetC const zone(-240);
  MjdTimeC time(44300.5);
  time.utcToLocal();
  EXPECT_EQ(44300.5 + -240 / 1440.0, time.getDayNumber());
  EXPECT_EQ(TIMEBASE_LOCAL, time.getTimeBase());
  time.localToUtc();
  EXPECT_EQ(44300.5 + -240 / 1440.0 - -240 / 1440.0, time.getDayNumber());
  EXPECT_EQ(TIMEBASE_UTC, time.getTimeBase());
}

TEST(MjdTime, ConvertsLocalToGpsThroughUtc) {
  ZoneOffsetC const zone(60);
  MjdTimeC time(MjdTimeC(GPSTimeC(2304, 3600000)).getDayNumber(), TIMEBASE_LOCAL);
  time.toGps();
  EXPECT_EQ(MjdTimeC(GPSTimeC(2304, 18000)).getDayNumber(), time.getDayNumber());
  EXPECT_EQ(TIMEBASE_GPS, time.getTimeBase());
}

// Half a millisecond past a whole one: the day number less an hour rounds up, the milliseconds do
// not before the hour is taken off.
TEST(MjdTime, TakesTwoRoadsFromLocalToGps) {
  ZoneOffsetC const zone(60);
  MjdTimeC converted(57550.88422743634, TIMEBASE_LOCAL);
  EXPECT_TRUE(converted.convertTo(TIMEBASE_GPS));
  EXPECT_EQ(MjdTimeC(GPSTimeC(1900, 591215251)).getDayNumber(), converted.getDayNumber());
  MjdTimeC throughMilliseconds(57550.88422743634, TIMEBASE_LOCAL);
  throughMilliseconds.toGps();
  EXPECT_EQ(MjdTimeC(GPSTimeC(1900, 591215250)).getDayNumber(), throughMilliseconds.getDayNumber());
}

TEST(MjdTime, LeavesOtherBasesAlone) {
  struct {
    TimeBaseE base;
    bool isLeftByToUtc;
    bool isLeftByToGps;
  } const cases[] = {{TIMEBASE_INV, true, true},
                     {UNKNOWN_BASE, true, true},
                     {TIMEBASE_UTC, true, false},
                     {TIMEBASE_GPS, false, true}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.base);
    double const dayNumber = 44300.123456789012;
    MjdTimeC utc(dayNumber, c.base);
    utc.toUtc();
    EXPECT_EQ(c.isLeftByToUtc, utc.getDayNumber() == dayNumber && utc.getTimeBase() == c.base);
    MjdTimeC gps(dayNumber, c.base);
    gps.toGps();
    EXPECT_EQ(c.isLeftByToGps, gps.getDayNumber() == dayNumber && gps.getTimeBase() == c.base);
  }
}

TEST(MjdTime, ConvertsBetweenTheThreeBasesOnly) {
  ZoneOffsetC const zone(90);
  TimeBaseE const bases[] = {TIMEBASE_INV, TIMEBASE_GPS, TIMEBASE_UTC, TIMEBASE_LOCAL,
                             UNKNOWN_BASE};
  for (TimeBaseE const from : bases) {
    for (TimeBaseE const to : bases) {
      SCOPED_TRACE(::testing::Message() << from << " to " << to);
      bool const isKnownPair = from >= TIMEBASE_GPS && from <= TIMEBASE_LOCAL &&
                               to >= TIMEBASE_GPS && to <= TIMEBASE_LOCAL;
      MjdTimeC time(58155.25, from);
      EXPECT_EQ(isKnownPair || from == to, time.convertTo(to));
      EXPECT_EQ(isKnownPair ? to : from, time.getTimeBase());
      EXPECT_EQ(!isKnownPair || from == to, time.getDayNumber() == 58155.25);
    }
  }
}

TEST(MjdTime, ConvertsAlongTheMatrix) {
  ZoneOffsetC const zone(90);
  double const offset = 90 / 1440.0;
  double const utc = MjdTimeC(GPSTimeC(2000, 7000)).getDayNumber();
  double const gps = MjdTimeC(GPSTimeC(2000, 25000)).getDayNumber();
  struct {
    TimeBaseE from;
    double dayNumber;
    TimeBaseE to;
    double expected;
  } const cases[] = {{TIMEBASE_GPS, gps, TIMEBASE_UTC, utc},
                     {TIMEBASE_UTC, utc, TIMEBASE_GPS, gps},
                     {TIMEBASE_UTC, utc, TIMEBASE_LOCAL, utc + offset},
                     {TIMEBASE_GPS, gps, TIMEBASE_LOCAL, utc + offset},
                     {TIMEBASE_LOCAL, utc, TIMEBASE_UTC, utc - offset},
                     {TIMEBASE_LOCAL, utc + offset, TIMEBASE_GPS, gps}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.from << " to " << c.to);
    MjdTimeC time(c.dayNumber, c.from);
    EXPECT_TRUE(time.convertTo(c.to));
    EXPECT_EQ(c.expected, time.getDayNumber());
  }
}

TEST(MjdTime, ComparesInItsOwnBase) {
  MjdTimeC const utc(GPSTimeC(2000, 7000));
  MjdTimeC const utcLabelled(utc.getDayNumber(), TIMEBASE_UTC);
  MjdTimeC const sameInGps(GPSTimeC(2000, 25000));
  MjdTimeC const laterInGps(GPSTimeC(2000, 25001));
  EXPECT_TRUE(utcLabelled == sameInGps);
  EXPECT_FALSE(utcLabelled != sameInGps);
  EXPECT_TRUE(sameInGps == utcLabelled);
  EXPECT_TRUE(utcLabelled < laterInGps);
  EXPECT_TRUE(utcLabelled <= laterInGps);
  EXPECT_TRUE(utcLabelled <= sameInGps);
  EXPECT_FALSE(utcLabelled < sameInGps);
  EXPECT_TRUE(laterInGps > utcLabelled);
  EXPECT_TRUE(laterInGps >= utcLabelled);
  EXPECT_TRUE(sameInGps >= utcLabelled);
  EXPECT_FALSE(sameInGps > utcLabelled);
}

TEST(MjdTime, ComparesTheNumbersWhereThereIsNoConversion) {
  EXPECT_TRUE(MjdTimeC(5, TIMEBASE_INV) == MjdTimeC(5, TIMEBASE_UTC));
  EXPECT_TRUE(MjdTimeC(5, UNKNOWN_BASE) < MjdTimeC(6, TIMEBASE_GPS));
  EXPECT_TRUE(MjdTimeC(6, TIMEBASE_GPS) > MjdTimeC(5, TIMEBASE_INV));
}

TEST(MjdTime, EqualityIsExact) {
  double const dayNumber = 58155.25;
  double const next = std::nextafter(dayNumber, INFINITE);
  EXPECT_FALSE(MjdTimeC(dayNumber) == MjdTimeC(next));
  EXPECT_TRUE(MjdTimeC(dayNumber) < MjdTimeC(next));
  MjdTimeC const nan(std::nan(""));
  EXPECT_FALSE(nan == nan);
  EXPECT_TRUE(nan != nan);
  EXPECT_FALSE(nan <= nan);
}

}  // namespace
}  // namespace KTX::TIM::TEST
