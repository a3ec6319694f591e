#include <ctime>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "common/KTX_TIM_FakePresent.h"
#include "common/KTX_TIM_LogCapture.h"

namespace KTX::TIM::TEST {
namespace {

constexpr char const* WARNING = "[KTX::TIM] Hoops wrong correction!\n";

class YmdhmsCurrentTime : public ::testing::Test {
 protected:
  std::string outputOf(void (*operation)()) {
    ::testing::internal::CaptureStdout();
    operation();
    return ::testing::internal::GetCapturedStdout();
  }

  LogCaptureC log;
  FakePresentC present;
};

void expectFields(YmdhmsC const& time, int hour, int minute, int second, int ms) {
  EXPECT_EQ(2024, time.year);
  EXPECT_EQ(3, time.month);
  EXPECT_EQ(7, time.day);
  EXPECT_EQ(hour, time.hour);
  EXPECT_EQ(minute, time.minute);
  EXPECT_EQ(second, time.second);
  EXPECT_EQ(ms, time.milliseconds);
  EXPECT_EQ(ms / 10, time.hundredths);
  EXPECT_EQ(TIMEBASE_GPS, time.timeBase);
}

TEST_F(YmdhmsCurrentTime, TheDefaultIsThePresentInGpsTimeToHundredths) {
  present.seed(FakePresentC::THURSDAY_MS + 123);
  YmdhmsC const now;
  expectFields(now, 8, 9, 23, 120);
  EXPECT_EQ(5, now.dayOfWeek);
  EXPECT_EQ(0u, now.precision);
}

TEST_F(YmdhmsCurrentTime, MakeToCurrentTimeLeavesTheDayOfWeekAtZero) {
  YmdhmsC time = YmdhmsC::zero(TIMEBASE_UTC);
  time.dayOfWeek = 3;
  time.makeToCurrentTime();
  expectFields(time, 8, 9, 23, 0);
  EXPECT_EQ(0, time.dayOfWeek);
}

TEST_F(YmdhmsCurrentTime, SetToCurrentTimeAlsoSetsTheDayOfWeek) {
  YmdhmsC time = YmdhmsC::zero(TIMEBASE_LOCAL, 1);
  present.seed(FakePresentC::THURSDAY_MS + 123);
  time.setToCurrentTime();
  expectFields(time, 8, 9, 23, 123);
  EXPECT_EQ(5, time.dayOfWeek);
  EXPECT_EQ(1u, time.precision);
}

TEST_F(YmdhmsCurrentTime, ThePrecisionOfTheValueDecides) {
  present.seed(FakePresentC::THURSDAY_MS + 126);
  YmdhmsC hundredths = YmdhmsC::zero();
  hundredths.makeToCurrentTime();
  EXPECT_EQ(130, hundredths.milliseconds);
  YmdhmsC milliseconds = YmdhmsC::zero(TIMEBASE_LOCAL, 1);
  milliseconds.makeToCurrentTime();
  EXPECT_EQ(126, milliseconds.milliseconds);
}

TEST_F(YmdhmsCurrentTime, AReleasedCorrectionMovesThePresentAndNotTheCalendarClock) {
  std::size_t const calendarReads = present.utc->readCount();
  YmdhmsC observed = YmdhmsC::zero(TIMEBASE_UTC, 1);
  observed.year = 2024;
  observed.month = 3;
  observed.day = 7;
  observed.hour = 12;
  observed.makeToCurrentTime(0);
  YmdhmsC now = YmdhmsC::zero(TIMEBASE_UTC, 1);
  now.makeToCurrentTime();
  expectFields(now, 12, 0, 18, 0);
  EXPECT_EQ(calendarReads, present.utc->readCount());
}

TEST_F(YmdhmsCurrentTime, WarnsPerCallWhenTheMappingIsOlderThanADay) {
  struct {
    std::int64_t elapsedMs;
    int warnings;
  } const cases[] = {{86399999, 0}, {86400000, 0}, {86400001, 1}, {-86400001, 0}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.elapsedMs);
    present.steady->set(1000000 + c.elapsedMs);
    std::string const expected = c.warnings == 0 ? "" : WARNING;
    EXPECT_EQ(expected, outputOf([] { GpsC::currentTime(); }));
    EXPECT_EQ(expected, outputOf([] { YmdhmsC::zero().makeToCurrentTime(); }));
    EXPECT_EQ(expected, outputOf([] { YmdhmsC const now; }));
    EXPECT_EQ(expected + expected, outputOf([] {
                GpsC::currentTime();
                GpsC::currentTime();
              }));
  }
}

TEST_F(YmdhmsCurrentTime, TheWarningIsNotLoggedAndTheTimeGoesOn) {
  present.steady->advanceMs(86400001);
  log.clear();
  std::string const output = outputOf([] {
    YmdhmsC now = YmdhmsC::zero(TIMEBASE_GPS, 1);
    now.makeToCurrentTime();
    EXPECT_EQ(8, now.day);
    EXPECT_EQ(1, now.milliseconds);
  });
  EXPECT_EQ(WARNING, output);
  EXPECT_EQ(0u, log.count());
}

TEST_F(YmdhmsCurrentTime, OnlyTheDefaultConstructorReadsTheClock) {
  std::size_t const readsBefore = present.steady->readCount();
  GpsTimeC const week(GPSTimeC(2304, 374963000));
  std::tm brokenDown{};
  brokenDown.tm_year = 124;
  brokenDown.tm_mday = 7;
  YmdhmsC const fromWeek(week);
  YmdhmsC const fromDay(MjdTimeC(60376.25, TIMEBASE_UTC));
  YmdhmsC const fromFat(std::uint16_t{0}, std::uint16_t{0x21});
  YmdhmsC const fromBrokenDown(&brokenDown);
  YmdhmsC converted = YmdhmsC::zero();
  converted.setFrom(MjdTimeC(60376.25, TIMEBASE_UTC));
  converted.toGps();
  converted.toUtc();
  EXPECT_FALSE(converted == fromWeek);
  EXPECT_EQ(TIMEBASE_GPS, GpsTimeC(fromWeek).getTimeBase());
  EXPECT_EQ(readsBefore, present.steady->readCount());
  YmdhmsC const now;
  EXPECT_EQ(readsBefore + 1, present.steady->readCount());
}

TEST_F(YmdhmsCurrentTime, APresentFarAheadWrapsWithTheWeek) {
  present.seed(253402300799999);  // the end of the year 9999
  EXPECT_EQ(GPSTimeC(25246, 518417999), GpsC::currentTime());
  YmdhmsC now = YmdhmsC::zero(TIMEBASE_GPS, 1);
  now.makeToCurrentTime();
  EXPECT_EQ(2463, now.year);
}

}  // namespace
}  // namespace KTX::TIM::TEST
