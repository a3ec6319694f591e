#include "KTX/TIM/KTX_TIM_Gps.h"

#include <limits>
#include <type_traits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/KTX_TIM_LogCapture.h"
#include "values/KTX_TIM_ScriptedProvider.h"

namespace KTX::TIM::TEST {
namespace {

static_assert(!std::is_convertible_v<std::uint32_t, GpsC>);
static_assert(!std::is_convertible_v<LeapSecondProviderI*, GpsC>);
static_assert(std::is_convertible_v<GPSTimeC, GpsC>);

class Gps : public ::testing::Test {
 protected:
  static GpsC at(LeapSecondProviderI& provider, GPSTimeC const& time) {
    GpsC value(&provider);
    static_cast<GPSTimeC&>(value) = time;
    return value;
  }

  LogCaptureC log;
  LeapSecondProviderI* const store = getDefaultLeapSecondProvider();
};

TEST_F(Gps, AsksTheStoreUnlessToldOtherwise) {
  EXPECT_EQ(store, GpsC().getLeapSecondProvider());
  EXPECT_EQ(store, GpsC(1, 2).getLeapSecondProvider());
  EXPECT_EQ(store, GpsC(GPSTimeC(1, 2)).getLeapSecondProvider());
  EXPECT_EQ(18, GpsC(2000, 0).getLeapSeconds());
}

TEST_F(Gps, NormalisesWhatItIsBuiltFrom) {
  EXPECT_EQ(GPSTimeC(11, 1), GpsC(10, 604800001));
  EXPECT_EQ(GPSTimeC(0, 0), GpsC());
}

TEST_F(Gps, CopyKeepsTheProviderAndABareInstantDoesNot) {
  ScriptedProviderC stub({unknownAnswer(5, 5)});
  GpsC const a = at(stub, {7, 8});
  GpsC const copy(a);
  GpsC const sliced(static_cast<GPSTimeC const&>(a));
  EXPECT_EQ(&stub, copy.getLeapSecondProvider());
  EXPECT_EQ(GPSTimeC(7, 8), copy);
  EXPECT_EQ(store, sliced.getLeapSecondProvider());
  EXPECT_EQ(GPSTimeC(7, 8), sliced);
}

TEST_F(Gps, AssignmentOfABareInstantResetsTheProvider) {
  ScriptedProviderC stub({unknownAnswer(5, 5)});
  GpsC a = at(stub, {7, 8});
  a = GPSTimeC(1, 2);
  EXPECT_EQ(store, a.getLeapSecondProvider());
  EXPECT_EQ(GPSTimeC(1, 2), a);
}

TEST_F(Gps, AssignmentOfAGpsTakesItsProvider) {
  ScriptedProviderC stub({unknownAnswer(5, 5)});
  GpsC a;
  a = at(stub, {7, 8});
  EXPECT_EQ(&stub, a.getLeapSecondProvider());
  EXPECT_EQ(GPSTimeC(7, 8), a);
}

TEST_F(Gps, ArithmeticInPlaceKeepsTheProvider) {
  ScriptedProviderC stub({unknownAnswer(5, 5)});
  GpsC a = at(stub, {7, 8});
  a += 1;
  a -= 2;
  a.addSeconds(1);
  a += GPSTimeC(1, 0);
  a -= GPSTimeC(0, 1);
  EXPECT_EQ(&stub, a.getLeapSecondProvider());
  EXPECT_EQ(GPSTimeC(8, 1006), a);
}

TEST_F(Gps, ReportsANullProviderWhenBuiltAndAtEachUse) {
  GpsC time(static_cast<LeapSecondProviderI*>(nullptr));
  EXPECT_EQ(1U, log.assertionCount());
  EXPECT_EQ(nullptr, time.getLeapSecondProvider());
  EXPECT_EQ(0, time.getLeapSeconds());
  EXPECT_EQ(2U, log.assertionCount());
  time.gpsToUtc();
  EXPECT_EQ(3U, log.assertionCount());
  time.utcToGps();
  EXPECT_THAT(log.assertionTexts(), ::testing::ElementsAre("", "", "", ""));
  EXPECT_EQ(GPSTimeC(0, 0), time);
}

TEST_F(Gps, CopiesANullProviderSilently) {
  GpsC const time(static_cast<LeapSecondProviderI*>(nullptr));
  log.clear();
  GpsC const copy(time);
  GpsC assigned;
  assigned = time;
  EXPECT_EQ(nullptr, copy.getLeapSecondProvider());
  EXPECT_EQ(nullptr, assigned.getLeapSecondProvider());
  EXPECT_EQ(0U, log.assertionCount());
}

TEST_F(Gps, AsksForTheLeapSecondsWithThePresetRecord) {
  ScriptedProviderC stub({unknownAnswer(7, 9)});
  GpsC const time = at(stub, {100, 5});
  EXPECT_EQ(7, time.getLeapSeconds());
  ASSERT_EQ(1U, stub.queries.size());
  EXPECT_EQ(100, stub.queries[0].week);
  EXPECT_EQ(5U, stub.queries[0].msOfWeek);
  EXPECT_FALSE(stub.queries[0].wantsEffectivity);
  EXPECT_TRUE(stub.queries[0].preset == defaultLeapSecondRecord());
}

TEST_F(Gps, CutsTheLeapSecondsToEightBits) {
  struct {
    std::int16_t current;
    std::int8_t expected;
  } const cases[] = {{127, 127}, {128, -128}, {200, -56}, {300, 44}, {-1, -1}, {-129, 127}};
  for (auto const& c : cases) {
    ScriptedProviderC stub({unknownAnswer(c.current, 0)});
    EXPECT_EQ(c.expected, GpsC(&stub).getLeapSeconds()) << c.current;
  }
}

TEST_F(Gps, IgnoresTheResultOfTheLeapSecondQuery) {
  ScriptedProviderC stub({failure(5)});
  EXPECT_EQ(18, GpsC(&stub).getLeapSeconds());
  EXPECT_EQ(0U, log.assertionCount());
}

struct ConversionCaseC {
  GPSTimeC time;
  GPSTimeC expected;
};

TEST_F(Gps, GpsToUtcMovesTheThresholdOnlyWhenSecondsAreInserted) {
  ScriptedProviderC stub({knownAnswer(17, 18, {1930, 18000})});
  ConversionCaseC const cases[] = {{{1930, 15999}, {1929, 604798999}},
                                   {{1930, 16999}, {1929, 604799999}},
                                   {{1930, 17000}, {1929, 604799000}},
                                   {{1930, 17999}, {1929, 604799999}},
                                   {{1930, 18000}, {1930, 0}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.time);
    GpsC time = at(stub, c.time);
    time.gpsToUtc();
    EXPECT_EQ(c.expected, time);
    EXPECT_EQ(&stub, time.getLeapSecondProvider());
  }
}

TEST_F(Gps, GpsToUtcKeepsTheThresholdWhenSecondsAreDeleted) {
  ScriptedProviderC stub({knownAnswer(18, 17, {1930, 17000})});
  ConversionCaseC const cases[] = {
      {{1930, 16999}, {1929, 604798999}}, {{1930, 17000}, {1930, 0}}, {{1930, 17001}, {1930, 1}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.time);
    GpsC time = at(stub, c.time);
    time.gpsToUtc();
    EXPECT_EQ(c.expected, time);
  }
}

TEST_F(Gps, GpsToUtcUsesTheCurrentCountWithoutAKnownEffectivity) {
  ScriptedProviderC stub({unknownAnswer(17, 18), unknownAnswer(18, 17)});
  GpsC inserted = at(stub, {2000, 20000});
  inserted.gpsToUtc();
  EXPECT_EQ(GPSTimeC(2000, 3000), inserted);
  GpsC removed = at(stub, {2000, 20000});
  removed.gpsToUtc();
  EXPECT_EQ(GPSTimeC(2000, 2000), removed);
}

TEST_F(Gps, GpsToUtcNeverAsksTwice) {
  ScriptedProviderC stub({knownAnswer(18, 18, {1930, 18000})});
  GpsC time = at(stub, {1930, 17999});
  time.gpsToUtc();
  EXPECT_EQ(GPSTimeC(1929, 604799999), time);
  ASSERT_EQ(1U, stub.queries.size());
  EXPECT_TRUE(stub.queries[0].wantsEffectivity);
  EXPECT_TRUE(stub.queries[0].preset == defaultLeapSecondRecord());
}

TEST_F(Gps, GpsToUtcWrapsBelowTheEpoch) {
  ScriptedProviderC stub({unknownAnswer(18, 18)});
  GpsC time(&stub);
  time.gpsToUtc();
  EXPECT_EQ(GPSTimeC(65535, 604782000), time);
}

TEST_F(Gps, GpsToUtcHandlesExtremeCounts) {
  constexpr std::int16_t LOWEST = std::numeric_limits<std::int16_t>::min();
  constexpr std::int16_t HIGHEST = std::numeric_limits<std::int16_t>::max();
  ScriptedProviderC rising({knownAnswer(LOWEST, HIGHEST, {1000, 65535000})});
  GpsC before = at(rising, {999, 604799999});
  before.gpsToUtc();
  EXPECT_EQ(GPSTimeC(1000, 32767999), before);
  GpsC after = at(rising, {1000, 0});
  after.gpsToUtc();
  EXPECT_EQ(GPSTimeC(999, 572033000), after);
}

TEST_F(Gps, UtcToGpsComparesWithTheEffectivityInUtc) {
  ScriptedProviderC insertion({knownAnswer(17, 18, {1930, 18000})});
  ConversionCaseC const insertionCases[] = {{{1929, 604799999}, {1930, 16999}},
                                            {{1930, 0}, {1930, 18000}},
                                            {{1930, 10000}, {1930, 28000}}};
  for (auto const& c : insertionCases) {
    SCOPED_TRACE(c.time);
    GpsC time = at(insertion, c.time);
    time.utcToGps();
    EXPECT_EQ(c.expected, time);
    EXPECT_EQ(&insertion, time.getLeapSecondProvider());
  }
  ScriptedProviderC deletion({knownAnswer(18, 17, {1930, 17000})});
  ConversionCaseC const deletionCases[] = {{{1929, 604799999}, {1930, 17999}},
                                           {{1930, 0}, {1930, 17000}}};
  for (auto const& c : deletionCases) {
    SCOPED_TRACE(c.time);
    GpsC time = at(deletion, c.time);
    time.utcToGps();
    EXPECT_EQ(c.expected, time);
  }
}

TEST_F(Gps, UtcToGpsUsesTheCurrentCountWithoutAKnownEffectivity) {
  ScriptedProviderC stub({unknownAnswer(17, 18)});
  GpsC time = at(stub, {2000, 3000});
  time.utcToGps();
  EXPECT_EQ(GPSTimeC(2000, 20000), time);
  EXPECT_EQ(1U, stub.queries.size());
}

TEST_F(Gps, UtcToGpsAsksAgainBeforeTheThresholdWhenTheCountsAreEqual) {
  auto const writesCurrentOnly = [](UtcLeapSecondRecord& record, GpsC* /*effectivity*/) {
    record.current = 17;
    return 0U;
  };
  ScriptedProviderC stub({knownAnswer(18, 18, {1930, 18000}), writesCurrentOnly});
  GpsC time = at(stub, {1900, 0});
  time.utcToGps();
  EXPECT_EQ(GPSTimeC(1900, 17000), time);
  ASSERT_EQ(2U, stub.queries.size());
  EXPECT_EQ(1900, stub.queries[0].week);
  EXPECT_EQ(0U, stub.queries[0].msOfWeek);
  EXPECT_EQ(1930, stub.queries[1].week);
  EXPECT_EQ(17999U, stub.queries[1].msOfWeek);
  EXPECT_TRUE(stub.queries[1].preset == defaultLeapSecondRecord());
  EXPECT_EQ(0U, log.assertionCount());
}

TEST_F(Gps, UtcToGpsDoesNotAskAgainAtTheThreshold) {
  ScriptedProviderC stub({knownAnswer(18, 18, {1930, 18000})});
  GpsC time = at(stub, {1930, 0});
  time.utcToGps();
  EXPECT_EQ(GPSTimeC(1930, 18000), time);
  EXPECT_EQ(1U, stub.queries.size());
}

TEST_F(Gps, UtcToGpsStaysWhenTheSecondQueryFails) {
  ScriptedProviderC stub({knownAnswer(18, 18, {1930, 18000}), failure(7)});
  GpsC time = at(stub, {1900, 5});
  time.utcToGps();
  EXPECT_EQ(GPSTimeC(1900, 5), time);
  EXPECT_EQ(1U, log.assertionCount());
}

TEST_F(Gps, ConversionsStayWhenTheQueryFails) {
  ScriptedProviderC stub({failure(1)});
  GpsC time = at(stub, {1900, 5});
  time.gpsToUtc();
  EXPECT_EQ(1U, log.assertionCount());
  time.utcToGps();
  EXPECT_THAT(log.assertionTexts(),
              ::testing::ElementsAre("Leap second query failed!", "Leap second query failed!"));
  EXPECT_EQ(GPSTimeC(1900, 5), time);
}

TEST_F(Gps, ProviderThatWritesNothingYieldsThePresetCounts) {
  ScriptedProviderC stub({failure(0)});
  GpsC toUtc = at(stub, {2000, 20000});
  toUtc.gpsToUtc();
  EXPECT_EQ(GPSTimeC(2000, 2000), toUtc);
  GpsC toGps = at(stub, {2000, 2000});
  toGps.utcToGps();
  EXPECT_EQ(GPSTimeC(2000, 20000), toGps);
}

TEST_F(Gps, FollowsAStoreAcrossAnInsertedSecond) {
  ScriptedProviderC const* self = nullptr;
  ScriptedProviderC stub({storeAnswer(self, 17, 18, {1930, 18000})});
  self = &stub;
  ConversionCaseC const cases[] = {{{1930, 5000}, {1929, 604788000}},
                                   {{1930, 16999}, {1929, 604799999}},
                                   {{1930, 18000}, {1930, 0}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.time);
    GpsC time = at(stub, c.time);
    time.gpsToUtc();
    EXPECT_EQ(c.expected, time);
    time.utcToGps();
    EXPECT_EQ(c.time, time);
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
