#include "KTX/TIM/KTX_TIM_Ymdhms.h"

#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include <boost/date_time/gregorian/greg_year.hpp>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "common/KTX_TIM_LogCapture.h"
#include "values/KTX_TIM_CalendarText.h"
#include "values/KTX_TIM_ZoneOffset.h"

namespace KTX::TIM::TEST {
namespace {

static_assert(!std::is_polymorphic_v<YmdhmsC>);
static_assert(!std::is_convertible_v<std::tm const*, YmdhmsC>);

struct FieldsC {
  int year, month, day, hour, minute, second, hundredths, dayOfWeek;
  std::int64_t milliseconds;
};

void expectFields(FieldsC const& expected, YmdhmsC const& value) {
  EXPECT_EQ(expected.year, value.year);
  EXPECT_EQ(expected.month, value.month);
  EXPECT_EQ(expected.day, value.day);
  EXPECT_EQ(expected.hour, value.hour);
  EXPECT_EQ(expected.minute, value.minute);
  EXPECT_EQ(expected.second, value.second);
  EXPECT_EQ(expected.hundredths, value.hundredths);
  EXPECT_EQ(expected.dayOfWeek, value.dayOfWeek);
  EXPECT_EQ(expected.milliseconds, value.milliseconds);
}

YmdhmsC make(FieldsC const& fields, TimeBaseE base, std::uint32_t precision = 0) {
  YmdhmsC value = YmdhmsC::zero(base, precision);
  value.year = static_cast<std::uint16_t>(fields.year);
  value.month = static_cast<std::uint8_t>(fields.month);
  value.day = static_cast<std::uint8_t>(fields.day);
  value.hour = static_cast<std::uint8_t>(fields.hour);
  value.minute = static_cast<std::uint8_t>(fields.minute);
  value.second = static_cast<std::uint8_t>(fields.second);
  value.hundredths = static_cast<std::uint8_t>(fields.hundredths);
  value.dayOfWeek = static_cast<std::uint8_t>(fields.dayOfWeek);
  value.milliseconds = fields.milliseconds;
  return value;
}

constexpr FieldsC ALL_ZERO = {0, 0, 0, 0, 0, 0, 0, 0, 0};

TEST(Ymdhms, HasAnAllZeroValue) {
  YmdhmsC const local = YmdhmsC::zero();
  expectFields(ALL_ZERO, local);
  EXPECT_EQ(TIMEBASE_LOCAL, local.timeBase);
  EXPECT_EQ(0U, local.precision);
  YmdhmsC const gps = YmdhmsC::zero(TIMEBASE_GPS, 1);
  EXPECT_EQ(TIMEBASE_GPS, gps.timeBase);
  EXPECT_EQ(1U, gps.precision);
}

TEST(Ymdhms, SplitsWeekAndMilliseconds) {
  YmdhmsC const epoch{GPSTimeC(0, 0)};
  expectFields({1980, 1, 6, 0, 0, 0, 0, 1, 0}, epoch);
  EXPECT_EQ(TIMEBASE_GPS, epoch.timeBase);
  GpsTimeC utc(GPSTimeC(1987, 253414645));
  utc.setTimeBase(TIMEBASE_UTC);
  YmdhmsC const value(utc);
  // The day number of ...34.645 lies a little below the half hundredth.
  expectFields({2018, 2, 6, 22, 23, 34, 64, 3, 640}, value);
  EXPECT_EQ(TIMEBASE_UTC, value.timeBase);
  EXPECT_EQ(0U, value.precision);
}

TEST(Ymdhms, RoundsWeekAndMillisecondsIntoTheNextDay) {
  struct {
    GPSTimeC time;
    FieldsC expected;
  } const cases[] = {{{0, 86399994}, {1980, 1, 6, 23, 59, 59, 99, 1, 990}},
                     {{0, 86399996}, {1980, 1, 7, 0, 0, 0, 0, 2, 0}},
                     {{0, 604799999}, {1980, 1, 13, 0, 0, 0, 0, 1, 0}},
                     {{2303, 431999996}, {2024, 3, 1, 0, 0, 0, 0, 6, 0}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.time.toMilliseconds64()));
    expectFields(c.expected, YmdhmsC(c.time));
  }
}

TEST(Ymdhms, SplitsADayNumber) {
  struct {
    double dayNumber;
    std::uint32_t precision;
    FieldsC expected;
  } const cases[] = {{0.0, 0, ALL_ZERO},
                     {-3.5, 0, ALL_ZERO},
                     {-1e300, 1, ALL_ZERO},
                     {0.5, 0, {1858, 11, 17, 12, 0, 0, 0, 4, 0}},
                     {44244, 0, {1980, 1, 6, 0, 0, 0, 0, 1, 0}},
                     {51544, 0, {2000, 1, 1, 0, 0, 0, 0, 7, 0}},
                     {2973483, 0, {9999, 12, 31, 0, 0, 0, 0, 6, 0}},
                     // Half a unit rounds away from zero.
                     {51544 + 3.0 / 1024, 0, {2000, 1, 1, 0, 4, 13, 13, 7, 130}},
                     {51544 + 3.0 / 2048, 1, {2000, 1, 1, 0, 2, 6, 56, 7, 563}},
                     {51544 + 1.0 / 1024, 1, {2000, 1, 1, 0, 1, 24, 37, 7, 375}},
                     // Rounding carries through the whole instant.
                     {51544.99999999, 0, {2000, 1, 2, 0, 0, 0, 0, 1, 0}},
                     {51544.99999999, 1, {2000, 1, 1, 23, 59, 59, 99, 7, 999}},
                     // Any precision but 0 means milliseconds.
                     {51544.99999999, 2, {2000, 1, 1, 23, 59, 59, 99, 7, 999}},
                     {51544.99999999, 4294967295, {2000, 1, 1, 23, 59, 59, 99, 7, 999}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.dayNumber << ", precision " << c.precision);
    YmdhmsC const value(MjdTimeC(c.dayNumber, TIMEBASE_INV), c.precision);
    expectFields(c.expected, value);
    EXPECT_EQ(TIMEBASE_INV, value.timeBase);
    EXPECT_EQ(c.precision, value.precision);
  }
}

TEST(Ymdhms, RoundsALeapDayIntoMarch) {
  YmdhmsC const lateOnLeapDay = make({2024, 2, 29, 23, 59, 59, 99, 5, 996}, TIMEBASE_UTC, 1);
  expectFields({2024, 3, 1, 0, 0, 0, 0, 6, 0}, YmdhmsC(MjdTimeC(lateOnLeapDay)));
}

TEST(Ymdhms, ThrowsForADayAfter9999) {
  double const notANumber = std::numeric_limits<double>::quiet_NaN();
  for (double const dayNumber :
       {2973484.0, 2973483.99999999, 1e8, 1.1e8, 1e300, std::numeric_limits<double>::infinity()}) {
    SCOPED_TRACE(dayNumber);
    try {
      YmdhmsC const value{MjdTimeC(dayNumber)};
      ADD_FAILURE() << value.year;
    } catch (boost::gregorian::bad_year const& error) {
      EXPECT_STREQ("Year is out of valid range: 1400..9999", error.what());
    }
  }
  expectFields(ALL_ZERO, YmdhmsC(MjdTimeC(notANumber)));
}

TEST(Ymdhms, StaysAsItWasWhenASplitThrows) {
  YmdhmsC value = make({2024, 2, 29, 1, 2, 3, 4, 5, 40}, TIMEBASE_GPS, 1);
  EXPECT_THROW(value.setFrom(MjdTimeC(2973484)), boost::gregorian::bad_year);
  expectFields({2024, 2, 29, 1, 2, 3, 4, 5, 40}, value);
  EXPECT_EQ(TIMEBASE_GPS, value.timeBase);
}

TEST(Ymdhms, KeepsItsPrecisionWhenSetFromADayNumber) {
  YmdhmsC value = YmdhmsC::zero(TIMEBASE_LOCAL, 1);
  value.setFrom(MjdTimeC(51544.99999999, TIMEBASE_GPS));
  expectFields({2000, 1, 1, 23, 59, 59, 99, 7, 999}, value);
  EXPECT_EQ(1U, value.precision);
  EXPECT_EQ(TIMEBASE_GPS, value.timeBase);
}

TEST(Ymdhms, ReadsTheFractionByItsConsistency) {
  struct {
    std::int64_t milliseconds;
    std::uint8_t hundredths;
    bool isConsistent;
    std::int64_t effective;
  } const cases[] = {{123, 45, false, 450},
                     {123, 12, true, 123},
                     {129, 12, true, 129},
                     {130, 12, false, 120},
                     {0, 0, true, 0},
                     {9, 0, true, 9},
                     {-5, 0, true, -5},
                     {-9, 0, true, -9},
                     {-10, 0, false, 0},
                     {2559, 255, true, 2559},
                     {2560, 255, false, 2550},
                     {2565, 0, false, 0},
                     {std::numeric_limits<std::int64_t>::min(), 0, false, 0},
                     {std::numeric_limits<std::int64_t>::max(), 255, false, 2550}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.milliseconds << "/" << int{c.hundredths});
    YmdhmsC value = YmdhmsC::zero();
    value.milliseconds = c.milliseconds;
    value.hundredths = c.hundredths;
    EXPECT_EQ(c.isConsistent, value.isFractionConsistent());
    EXPECT_EQ(c.effective, value.effectiveMilliseconds());
  }
}

TEST(Ymdhms, KnowsTheLengthOfItsMonth) {
  struct {
    std::uint16_t year;
    std::uint8_t month;
    std::uint8_t days;
  } const cases[] = {{2023, 1, 31},  {2023, 2, 28},   {2024, 2, 29},  {1900, 2, 28},
                     {2000, 2, 29},  {2023, 3, 31},   {2023, 4, 30},  {2023, 5, 31},
                     {2023, 6, 30},  {2023, 7, 31},   {2023, 8, 31},  {2023, 9, 30},
                     {2023, 10, 31}, {2023, 11, 30},  {2023, 12, 31}, {2023, 0, 30},
                     {2023, 13, 30}, {2023, 255, 30}, {0, 2, 29},     {65535, 2, 28}};
  for (auto const& c : cases) {
    YmdhmsC value = YmdhmsC::zero();
    value.year = c.year;
    value.month = c.month;
    EXPECT_EQ(c.days, value.daysInMonth()) << c.year << '-' << int{c.month};
  }
}

TEST(Ymdhms, KnowsLeapYears) {
  struct {
    std::uint16_t year;
    bool isLeap;
  } const cases[] = {{1999, false}, {2000, true}, {1900, false}, {2024, true}, {2100, false},
                     {2400, true},  {0, true},    {4, true},     {100, false}, {65532, true}};
  for (auto const& c : cases) {
    YmdhmsC value = YmdhmsC::zero();
    value.year = c.year;
    EXPECT_EQ(c.isLeap, value.isLeapYear()) << c.year;
  }
}

TEST(Ymdhms, IsBuiltFromAFatPair) {
  YmdhmsC const first(std::uint16_t{0}, std::uint16_t{0x0021});
  expectFields({1980, 1, 1, 0, 0, 0, 0, 0, 0}, first);
  EXPECT_EQ(TIMEBASE_LOCAL, first.timeBase);
  EXPECT_EQ(0U, first.precision);
  // 13 << 11 | 37 << 5 | 21 and 44 << 9 | 10 << 5 | 22
  expectFields({2024, 10, 22, 13, 37, 42, 0, 0, 0}, YmdhmsC(0x6CB5, 0x5956));
  YmdhmsC const largest(std::uint16_t{0xFFFF}, std::uint16_t{0xFFFF});
  expectFields({2107, 15, 31, 31, 63, 62, 0, 0, 0}, largest);
}

TEST(Ymdhms, HoldsEvenSecondsInAFatPair) {
  std::uint16_t fatTime = 0;
  std::uint16_t fatDate = 0;
  make({2024, 3, 7, 1, 2, 59, 0, 0, 0}, TIMEBASE_LOCAL).toFatDateTime(fatTime, fatDate);
  EXPECT_EQ(58, YmdhmsC(fatTime, fatDate).second);
}

TEST(Ymdhms, PacksLocalTimeForFat) {
  YmdhmsC const gps = make({2024, 3, 7, 0, 0, 10, 0, 5, 0}, TIMEBASE_GPS);
  YmdhmsC const utc = make({2024, 3, 6, 23, 59, 52, 0, 4, 0}, TIMEBASE_UTC);
  struct {
    YmdhmsC value;
    std::int32_t offset;
    std::uint16_t fatTime;
    std::uint16_t fatDate;
  } const cases[] = {{gps, 60, 0x077A, 0x5867},
                     {gps, 0, 0xBF7A, 0x5866},
                     {utc, 60, 0x077A, 0x5867},
                     {utc, 0, 0xBF7A, 0x5866}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.offset);
    ZoneOffsetC const zone(c.offset);
    std::uint16_t fatTime = 0;
    std::uint16_t fatDate = 0;
    c.value.toFatDateTime(fatTime, fatDate);
    EXPECT_EQ(c.fatTime, fatTime);
    EXPECT_EQ(c.fatDate, fatDate);
  }
}

TEST(Ymdhms, CutsYearsThatFatCannotHold) {
  struct {
    FieldsC fields;
    std::uint16_t fatDate;
  } const cases[] = {{{1979, 12, 31, 0, 0, 0, 0, 0, 0}, 0xFF9F},
                     {{2108, 1, 1, 0, 0, 0, 0, 0, 0}, 0x0021},
                     {{0, 1, 1, 0, 0, 0, 0, 0, 0}, 0x8821},
                     {{65535, 255, 255, 0, 0, 0, 0, 0, 0}, 0x9FFF}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.fields.year);
    std::uint16_t fatTime = 1;
    std::uint16_t fatDate = 0;
    make(c.fields, TIMEBASE_LOCAL).toFatDateTime(fatTime, fatDate);
    EXPECT_EQ(c.fatDate, fatDate);
    EXPECT_EQ(0, fatTime);
  }
}

TEST(Ymdhms, PacksOtherBasesForFatAsTheyStand) {
  std::uint16_t fatTime = 0;
  std::uint16_t fatDate = 0;
  make({2024, 3, 7, 0, 59, 52, 0, 5, 0}, TIMEBASE_INV).toFatDateTime(fatTime, fatDate);
  EXPECT_EQ(0x077A, fatTime);
  EXPECT_EQ(0x5867, fatDate);
}

TEST(Ymdhms, IsBuiltFromBrokenDownTime) {
  std::tm brokenDown{};
  brokenDown.tm_year = 124;
  brokenDown.tm_mon = 2;
  brokenDown.tm_mday = 7;
  brokenDown.tm_hour = 8;
  brokenDown.tm_min = 9;
  brokenDown.tm_sec = 60;
  brokenDown.tm_wday = 4;
  YmdhmsC const value(&brokenDown);
  expectFields({2024, 3, 7, 8, 9, 60, 0, 5, 0}, value);
  EXPECT_EQ(TIMEBASE_LOCAL, value.timeBase);
  EXPECT_EQ(0U, value.precision);
  YmdhmsC reset = make({1, 1, 1, 1, 1, 1, 1, 1, 1}, TIMEBASE_GPS, 1);
  reset.fromTm(&brokenDown);
  expectFields({2024, 3, 7, 8, 9, 60, 0, 5, 0}, reset);
  EXPECT_EQ(TIMEBASE_LOCAL, reset.timeBase);
  EXPECT_EQ(0U, reset.precision);
}

TEST(Ymdhms, CutsExtremesOfBrokenDownTime) {
  constexpr int HIGHEST = std::numeric_limits<int>::max();
  constexpr int LOWEST = std::numeric_limits<int>::min();
  std::tm brokenDown{};
  brokenDown.tm_year = HIGHEST;
  brokenDown.tm_mon = HIGHEST;
  brokenDown.tm_mday = LOWEST;
  brokenDown.tm_hour = -1;
  brokenDown.tm_min = 256;
  brokenDown.tm_sec = LOWEST + 1;
  brokenDown.tm_wday = HIGHEST;
  expectFields({1899, 0, 0, 255, 0, 1, 0, 0, 0}, YmdhmsC(&brokenDown));
}

TEST(Ymdhms, AssertsOnNullBrokenDownTime) {
  LogCaptureC const log;
  YmdhmsC const built(static_cast<std::tm const*>(nullptr));
  expectFields(ALL_ZERO, built);
  EXPECT_EQ(TIMEBASE_LOCAL, built.timeBase);
  EXPECT_EQ(0U, built.precision);
  EXPECT_EQ(1U, log.assertionCount());
  YmdhmsC kept = make({2024, 3, 7, 8, 9, 5, 42, 5, 420}, TIMEBASE_GPS, 1);
  kept.fromTm(nullptr);
  expectFields({2024, 3, 7, 8, 9, 5, 42, 5, 420}, kept);
  EXPECT_EQ(TIMEBASE_GPS, kept.timeBase);
  EXPECT_EQ(1U, kept.precision);
  EXPECT_EQ(2U, log.assertionCount());
  kept.toTm(nullptr);
  EXPECT_EQ(std::vector<std::string>(3, "Broken-down time is null!"), log.assertionTexts());
}

TEST(Ymdhms, FillsBrokenDownTime) {
  std::tm brokenDown{};
  make({2024, 3, 7, 8, 9, 5, 42, 5, 420}, TIMEBASE_GPS).toTm(&brokenDown);
  EXPECT_EQ(124, brokenDown.tm_year);
  EXPECT_EQ(2, brokenDown.tm_mon);
  EXPECT_EQ(7, brokenDown.tm_mday);
  EXPECT_EQ(8, brokenDown.tm_hour);
  EXPECT_EQ(9, brokenDown.tm_min);
  EXPECT_EQ(5, brokenDown.tm_sec);
  EXPECT_EQ(4, brokenDown.tm_wday);
  EXPECT_EQ(-1, brokenDown.tm_yday);
  EXPECT_EQ(-1, brokenDown.tm_isdst);
  YmdhmsC::zero().toTm(&brokenDown);
  EXPECT_EQ(-1900, brokenDown.tm_year);
  EXPECT_EQ(-1, brokenDown.tm_mon);
  EXPECT_EQ(-1, brokenDown.tm_wday);
}

TEST(Ymdhms, ConversionAtHundredthsDropsTheMilliseconds) {
  FieldsC const fields = {2024, 3, 7, 8, 9, 5, 12, 5, 123};
  YmdhmsC hundredths = make(fields, TIMEBASE_GPS, 0);
  hundredths.toUtc();
  expectFields({2024, 3, 7, 8, 8, 47, 12, 5, 120}, hundredths);
  YmdhmsC milliseconds = make(fields, TIMEBASE_GPS, 1);
  milliseconds.toUtc();
  expectFields({2024, 3, 7, 8, 8, 47, 12, 5, 123}, milliseconds);
  EXPECT_EQ(TIMEBASE_UTC, milliseconds.timeBase);
  milliseconds.toGps();
  expectFields(fields, milliseconds);
  EXPECT_EQ(TIMEBASE_GPS, milliseconds.timeBase);
}

TEST(Ymdhms, ShiftsBetweenUtcAndLocal) {
  ZoneOffsetC const zone(-210);
  YmdhmsC value = make({2024, 3, 1, 2, 0, 0, 0, 6, 0}, TIMEBASE_UTC);
  value.utcToLocal();
  expectFields({2024, 2, 29, 22, 30, 0, 0, 5, 0}, value);
  EXPECT_EQ(TIMEBASE_LOCAL, value.timeBase);
  value.localToUtc();
  expectFields({2024, 3, 1, 2, 0, 0, 0, 6, 0}, value);
  EXPECT_EQ(TIMEBASE_UTC, value.timeBase);
  value.utcToLocal();
  value.toUtc();
  expectFields({2024, 3, 1, 2, 0, 0, 0, 6, 0}, value);
  value.utcToLocal();
  value.toGps();
  expectFields({2024, 3, 1, 2, 0, 18, 0, 6, 0}, value);
}

TEST(Ymdhms, LeavesAValueInTheTargetBaseOrInNoneAlone) {
  FieldsC const odd = {2024, 2, 31, 25, 61, 61, 45, 0, 123};
  for (TimeBaseE const base : {TIMEBASE_UTC, TIMEBASE_INV}) {
    YmdhmsC value = make(odd, base);
    value.toUtc();
    expectFields(odd, value);
    EXPECT_EQ(base, value.timeBase);
  }
  for (TimeBaseE const base : {TIMEBASE_GPS, TIMEBASE_INV, static_cast<TimeBaseE>(7)}) {
    YmdhmsC value = make(odd, base);
    value.toGps();
    expectFields(odd, value);
    EXPECT_EQ(base, value.timeBase);
  }
}

TEST(Ymdhms, EqualityBringsTheOtherIntoItsBase) {
  YmdhmsC const utc = make({2024, 3, 7, 8, 9, 5, 42, 5, 420}, TIMEBASE_UTC);
  YmdhmsC const gps = make({2024, 3, 7, 8, 9, 23, 42, 5, 420}, TIMEBASE_GPS);
  EXPECT_TRUE(utc == gps);
  EXPECT_FALSE(utc != gps);
  EXPECT_TRUE(gps == utc);
  YmdhmsC const later = make({2024, 3, 7, 8, 9, 23, 43, 5, 430}, TIMEBASE_GPS);
  EXPECT_FALSE(utc == later);
}

TEST(Ymdhms, EqualityBringsLocalTimeIntoItsBase) {
  ZoneOffsetC const zone(60);
  YmdhmsC const local = make({2024, 3, 7, 9, 9, 5, 42, 5, 420}, TIMEBASE_LOCAL);
  EXPECT_TRUE(make({2024, 3, 7, 8, 9, 5, 42, 5, 420}, TIMEBASE_UTC) == local);
  EXPECT_TRUE(make({2024, 3, 7, 8, 9, 23, 42, 5, 420}, TIMEBASE_GPS) == local);
  EXPECT_TRUE(local == make({2024, 3, 7, 8, 9, 23, 42, 5, 420}, TIMEBASE_GPS));
}

TEST(Ymdhms, EqualityOfOneBaseTakesTheFieldsAsStored) {
  FieldsC const fields = {2024, 3, 7, 8, 9, 5, 42, 5, 420};
  YmdhmsC const value = make(fields, TIMEBASE_UTC);
  for (int field = 0; field < 8; ++field) {
    SCOPED_TRACE(field);
    YmdhmsC other = value;
    std::uint8_t* const smallFields[] = {&other.month,  &other.day,    &other.hour,
                                         &other.minute, &other.second, &other.dayOfWeek};
    if (field < 6) {
      ++*smallFields[field];
    } else if (field == 6) {
      ++other.year;
    } else {
      ++other.milliseconds;
    }
    EXPECT_FALSE(value == other);
    EXPECT_TRUE(value != other);
  }
  YmdhmsC const sameFraction = make({2024, 3, 7, 8, 9, 5, 42, 5, 999}, TIMEBASE_UTC, 1);
  EXPECT_TRUE(value == sameFraction);
}

TEST(Ymdhms, EqualityComparesTheFieldsWhereThereIsNoConversion) {
  FieldsC const fields = {2024, 3, 7, 8, 9, 5, 42, 5, 420};
  EXPECT_TRUE(make(fields, TIMEBASE_INV) == make(fields, TIMEBASE_UTC));
}

TEST(Ymdhms, ConversionWrapsInstantsBefore1980) {
  YmdhmsC value = make({1970, 1, 1, 0, 0, 18, 0, 5, 0}, TIMEBASE_GPS);
  value.toUtc();
  expectFields({3226, 1, 8, 0, 0, 0, 0, 5, 0}, value);  // 65536 weeks later
}

}  // namespace
}  // namespace KTX::TIM::TEST
