#include <cstdlib>
#include <functional>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_PresentStatus.h"
#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "common/KTX_TIM_FakePresent.h"
#include "common/KTX_TIM_FakeSystemCalls.h"
#include "common/KTX_TIM_LogCapture.h"
#include "common/KTX_TIM_ScopedSystemCalls.h"

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;
using ::testing::FieldsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr std::uint16_t WEEK = 2304;
constexpr std::uint32_t NOW_MS = 374963000;

using CorrectionT = std::tuple<int, int, long long>;

class Observation : public ::testing::Test {
 protected:
  Observation() { log.clear(); }

  static YmdhmsC utcTime(int hour, int minute, int second, std::int64_t ms) {
    YmdhmsC time = YmdhmsC::zero(TIMEBASE_UTC, 1);
    time.year = 2024;
    time.month = 3;
    time.day = 7;
    time.hour = static_cast<std::uint8_t>(hour);
    time.minute = static_cast<std::uint8_t>(minute);
    time.second = static_cast<std::uint8_t>(second);
    time.milliseconds = ms;
    time.hundredths = static_cast<std::uint8_t>(ms / 10);
    return time;
  }

  LogCaptureC log;
  FakePresentC present;
  std::vector<CorrectionT> corrections;
  boost::signals2::scoped_connection connection =
      connectTimeCorrected([this](int week, int ms, TimeChangeT change) {
        corrections.emplace_back(week, ms, change.count());
      });
};

// Restores the leap seconds that a test forced.
struct ForcedLeapSecondsC {
  ForcedLeapSecondsC(std::int16_t current, std::int16_t future) {
    EXPECT_EQ(0u, setUtcLeapSecond({LEAPSECOND_FORCED, current, future, 1929, 7, true}, false));
  }
  ~ForcedLeapSecondsC() { setUtcLeapSecond(withdrawForcedRecord(), false); }
  ForcedLeapSecondsC(ForcedLeapSecondsC const&) = delete;
  ForcedLeapSecondsC& operator=(ForcedLeapSecondsC const&) = delete;
};

TEST_F(Observation, AReleasedCorrectionMovesThePresentLogsAndSignals) {
  EXPECT_EQ(0u, GpsC(WEEK, NOW_MS + 123).makeToCurrentTime(0, 1));
  EXPECT_THAT(log.lines("TimeYmdhms"),
              ElementsAre("YmdhmsC makeToCurrentTime: GPSweek: 2304 GPSmsecs: 374963123\n",
                          "YmdhmsC makeToCurrentTime: 2024-03-07T08:09:05.12Z\n",
                          "New sys time: 2024-03-07T08:09:05.12Z\n",
                          "YmdhmsC makeToCurrentTime SETSysTime:\n"
                          "Time: 60376.339642627317517d @ 1000000ms (2024-03-07 08:09:05:123000)\n"
                          "GPSweek: 2304\nGPSmsecs: 374963123\n(change: 123ms)\n"
                          "2024-03-07T08:09:05.12Z\n"));
  EXPECT_THAT(corrections, ElementsAre(FieldsAre(2304, 374963123, 123)));
  EXPECT_EQ(GPSTimeC(WEEK, NOW_MS + 123), GpsC::currentTime());
}

TEST_F(Observation, TheFirstLineHasArgumentsAndTheOthersAreTheirOwnFormat) {
  GpsC(WEEK, NOW_MS + 123).makeToCurrentTime(0, 1);
  bool isFirst = true;
  for (auto const& entry : log.entries()) {
    if (entry.channel != "TimeYmdhms") {
      continue;
    }
    EXPECT_EQ(3, entry.level);
    EXPECT_EQ(isFirst ? "YmdhmsC makeToCurrentTime: GPSweek: %ld GPSmsecs: %ld\n" : entry.text,
              entry.format);
    isFirst = false;
  }
}

TEST_F(Observation, AnObservationOfThePresentIsLoggedAndNotSignalled) {
  EXPECT_EQ(0u, GpsC(WEEK, NOW_MS + 51).makeToCurrentTime(10, 1));
  EXPECT_THAT(log.lines("TimeYmdhms"),
              ElementsAre("YmdhmsC makeToCurrentTime: GPSweek: 2304 GPSmsecs: 374963051\n",
                          "YmdhmsC makeToCurrentTime: 2024-03-07T08:09:05.5Z\n",
                          "YmdhmsC makeToCurrentTime NOTSETSysTime:\n"
                          "Time: 60376.339641203703650d @ 1000000ms (2024-03-07 08:09:05:000000)\n"
                          "GPSweek: 2304\nGPSmsecs: 374963000\n(change: 51ms)\n"
                          "2024-03-07T08:09:05.5Z\n"));
  EXPECT_THAT(corrections, IsEmpty());
  EXPECT_EQ(GPSTimeC(WEEK, NOW_MS), GpsC::currentTime());
}

TEST_F(Observation, TheNoiseKeepsAFractionBack) {
  GpsC(WEEK, NOW_MS + 100).makeToCurrentTime(10, 1);
  EXPECT_THAT(corrections, ElementsAre(FieldsAre(2304, 374963100, 99)));
}

TEST_F(Observation, EveryLineOfAReleasedCorrectionHasItsPlace) {
  GpsC(WEEK, NOW_MS + 123).makeToCurrentTime(0, 1);
  std::vector<std::string> order;
  for (auto const& entry : log.entries()) {
    order.push_back(entry.channel + ": " + entry.text.substr(0, entry.isWriteText ? 0 : 22));
  }
  EXPECT_THAT(
      order,
      ElementsAre("Time: ", "TimeYmdhms: YmdhmsC makeToCurrentT",
                  "TimeYmdhms: YmdhmsC makeToCurrentT", "TimeEstimator: predict estimate: Time",
                  "TimeEstimator: KTX::TIM::SysTimeOffse", "TimeEstimator: KTX::TIM::SysTimeOffse",
                  "TimeEstimator: predict estimate: Time", "TimeEstimator: new observation : Time",
                  "TimeEstimator: new estimate    : Time",
                  "TimeEstimatorData: STT-D:\t0\tOBS-A:\t60376.",
                  "TimeEstimator: KTX::TIM::SysTimeOffse", "Time: New sys time: Time: 60",
                  "TimeYmdhms: New sys time: 2024-03-", "TimeYmdhms: YmdhmsC makeToCurrentT"));
}

TEST_F(Observation, TheIntakeOfAWeekWritesAPlainTextWithTheThread) {
  GpsC(WEEK, NOW_MS + 123).makeToCurrentTime(-7, 1);
  auto const entry = log.entries().front();
  EXPECT_TRUE(entry.isWriteText);
  EXPECT_EQ("Time", entry.channel);
  std::size_t const idLength = entry.text.find_first_not_of("0123456789abcdef");
  EXPECT_GT(idLength, 0u);
  EXPECT_EQ(
      " - GpsC makeToCurrentTime call to makeToCurrentTime:: GPSweek: 2304 GPSmsecs: 374963123 "
      "noise (std. dev.): -7",
      entry.text.substr(idLength));
}

TEST_F(Observation, TheIntakeOfAWeekIsSilentAboveLevelZero) {
  log.setThreshold("Time", 1);
  GpsC(WEEK, NOW_MS).makeToCurrentTime(0, 1);
  EXPECT_EQ(0u, log.count("Time"));
}

TEST_F(Observation, ReleasesAChangeAbove51Ms) {
  for (std::uint32_t const changeMs : {51U, 52U}) {
    SCOPED_TRACE(changeMs);
    resetSysTime();
    corrections.clear();
    GpsC(WEEK, NOW_MS + changeMs).makeToCurrentTime(0, 1);
    EXPECT_EQ(changeMs == 52 ? 1U : 0U, corrections.size());
  }
}

TEST_F(Observation, ReleasesAChangeUpToAnUncertaintyOf55Ms) {
  for (std::int64_t const noiseMs : {55, 56}) {
    SCOPED_TRACE(noiseMs);
    resetSysTime();
    corrections.clear();
    GpsC(WEEK, NOW_MS + 100).makeToCurrentTime(noiseMs, 1);
    EXPECT_EQ(noiseMs == 55 ? 1U : 0U, corrections.size());
  }
}

TEST_F(Observation, ComposesNoLineOfALevelThatIsNotEnabled) {
  log.setThreshold("TimeYmdhms", 4);
  GpsC(WEEK, NOW_MS).makeToCurrentTime(0, 1);
  EXPECT_EQ(1u, log.unaskedCount()) << "the one line that is a format with numbers";
}

TEST_F(Observation, OnlyFlagOneKeepsTheMilliseconds) {
  struct {
    std::int32_t flag;
    char const* line;
    int signalledMs;
  } const cases[] = {
      {1, "YmdhmsC makeToCurrentTime: GPSweek: 2304 GPSmsecs: 374963123\n", 374963123},
      {0, "YmdhmsC makeToCurrentTime: GPSweek: 2304 GPSmsecs: 374963120\n", 374963120},
      {2, "YmdhmsC makeToCurrentTime: GPSweek: 2304 GPSmsecs: 374963120\n", 374963120},
      {-1, "YmdhmsC makeToCurrentTime: GPSweek: 2304 GPSmsecs: 374963120\n", 374963120}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.flag);
    resetSysTime();
    log.clear();
    corrections.clear();
    GpsC(WEEK, NOW_MS + 123).makeToCurrentTime(0, c.flag);
    EXPECT_EQ(c.line, log.lines("TimeYmdhms").front());
    EXPECT_THAT(corrections,
                ElementsAre(FieldsAre(2304, c.signalledMs, c.signalledMs - 374963000)));
  }
}

TEST_F(Observation, TheSignalledTimeHasThePrecisionOfTheObservation) {
  YmdhmsC observed = utcTime(8, 9, 5, 200);
  observed.precision = 0;
  present.steady->advanceMs(7);
  observed.makeToCurrentTime(0);
  EXPECT_THAT(corrections, ElementsAre(FieldsAre(2304, 374963200, 193)));
  corrections.clear();
  observed.milliseconds = 806;
  observed.hundredths = 80;
  observed.makeToCurrentTime(0);
  EXPECT_EQ(810, std::get<1>(corrections.front()) % 1000);  // the observation itself has 806
}

TEST_F(Observation, EachBaseGivesTheSameInstant) {
  FakeSystemCallsC calls;
  ScopedSystemCallsC const scope(calls);
  calls.setZone(-60, u"W. Europe Standard Time");
  YmdhmsC local = utcTime(10, 0, 0, 250);
  local.timeBase = TIMEBASE_LOCAL;
  YmdhmsC gps = utcTime(9, 0, 18, 250);
  gps.timeBase = TIMEBASE_GPS;
  for (YmdhmsC const& observed : {utcTime(9, 0, 0, 250), local, gps}) {
    SCOPED_TRACE(observed.timeBase);
    resetSysTime();
    corrections.clear();
    log.clear();
    observed.makeToCurrentTime(0);
    EXPECT_EQ("YmdhmsC makeToCurrentTime: GPSweek: 2304 GPSmsecs: 378018250\n",
              log.lines("TimeYmdhms")[0]);
    EXPECT_EQ("YmdhmsC makeToCurrentTime: 2024-03-07T09:00:00.25Z\n", log.lines("TimeYmdhms")[1]);
    ASSERT_EQ(1u, corrections.size());
    EXPECT_EQ(378018250, std::get<1>(corrections.front()));
  }
}

// The line comes from whole milliseconds of the week, the filter's number from a fraction of a day,
// which alone survives before the GPS epoch.
TEST_F(Observation, ALocalValueTakesTwoRoads) {
  FakeSystemCallsC calls;
  ScopedSystemCallsC const scope(calls);
  calls.setZone(-60, u"W. Europe Standard Time");
  YmdhmsC observed = utcTime(1, 0, 0, 0);
  observed.timeBase = TIMEBASE_LOCAL;
  observed.year = 1970;
  observed.month = 1;
  observed.day = 2;
  observed.makeToCurrentTime(0);
  EXPECT_EQ("YmdhmsC makeToCurrentTime: GPSweek: 65013 GPSmsecs: 432018000\n",
            log.lines("TimeYmdhms").front());
  EXPECT_THAT(log.lines("Time").back(), HasSubstr("(1970-01-02 00:00:00:000000)"));
}

TEST_F(Observation, ABaseThatIsNotSetIsTakenAsItStands) {
  YmdhmsC observed = utcTime(9, 0, 0, 250);
  observed.timeBase = TIMEBASE_INV;
  observed.makeToCurrentTime(0);
  EXPECT_EQ("YmdhmsC makeToCurrentTime: GPSweek: 2304 GPSmsecs: 378000250\n",
            log.lines("TimeYmdhms").front());
  EXPECT_THAT(log.lines("Time").back(), HasSubstr("(2024-03-07 09:00:00:250000)"));
  EXPECT_THAT(corrections, ElementsAre(FieldsAre(2304, 378018250, 3055250)));
}

TEST_F(Observation, TheObservationIsNotChanged) {
  YmdhmsC const observed = utcTime(9, 0, 0, 250);
  observed.makeToCurrentTime(0);
  EXPECT_EQ(9, observed.hour);
  EXPECT_EQ(250, observed.milliseconds);
  EXPECT_EQ(0, observed.dayOfWeek);
  EXPECT_EQ(TIMEBASE_UTC, observed.timeBase);
  GpsC const week(WEEK, NOW_MS + 999);
  week.makeToCurrentTime(0, 0);
  EXPECT_EQ(GPSTimeC(WEEK, NOW_MS + 999), week);
}

TEST_F(Observation, AnUnsureEstimateIsNotSignalled) {
  GpsC(WEEK, NOW_MS + 2500).makeToCurrentTime(56, 1);
  EXPECT_THAT(corrections, IsEmpty());
  EXPECT_THAT(log.lines("TimeYmdhms").back(), HasSubstr("NOTSETSysTime"));
  GpsC(WEEK, NOW_MS + 2500).makeToCurrentTime(56, 1);
  ASSERT_EQ(1u, corrections.size());
}

TEST_F(Observation, ACorrectionToTheGpsEpochItselfIsNotSignalled) {
  ForcedLeapSecondsC const noLeapSeconds(0, 0);
  log.clear();
  YmdhmsC epoch = YmdhmsC::zero(TIMEBASE_UTC, 1);
  epoch.year = 1980;
  epoch.month = 1;
  epoch.day = 6;
  epoch.makeToCurrentTime(0);
  EXPECT_THAT(log.lines("TimeYmdhms").back(), HasSubstr(" SETSysTime"));
  EXPECT_EQ(GPSTimeC(0, 0), GpsC::currentTime());
  EXPECT_THAT(corrections, IsEmpty());
  epoch.second = 1;
  epoch.makeToCurrentTime(0);
  EXPECT_THAT(corrections, ElementsAre(FieldsAre(0, 1000, 1000)));
  epoch.second = 0;
  epoch.day = 13;
  epoch.makeToCurrentTime(0);
  EXPECT_THAT(corrections.back(), FieldsAre(1, 0, 604799000));
}

TEST_F(Observation, TheWarningOfAnOldMappingIsPrintedOncePerObservation) {
  struct {
    std::int64_t elapsedMs;
    char const* output;
  } const cases[] = {{86400000, ""}, {86400001, "[KTX::TIM] Hoops wrong correction!\n"}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.elapsedMs);
    present.steady->set(1000000);
    resetSysTime();
    present.steady->advanceMs(c.elapsedMs);
    ::testing::internal::CaptureStdout();
    GpsC(WEEK, static_cast<std::uint32_t>(NOW_MS + c.elapsedMs)).makeToCurrentTime(10, 1);
    EXPECT_EQ(c.output, ::testing::internal::GetCapturedStdout());
  }
}

TEST_F(Observation, AReleasedCorrectionEndsTheWarningAtOnce) {
  present.steady->advanceMs(86400001);
  ::testing::internal::CaptureStdout();
  GpsC(WEEK, NOW_MS).makeToCurrentTime(0, 1);
  EXPECT_EQ("", ::testing::internal::GetCapturedStdout());
}

TEST_F(Observation, TheSteadyClockIsReadOnceForTheStepAndOnceForThePresent) {
  std::size_t const before = present.steady->readCount();
  GpsC(WEEK, NOW_MS).makeToCurrentTime(10, 1);
  EXPECT_EQ(before + 2, present.steady->readCount());
}

TEST_F(Observation, ListenersRunWithTheLockReleased) {
  bool isFree = false;
  boost::signals2::scoped_connection const probe =
      connectTimeCorrected([&isFree](int, int, TimeChangeT) {
        std::thread other([&isFree] {
          Guard const guard(getTimeLock());
          isFree = true;
        });
        other.join();
      });
  GpsC(WEEK, NOW_MS + 123).makeToCurrentTime(0, 1);
  EXPECT_TRUE(isFree);
}

TEST_F(Observation, AListenerMayCallBack) {
  boost::signals2::scoped_connection const echo =
      connectTimeCorrected([](int week, int ms, TimeChangeT) {
        GpsC const corrected(static_cast<std::uint16_t>(week), static_cast<std::uint32_t>(ms));
        EXPECT_EQ(corrected, GpsC::currentTime());
        if (ms < 374964000) {
          GpsC(2304, 374964000).makeToCurrentTime(0, 1);
        }
      });
  GpsC(WEEK, NOW_MS + 123).makeToCurrentTime(0, 1);
  EXPECT_EQ(GPSTimeC(WEEK, 374964000), GpsC::currentTime());
  EXPECT_THAT(corrections,
              ElementsAre(FieldsAre(2304, 374963123, 123), FieldsAre(2304, 374964000, 877)));
}

TEST_F(Observation, AListenerMaySetTheClockOfThePc) {
  FakeSystemCallsC calls;
  ScopedSystemCallsC const scope(calls);
  boost::signals2::scoped_connection const setter = connectTimeCorrected([](int week, int ms,
                                                                            TimeChangeT) {
    YmdhmsC utc(
        MjdTimeC(GPSTimeC(static_cast<std::uint16_t>(week), static_cast<std::uint32_t>(ms))), 1);
    utc.toUtc();
    EXPECT_TRUE(utc.applyToCurrentSystemTime());
  });
  GpsC(WEEK, NOW_MS + 123).makeToCurrentTime(0, 1);
  ASSERT_EQ(1u, calls.setTimes().size());
  SystemTimeRecordC const set = calls.setTimes().front();
  EXPECT_EQ(8, set.hour);
  EXPECT_EQ(5, set.second);
  EXPECT_EQ(123, set.milliseconds);
}

TEST_F(Observation, AThrowingListenerLeavesTheLockFreeAndTheCorrectionInForce) {
  boost::signals2::scoped_connection const thrower =
      connectTimeCorrected([](int, int, TimeChangeT) { throw std::runtime_error("slot"); });
  EXPECT_THROW(GpsC(WEEK, NOW_MS + 123).makeToCurrentTime(0, 1), std::runtime_error);
  bool isFree = false;
  std::thread other([&isFree] {
    Guard const guard(getTimeLock());
    isFree = true;
  });
  other.join();
  EXPECT_TRUE(isFree);
  EXPECT_EQ(GPSTimeC(WEEK, NOW_MS + 123), GpsC::currentTime());
}

TEST_F(Observation, AListenerMayDisconnectItselfAndConnectAnother) {
  int late = 0;
  boost::signals2::connection itself;
  boost::signals2::scoped_connection second;
  itself = connectTimeCorrected([&](int, int, TimeChangeT) {
    itself.disconnect();
    second = connectTimeCorrected([&late](int, int, TimeChangeT) { ++late; });
  });
  GpsC(WEEK, NOW_MS + 123).makeToCurrentTime(0, 1);
  EXPECT_EQ(0, late);
  EXPECT_FALSE(itself.connected());
  GpsC(WEEK, NOW_MS + 1123).makeToCurrentTime(0, 1);
  EXPECT_EQ(1, late);
}

TEST_F(Observation, AnExceptionOfTheLogLeavesTheLockFreeAndTheFilterAsItWas) {
  log.clear();
  GpsC(WEEK, NOW_MS + 123).makeToCurrentTime(0, 1);
  std::size_t const lines = log.count();
  EXPECT_EQ(14U, lines);
  corrections.clear();
  for (std::size_t failing = 1; failing <= lines; ++failing) {
    SCOPED_TRACE(failing);
    resetSysTime();
    std::size_t count = 0;
    log.setHook([&](LogCaptureC::EntryC const&) {
      if (++count == failing) {
        throw std::runtime_error("log");
      }
    });
    EXPECT_THROW(GpsC(WEEK, NOW_MS + 123).makeToCurrentTime(0, 1), std::runtime_error);
    log.setHook({});
    bool isFree = false;
    std::thread other([&isFree] {
      Guard const guard(getTimeLock());
      isFree = true;
    });
    other.join();
    EXPECT_TRUE(isFree);
    EXPECT_EQ(GPSTimeC(WEEK, NOW_MS), GpsC::currentTime());
    EXPECT_EQ(5000 / 8.64e7, getPresentStatus().sigma);
    EXPECT_EQ(std::nullopt, getPresentStatus().observationAgeMs);
    EXPECT_THAT(corrections, IsEmpty()) << "none is in force that nobody was told of";
  }
}

TEST_F(Observation, ADayBeyondTheCalendarThrowsOnlyWhereItIsWritten) {
  YmdhmsC far = utcTime(0, 0, 0, 0);
  far.year = 10000;
  far.month = 1;
  far.day = 1;
  EXPECT_ANY_THROW(far.makeToCurrentTime(10));
  EXPECT_EQ(GPSTimeC(WEEK, NOW_MS), GpsC::currentTime());
}

TEST_F(Observation, ExtremeNumbersAreTaken) {
  struct {
    std::int64_t noiseMs;
    std::uint16_t week;
    std::uint32_t ms;
  } const cases[] = {{std::numeric_limits<std::int64_t>::max(), 65535, 604799999},
                     {std::numeric_limits<std::int64_t>::min(), 65535, 604799999},
                     {std::numeric_limits<std::int64_t>::max(), 0, 0},
                     {std::numeric_limits<std::int64_t>::min(), 0, 0},
                     {0, 65535, 604799999},
                     {0, 0, 0}};
  for (auto const& c : cases) {
    for (std::int32_t const flag : {0, 1, std::numeric_limits<std::int32_t>::min()}) {
      SCOPED_TRACE(::testing::Message() << c.noiseMs << " " << c.week << " " << flag);
      resetSysTime();
      EXPECT_EQ(0u, GpsC(c.week, c.ms).makeToCurrentTime(c.noiseMs, flag));
    }
  }
}

// The prediction then lies 10^11 days away, so the observation counts as exact; that far away two
// neighbouring doubles are 1.3 s apart.
TEST_F(Observation, AfterAClockThatJumpsToItsLimitsThePresentIsThatOfTheObservation) {
  log.setThreshold(LogCaptureC::OFF);
  constexpr std::int64_t ROUNDING_MS = 1319;
  GpsC const observed(WEEK, NOW_MS + 123);
  for (std::int64_t const reading :
       {std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()}) {
    SCOPED_TRACE(reading);
    present.steady->set(1000000);
    resetSysTime();
    corrections.clear();
    present.steady->set(reading);
    EXPECT_EQ(0u, observed.makeToCurrentTime(10, 1));
    GpsC const now = GpsC::currentTime();
    EXPECT_GE(ROUNDING_MS, std::abs(differenceMs(now, observed)));
    EXPECT_THAT(corrections,
                ElementsAre(FieldsAre(now.getWeek(), now.getMsOfWeek(), -9223372036853774336)));
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
