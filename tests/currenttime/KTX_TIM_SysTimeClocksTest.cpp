#include "KTX/TIM/KTX_TIM_SysTimeClocks.h"

#include <chrono>
#include <cstdlib>

#include <boost/date_time/gregorian/greg_year.hpp>
#include <boost/weak_ptr.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "common/KTX_TIM_FakePresent.h"
#include "common/KTX_TIM_LogCapture.h"

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;

class SysTimeClocks : public ::testing::Test {
 protected:
  LogCaptureC log;
  FakePresentC present;
};

TEST_F(SysTimeClocks, ThePresentFollowsTheGivenClocks) {
  EXPECT_EQ(GPSTimeC(2304, 374963000), GpsC::currentTime());
  present.steady->advanceMs(1);
  EXPECT_EQ(GPSTimeC(2304, 374963001), GpsC::currentTime());
  present.utc->advanceMs(
      3600000);  // the calendar is read when the mapping is seeded, and only then
  EXPECT_EQ(GPSTimeC(2304, 374963001), GpsC::currentTime());
}

TEST_F(SysTimeClocks, ResetSeedsFromTheCalendarAgain) {
  present.utc->set(FakePresentC::THURSDAY_MS + 604800000);
  present.steady->advanceMs(5);
  resetSysTime();
  EXPECT_EQ(GPSTimeC(2305, 374963000), GpsC::currentTime());
}

TEST_F(SysTimeClocks, ResetRestartsTheEstimate) {
  GpsC const observed(2304, 374963040);
  observed.makeToCurrentTime(1, 1);  // the estimate's uncertainty falls to its floor
  resetSysTime();
  observed.makeToCurrentTime(10000, 1);
  EXPECT_THAT(log.lines("TimeEstimatorData").back(), ::testing::HasSubstr("UPD-N:\t4472\t"));
}

TEST_F(SysTimeClocks, ResetLogsItselfAndTheNewMapping) {
  log.clear();
  resetSysTime();
  EXPECT_THAT(log.lines("Time"),
              ElementsAre("KTX::TIM::SysTimeOffsetT::reset\n",
                          "New sys time: Time: 60376.339641203703650d @ 1000000ms (2024-03-07 "
                          "08:09:05:000000)\n"));
  for (auto const& entry : log.entries()) {
    EXPECT_EQ("%s\n", entry.format);
    EXPECT_EQ(3, entry.level);
  }
  EXPECT_EQ(2u, log.count());
}

TEST_F(SysTimeClocks, NewClocksLogTheNewMappingOnly) {
  log.clear();
  setSysTimeClocks(present.utc, present.steady);
  EXPECT_THAT(log.lines("Time"),
              ElementsAre("New sys time: Time: 60376.339641203703650d @ 1000000ms (2024-03-07 "
                          "08:09:05:000000)\n"));
  EXPECT_EQ(1u, log.count());
}

TEST_F(SysTimeClocks, AnEmptyPointerAssertsAndChangesNothing) {
  log.clear();
  auto const other = boost::make_shared<FakeClockC>(0, CLOCKTYPE_POSIX, CLOCKREF_UTC);
  setSysTimeClocks({}, present.steady);
  EXPECT_EQ(1u, log.assertionCount());
  setSysTimeClocks(other, {});
  EXPECT_EQ(2u, log.assertionCount());
  setSysTimeClocks({}, {});
  EXPECT_THAT(log.assertionTexts(),
              ::testing::ElementsAre("Clock is null!", "Clock is null!", "Clock is null!"));
  EXPECT_EQ(GPSTimeC(2304, 374963000), GpsC::currentTime());
  EXPECT_EQ(0u, log.count("Time"));
}

TEST_F(SysTimeClocks, ACalendarThatCannotBeReadChangesNothing) {
  auto const far = boost::make_shared<FakeClockC>(std::numeric_limits<std::int64_t>::max(),
                                                  CLOCKTYPE_POSIX, CLOCKREF_UTC);
  EXPECT_THROW(setSysTimeClocks(far, present.steady), boost::gregorian::bad_year);
  EXPECT_EQ(GPSTimeC(2304, 374963000), GpsC::currentTime());
  present.utc->set(std::numeric_limits<std::int64_t>::min());
  EXPECT_THROW(resetSysTime(), boost::gregorian::bad_year);
  EXPECT_EQ(GPSTimeC(2304, 374963000), GpsC::currentTime());
}

TEST_F(SysTimeClocks, TheOldClocksAreLetGo) {
  boost::weak_ptr<FakeClockC> calendar;
  boost::weak_ptr<FakeClockC> counter;
  {
    auto const utc = boost::make_shared<FakeClockC>(1000, CLOCKTYPE_POSIX, CLOCKREF_UTC);
    auto const steady = boost::make_shared<FakeClockC>(5);
    setSysTimeClocks(utc, steady);
    calendar = utc;
    counter = steady;
  }
  EXPECT_FALSE(calendar.expired());
  EXPECT_FALSE(counter.expired());
  setSysTimeClocks(present.utc, present.steady);
  EXPECT_TRUE(calendar.expired());
  EXPECT_TRUE(counter.expired());
}

TEST(SysTimeClocksOfTheSystem, ThePresentIsTheSystemsUtcPlusLeapSeconds) {
  resetSysTime();
  auto const unixMs = std::chrono::duration_cast<std::chrono::milliseconds>(
                          std::chrono::system_clock::now().time_since_epoch())
                          .count();
  auto const presentMs = static_cast<std::int64_t>(GpsC::currentTime().toMilliseconds64());
  constexpr std::int64_t GPS_EPOCH_UNIX_MS = 315964800000;
  constexpr std::int64_t TOLERANCE_MS = 60000;  // a busy machine, not a wrong clock
  EXPECT_LT(std::abs(presentMs - (unixMs - GPS_EPOCH_UNIX_MS + 18000)), TOLERANCE_MS);
}

}  // namespace
}  // namespace KTX::TIM::TEST
