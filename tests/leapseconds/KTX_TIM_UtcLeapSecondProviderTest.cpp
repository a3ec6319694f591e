#include "KTX/TIM/KTX_TIM_UtcLeapSecondProvider.h"

#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "common/KTX_TIM_LogCapture.h"
#include "leapseconds/KTX_TIM_LeapSecondModel.h"
#include "leapseconds/KTX_TIM_LeapSecondScopes.h"

namespace KTX::TIM::TEST {
namespace {

static_assert(!std::is_copy_constructible_v<UtcLeapSecondProvider>);
static_assert(!std::is_copy_assignable_v<UtcLeapSecondProvider>);

class UtcLeapSecondProviderTest : public ::testing::Test {
 protected:
  UtcLeapSecondRecord ask(GpsC const& time = GpsC(0, 0)) {
    UtcLeapSecondRecord record{};
    EXPECT_EQ(RC_OK, provider.getLeapSecond(time, record, &effectivity));
    return record;
  }

  ScopedLeapSecondsC const leapSeconds;
  LogCaptureC log;
  UtcLeapSecondProvider provider;
  GpsC effectivity;
};

TEST_F(UtcLeapSecondProviderTest, AnswersFromTheStoreBeforeAnySiteValue) {
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_DEFAULT, 18, 18, 1929, 7, true}), ask());
  EXPECT_EQ(GPSTimeC(1930, 18000), effectivity);
  EXPECT_EQ(getDefaultLeapSecondProvider(), effectivity.getLeapSecondProvider());
  setUtcLeapSecond({LEAPSECOND_FORCED, 16, 17, 2000, 1, true}, false);
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_FORCED, 16, 17, 2000, 1, true}), ask());
  EXPECT_EQ(17, ask(GpsC(2001, 0)).current);
  EXPECT_EQ(0U, log.assertionCount());
}

TEST_F(UtcLeapSecondProviderTest, AnswersTheFutureCountFromTheEffectivityInstantOn) {
  EXPECT_EQ(RC_OK, provider.setSiteLeapSecond(17, 18, 57754));
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_SITE, 17, 18, 1929, 7, true}), ask(GpsC(1930, 17999)));
  EXPECT_EQ(GPSTimeC(1930, 18000), effectivity);
  EXPECT_EQ(&provider, effectivity.getLeapSecondProvider());
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_SITE, 18, 18, 1929, 7, true}), ask(GpsC(1930, 18000)));
  EXPECT_EQ(18, ask(GpsC(1930, 18001)).current);
  EXPECT_EQ(17, ask(GpsC(1929, 604799999)).current);
  EXPECT_EQ(18, ask(GpsC(1931, 0)).current);
}

TEST_F(UtcLeapSecondProviderTest, AnswersWithoutAnEffectivityPointer) {
  provider.setSiteLeapSecond(17, 18, 57754);
  UtcLeapSecondRecord record{};
  EXPECT_EQ(RC_OK, provider.getLeapSecond(GpsC(1930, 18000), record));
  EXPECT_EQ(18, record.current);
}

TEST_F(UtcLeapSecondProviderTest, MayFillTheInstantItWasAskedFor) {
  provider.setSiteLeapSecond(17, 18, 57754);
  GpsC time(1930, 18000);
  UtcLeapSecondRecord record{};
  EXPECT_EQ(RC_OK, provider.getLeapSecond(time, record, &time));
  EXPECT_EQ(18, record.current);
  EXPECT_EQ(GPSTimeC(1930, 18000), time);
}

TEST_F(UtcLeapSecondProviderTest, RefusesACountOf0AndThenAnswersFromTheDefaultSiteRecord) {
  setUtcLeapSecond({LEAPSECOND_FORCED, 17, 17, 1929, 7, true}, false);
  EXPECT_EQ(17, ask().current);
  EXPECT_EQ(33554458U, provider.setSiteLeapSecond(0, 0, 0));
  EXPECT_THAT(log.assertionTexts(), ::testing::ElementsAre("Site leap second is zero!"));
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_DEFAULT, 18, 18, 1929, 7, true}), ask());
}

TEST_F(UtcLeapSecondProviderTest, RefusesACountOf0AndKeepsASiteRecord) {
  provider.setSiteLeapSecond(17, 18, 57754);
  EXPECT_EQ(RC_FAILED, provider.setSiteLeapSecond(0, 1, 57755));
  EXPECT_EQ(1U, log.assertionCount());
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_SITE, 17, 18, 1929, 7, true}), ask());
}

TEST_F(UtcLeapSecondProviderTest, TakesAFutureCountWithinOneOfTheCurrent) {
  struct {
    std::int16_t current;
    std::int16_t future;
    std::int16_t kept;
    bool isAnnounced;
  } const cases[] = {{18, 18, 18, true},
                     {18, 19, 19, true},
                     {18, 17, 17, true},
                     {18, 20, 18, false},
                     {18, 16, 18, false},
                     {1, 0, 1, false},
                     {-1, 0, -1, false},
                     {1, 1, 1, true},
                     {1, 2, 2, true},
                     {-1, -2, -2, true},
                     {-1, 1, -1, false},
                     {32767, -32768, 32767, false},
                     {-32768, 32767, -32768, false},
                     {32767, 32766, 32766, true}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.current << " to " << c.future);
    UtcLeapSecondProvider site;
    EXPECT_EQ(RC_OK, site.setSiteLeapSecond(c.current, c.future, 57755));
    UtcLeapSecondRecord record{};
    site.getLeapSecond(GpsC(0, 0), record);
    UtcLeapSecondRecord expected{LEAPSECOND_SITE, c.current, c.kept, 1929, 7, true};
    if (c.isAnnounced) {
      expected.week = 1930;
      expected.day = 1;
    }
    EXPECT_EQ(expected, record);
  }
}

TEST_F(UtcLeapSecondProviderTest, KeepsTheEffectivityWhereNoChangeIsAnnounced) {
  provider.setSiteLeapSecond(17, 18, 60676);
  UtcLeapSecondRecord const announced = ask();
  provider.setSiteLeapSecond(18, 20, 57754);
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_SITE, 18, 18, announced.week, announced.day, true}),
            ask());
}

TEST_F(UtcLeapSecondProviderTest, TakesTheEffectivityDayFromADate) {
  struct {
    std::int32_t date;
    std::uint16_t week;
    int day;
  } const cases[] = {{57754, 1929, 7},  {57755, 1930, 1}, {57760, 1930, 6},
                     {57761, 1930, 7},  {44245, 0, 1},    {44244, 65535, 7},
                     {44243, 65535, 6}, {1, 59215, 4},    {2147483647, 3041, 4}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.date);
    provider.setSiteLeapSecond(18, 18, c.date);
    EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_SITE, 18, 18, c.week,
                                   static_cast<std::uint8_t>(c.day), true}),
              ask());
  }
}

TEST_F(UtcLeapSecondProviderTest, ClearsTheDayForADateBelow1AndAssertsAtEachQuery) {
  for (std::int32_t const date : {0, -1, -5, std::numeric_limits<std::int32_t>::min()}) {
    SCOPED_TRACE(date);
    UtcLeapSecondProvider site;
    site.setSiteLeapSecond(18, 19, date);
    for (std::size_t query = 1; query <= 3; ++query) {
      UtcLeapSecondRecord record{};
      EXPECT_EQ(RC_OK, site.getLeapSecond(GpsC(65535, 604799999), record, &effectivity));
      EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_SITE, 18, 19, 0, 0, false}), record);
      EXPECT_EQ(GPSTimeC(0, 19000), effectivity);
    }
    EXPECT_EQ(std::vector<std::string>(3, "Site leap second has no known effectivity!"),
              log.assertionTexts());
    log.clear();
  }
}

TEST_F(UtcLeapSecondProviderTest, ServesConversionsOfAValueThatPointsToIt) {
  provider.setSiteLeapSecond(20, 20, 57754);
  GpsC time(&provider);
  time += GPSTimeC(2000, 20000);
  EXPECT_EQ(20, time.getLeapSeconds());
  time.gpsToUtc();
  EXPECT_EQ(GPSTimeC(2000, 0), time);
  time.utcToGps();
  EXPECT_EQ(GPSTimeC(2000, 20000), time);
}

TEST_F(UtcLeapSecondProviderTest, SendsNoChangeEventAndLeavesTheStoreAlone) {
  ChangeRecorderC const changes;
  provider.setSiteLeapSecond(17, 18, 57754);
  EXPECT_TRUE(changes.events.empty());
  EXPECT_EQ(defaultLeapSecondRecord(), recordInForce());
  EXPECT_EQ(0U, log.count());
}

}  // namespace
}  // namespace KTX::TIM::TEST
