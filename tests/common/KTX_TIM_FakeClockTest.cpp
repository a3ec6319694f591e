#include "common/KTX_TIM_FakeClock.h"

#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;

TEST(FakeClock, StandsStillUntilItIsMoved) {
  FakeClockC clock(1000);
  EXPECT_EQ(1000, clock.now().count());
  EXPECT_EQ(1000, clock.now().count());
  clock.advanceMs(-1);
  EXPECT_EQ(999, clock.now().count());
  clock.set(5);
  EXPECT_EQ(5, clock.now().count());
  EXPECT_EQ(4U, clock.readCount());
}

TEST(FakeClock, CountsNanosecondsInTheNanosecondPeriod) {
  FakeNanoClockC clock(7);
  clock.advanceMs(2);
  clock.advance(1);
  EXPECT_EQ(2000008, clock.now().count());
}

TEST(FakeClock, HasAnEpochWhereItHasACalendar) {
  boost::posix_time::ptime const epoch(boost::gregorian::date(1970, 1, 1));
  EXPECT_EQ(epoch, FakeClockC(0, CLOCKTYPE_POSIX, CLOCKREF_UTC).getEpoch());
  EXPECT_EQ(epoch, FakeClockC(0, CLOCKTYPE_POSIX, CLOCKREF_LOCAL).getEpoch());
  FakeClockC steady(0);
  EXPECT_TRUE(steady.getEpoch().is_not_a_date_time());
  EXPECT_EQ(CLOCKTYPE_STEADY, steady.getType());
  EXPECT_EQ(CLOCKREF_NONE, steady.getReference());
  steady.setEpoch(epoch);
  EXPECT_EQ(epoch, steady.getEpoch());
}

TEST(FakeClock, RecordsTheOrderOfReadings) {
  std::vector<std::string> journal;
  FakeClockC calendar(0, CLOCKTYPE_POSIX, CLOCKREF_UTC);
  FakeClockC steady(0);
  calendar.recordReadsIn(journal, "calendar");
  steady.recordReadsIn(journal, "steady");
  steady.now();
  calendar.now();
  steady.now();
  EXPECT_THAT(journal, ElementsAre("steady", "calendar", "steady"));
}

TEST(FakeClock, RunsTheHookBeforeTheValueIsTaken) {
  FakeClockC clock(10);
  clock.setHook([&] { clock.advance(1); });
  EXPECT_EQ(11, clock.now().count());
  clock.setHook([] { throw std::runtime_error("clock"); });
  EXPECT_THROW(clock.now(), std::runtime_error);
}

}  // namespace
}  // namespace KTX::TIM::TEST
