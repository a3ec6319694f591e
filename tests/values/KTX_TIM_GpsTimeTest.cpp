#include "KTX/TIM/KTX_TIM_GpsTime.h"

#include <iomanip>
#include <sstream>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "common/KTX_TIM_LogCapture.h"
#include "values/KTX_TIM_ScriptedProvider.h"

namespace KTX::TIM::TEST {
namespace {

GpsC gpsAt(LeapSecondProviderI& provider, GPSTimeC const& time) {
  GpsC value(&provider);
  static_cast<GPSTimeC&>(value) = time;
  return value;
}

// The only ways to give a GpsTimeC a provider of its own are the assignments of the base class.
GpsTimeC gpsTimeAt(LeapSecondProviderI& provider, GPSTimeC const& time, TimeBaseE timeBase) {
  GpsTimeC value;
  static_cast<GpsC&>(value) = gpsAt(provider, time);
  value.setTimeBase(timeBase);
  return value;
}

TEST(GpsTime, StartsAtTheEpochInGpsTime) {
  GpsTimeC const time;
  EXPECT_EQ(GPSTimeC(0, 0), time);
  EXPECT_EQ(TIMEBASE_GPS, time.getTimeBase());
  EXPECT_EQ(getDefaultLeapSecondProvider(), time.getLeapSecondProvider());
}

TEST(GpsTime, IsGpsTimeWhenBuiltFromAPlainInstant) {
  GpsTimeC const time(GPSTimeC(7, 8));
  EXPECT_EQ(GPSTimeC(7, 8), time);
  EXPECT_EQ(TIMEBASE_GPS, time.getTimeBase());
}

TEST(GpsTime, DropsTheProviderOfAGps) {
  ScriptedProviderC stub({unknownAnswer(5, 5)});
  GpsTimeC const time(gpsAt(stub, {2000, 8}));
  EXPECT_EQ(18, time.getLeapSeconds());
  EXPECT_EQ(TIMEBASE_GPS, time.getTimeBase());
  EXPECT_TRUE(stub.queries.empty());
}

TEST(GpsTime, CopiesAllFourFields) {
  ScriptedProviderC stub({unknownAnswer(5, 5)});
  GpsTimeC const time = gpsTimeAt(stub, {7, 8}, TIMEBASE_LOCAL);
  GpsTimeC const copy(time);
  GpsTimeC assigned;
  assigned = time;
  for (GpsTimeC const* other : {&copy, static_cast<GpsTimeC const*>(&assigned)}) {
    EXPECT_EQ(GPSTimeC(7, 8), *other);
    EXPECT_EQ(&stub, other->getLeapSecondProvider());
    EXPECT_EQ(TIMEBASE_LOCAL, other->getTimeBase());
  }
}

TEST(GpsTime, AssignmentOfAPlainInstantKeepsTheProvider) {
  ScriptedProviderC stub({unknownAnswer(5, 5)});
  GpsTimeC time = gpsTimeAt(stub, {7, 8}, TIMEBASE_UTC);
  time = GPSTimeC(1, 2);
  EXPECT_EQ(GPSTimeC(1, 2), time);
  EXPECT_EQ(TIMEBASE_GPS, time.getTimeBase());
  EXPECT_EQ(&stub, time.getLeapSecondProvider());
}

TEST(GpsTime, AssignmentOfAGpsIsThatOfAPlainInstant) {
  ScriptedProviderC kept({unknownAnswer(5, 5)});
  ScriptedProviderC other({unknownAnswer(6, 6)});
  GpsTimeC time = gpsTimeAt(kept, {7, 8}, TIMEBASE_UTC);
  time = gpsAt(other, {1, 2});
  EXPECT_EQ(GPSTimeC(1, 2), time);
  EXPECT_EQ(TIMEBASE_GPS, time.getTimeBase());
  EXPECT_EQ(&kept, time.getLeapSecondProvider());
}

TEST(GpsTime, KeepsItsProviderAsAGps) {
  ScriptedProviderC stub({unknownAnswer(5, 5)});
  GpsC const time(gpsTimeAt(stub, {7, 8}, TIMEBASE_UTC));
  EXPECT_EQ(&stub, time.getLeapSecondProvider());
}

TEST(GpsTime, TakesTheBaseOfADayNumber) {
  for (TimeBaseE const base : {TIMEBASE_INV, TIMEBASE_GPS, TIMEBASE_UTC, TIMEBASE_LOCAL}) {
    GpsTimeC const time(MjdTimeC(44251.5, base));
    EXPECT_EQ(GPSTimeC(1, 43200000), time);
    EXPECT_EQ(base, time.getTimeBase());
  }
}

TEST(GpsTime, CarriesADayNumberThatRoundsUpToAWholeWeek) {
  double const tiny = 1.0 / (1LL << 37);
  EXPECT_EQ(GPSTimeC(1, 0), GpsTimeC(MjdTimeC(44251 - tiny)));
}

TEST(GpsTime, WrapsDayNumbersBeforeTheEpoch) {
  EXPECT_EQ(GPSTimeC(65535, 561600000), GpsTimeC(MjdTimeC(44243.5)));
}

TEST(GpsTime, TakesDayNumbersBeyondAllWeeks) {
  struct {
    double dayNumber;
    GPSTimeC expected;
  } const cases[] = {{44244 + 7e9, {51712, 0}},
                     {44244 - 7e9, {13824, 0}},
                     // The weeks and the milliseconds saturate, each at a limit of 64 bits.
                     {1e300, {57251, 285175807}},
                     {-1e300, {8283, 319624192}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.dayNumber);
    EXPECT_EQ(c.expected, GpsTimeC(MjdTimeC(c.dayNumber)));
  }
}

TEST(GpsTime, CarriesFieldsBeyondTheirRangesIntoTheWeek) {
  struct {
    int year, month, day, hour, minute, second;
    std::int64_t milliseconds;
    GPSTimeC expected;
  } const cases[] = {{2000, 1, 2, 0, 0, 0, 0, {1043, 0}},
                     {2000, 1, 2, 0, 0, 0, -5, {1042, 604799995}},
                     {2000, 1, 8, 23, 59, 59, 0, {1043, 604799000}},
                     {2000, 1, 8, 23, 59, 60, 0, {1044, 0}},
                     {2000, 1, 8, 255, 255, 255, 0, {1045, 242355000}},
                     {9999, 12, 31, 0, 0, 0, 0, {25246, 432000000}},
                     {10000, 1, 1, 0, 0, 0, 0, {25246, 518400000}},
                     {10000, 1, 1, 24, 0, 0, -1, {25246, 604799999}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.day);
    YmdhmsC calendar = YmdhmsC::zero(TIMEBASE_GPS);
    calendar.year = static_cast<std::uint16_t>(c.year);
    calendar.month = static_cast<std::uint8_t>(c.month);
    calendar.day = static_cast<std::uint8_t>(c.day);
    calendar.hour = static_cast<std::uint8_t>(c.hour);
    calendar.minute = static_cast<std::uint8_t>(c.minute);
    calendar.second = static_cast<std::uint8_t>(c.second);
    calendar.milliseconds = c.milliseconds;
    EXPECT_EQ(c.expected, GpsTimeC(calendar));
    EXPECT_EQ(c.expected, GpsTimeC(MjdTimeC(calendar)));
  }
}

TEST(GpsTime, TakesACalendarValue) {
  YmdhmsC calendar = YmdhmsC::zero(TIMEBASE_LOCAL);
  calendar.year = 1980;
  calendar.month = 1;
  calendar.day = 6;
  calendar.second = 1;
  GpsTimeC const time(calendar);
  EXPECT_EQ(GPSTimeC(0, 1000), time);
  EXPECT_EQ(TIMEBASE_LOCAL, time.getTimeBase());
}

TEST(GpsTime, TakesACalendarValueAroundTheEpoch) {
  struct {
    std::uint16_t year;
    std::uint8_t month;
    std::uint8_t day;
    GPSTimeC expected;
  } const cases[] = {{1979, 12, 29, {65534, 518400000}},
                     {1979, 12, 30, {65535, 0}},
                     {1979, 12, 31, {65535, 86400000}},
                     {1980, 1, 1, {65535, 172800000}},
                     {1980, 1, 2, {65535, 259200000}},
                     {1980, 1, 3, {65535, 345600000}},
                     {1980, 1, 4, {65535, 432000000}},
                     {1980, 1, 5, {65535, 518400000}},
                     {1980, 1, 6, {0, 0}},
                     {1980, 1, 7, {0, 86400000}},
                     {1980, 12, 31, {51, 259200000}},
                     {1981, 1, 1, {51, 345600000}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.year << "-" << int{c.month} << "-" << int{c.day});
    YmdhmsC calendar = YmdhmsC::zero(TIMEBASE_GPS, 1);
    calendar.year = c.year;
    calendar.month = c.month;
    calendar.day = c.day;
    EXPECT_EQ(c.expected, GpsTimeC(calendar));
    EXPECT_EQ(c.expected, GpsTimeC(MjdTimeC(calendar)));
    calendar.hour = 23;
    calendar.hundredths = 12;
    calendar.milliseconds = 123;
    EXPECT_EQ(c.expected + std::int64_t{82800123}, GpsTimeC(calendar));
  }
}

TEST(GpsTime, ComparesWithoutTheTimeBase) {
  ScriptedProviderC stub({unknownAnswer(5, 5)});
  GpsTimeC const utc = gpsTimeAt(stub, {5, 1}, TIMEBASE_UTC);
  GpsTimeC const gps(GPSTimeC(5, 1));
  EXPECT_TRUE(utc == gps);
  EXPECT_FALSE(utc != gps);
  EXPECT_FALSE(utc < gps);
  EXPECT_TRUE(utc <= gps);
}

TEST(GpsTime, RelabelsWithoutConverting) {
  GpsTimeC time(GPSTimeC(5, 1));
  time.setTimeBase(TIMEBASE_UTC);
  EXPECT_EQ(GPSTimeC(5, 1), time);
  EXPECT_EQ(TIMEBASE_UTC, time.getTimeBase());
}

TEST(GpsTime, KeepsItsBaseWhenAShiftFails) {
  LogCaptureC const log;
  ScriptedProviderC stub({failure(7)});
  GpsTimeC time = gpsTimeAt(stub, {5, 1}, TIMEBASE_GPS);
  time.gpsToUtc();
  EXPECT_EQ(GPSTimeC(5, 1), time);
  EXPECT_EQ(TIMEBASE_GPS, time.getTimeBase());
  EXPECT_EQ(1U, log.assertionCount());
}

TEST(GpsTime, WritesItsBase) {
  struct {
    std::int32_t base;
    char const* text;
  } const cases[] = {{-1, "week: 1929 msec: 604799999 base: TIMEBASE_INV"},
                     {0, "week: 1929 msec: 604799999 base: TIMEBASE_GPS"},
                     {2, "week: 1929 msec: 604799999 base: TIMEBASE_LOCAL"},
                     {7, "week: 1929 msec: 604799999 base: UNKNOWN"}};
  for (auto const& c : cases) {
    GpsTimeC time(GPSTimeC(1929, 604799999));
    time.setTimeBase(static_cast<TimeBaseE>(c.base));
    std::ostringstream stream;
    stream << std::hex << std::setfill('*') << std::setw(80) << time;
    EXPECT_EQ(c.text, stream.str());
  }
}

TEST(GpsTime, IsWrittenAsAGpsWithoutItsBase) {
  std::ostringstream stream;
  stream << GpsC(3, 4);
  EXPECT_EQ("week: 3 msec: 4", stream.str());
}

}  // namespace
}  // namespace KTX::TIM::TEST
