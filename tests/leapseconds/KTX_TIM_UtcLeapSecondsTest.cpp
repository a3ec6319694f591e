#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"

#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>
#include <boost/numeric/conversion/cast.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_SysTimeClocks.h"
#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondProvider.h"
#include "common/KTX_TIM_FakeClock.h"
#include "common/KTX_TIM_LogCapture.h"
#include "leapseconds/KTX_TIM_LeapSecondModel.h"
#include "leapseconds/KTX_TIM_LeapSecondScopes.h"

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr std::uint32_t INVALID = 33554434;
constexpr std::uint32_t NOT_ACCEPTED = 33554462;
constexpr char const* NOT_CHANGED = "Active UTC Leap Second has NOT changed.\n";
constexpr char const* RETURNS_0 = "SetLeapSecond returns 0.\n";

/// An instant that is stored as given, also with the milliseconds of more than a week.
class RawInstantC : public GpsC {
 public:
  RawInstantC(std::uint16_t newWeek, std::uint32_t newMsOfWeek) { setRaw(newWeek, newMsOfWeek); }
};

class UtcLeapSeconds : public ::testing::Test {
 protected:
  std::vector<std::string> lines() const { return log.lines("Time"); }

  static GpsC effectivity() {
    GpsC instant;
    UtcLeapSecondRecord record{};
    getDefaultLeapSecondProvider()->getLeapSecond(GpsC(0, 0), record, &instant);
    return instant;
  }

  ScopedLeapSecondsC const leapSeconds;
  ScopedPresentC present{1709798945000};  // 2024-03-07 08:09:05 UTC, week 2304
  ChangeRecorderC changes;
  LogCaptureC log;

  UtcLeapSecondRecord const initial = defaultLeapSecondRecord();
  UtcLeapSecondRecord const forced17{LEAPSECOND_FORCED, 17, 17, 1929, 7, true};
  UtcLeapSecondRecord const gps{LEAPSECOND_GPS, 18, 18, 1929, 7, true};
};

TEST_F(UtcLeapSeconds, StartWithTheDefaultRecord) {
  EXPECT_EQ(initial, recordInForce());
  EXPECT_EQ(initial, normalRecord());
  EXPECT_EQ(GPSTimeC(1930, 18000), effectivity());
  EXPECT_EQ(getDefaultLeapSecondProvider(), effectivity().getLeapSecondProvider());
}

TEST_F(UtcLeapSeconds, GiveTheFutureCountFromTheEffectivityInstantOn) {
  setUtcLeapSecond({LEAPSECOND_FORCED, 17, 18, 1929, 7, true}, false);
  struct {
    GpsC time;
    std::int16_t current;
  } const cases[] = {{{0, 0}, 17},        {{1929, 604799999}, 17}, {{1930, 5000}, 17},
                     {{1930, 17999}, 17}, {{1930, 18000}, 18},     {{1930, 18001}, 18},
                     {{1931, 0}, 18},     {{65535, 604799999}, 18}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.time.toMilliseconds64()));
    UtcLeapSecondRecord record{};
    EXPECT_EQ(RC_OK, getUtcLeapSecondAt(c.time, record));
    EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_FORCED, c.current, 18, 1929, 7, true}), record);
    EXPECT_EQ(c.current, getUtcLeapSecondsAt(c.time));
    EXPECT_EQ(c.current, c.time.getLeapSeconds());
  }
}

TEST_F(UtcLeapSeconds, CompareByWeekFirstWhereMillisecondsExceedAWeekAsTheSiteProviderDoes) {
  constexpr std::uint32_t MAX_MS = std::numeric_limits<std::uint32_t>::max();
  setUtcLeapSecond({LEAPSECOND_FORCED, 17, 18, 1929, 7, true}, false);
  UtcLeapSecondProvider site;
  site.setSiteLeapSecond(17, 18, 57754);
  struct {
    RawInstantC time;
    std::int16_t current;
  } const cases[] = {{{1929, 604800000}, 17}, {{1929, 604817999}, 17}, {{1929, 604818000}, 17},
                     {{1929, MAX_MS}, 17},    {{0, MAX_MS}, 17},       {{1930, 604800000}, 18},
                     {{1930, MAX_MS}, 18}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.time.getWeek() << ", " << c.time.getMsOfWeek());
    UtcLeapSecondRecord record{};
    EXPECT_EQ(RC_OK, getUtcLeapSecondAt(c.time, record));
    EXPECT_EQ(c.current, record.current);
    EXPECT_EQ(c.current, getUtcLeapSecondsAt(c.time));
    EXPECT_EQ(c.current, c.time.getLeapSeconds());
    EXPECT_EQ(RC_OK, site.getLeapSecond(c.time, record));
    EXPECT_EQ(c.current, record.current);
  }
}

TEST_F(UtcLeapSeconds, HandOutTheEffectivityOfARecordThatIsNotInForceYet) {
  EXPECT_EQ(GPSTimeC(1930, 18000), effectivity());
  setUtcLeapSecond({LEAPSECOND_FORCED, 18, 19, 2347, 3, true}, false);
  EXPECT_EQ(GPSTimeC(2347, 259219000), effectivity());
}

TEST_F(UtcLeapSeconds, HandOutNoEffectivityWhereItIsUnknown) {
  setUtcLeapSecond({LEAPSECOND_DEFAULT, 18, 18, 0, 0, false}, false);
  GpsC instant(5, 5);
  UtcLeapSecondRecord record{};
  getDefaultLeapSecondProvider()->getLeapSecond(GpsC(65535, 0), record, &instant);
  EXPECT_EQ(GPSTimeC(0, 0), instant);
  EXPECT_EQ(18, record.current);
  EXPECT_EQ(0, record.future);
}

TEST_F(UtcLeapSeconds, GiveTheRecordOfThePresent) {
  UtcLeapSecondRecord record{};
  setUtcLeapSecond({LEAPSECOND_FORCED, 18, 19, 2304, 5, true}, false);
  EXPECT_EQ(RC_OK, getCurrentUtcLeapSecond(record));
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_FORCED, 18, 19, 2304, 5, true}), record);
  present.set(1709798945000 + 86400000);
  EXPECT_EQ(RC_OK, getCurrentUtcLeapSecond(record));
  EXPECT_EQ(19, record.current);
}

TEST_F(UtcLeapSeconds, GiveTheNormalRecordBesideAForcedOne) {
  setUtcLeapSecond(forced17, false);
  EXPECT_EQ(forced17, recordInForce());
  EXPECT_EQ(initial, normalRecord());
}

TEST_F(UtcLeapSeconds, DoNotSubstituteTheFutureCountInTheNormalRecord) {
  UtcLeapSecondRecord const announced{LEAPSECOND_GPS, 17, 18, 1929, 7, true};
  setUtcLeapSecond(announced, false);
  EXPECT_EQ(announced, normalRecord());
}

TEST_F(UtcLeapSeconds, ThrowForACountBeyond8BitsWhileAValueWraps) {
  struct {
    std::int16_t count;
    int thrown;
    int wrapped;
  } const cases[] = {{127, 0, 127},   {128, 1, -128},  {200, 1, -56},  {300, 1, 44},
                     {-128, 0, -128}, {-129, -1, 127}, {32767, 1, -1}, {-32768, -1, 0}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.count);
    setUtcLeapSecond({LEAPSECOND_FORCED, c.count, c.count, 1929, 7, true}, false);
    for (GpsC const& time : {GpsC(1000, 0), GpsC(2000, 0)}) {
      if (c.thrown > 0) {
        EXPECT_THROW(getUtcLeapSecondsAt(time), boost::numeric::positive_overflow);
      } else if (c.thrown < 0) {
        EXPECT_THROW(getUtcLeapSecondsAt(time), boost::numeric::negative_overflow);
      } else {
        EXPECT_EQ(c.count, getUtcLeapSecondsAt(time));
      }
      EXPECT_EQ(c.wrapped, time.getLeapSeconds());
    }
  }
}

TEST_F(UtcLeapSeconds, TellListenersOnceWhenTheRecordInForceChanges) {
  EXPECT_EQ(RC_OK, setUtcLeapSecond(forced17, false));
  ASSERT_THAT(changes.events, SizeIs(1));
  EXPECT_EQ(initial, changes.events[0].previous);
  EXPECT_EQ(forced17, changes.events[0].current);
}

TEST_F(UtcLeapSeconds, LogAnAcceptedRecord) {
  EXPECT_EQ(RC_OK, setUtcLeapSecond({LEAPSECOND_FORCED, 17, 18, 1929, 7, true}, false));
  EXPECT_THAT(lines(),
              ElementsAre("Setting new UTC leap second - Source: Forced, GPSTime: 0, GPSWeek: 0, "
                          "Current: 17, Future: 18, Date: 2017-01-01 00:00:00, "
                          "EffectivityKnown: 1\n",
                          RETURNS_0,
                          "Active UTC Leap Second has changed - Source: Forced, Current: 17, "
                          "Future: 18, Week: 1929, Day: 7, EffectivityKnown: 1\n"));
  EXPECT_EQ(3U, log.count("Time", 3));
  EXPECT_EQ(3U, log.count());
}

TEST_F(UtcLeapSeconds, LogThePresentThatIsCarriedOver) {
  log.setThreshold("TimeEstimator", LogCaptureC::OFF);
  EXPECT_EQ(RC_OK, setUtcLeapSecond(forced17, true));
  std::vector<std::string> const found = lines();
  ASSERT_THAT(found, SizeIs(::testing::Ge(4U)));
  EXPECT_EQ(
      "Setting new UTC leap second - Source: Forced, GPSTime: 374963000, GPSWeek: 2304, "
      "Current: 17, Future: 17, Date: 2017-01-01 00:00:00, EffectivityKnown: 1\n",
      found[0]);
  EXPECT_EQ(RETURNS_0, found[1]);
  EXPECT_EQ(
      "Active UTC Leap Second has changed - Source: Forced, Current: 17, Future: 17, "
      "Week: 1929, Day: 7, EffectivityKnown: 1\n",
      found[2]);
  std::string const ending =
      " - setGpsUTCParameters call to makeToCurrentTime:: GPSweek: 2304 GPSmsecs: 374963000\n";
  EXPECT_EQ(0U, log.count("Time", 4));
  ASSERT_GT(found[3].size(), ending.size());
  EXPECT_EQ(ending, found[3].substr(found[3].size() - ending.size()));
  EXPECT_EQ(
      std::string::npos,
      found[3].substr(0, found[3].size() - ending.size()).find_first_not_of("0123456789abcdef"));
}

TEST_F(UtcLeapSeconds, LogTheDateOfTheDaysEndWithoutLeapSeconds) {
  struct {
    UtcLeapSecondRecord record;
    char const* date;
  } const cases[] = {{{LEAPSECOND_FORCED, 18, 19, 1929, 7, true}, "2017-01-01"},
                     {{LEAPSECOND_FORCED, 18, 19, 1930, 1, true}, "2017-01-02"},
                     {{LEAPSECOND_FORCED, 18, 18, 0, 1, true}, "1980-01-07"},
                     {{LEAPSECOND_FORCED, 32767, 32767, 2303, 5, true}, "2024-03-01"},
                     {{LEAPSECOND_FORCED, 18, 18, 65535, 6, true}, "3236-01-12"},
                     {{LEAPSECOND_FORCED, 18, 18, 65535, 7, true}, "1980-01-06"},
                     {{LEAPSECOND_DEFAULT, 18, 18, 0, 0, false}, "1980-01-06"},
                     {{LEAPSECOND_DEFAULT, 18, 18, 10, 255, false}, "1980-11-26"}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.record));
    log.clear();
    setUtcLeapSecond(c.record, false);
    EXPECT_THAT(lines().at(0),
                ::testing::HasSubstr(std::string(", Date: ") + c.date + " 00:00:00, Eff"));
  }
}

TEST_F(UtcLeapSeconds, LogNothingBelowTheLevelButSetAndTellAllTheSame) {
  log.setThreshold("Time", 4);
  EXPECT_EQ(RC_OK, setUtcLeapSecond(forced17, true));
  EXPECT_EQ(forced17, recordInForce());
  EXPECT_THAT(changes.events, SizeIs(1));
  EXPECT_EQ(RC_OK, setUtcLeapSecond(forced17, true));
  EXPECT_EQ(RC_OK, resetSatelliteLeapSecond());
  EXPECT_THAT(lines(), IsEmpty());
  EXPECT_EQ(0U, log.unaskedCount());
  EXPECT_THAT(changes.events, SizeIs(1));
}

TEST_F(UtcLeapSeconds, LogRefusalsBelowTheLevelOfTraces) {
  log.setThreshold(6);
  EXPECT_EQ(NOT_ACCEPTED, setUtcLeapSecond({LEAPSECOND_GPS, 18, 18, 2347, 3, true}, false));
  EXPECT_THAT(lines(), SizeIs(1));
}

TEST_F(UtcLeapSeconds, DoNothingForTheRecordThatIsHeld) {
  setUtcLeapSecond(forced17, false);
  log.clear();
  EXPECT_EQ(RC_OK, setUtcLeapSecond(forced17, false));
  EXPECT_THAT(lines(), ElementsAre(::testing::StartsWith("Setting new"), RETURNS_0, NOT_CHANGED));
  EXPECT_EQ(3U, log.count("Time", 3));
  EXPECT_THAT(changes.events, SizeIs(1));
}

TEST_F(UtcLeapSeconds, CompareANewRecordWithItsOwnSlotAndNotWithTheOneInForce) {
  setUtcLeapSecond(forced17, false);
  log.clear();
  EXPECT_EQ(RC_OK, setUtcLeapSecond(initial, false));
  EXPECT_THAT(lines(), ElementsAre(::testing::StartsWith("Setting new"), RETURNS_0, NOT_CHANGED));
  EXPECT_EQ(forced17, recordInForce());
  // The forced record as a GPS one is another record.
  UtcLeapSecondRecord asGps = forced17;
  asGps.source = LEAPSECOND_GPS;
  EXPECT_EQ(RC_OK, setUtcLeapSecond(asGps, false));
  EXPECT_EQ(asGps, normalRecord());
  EXPECT_THAT(changes.events, SizeIs(1));
}

TEST_F(UtcLeapSeconds, RefuseAnInvalidRecordAndStayAsTheyWere) {
  UtcLeapSecondRecord const records[] = {{LEAPSECOND_FORCED, 0, 0, 0, 0, false},
                                         {LEAPSECOND_SITE, 18, 18, 1929, 7, true},
                                         {LEAPSECOND_GPS, 18, 18, 1929, 6, true},
                                         {LEAPSECOND_FORCED, 17, 19, 1929, 7, true},
                                         {LEAPSECOND_GPS, 17, 17, 0, 0, false}};
  for (auto const& record : records) {
    SCOPED_TRACE(::testing::PrintToString(record));
    log.clear();
    EXPECT_EQ(INVALID, setUtcLeapSecond(record, true));
    EXPECT_EQ(1U, log.count());
    EXPECT_EQ(1U, log.count("Time", 6));
    EXPECT_EQ(initial, recordInForce());
  }
  EXPECT_THAT(changes.events, IsEmpty());
}

TEST_F(UtcLeapSeconds, RefuseOtherSatelliteSystemsWithoutALine) {
  EXPECT_EQ(INVALID, setUtcLeapSecond({LEAPSECOND_GALILEO, 18, 18, 1929, 7, true}, true));
  EXPECT_EQ(0U, log.count());
}

TEST_F(UtcLeapSeconds, RefuseTheSameDayWithoutALineOfItsOwn) {
  setUtcLeapSecond(gps, false);
  log.clear();
  EXPECT_EQ(NOT_ACCEPTED, setUtcLeapSecond({LEAPSECOND_GPS, 18, 17, 1929, 7, true}, false));
  EXPECT_THAT(lines(), ElementsAre(::testing::StartsWith("Setting new"),
                                   "SetLeapSecond returns 33554462.\n", NOT_CHANGED));
  EXPECT_EQ(gps, recordInForce());
}

TEST_F(UtcLeapSeconds, LogBothRecordsOfARefusal) {
  UtcLeapSecondRecord const held{LEAPSECOND_GPS, 18, 18, 2308, 1, true};  // 2024-03-31
  EXPECT_EQ(RC_OK, setUtcLeapSecond(held, false));
  setUtcLeapSecond(forced17, false);
  log.clear();
  EXPECT_EQ(NOT_ACCEPTED, setUtcLeapSecond({LEAPSECOND_GPS, 17, 18, 1929, 7, true}, false));
  EXPECT_THAT(lines(),
              ElementsAre(::testing::StartsWith("Setting new"),
                          "New leap second not accepted! - Source: GPS/GPS, Current: 17/18, "
                          "Future: 18/18, Week: 1929/2308, Day: 7/1, EffectivityKnown: 1/1\n",
                          "SetLeapSecond returns 33554462.\n", NOT_CHANGED));
  EXPECT_EQ(1U, log.count("Time", 6));
  EXPECT_EQ(held, normalRecord());
}

TEST_F(UtcLeapSeconds, LogTheUnknownEffectivityOfARefusedDefault) {
  setUtcLeapSecond(gps, false);
  log.clear();
  EXPECT_EQ(NOT_ACCEPTED, setUtcLeapSecond({LEAPSECOND_DEFAULT, -3, 4, 5, 6, false}, false));
  EXPECT_EQ(
      "New leap second not accepted! - Source: Default/GPS, Current: -3/18, Future: 4/18, "
      "Week: 5/1929, Day: 6/7, EffectivityKnown: 0/1\n",
      lines().at(1));
}

TEST_F(UtcLeapSeconds, RefuseAnAnnouncementMoreThanSixMonthsAhead) {
  UtcLeapSecondRecord const newYear{LEAPSECOND_GPS, 18, 18, 2347, 3, true};
  present.set(1719791999999);
  EXPECT_EQ(NOT_ACCEPTED, setUtcLeapSecond(newYear, false));
  present.set(1719792000000);
  EXPECT_EQ(RC_OK, setUtcLeapSecond(newYear, false));
  resetSatelliteLeapSecond(&initial);
  EXPECT_EQ(NOT_ACCEPTED, setUtcLeapSecond({LEAPSECOND_GPS, 18, 19, 2347, 3, true}, false));
}

TEST_F(UtcLeapSeconds, KeepNothingOfAnUnknownAnnouncement) {
  UtcLeapSecondRecord const unknown{LEAPSECOND_DEFAULT, 18, 18, 5, 3, false};
  UtcLeapSecondRecord const kept{LEAPSECOND_DEFAULT, 18, 0, 0, 0, false};
  EXPECT_EQ(RC_OK, setUtcLeapSecond(unknown, false));
  EXPECT_EQ(kept, recordInForce());
  ASSERT_THAT(changes.events, SizeIs(1));
  EXPECT_EQ(kept, changes.events[0].current);
  log.clear();
  // It differs from what is kept, is accepted again, and changes nothing.
  EXPECT_EQ(RC_OK, setUtcLeapSecond(unknown, false));
  EXPECT_THAT(lines(), ElementsAre(::testing::StartsWith("Setting new"), RETURNS_0, NOT_CHANGED));
  EXPECT_THAT(changes.events, SizeIs(1));
}

TEST_F(UtcLeapSeconds, GoBackToTheNormalRecordWhenTheForcedOneIsWithdrawn) {
  setUtcLeapSecond(forced17, false);
  changes.events.clear();
  EXPECT_EQ(RC_OK, setUtcLeapSecond(withdrawForcedRecord(), false));
  ASSERT_THAT(changes.events, SizeIs(1));
  EXPECT_EQ(forced17, changes.events[0].previous);
  EXPECT_EQ(initial, changes.events[0].current);
  EXPECT_EQ(initial, recordInForce());
  EXPECT_EQ(GPSTimeC(1930, 18000), effectivity());
  log.clear();
  EXPECT_EQ(RC_OK, setUtcLeapSecond(withdrawForcedRecord(), false));
  EXPECT_THAT(lines(), ElementsAre(::testing::StartsWith("Setting new"), RETURNS_0, NOT_CHANGED));
  EXPECT_THAT(changes.events, SizeIs(1));
}

TEST_F(UtcLeapSeconds, TakeOnlyTheExactWithdrawalForOne) {
  setUtcLeapSecond(forced17, false);
  // One field off each: still a forced record, valid or not, and never a withdrawal.
  EXPECT_EQ(RC_OK, setUtcLeapSecond({LEAPSECOND_FORCED, 1, 0, 0, 1, true}, false));
  EXPECT_EQ(LEAPSECOND_FORCED, recordInForce().source);
  EXPECT_EQ(RC_OK, setUtcLeapSecond({LEAPSECOND_FORCED, 0, 1, 0, 1, true}, false));
  EXPECT_EQ(LEAPSECOND_FORCED, recordInForce().source);
  EXPECT_EQ(RC_OK, setUtcLeapSecond({LEAPSECOND_FORCED, 0, 0, 1, 1, true}, false));
  EXPECT_EQ(LEAPSECOND_FORCED, recordInForce().source);
  EXPECT_EQ(RC_OK, setUtcLeapSecond({LEAPSECOND_FORCED, 0, 0, 0, 2, true}, false));
  EXPECT_EQ(LEAPSECOND_FORCED, recordInForce().source);
  EXPECT_EQ(INVALID, setUtcLeapSecond({LEAPSECOND_FORCED, 0, 0, 0, 1, false}, false));
  EXPECT_EQ(LEAPSECOND_FORCED, recordInForce().source);
}

TEST_F(UtcLeapSeconds, TakeAForcedRecordOverAnother) {
  setUtcLeapSecond(forced17, false);
  UtcLeapSecondRecord const far{LEAPSECOND_FORCED, -100, -99, 65000, 2, true};
  EXPECT_EQ(RC_OK, setUtcLeapSecond(far, false));
  EXPECT_EQ(far, recordInForce());
}

TEST_F(UtcLeapSeconds, AreSetFromNumbersWithAKnownDayWhereWeekOrDayIsNot0) {
  EXPECT_EQ(RC_OK, setUtcLeapSecond(17, 18, 1929, 7, LEAPSECOND_GPS));
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_GPS, 17, 18, 1929, 7, true}), recordInForce());
  log.clear();
  EXPECT_EQ(INVALID, setUtcLeapSecond(17, 17, 0, 0, LEAPSECOND_GPS));
  EXPECT_THAT(lines(),
              ElementsAre("New leap second invalid! - Source: GPS, Current: 17, Future: 17, "
                          "Week: 0, Day: 0, EffectivityKnown: 0\n"));
  EXPECT_EQ(INVALID, setUtcLeapSecond(17, 17, 5, 0, LEAPSECOND_FORCED));
  EXPECT_EQ(RC_OK, setUtcLeapSecond(17, 17, 0, 2, LEAPSECOND_FORCED));
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_FORCED, 17, 17, 0, 2, true}), recordInForce());
  EXPECT_EQ(RC_OK, setUtcLeapSecond(0, 0, 0, 1, LEAPSECOND_FORCED));
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_GPS, 17, 18, 1929, 7, true}), recordInForce());
  resetSatelliteLeapSecond(&initial);
  EXPECT_EQ(RC_OK, setUtcLeapSecond(15, 15, 0, 0, LEAPSECOND_DEFAULT));
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_DEFAULT, 15, 0, 0, 0, false}), recordInForce());
}

TEST_F(UtcLeapSeconds, AreSetFromTheFirstDayWithTheNewCount) {
  struct {
    GPSTimeC firstDay;
    std::uint16_t week;
    std::uint8_t day;
  } const cases[] = {{{1930, 18000}, 1929, 7},
                     {{1930, 0}, 1929, 7},
                     {{1930, 86400000}, 1930, 1},
                     {{0, 0}, 65535, 7}};
  for (auto const& c : cases) {
    EXPECT_EQ(RC_OK, setUtcLeapSecond(17, 18, c.firstDay, LEAPSECOND_FORCED));
    EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_FORCED, 17, 18, c.week, c.day, true}),
              recordInForce());
  }
}

TEST_F(UtcLeapSeconds, RefuseASingleCountAlways) {
  for (int const count : {18, 0, -1, 32767, -32768}) {
    log.clear();
    EXPECT_EQ(INVALID, setUtcLeapSecond(static_cast<std::int16_t>(count)));
    EXPECT_THAT(lines(), ElementsAre("New leap second invalid! - Source: Default, Current: " +
                                     std::to_string(count) + ", Future: " + std::to_string(count) +
                                     ", Week: 65535, Day: 7, EffectivityKnown: 1\n"));
    EXPECT_EQ(initial, recordInForce());
  }
}

TEST_F(UtcLeapSeconds, KeepTheCountThroughAReset) {
  setUtcLeapSecond({LEAPSECOND_GPS, 17, 18, 1929, 7, true}, false);
  changes.events.clear();
  log.clear();
  EXPECT_EQ(RC_OK, resetSatelliteLeapSecond());
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_DEFAULT, 17, 0, 0, 0, false}), normalRecord());
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_DEFAULT, 17, 0, 0, 0, false}), recordInForce());
  EXPECT_EQ(GPSTimeC(0, 0), effectivity());
  EXPECT_THAT(lines(),
              ElementsAre("New UTC leap second (satellite) after reset - Source: Default, "
                          "Current: 17, Future: 0, Week: 0, Day: 0, EffectivityKnown: 0\n"));
  EXPECT_EQ(1U, log.count("Time", 3));
  EXPECT_THAT(changes.events, IsEmpty());
}

TEST_F(UtcLeapSeconds, TakeAResetRecordWholeAndWithoutTheAcceptanceRule) {
  UtcLeapSecondRecord const far{LEAPSECOND_GPS, 30, 31, 2407, 7, true};  // 2026-02-28
  EXPECT_EQ(RC_OK, resetSatelliteLeapSecond(&far));
  EXPECT_EQ(far, normalRecord());
  UtcLeapSecondRecord const older{LEAPSECOND_GPS, 14, 14, 1929, 7, true};
  EXPECT_EQ(RC_OK, resetSatelliteLeapSecond(&older));
  EXPECT_EQ(older, normalRecord());
  EXPECT_EQ(GPSTimeC(1930, 14000), effectivity());
  UtcLeapSecondRecord const unknown{LEAPSECOND_DEFAULT, 15, 16, 0, 0, false};
  EXPECT_EQ(RC_OK, resetSatelliteLeapSecond(&unknown));
  EXPECT_EQ(unknown, normalRecord());
  EXPECT_EQ(0U, log.assertionCount());
  EXPECT_THAT(changes.events, IsEmpty());
}

TEST_F(UtcLeapSeconds, AssertOnAResetToADayThatIsNotKnown) {
  for (UtcLeapSecondRecord const& record :
       {UtcLeapSecondRecord{LEAPSECOND_DEFAULT, 18, 18, 5, 3, false},
        UtcLeapSecondRecord{LEAPSECOND_DEFAULT, 18, 18, 5, 0, false},
        UtcLeapSecondRecord{LEAPSECOND_DEFAULT, 18, 18, 0, 3, false}}) {
    log.clear();
    EXPECT_EQ(RC_OK, resetSatelliteLeapSecond(&record));
    EXPECT_EQ(record, normalRecord());
    EXPECT_THAT(
        log.assertionTexts(),
        ::testing::ElementsAre("Leap second has a week or day without a known effectivity!"));
    EXPECT_EQ(GPSTimeC(0, 0), effectivity());
  }
}

TEST_F(UtcLeapSeconds, LookOnlyAtTheRecordInForceAfterAReset) {
  setUtcLeapSecond(forced17, false);
  log.clear();
  UtcLeapSecondRecord const unknown{LEAPSECOND_DEFAULT, 18, 18, 5, 3, false};
  EXPECT_EQ(RC_OK, resetSatelliteLeapSecond(&unknown));
  EXPECT_EQ(0U, log.assertionCount());
  EXPECT_EQ(forced17, recordInForce());
  EXPECT_EQ(unknown, normalRecord());
  EXPECT_EQ(GPSTimeC(1930, 17000), effectivity());
  // The forced record goes, and the one below comes into force as it stands.
  EXPECT_EQ(RC_OK, setUtcLeapSecond(withdrawForcedRecord(), false));
  EXPECT_EQ(1U, log.assertionCount());
  EXPECT_EQ(GPSTimeC(0, 0), effectivity());
}

TEST_F(UtcLeapSeconds, RefuseAResetToAForcedOrInvalidRecord) {
  EXPECT_EQ(INVALID, resetSatelliteLeapSecond(&forced17));
  EXPECT_THAT(lines(),
              ElementsAre("Reset UTC leap second (satellite) failed - Source: Forced, "
                          "Current: 17, Future: 17, Week: 1929, Day: 7, EffectivityKnown: 1\n"));
  log.clear();
  UtcLeapSecondRecord const midMonth{LEAPSECOND_GPS, 18, 18, 1929, 6, true};
  EXPECT_EQ(INVALID, resetSatelliteLeapSecond(&midMonth));
  EXPECT_THAT(lines(),
              ElementsAre("New leap second invalid! - Source: GPS, Current: 18, Future: 18, "
                          "Week: 1929, Day: 6, EffectivityKnown: 1\n",
                          "Reset UTC leap second (satellite) failed - Source: GPS, Current: 18, "
                          "Future: 18, Week: 1929, Day: 6, EffectivityKnown: 1\n"));
  EXPECT_EQ(2U, log.count("Time", 6));
  log.clear();
  UtcLeapSecondRecord const galileo{LEAPSECOND_GALILEO, 18, 18, 1929, 7, true};
  EXPECT_EQ(INVALID, resetSatelliteLeapSecond(&galileo));
  EXPECT_THAT(lines(), ElementsAre(::testing::StartsWith("Reset UTC leap second (satellite) f")));
  EXPECT_EQ(initial, normalRecord());
  EXPECT_THAT(changes.events, IsEmpty());
}

TEST_F(UtcLeapSeconds, StopTellingADisconnectedListener) {
  int calls = 0;
  boost::signals2::connection connection = connectUtcLeapSecondChanged(
      [&calls](boost::shared_ptr<UtcLeapSecondChanged> const&) { ++calls; });
  EXPECT_TRUE(connection.connected());
  setUtcLeapSecond(forced17, false);
  EXPECT_EQ(1, calls);
  connection.disconnect();
  EXPECT_FALSE(connection.connected());
  setUtcLeapSecond(withdrawForcedRecord(), false);
  EXPECT_EQ(1, calls);
}

TEST_F(UtcLeapSeconds, ShareOneEventAmongAllListeners) {
  std::vector<boost::shared_ptr<UtcLeapSecondChanged>> seen;
  auto const listener = [&seen](boost::shared_ptr<UtcLeapSecondChanged> const& event) {
    seen.push_back(event);
  };
  boost::signals2::scoped_connection const first(connectUtcLeapSecondChanged(listener));
  boost::signals2::scoped_connection const second(connectUtcLeapSecondChanged(listener));
  setUtcLeapSecond(forced17, false);
  ASSERT_THAT(seen, SizeIs(2));
  EXPECT_EQ(seen[0], seen[1]);
}

TEST_F(UtcLeapSeconds, AreReadByAListenerAsTheNewOnes) {
  UtcLeapSecondRecord seen{};
  boost::signals2::scoped_connection const connection(connectUtcLeapSecondChanged(
      [&seen](boost::shared_ptr<UtcLeapSecondChanged> const&) { seen = recordInForce(); }));
  setUtcLeapSecond(forced17, false);
  EXPECT_EQ(forced17, seen);
}

TEST_F(UtcLeapSeconds, TellListenersAfterTheLineOfTheChange) {
  std::vector<std::string> before;
  boost::signals2::scoped_connection const connection(connectUtcLeapSecondChanged(
      [&](boost::shared_ptr<UtcLeapSecondChanged> const&) { before = lines(); }));
  setUtcLeapSecond(forced17, false);
  ASSERT_THAT(before, SizeIs(3));
  EXPECT_THAT(before[2], ::testing::StartsWith("Active UTC Leap Second has changed - "));
}

TEST_F(UtcLeapSeconds, StayAsTheyWereWhenThePresentCannotBeRead) {
  auto const system = boost::make_shared<FakeClockC>(1709798945000, CLOCKTYPE_POSIX, CLOCKREF_UTC);
  auto const steady = boost::make_shared<FakeClockC>(0);
  setSysTimeClocks(system, steady);
  StoreStateC const before = storeState();
  steady->setHook([] { throw std::runtime_error("no reading"); });
  EXPECT_THROW(setUtcLeapSecond(gps, false), std::runtime_error);
  EXPECT_THROW(setUtcLeapSecond(gps, true), std::runtime_error);
  EXPECT_TRUE(before == storeState());
  EXPECT_THAT(changes.events, IsEmpty());
  steady->setHook(nullptr);
  EXPECT_EQ(RC_OK, setUtcLeapSecond(gps, false));
  EXPECT_EQ(gps, recordInForce());
}

TEST_F(UtcLeapSeconds, AreTheNewOnesAlsoWhenAListenerThrows) {
  boost::signals2::scoped_connection const connection(connectUtcLeapSecondChanged(
      [](boost::shared_ptr<UtcLeapSecondChanged> const&) { throw std::runtime_error("slot"); }));
  EXPECT_THROW(setUtcLeapSecond(forced17, false), std::runtime_error);
  EXPECT_EQ(forced17, recordInForce());
  EXPECT_EQ(GPSTimeC(1930, 17000), effectivity());
}

struct CorrectionC {
  int week;
  int ms;
  long long changeMs;
};

class UtcLeapSecondsOfThePresent : public UtcLeapSeconds {
 protected:
  static GpsC presentUtc() {
    GpsC utc = GpsC::currentTime();
    utc.gpsToUtc();
    return utc;
  }

  std::vector<CorrectionC> corrections;
  std::size_t changesAtCorrection = 99;
  boost::signals2::scoped_connection const connection{
      connectTimeCorrected([this](int week, int ms, TimeChangeT change) {
        corrections.push_back({week, ms, change.count()});
        changesAtCorrection = changes.events.size();
      })};
};

TEST_F(UtcLeapSecondsOfThePresent, MoveUtcByTheChangeOfTheCountAndLeaveGpsTime) {
  struct {
    std::int16_t count;
    GPSTimeC utcAfter;
    long long changeMs;
  } const cases[] = {{17, {2304, 374946000}, 1000},
                     {19, {2304, 374944000}, -1000},
                     {0, {2304, 374963000}, 18000},
                     {118, {2304, 374845000}, -100000}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.count);
    setUtcLeapSecond(withdrawForcedRecord(), false);
    present.set(1709798945000);
    corrections.clear();
    changes.events.clear();
    ASSERT_EQ(GPSTimeC(2304, 374963000), GpsC::currentTime());
    ASSERT_EQ(GPSTimeC(2304, 374945000), presentUtc());
    UtcLeapSecondRecord const record{LEAPSECOND_FORCED, c.count, c.count, 1929, 7, true};
    EXPECT_EQ(RC_OK, setUtcLeapSecond(record, true));
    EXPECT_EQ(GPSTimeC(2304, 374963000), GpsC::currentTime());
    EXPECT_EQ(c.utcAfter, presentUtc());
    ASSERT_THAT(corrections, SizeIs(1));
    EXPECT_EQ(2304, corrections[0].week);
    EXPECT_EQ(374963000, corrections[0].ms);
    EXPECT_EQ(c.changeMs, corrections[0].changeMs);
    EXPECT_THAT(changes.events, SizeIs(1));
    EXPECT_EQ(0U, changesAtCorrection) << "the correction comes first";
  }
}

TEST_F(UtcLeapSecondsOfThePresent, AreCarriedOverAsAnObservationWithoutNoise) {
  EXPECT_EQ(RC_OK, setUtcLeapSecond(forced17, true));
  EXPECT_THAT(log.lines("TimeEstimator"),
              ::testing::Contains(::testing::AllOf(::testing::HasSubstr(" - observation: "),
                                                   ::testing::HasSubstr("000d (0ms)\n"))));
}

TEST_F(UtcLeapSecondsOfThePresent, AreCarriedOverToTheMillisecond) {
  for (int const ms : {0, 1, 4, 5, 9, 123, 995, 999}) {
    SCOPED_TRACE(ms);
    setUtcLeapSecond(withdrawForcedRecord(), false);
    present.set(1709798945000 + ms);
    corrections.clear();
    auto const now = static_cast<std::uint32_t>(374963000 + ms);
    ASSERT_EQ(GPSTimeC(2304, now), GpsC::currentTime());
    EXPECT_EQ(RC_OK, setUtcLeapSecond(forced17, true));
    EXPECT_EQ(GPSTimeC(2304, now), GpsC::currentTime());
    EXPECT_EQ(GPSTimeC(2304, now - 17000), presentUtc());
    ASSERT_THAT(corrections, SizeIs(1));
    EXPECT_EQ(374963000 + ms, corrections[0].ms);
    EXPECT_EQ(1000, corrections[0].changeMs);
  }
}

TEST_F(UtcLeapSecondsOfThePresent, AreCarriedOverByEverySetterThatIsNotAsked) {
  EXPECT_EQ(RC_OK, setUtcLeapSecond(17, 17, 1929, 7, LEAPSECOND_FORCED));
  EXPECT_EQ(GPSTimeC(2304, 374963000), GpsC::currentTime());
  EXPECT_EQ(GPSTimeC(2304, 374946000), presentUtc());
  EXPECT_EQ(RC_OK, setUtcLeapSecond(19, 19, GPSTimeC(1930, 0), LEAPSECOND_FORCED));
  EXPECT_EQ(GPSTimeC(2304, 374963000), GpsC::currentTime());
  EXPECT_EQ(GPSTimeC(2304, 374944000), presentUtc());
  EXPECT_THAT(corrections, SizeIs(2));
}

// The present has moved by then, so the new count stays, and whoever waits for it is told.
TEST_F(UtcLeapSecondsOfThePresent, AreToldAlsoWhenAListenerOfTheCorrectionThrows) {
  boost::signals2::scoped_connection const thrower(
      connectTimeCorrected([](int, int, TimeChangeT) { throw std::runtime_error("slot"); }));
  EXPECT_THROW(setUtcLeapSecond(forced17, true), std::runtime_error);
  EXPECT_EQ(forced17, recordInForce());
  EXPECT_EQ(GPSTimeC(2304, 374963000), GpsC::currentTime());
  ASSERT_THAT(changes.events, SizeIs(1));
  EXPECT_EQ(initial, changes.events[0].previous);
  EXPECT_EQ(forced17, changes.events[0].current);
}

TEST_F(UtcLeapSecondsOfThePresent, LeaveThePresentWhereTheCountInForceStays) {
  EXPECT_EQ(RC_OK, setUtcLeapSecond({LEAPSECOND_FORCED, 18, 19, 2347, 3, true}, true));
  EXPECT_THAT(changes.events, SizeIs(1));
  EXPECT_THAT(corrections, IsEmpty());
  EXPECT_EQ(GPSTimeC(2304, 374963000), GpsC::currentTime());
  EXPECT_EQ(GPSTimeC(2304, 374945000), presentUtc());
}

TEST_F(UtcLeapSecondsOfThePresent, MoveGpsTimeWhereThePresentIsNotCarriedOver) {
  EXPECT_EQ(RC_OK, setUtcLeapSecond(forced17, false));
  EXPECT_THAT(corrections, IsEmpty());
  EXPECT_EQ(GPSTimeC(2304, 374962000), GpsC::currentTime());
  EXPECT_EQ(GPSTimeC(2304, 374945000), presentUtc());
}

TEST_F(UtcLeapSecondsOfThePresent, LeaveItAtARefusalAndAtARecordHeld) {
  setUtcLeapSecond({LEAPSECOND_FORCED, 17, 19, 1929, 7, true}, true);
  setUtcLeapSecond({LEAPSECOND_GPS, 18, 19, 2347, 3, true}, true);
  setUtcLeapSecond(initial, true);
  resetSatelliteLeapSecond();
  EXPECT_THAT(corrections, IsEmpty());
  EXPECT_EQ(GPSTimeC(2304, 374963000), GpsC::currentTime());
}

}  // namespace
}  // namespace KTX::TIM::TEST
