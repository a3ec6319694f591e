#include "leapseconds/KTX_TIM_LeapSecondSlots.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "common/KTX_TIM_LogCapture.h"

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr UtcLeapSecondRecord GPS_2025{LEAPSECOND_GPS, 18, 18, 2347, 3, true};
constexpr UtcLeapSecondRecord FORCED_17{LEAPSECOND_FORCED, 17, 17, 1929, 7, true};

class LeapSecondSlots : public ::testing::Test {
 protected:
  LeapSecondSettingC set(UtcLeapSecondRecord const& record) {
    return slots.set(record, [this] {
      ++presentReads;
      return GPSTimeC(2347, 0);
    });
  }

  /// Sets what must be accepted.
  void take(UtcLeapSecondRecord const& record) {
    LeapSecondSettingC const setting = set(record);
    EXPECT_EQ(LEAPSECOND_ACCEPT, setting.verdict);
    slots = setting.slots;
  }

  LogCaptureC const log;
  LeapSecondProviderI* const provider = getDefaultLeapSecondProvider();
  LeapSecondSlotsC slots{provider};
  int presentReads = 0;
};

TEST_F(LeapSecondSlots, BeginWithTheDefaultAndItsEffectivity) {
  EXPECT_EQ(defaultLeapSecondRecord(), slots.inForce());
  EXPECT_EQ(defaultLeapSecondRecord(), slots.normalSlot());
  EXPECT_EQ(GPSTimeC(1930, 18000), slots.effectivity());
  EXPECT_EQ(provider, slots.effectivity().getLeapSecondProvider());
}

TEST_F(LeapSecondSlots, TheAnnouncedCountHoldsFromTheEffectivityInstantOn) {
  EXPECT_FALSE(slots.isFutureInForce(GPSTimeC(1930, 17999)));
  EXPECT_TRUE(slots.isFutureInForce(GPSTimeC(1930, 18000)));
  EXPECT_TRUE(slots.isFutureInForce(GPSTimeC(1930, 18001)));
}

TEST_F(LeapSecondSlots, SettingLeavesTheValueItIsCalledOn) {
  LeapSecondSettingC const setting = set(GPS_2025);
  EXPECT_EQ(GPS_2025, setting.slots.inForce());
  EXPECT_EQ(GPSTimeC(2347, 3 * 86400000 + 18000), setting.slots.effectivity());
  EXPECT_EQ(defaultLeapSecondRecord(), slots.inForce());
  EXPECT_EQ(GPSTimeC(1930, 18000), slots.effectivity());
  EXPECT_THAT(setting.assertions, IsEmpty());
}

TEST_F(LeapSecondSlots, AForcedRecordIsInForceUntilItIsWithdrawn) {
  take(GPS_2025);
  take(FORCED_17);
  EXPECT_EQ(FORCED_17, slots.inForce());
  EXPECT_EQ(GPS_2025, slots.normalSlot());
  EXPECT_EQ(GPSTimeC(1930, 17000), slots.effectivity());
  take(withdrawForcedRecord());
  EXPECT_EQ(GPS_2025, slots.inForce());
  EXPECT_EQ(GPSTimeC(2347, 3 * 86400000 + 18000), slots.effectivity());
}

TEST_F(LeapSecondSlots, AForcedRecordOfZerosWithdrawsNothing) {
  take(FORCED_17);
  take({LEAPSECOND_FORCED, 0, 0, 0, 0, false});
  EXPECT_EQ(LEAPSECOND_FORCED, slots.inForce().source);
  EXPECT_EQ(0, slots.inForce().current);
}

TEST_F(LeapSecondSlots, ARefusedRecordLeavesAllAsItWas) {
  take(GPS_2025);
  struct {
    UtcLeapSecondRecord record;
    LeapSecondVerdictE verdict;
  } const cases[] = {{{LEAPSECOND_GPS, 17, 17, 2347, 3, true}, LEAPSECOND_SAME_DAY},
                     {{LEAPSECOND_GPS, 18, 18, 2347, 2, true}, LEAPSECOND_REJECT},
                     {{LEAPSECOND_DEFAULT, 18, 18, 0, 0, false}, LEAPSECOND_REJECT}};
  for (auto const& c : cases) {
    LeapSecondSettingC const setting = set(c.record);
    EXPECT_EQ(c.verdict, setting.verdict);
    EXPECT_EQ(GPS_2025, setting.slots.inForce());
    EXPECT_EQ(slots.effectivity(), setting.slots.effectivity());
    EXPECT_THAT(setting.assertions, IsEmpty());
  }
}

TEST_F(LeapSecondSlots, AskForThePresentOnlyWhereTheRuleNeedsIt) {
  struct {
    UtcLeapSecondRecord record;
    int reads;
  } const cases[] = {{withdrawForcedRecord(), 0},
                     {defaultLeapSecondRecord(), 0},
                     {FORCED_17, 0},
                     {{LEAPSECOND_DEFAULT, 17, 17, 0, 0, false}, 0},
                     {GPS_2025, 1}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.record));
    presentReads = 0;
    set(c.record);
    EXPECT_EQ(c.reads, presentReads);
  }
}

TEST_F(LeapSecondSlots, AnUnknownEffectivityLeavesNothingOfTheAnnouncement) {
  take({LEAPSECOND_DEFAULT, 17, 99, 5, 9, false});
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_DEFAULT, 17, 0, 0, 0, false}), slots.inForce());
  EXPECT_EQ(GPSTimeC(0, 0), slots.effectivity());
  EXPECT_FALSE(slots.isFutureInForce(GPSTimeC(65535, 604799999)));
}

TEST_F(LeapSecondSlots, AssertionsComeAsAListInTheirOrder) {
  LeapSecondSettingC const reset = slots.reset(nullptr);
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_DEFAULT, 18, 0, 0, 0, false}), reset.slots.inForce());
  EXPECT_THAT(reset.assertions, IsEmpty());
  UtcLeapSecondRecord const odd{LEAPSECOND_GPS, 18, 18, 5, 0, false};
  LeapSecondSettingC const oddReset = slots.reset(&odd);
  EXPECT_EQ(odd, oddReset.slots.inForce());
  EXPECT_EQ(GPSTimeC(0, 0), oddReset.slots.effectivity());
  EXPECT_THAT(
      oddReset.assertions,
      ElementsAre(::testing::StrEq("Leap second has a week or day without a known effectivity!")));
  slots = oddReset.slots;
  EXPECT_THAT(set(GPS_2025).assertions,
              ElementsAre(::testing::StrEq("Held leap second has no known effectivity!")));
  EXPECT_EQ(0U, log.count()) << "the caller logs them";
}

}  // namespace
}  // namespace KTX::TIM::TEST
