#include "leapseconds/KTX_TIM_LeapSecondRules.h"

#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "common/KTX_TIM_LogCapture.h"
#include "leapseconds/KTX_TIM_LeapSecondModel.h"
#include "leapseconds/KTX_TIM_LeapSecondScopes.h"

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr LeapSecondSource NO_SOURCE = static_cast<LeapSecondSource>(9);

GPSTimeC timeOf(std::int64_t ms) {
  return GPSTimeC(0, 0) + ms;
}

// Logs the assertions, as the caller does.
LeapSecondVerdictE compareLeapSecondBy(UtcLeapSecondRecord const& held,
                                       UtcLeapSecondRecord const& incoming,
                                       PresentT const& present) {
  LeapSecondAssertionsT assertions;
  LeapSecondVerdictE const verdict = compareLeapSecond(held, incoming, present, assertions);
  for (char const* const text : assertions) {
    logAssertion(text);
  }
  return verdict;
}

LeapSecondVerdictE compareLeapSecondAt(UtcLeapSecondRecord const& held,
                                       UtcLeapSecondRecord const& incoming,
                                       GPSTimeC const& now) {
  return compareLeapSecondBy(held, incoming, [&now] { return now; });
}

LeapSecondVerdictE compareLeapSecondNow(UtcLeapSecondRecord const& held,
                                        UtcLeapSecondRecord const& incoming) {
  return compareLeapSecondBy(held, incoming, [] { return GPSTimeC(GpsC::currentTime()); });
}

TEST(LeapSecondValidity, IsDecidedInTheFixedOrderOfItsSteps) {
  struct {
    char const* what;
    UtcLeapSecondRecord record;
    bool isValid;
    bool isLogged;
  } const cases[] = {
      {"site, good values", {LEAPSECOND_SITE, 18, 18, 1929, 7, true}, false, true},
      {"site, unknown", {LEAPSECOND_SITE, 18, 18, 0, 0, false}, false, true},
      {"default, unknown", {LEAPSECOND_DEFAULT, 18, 18, 0, 0, false}, true, false},
      {"default, unknown, any values", {LEAPSECOND_DEFAULT, -5, 99, 5, 99, false}, true, false},
      {"forced, unknown", {LEAPSECOND_FORCED, 18, 18, 1929, 7, false}, false, true},
      {"forced, all zeros", {LEAPSECOND_FORCED, 0, 0, 0, 0, false}, false, true},
      {"withdrawal", {LEAPSECOND_FORCED, 0, 0, 0, 1, true}, true, false},
      {"GPS, unknown", {LEAPSECOND_GPS, 18, 18, 1929, 7, false}, false, true},
      {"BEIDOU, unknown", {LEAPSECOND_BEIDOU, 18, 18, 1929, 7, false}, false, true},
      {"no source, unknown", {NO_SOURCE, 18, 18, 1929, 7, false}, false, true},
      {"no source, known", {NO_SOURCE, 18, 18, 1929, 7, true}, false, false},
      {"two more", {LEAPSECOND_GPS, 17, 19, 1929, 7, true}, false, true},
      {"two less", {LEAPSECOND_GPS, 19, 17, 1929, 7, true}, false, true},
      {"one more", {LEAPSECOND_GPS, 17, 18, 1929, 7, true}, true, false},
      {"one less", {LEAPSECOND_GPS, 18, 17, 1929, 7, true}, true, false},
      {"apart by all of 16 bits", {LEAPSECOND_GPS, -32768, 32767, 1929, 7, true}, false, true},
      {"apart by all but one", {LEAPSECOND_FORCED, 32767, -32768, 1929, 7, true}, false, true},
      {"forced, two apart", {LEAPSECOND_FORCED, 17, 19, 1929, 7, true}, false, true},
      {"forced, day 0", {LEAPSECOND_FORCED, 18, 18, 1929, 0, true}, false, true},
      {"forced, day 1", {LEAPSECOND_FORCED, 18, 18, 1929, 1, true}, true, false},
      {"forced, day 7", {LEAPSECOND_FORCED, 18, 18, 1929, 7, true}, true, false},
      {"forced, day 8", {LEAPSECOND_FORCED, 18, 18, 1929, 8, true}, false, true},
      {"GALILEO, known", {LEAPSECOND_GALILEO, 18, 18, 1929, 7, true}, false, false},
      {"GALILEO, day 0", {LEAPSECOND_GALILEO, 18, 18, 1929, 0, true}, false, true},
      {"GALILEO, two apart", {LEAPSECOND_GALILEO, 16, 18, 1929, 7, true}, false, true},
      {"GLONASS, known", {LEAPSECOND_GLONASS, 18, 18, 1929, 7, true}, false, false},
      {"SBAS, known", {LEAPSECOND_SBAS, 18, 18, 1929, 7, true}, false, false},
      {"QZSS, known", {LEAPSECOND_QZSS, 18, 18, 1929, 7, true}, false, false},
      {"BEIDOU, known", {LEAPSECOND_BEIDOU, 18, 18, 1929, 7, true}, false, false},
      {"the day before the last", {LEAPSECOND_GPS, 18, 18, 1929, 6, true}, false, true},
      {"the first of the month", {LEAPSECOND_GPS, 18, 18, 1930, 1, true}, false, true},
      {"2024-12-31", {LEAPSECOND_GPS, 18, 18, 2347, 3, true}, true, false},
      {"2024-06-30", {LEAPSECOND_GPS, 18, 18, 2321, 1, true}, true, false},
      {"2024-02-29", {LEAPSECOND_DEFAULT, 18, 18, 2303, 5, true}, true, false},
      {"2024-02-28", {LEAPSECOND_DEFAULT, 18, 18, 2303, 4, true}, false, true},
      {"beyond the last week", {LEAPSECOND_GPS, 18, 18, 65535, 7, true}, false, true}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.what);
    LogCaptureC const log;
    EXPECT_EQ(c.isValid, isValidLeapSecond(c.record));
    EXPECT_EQ(c.isLogged ? 1U : 0U, log.count("Time", 6));
    EXPECT_EQ(c.isLogged ? 1U : 0U, log.count());
  }
}

TEST(LeapSecondValidity, LogsARefusedRecord) {
  LogCaptureC const log;
  isValidLeapSecond({LEAPSECOND_GPS, -17, 19, 1929, 200, true});
  isValidLeapSecond({NO_SOURCE, 32767, -32768, 65535, 255, false});
  EXPECT_THAT(
      log.lines("Time"),
      ElementsAre("New leap second invalid! - Source: GPS, Current: -17, Future: 19, Week: 1929, "
                  "Day: 200, EffectivityKnown: 1\n",
                  "New leap second invalid! - Source: Unknown, Current: 32767, Future: -32768, "
                  "Week: 65535, Day: 255, EffectivityKnown: 0\n"));
}

/// Whether each day from the GPS epoch on is the last of its month, to the end of the last week.
std::vector<bool> monthEnds() {
  std::vector<bool> isMonthEnd(65536 * 7);
  for (std::size_t day = 0; day < isMonthEnd.size(); ++day) {
    auto const next = static_cast<std::int64_t>((day + 1) % isMonthEnd.size());
    isMonthEnd[day] = civilOfDays(next).day == 1;
  }
  return isMonthEnd;
}

TEST(LeapSecondValidity, FollowsTheCalendarForEveryWeekAndDayOfEverySource) {
  std::vector<bool> const isMonthEnd = monthEnds();
  for (std::uint32_t source = 0; source <= 9; ++source) {
    bool const isCalendarBound = source == LEAPSECOND_DEFAULT || source == LEAPSECOND_GPS;
    for (std::size_t day = 0; day < isMonthEnd.size(); ++day) {
      UtcLeapSecondRecord const record{
          static_cast<LeapSecondSource>(source),  18,  18, static_cast<std::uint16_t>(day / 7),
          static_cast<std::uint8_t>(day % 7 + 1), true};
      bool const isExpected = source == LEAPSECOND_FORCED || (isCalendarBound && isMonthEnd[day]);
      ASSERT_EQ(isExpected, isValidLeapSecond(record)) << ::testing::PrintToString(record);
    }
  }
}

TEST(LeapSecondValidity, KnowsNoWeekWithoutAKnownEffectivity) {
  for (std::uint32_t source = 0; source <= 9; ++source) {
    for (std::uint32_t week = 0; week < 65536; week += 257) {
      for (int day = 0; day <= 8; ++day) {
        UtcLeapSecondRecord const record{
            static_cast<LeapSecondSource>(source), 18,   18, static_cast<std::uint16_t>(week),
            static_cast<std::uint8_t>(day),        false};
        ASSERT_EQ(source == LEAPSECOND_DEFAULT, isValidLeapSecond(record))
            << ::testing::PrintToString(record);
      }
    }
  }
}

TEST(LeapSecondValidity, AgreesWithTheModelOnEveryDayByteAndStep) {
  LogCaptureC log;
  for (std::uint32_t source = 0; source <= 9; ++source) {
    for (int day = 0; day <= 255; ++day) {
      for (int step = -3; step <= 3; ++step) {
        UtcLeapSecondRecord const record{static_cast<LeapSecondSource>(source), 18,
                                         static_cast<std::int16_t>(18 + step),  1929,
                                         static_cast<std::uint8_t>(day),        true};
        ModelValidityC const expected = modelValidity(record);
        log.clear();
        ASSERT_EQ(expected.isValid, isValidLeapSecond(record)) << ::testing::PrintToString(record);
        ASSERT_EQ(expected.isLogged ? 1U : 0U, log.count()) << ::testing::PrintToString(record);
      }
    }
  }
}

constexpr std::int64_t NEW_YEAR_2025_MS = (2347 * 7 + 3) * MODEL_DAY_MS;

TEST(LeapSecondAcceptance, IsDecidedInTheFixedOrderOfItsSteps) {
  UtcLeapSecondRecord const defaultValue = defaultLeapSecondRecord();
  UtcLeapSecondRecord const gps2017{LEAPSECOND_GPS, 17, 18, 1929, 7, true};
  UtcLeapSecondRecord const gps2025{LEAPSECOND_GPS, 18, 18, 2347, 3, true};
  UtcLeapSecondRecord const unknown{LEAPSECOND_GPS, 18, 0, 0, 0, false};
  UtcLeapSecondRecord const galileo2025{LEAPSECOND_GALILEO, 18, 18, 2347, 3, true};
  UtcLeapSecondRecord const far{LEAPSECOND_FORCED, 30, 30, 65000, 7, true};
  UtcLeapSecondRecord const farGps{LEAPSECOND_GPS, 18, 19, 2400, 7, true};
  UtcLeapSecondRecord const defaultUnknown{LEAPSECOND_DEFAULT, 18, 18, 0, 0, false};
  UtcLeapSecondRecord const gps2025Twenty{LEAPSECOND_GPS, 19, 20, 2347, 3, true};
  UtcLeapSecondRecord const gps2025Nineteen{LEAPSECOND_GPS, 18, 19, 2347, 3, true};
  UtcLeapSecondRecord const gps2025Sixteen{LEAPSECOND_GPS, 17, 16, 2347, 3, true};
  std::string const newUnknown = "New leap second has no known effectivity!";
  std::string const heldUnknown = "Held leap second has no known effectivity!";
  struct {
    char const* what;
    UtcLeapSecondRecord held;
    UtcLeapSecondRecord incoming;
    int verdict;
    std::vector<std::string> assertions;
  } const cases[] = {
      {"forced, years ahead", gps2025, far, 0, {}},
      {"forced over the same day", far, far, 0, {}},
      {"too far ahead, over the default", defaultValue, farGps, 1, {}},
      {"anything over the default", defaultValue, gps2025, 0, {}},
      {"older over the default", {LEAPSECOND_DEFAULT, 18, 18, 2347, 3, true}, gps2017, 0, {}},
      {"default over the default", defaultValue, defaultUnknown, 0, {}},
      {"default over GPS", gps2017, defaultValue, 1, {}},
      {"default, later, over GPS", gps2017, {LEAPSECOND_DEFAULT, 18, 18, 2347, 3, true}, 1, {}},
      {"unknown default over GPS", gps2017, defaultUnknown, 1, {}},
      {"unknown over GPS", gps2017, unknown, 1, {newUnknown}},
      {"over an unknown", unknown, gps2025, 0, {heldUnknown}},
      {"unknown over an unknown", unknown, unknown, 1, {newUnknown}},
      {"the same day, another system", gps2025, galileo2025, 3, {}},
      {"the same day, other counts", gps2025, gps2025Twenty, 3, {}},
      {"older", gps2025, gps2017, 1, {}},
      {"later", gps2017, gps2025, 0, {}},
      {"later, one more", gps2017, gps2025Nineteen, 0, {}},
      {"later, two more", gps2017, gps2025Twenty, 1, {}},
      {"later, two less", gps2017, gps2025Sixteen, 1, {}},
      {"an earlier day of the week", gps2025, {LEAPSECOND_GPS, 18, 18, 2347, 2, true}, 1, {}},
      {"an earlier week, a later day", gps2025, {LEAPSECOND_GPS, 18, 18, 2346, 7, true}, 1, {}},
      {"a later week, an earlier day", {LEAPSECOND_GPS, 18, 18, 2346, 7, true}, gps2025, 0, {}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.what);
    LogCaptureC const log;
    EXPECT_EQ(c.verdict, compareLeapSecondAt(c.held, c.incoming, timeOf(NEW_YEAR_2025_MS)));
    EXPECT_EQ(c.assertions, log.assertionTexts());
    EXPECT_EQ(c.assertions.size(), log.count());
  }
}

TEST(LeapSecondAcceptance, ComparesWeekAndDayWithoutASign) {
  UtcLeapSecondRecord const held{LEAPSECOND_GPS, 18, 18, 32767, 127, true};
  GPSTimeC const now(40000, 0);
  EXPECT_EQ(LEAPSECOND_ACCEPT,
            compareLeapSecondAt(held, {LEAPSECOND_GPS, 18, 18, 32768, 0, true}, now));
  EXPECT_EQ(LEAPSECOND_ACCEPT,
            compareLeapSecondAt(held, {LEAPSECOND_GPS, 18, 18, 32767, 128, true}, now));
}

TEST(LeapSecondAcceptance, TakesAnAnnouncementUpToSixMonthsAheadToTheMillisecond) {
  UtcLeapSecondRecord const held = defaultLeapSecondRecord();
  UtcLeapSecondRecord const equal{LEAPSECOND_GPS, 18, 18, 2347, 3, true};
  UtcLeapSecondRecord const oneMore{LEAPSECOND_GPS, 18, 19, 2347, 3, true};
  GPSTimeC const limit(2321, 86400000 + 18000);  // 2024-07-01 00:00:18
  EXPECT_EQ(LEAPSECOND_ACCEPT, compareLeapSecondAt(held, equal, limit));
  EXPECT_EQ(LEAPSECOND_ACCEPT, compareLeapSecondAt(held, equal, limit + 1));
  EXPECT_EQ(LEAPSECOND_REJECT, compareLeapSecondAt(held, equal, limit - 1));
  EXPECT_EQ(LEAPSECOND_REJECT, compareLeapSecondAt(held, oneMore, limit + 999));
  EXPECT_EQ(LEAPSECOND_ACCEPT, compareLeapSecondAt(held, oneMore, limit + 1000));
}

TEST(LeapSecondAcceptance, AddsMonthsFromMonthEndToMonthEnd) {
  struct {
    CivilDateC now;
    CivilDateC limit;
  } const cases[] = {{{2024, 2, 28}, {2024, 8, 28}},  {{2024, 2, 29}, {2024, 8, 31}},
                     {{2024, 3, 1}, {2024, 9, 1}},    {{2023, 2, 28}, {2023, 8, 31}},
                     {{2024, 6, 29}, {2024, 12, 29}}, {{2024, 6, 30}, {2024, 12, 31}},
                     {{2023, 8, 28}, {2024, 2, 28}},  {{2023, 8, 29}, {2024, 2, 29}},
                     {{2023, 8, 30}, {2024, 2, 29}},  {{2023, 8, 31}, {2024, 2, 29}},
                     {{2022, 8, 31}, {2023, 2, 28}},  {{2024, 12, 31}, {2025, 6, 30}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.now.year << "-" << c.now.month << "-" << c.now.day);
    std::int64_t const now = daysOfCivil(c.now) * MODEL_DAY_MS + 5000;
    std::int64_t const limitDay = daysOfCivil(c.limit);
    // The announcement lies at the limit's time of day.
    UtcLeapSecondRecord record{LEAPSECOND_GPS,
                               5,
                               5,
                               static_cast<std::uint16_t>(limitDay / 7),
                               static_cast<std::uint8_t>(limitDay % 7),
                               true};
    UtcLeapSecondRecord const held = defaultLeapSecondRecord();
    EXPECT_EQ(LEAPSECOND_ACCEPT, compareLeapSecondAt(held, record, timeOf(now)));
    EXPECT_EQ(LEAPSECOND_REJECT, compareLeapSecondAt(held, record, timeOf(now - 1)));
    record.future = 6;
    EXPECT_EQ(LEAPSECOND_REJECT, compareLeapSecondAt(held, record, timeOf(now)));
  }
}

TEST(LeapSecondAcceptance, MeasuresTheStepFromTheCountInForceNow) {
  UtcLeapSecondRecord const held{LEAPSECOND_GPS, 17, 18, 2321, 1, true};
  GPSTimeC const effectivity(2321, 86400000 + 18000);
  UtcLeapSecondRecord const incoming{LEAPSECOND_GPS, 18, 19, 2334, 2, true};
  EXPECT_EQ(LEAPSECOND_REJECT, compareLeapSecondAt(held, incoming, effectivity - 1));
  EXPECT_EQ(LEAPSECOND_ACCEPT, compareLeapSecondAt(held, incoming, effectivity));
  EXPECT_EQ(LEAPSECOND_ACCEPT, compareLeapSecondAt(held, incoming, effectivity + 1));
}

TEST(LeapSecondAcceptance, CarriesTheHeldInstantIntoTheNextWeek) {
  UtcLeapSecondRecord const held{LEAPSECOND_GPS, 17, 18, 1929, 7, true};
  UtcLeapSecondRecord const incoming{LEAPSECOND_GPS, 18, 19, 1942, 7, true};
  EXPECT_EQ(LEAPSECOND_REJECT, compareLeapSecondAt(held, incoming, {1930, 17999}));
  EXPECT_EQ(LEAPSECOND_ACCEPT, compareLeapSecondAt(held, incoming, {1930, 18000}));
}

/// The last instant whose limit lies before the announcement; the instant after it is the first at
/// which the announcement is near enough.
std::int64_t lastTooEarly(UtcLeapSecondRecord const& incoming) {
  std::int64_t low = modelEffectivity(incoming) - 400 * MODEL_DAY_MS;
  std::int64_t high = modelEffectivity(incoming);
  while (high - low > 1) {
    std::int64_t const middle = low + (high - low) / 2;
    (sixMonthsOn(middle) < modelEffectivity(incoming) ? low : high) = middle;
  }
  return low;
}

std::vector<UtcLeapSecondRecord> smallDomain() {
  LeapSecondSource const sources[] = {LEAPSECOND_DEFAULT, LEAPSECOND_FORCED, LEAPSECOND_SITE,
                                      LEAPSECOND_GPS, LEAPSECOND_BEIDOU};
  struct {
    std::uint16_t week;
    std::uint8_t day;
  } const days[] = {{1929, 7}, {2321, 1}, {2321, 2}};
  std::vector<UtcLeapSecondRecord> records;
  for (auto const source : sources) {
    for (std::int16_t current = 17; current <= 19; ++current) {
      for (std::int16_t future = 16; future <= 20; ++future) {
        records.push_back({source, current, future, 0, 0, false});
        for (auto const& day : days) {
          records.push_back({source, current, future, day.week, day.day, true});
        }
      }
    }
  }
  return records;
}

// All pairs of held and incoming records of the small domain, each at one before, on and one after
// every instant at which a step of the rule can change its mind.
TEST(LeapSecondAcceptance, AgreesWithTheModelOverItsWholeSmallDomain) {
  std::vector<UtcLeapSecondRecord> const records = smallDomain();
  LogCaptureC log;
  std::size_t expectedAssertions = 0;
  std::set<int> verdicts;
  for (auto const& incoming : records) {
    std::int64_t const tooEarly = lastTooEarly(incoming);
    for (auto const& held : records) {
      for (std::int64_t const boundary : {tooEarly + 1, modelEffectivity(held)}) {
        for (std::int64_t const nowMs : {boundary - 1, boundary, boundary + 1}) {
          std::int64_t const now = (nowMs + MODEL_RANGE_MS) % MODEL_RANGE_MS;
          ModelVerdictC const expected = modelVerdict(held, incoming, now);
          ASSERT_EQ(expected.verdict, compareLeapSecondAt(held, incoming, timeOf(now)))
              << ::testing::PrintToString(held) << " " << ::testing::PrintToString(incoming) << " "
              << now;
          expectedAssertions += static_cast<std::size_t>(expected.assertions);
          verdicts.insert(expected.verdict);
        }
      }
    }
    ASSERT_EQ(expectedAssertions, log.assertionCount());
    expectedAssertions = 0;
    log.clear();
  }
  EXPECT_THAT(verdicts, ElementsAre(0, 1, 3));
}

class LeapSecondAcceptanceNow : public ::testing::Test {
 protected:
  ScopedLeapSecondsC const leapSeconds;
  ScopedPresentC present{1719792000000};
};

TEST_F(LeapSecondAcceptanceNow, ReadsThePresentInGpsTime) {
  UtcLeapSecondRecord const held = defaultLeapSecondRecord();
  UtcLeapSecondRecord const incoming{LEAPSECOND_GPS, 18, 18, 2347, 3, true};
  EXPECT_EQ(LEAPSECOND_ACCEPT, compareLeapSecondNow(held, incoming));
  present.set(1719791999999);
  EXPECT_EQ(LEAPSECOND_REJECT, compareLeapSecondNow(held, incoming));
}

TEST_F(LeapSecondAcceptanceNow, UsesOnePresentForTheHeldCountToo) {
  UtcLeapSecondRecord const held{LEAPSECOND_GPS, 17, 18, 2321, 1, true};
  UtcLeapSecondRecord const incoming{LEAPSECOND_GPS, 18, 19, 2334, 2, true};
  EXPECT_EQ(LEAPSECOND_ACCEPT, compareLeapSecondNow(held, incoming));
  present.set(1719791999999);
  EXPECT_EQ(LEAPSECOND_REJECT, compareLeapSecondNow(held, incoming));
}

TEST_F(LeapSecondAcceptanceNow, ReadsThePresentOnlyWhereItDecides) {
  struct {
    UtcLeapSecondRecord incoming;
    std::size_t reads;
  } const cases[] = {{{LEAPSECOND_GPS, 18, 18, 2321, 1, true}, 1},
                     {{LEAPSECOND_FORCED, 18, 18, 2321, 1, true}, 0},
                     {{LEAPSECOND_DEFAULT, 18, 0, 0, 0, false}, 0}};
  for (auto const& c : cases) {
    SCOPED_TRACE(leapSecondSourceName(c.incoming.source));
    std::size_t const readsBefore = present.readCount();
    compareLeapSecondNow(defaultLeapSecondRecord(), c.incoming);
    EXPECT_EQ(c.reads, present.readCount() - readsBefore);
  }
}

TEST_F(LeapSecondAcceptanceNow, WritesNothing) {
  LogCaptureC const log;
  compareLeapSecondNow(defaultLeapSecondRecord(), {LEAPSECOND_GPS, 18, 19, 2400, 7, true});
  EXPECT_THAT(log.entries(), IsEmpty());
}

}  // namespace
}  // namespace KTX::TIM::TEST
