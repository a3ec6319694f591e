#include <cmath>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "KTX/RCV/KTX_RCV_LeapHistory.h"
#include "KTX/TIM/KTX_TIM_Gps.h"
#include "replay/SimulatedPc.h"

namespace KTX::VORTIME::TEST {
namespace {

constexpr std::int64_t DAY_MS = 86400000;

RCV::ArrivalC arrivalAt(std::int64_t statedUnixMs, char const* message, bool isFirst = false) {
  RCV::ArrivalC arrival;
  arrival.statedUnixMs = statedUnixMs;
  arrival.message = message;
  arrival.isFirst = isFirst;
  return arrival;
}

TEST(SimulatedPc, RunsByTheTimesOfTheReceiver) {
  struct {
    std::int64_t stepMs;
    char const* message;
    std::int64_t passedMs;
  } const cases[] = {{0, "ZDA", 0},
                     {1000, "RMC", 1000},
                     {SimulatedPcC::MAX_GAP_MS, "RMC", SimulatedPcC::MAX_GAP_MS},
                     {SimulatedPcC::MAX_GAP_MS + 1, "RMC", 500},
                     {-2000, "ZDA", 0},
                     {-2001, "ZDA", 500},
                     {-1, "RMC", 500}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.stepMs);
    SimulatedPcC pc{SimulatedPcOptionsC()};
    pc.arrive(arrivalAt(DAY_MS, "RMC", true));
    std::int64_t const before = pc.arrive(arrivalAt(DAY_MS + 500, "RMC"))->steadyMs;
    RCV::PcReadingC const after = *pc.arrive(arrivalAt(DAY_MS + 500 + c.stepMs, c.message));
    EXPECT_EQ(c.passedMs, after.steadyMs - before);
    EXPECT_FALSE(after.isCalendarKnown);
  }
}

TEST(SimulatedPc, BeginsOffAndDrifts) {
  SimulatedPcOptionsC options;
  options.offsetMs = -300;
  options.driftPpm = 1000;
  SimulatedPcC pc(options);
  EXPECT_EQ(DAY_MS - 300, pc.arrive(arrivalAt(DAY_MS, "RMC", true))->systemUnixMs);
  EXPECT_EQ(DAY_MS - 300 + 10010, pc.arrive(arrivalAt(DAY_MS + 10000, "RMC"))->systemUnixMs);
}

TEST(SimulatedPc, RunsByTheHostWhereItIsKnown) {
  SimulatedPcC pc{SimulatedPcOptionsC()};
  RCV::ArrivalC arrival = arrivalAt(DAY_MS, "RMC", true);
  arrival.hasHostTime = true;
  arrival.hostUnixMs = 5000;
  RCV::PcReadingC const first = *pc.arrive(arrival);
  EXPECT_EQ(5000, first.systemUnixMs);
  EXPECT_TRUE(first.isCalendarKnown);
  arrival.isFirst = false;
  arrival.hostUnixMs = 4999;
  RCV::PcReadingC const back = *pc.arrive(arrival);
  EXPECT_TRUE(back.hasRunBack);
  EXPECT_EQ(first.steadyMs, back.steadyMs);
}

RCV::ArrivalC arrivalAtHost(std::int64_t hostUnixMs, bool isFirst = false) {
  RCV::ArrivalC arrival = arrivalAt(DAY_MS, "RMC", isFirst);
  arrival.hasHostTime = true;
  arrival.hostUnixMs = hostUnixMs;
  return arrival;
}

TEST(SimulatedPc, HasNoReadingOutsideTheYearsOfItsCalendarClock) {
  struct {
    std::int64_t hostUnixMs;
    bool canBeShown;
  } const cases[] = {{RCV::FIRST_CIVIL_UNIX_MS, true},
                     {RCV::FIRST_CIVIL_UNIX_MS - 1, false},
                     {RCV::LAST_CIVIL_UNIX_MS, true},
                     {RCV::LAST_CIVIL_UNIX_MS + 1, false},
                     {INT64_MIN, false},
                     {INT64_MAX, false}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.hostUnixMs);
    SimulatedPcC pc{SimulatedPcOptionsC()};
    EXPECT_EQ(c.canBeShown, pc.arrive(arrivalAtHost(c.hostUnixMs, true)).has_value());
    SimulatedPcC running{SimulatedPcOptionsC()};
    running.arrive(arrivalAtHost(0, true));
    EXPECT_EQ(c.canBeShown, running.arrive(arrivalAtHost(c.hostUnixMs)).has_value());
  }
}

TEST(SimulatedPc, BeginsAtAnyOffsetThatItsCalendarClockCanShow) {
  struct {
    std::int64_t offsetMs;
    bool canBeShown;
  } const cases[] = {{RCV::FIRST_CIVIL_UNIX_MS - DAY_MS, true},
                     {RCV::FIRST_CIVIL_UNIX_MS - DAY_MS - 1, false},
                     {RCV::LAST_CIVIL_UNIX_MS - DAY_MS, true},
                     {RCV::LAST_CIVIL_UNIX_MS - DAY_MS + 1, false},
                     {INT64_MIN, false},
                     {INT64_MAX, false}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.offsetMs);
    SimulatedPcOptionsC options;
    options.offsetMs = c.offsetMs;
    SimulatedPcC pc(options);
    std::optional<RCV::PcReadingC> const reading = pc.arrive(arrivalAt(DAY_MS, "RMC", true));
    ASSERT_EQ(c.canBeShown, reading.has_value());
    if (reading) {
      EXPECT_EQ(DAY_MS + c.offsetMs, reading->systemUnixMs);
    }
  }
}

TEST(SimulatedPc, CountsAtMostItsLongestTime) {
  SimulatedPcC pc{SimulatedPcOptionsC()};
  pc.arrive(arrivalAtHost(RCV::FIRST_CIVIL_UNIX_MS, true));
  ASSERT_TRUE(pc.arrive(arrivalAtHost(RCV::LAST_CIVIL_UNIX_MS)));
  // Back again: from here on no millisecond more can be counted.
  ASSERT_TRUE(pc.arrive(arrivalAtHost(0)));
  EXPECT_FALSE(pc.arrive(arrivalAtHost(1)));
  EXPECT_FALSE(pc.arrive(arrivalAtHost(RCV::LAST_CIVIL_UNIX_MS)));
  std::optional<RCV::PcReadingC> const reading = pc.arrive(arrivalAtHost(0));
  ASSERT_TRUE(reading);
  EXPECT_EQ(SimulatedPcC::STEADY_START_MS + SimulatedPcC::MAX_ELAPSED_MS, reading->steadyMs);
  EXPECT_FALSE(reading->hasRunBack);
}

TEST(SimulatedPc, LetsNoTimePassForAMessageWithoutAReading) {
  SimulatedPcOptionsC options;
  options.jitterMs = 1000;
  SimulatedPcC pc(options);
  SimulatedPcC undisturbed(options);
  pc.arrive(arrivalAt(DAY_MS, "RMC", true));
  undisturbed.arrive(arrivalAt(DAY_MS, "RMC", true));
  RCV::ArrivalC distant = arrivalAt(INT64_MAX, "RMC");
  distant.isNewInput = true;
  EXPECT_FALSE(pc.arrive(distant));
  for (std::int64_t ms = 1000; ms <= 100000; ms += 1000) {
    EXPECT_EQ(undisturbed.arrive(arrivalAt(DAY_MS + ms, "RMC"))->steadyMs,
              pc.arrive(arrivalAt(DAY_MS + ms, "RMC"))->steadyMs);
  }
}

TEST(SimulatedPc, HasNoReadingForADriftThatIsNoNumber) {
  for (double const drift : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
    SimulatedPcOptionsC options;
    options.driftPpm = drift;
    EXPECT_FALSE(SimulatedPcC(options).arrive(arrivalAt(DAY_MS, "RMC", true)));
  }
}

TEST(LeapHistory, ChangesAtTheRightSecondInBothDirections) {
  RCV::LeapHistoryC history;
  struct {
    std::uint16_t week;
    std::uint32_t day;
    int before;
  } const cases[] = {{77, 3, 0}, {1512, 4, 14}, {1851, 3, 16}, {1929, 7, 17}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.week);
    for (int const aroundS : {-1, 0, 20}) {
      // UTC: so many seconds from the end of the day.
      TIM::GpsC time(&history);
      time += TIM::GPSTimeC(c.week, c.day * 86400000U);
      time.addSeconds(aroundS);
      TIM::GpsC const utc(time);
      time.utcToGps();
      // The library holds one statement: for the last change it is the count after it.
      int const expected = c.week == 1929 ? 18 : aroundS < 0 ? c.before : c.before + 1;
      EXPECT_EQ(expected * 1000, differenceMs(time, utc));
      time.gpsToUtc();
      EXPECT_EQ(utc, time);
    }
  }
}

}  // namespace
}  // namespace KTX::VORTIME::TEST
