#include "KTX/TIM/KTX_TIM_StopWatch.h"

#include <limits>
#include <type_traits>

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/KTX_TIM_FakeClock.h"
#include "common/KTX_TIM_LogCapture.h"

namespace KTX::TIM::TEST {
namespace {

static_assert(!std::is_polymorphic_v<StopWatchC>);
static_assert(std::is_copy_constructible_v<StopWatchC> && std::is_copy_assignable_v<StopWatchC>);

class StopWatch : public ::testing::Test {
 protected:
  LogCaptureC log;
  boost::shared_ptr<FakeNanoClockC> clock = boost::make_shared<FakeNanoClockC>(5000000);
  StopWatchC watch{clock};
};

TEST_F(StopWatch, MeasuresUpToNowUntilItIsStopped) {
  EXPECT_FALSE(watch.isStarted());
  watch.start();
  EXPECT_TRUE(watch.isStarted());
  EXPECT_EQ(0, watch.elapsed());
  clock->advance(1999999);
  EXPECT_EQ(1999999, watch.elapsed());
  EXPECT_EQ(1, watch.elapsedMs());
  watch.stop();
  clock->advance(1);
  EXPECT_EQ(1999999, watch.elapsed());
  EXPECT_TRUE(watch.isStarted());
  EXPECT_EQ(0U, log.count());
}

TEST_F(StopWatch, StartForgetsAnEarlierStop) {
  watch.start();
  clock->advance(10);
  watch.stop();
  clock->advance(10);
  watch.start();
  EXPECT_EQ(0, watch.elapsed());
  clock->advance(3);
  EXPECT_EQ(3, watch.elapsed());
}

TEST_F(StopWatch, StopWithoutAStartIsReportedAndStored) {
  watch.stop();
  EXPECT_THAT(log.assertionTexts(),
              ::testing::ElementsAre("Stop watch is stopped without a start!"));
  clock->advance(7);
  EXPECT_EQ(5000000, watch.elapsed());
  EXPECT_FALSE(watch.isStarted());
  EXPECT_EQ(1U, log.assertionCount());
}

TEST_F(StopWatch, ElapsedWithoutAStartMeasuresFromZero) {
  EXPECT_EQ(5000000, watch.elapsed());
  EXPECT_EQ(5, watch.elapsedMs());
  EXPECT_EQ(0U, log.assertionCount());
}

TEST_F(StopWatch, AnEndOfZeroIsReported) {
  watch.start();
  clock->set(0);
  EXPECT_EQ(-5000000, watch.elapsed());
  EXPECT_EQ(1U, log.assertionCount());
  EXPECT_EQ(-5, watch.elapsedMs());
  EXPECT_THAT(log.assertionTexts(), ::testing::ElementsAre("Stop watch reads zero at its end!",
                                                           "Stop watch reads zero at its end!"));
  watch.stop();  // stores zero, which is not set
  clock->set(5000001);
  EXPECT_EQ(1, watch.elapsed());
  EXPECT_EQ(2U, log.assertionCount());
}

TEST_F(StopWatch, TruncatesMillisecondsTowardZero) {
  struct {
    std::int64_t ns;
    std::int64_t ms;
  } const cases[] = {{999999, 0},    {1000000, 1},   {-999999, 0},
                     {-1000000, -1}, {-1999999, -1}, {-2000000, -2}};
  for (auto const& c : cases) {
    clock->set(5000000);
    watch.start();
    clock->advance(c.ns);
    EXPECT_EQ(c.ns, watch.elapsed());
    EXPECT_EQ(c.ms, watch.elapsedMs());
  }
}

TEST_F(StopWatch, WrapsWhereTheDifferenceDoesNotFit) {
  clock->set(std::numeric_limits<std::int64_t>::min());
  watch.start();
  clock->set(std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(-1, watch.elapsed());
}

TEST_F(StopWatch, ReadsItsClockOnceAnOperation) {
  watch.start();
  EXPECT_EQ(1U, clock->readCount());
  watch.elapsed();
  watch.elapsedMs();
  EXPECT_EQ(3U, clock->readCount());
  watch.stop();
  watch.elapsed();
  watch.isStarted();
  EXPECT_EQ(4U, clock->readCount());
}

TEST_F(StopWatch, ACopyGoesOnByItself) {
  watch.start();
  clock->advance(10);
  StopWatchC copy(watch);
  watch.stop();
  clock->advance(10);
  EXPECT_EQ(10, watch.elapsed());
  EXPECT_EQ(20, copy.elapsed());
  copy = watch;
  EXPECT_EQ(10, copy.elapsed());
}

TEST_F(StopWatch, TakesASteadyClockByItself) {
  StopWatchC steady;
  EXPECT_FALSE(steady.isStarted());
  steady.start();
  EXPECT_TRUE(steady.isStarted());
  std::int64_t const first = steady.elapsed();
  EXPECT_LE(0, first);
  EXPECT_LE(first, steady.elapsed());
  steady.stop();
  EXPECT_EQ(steady.elapsed(), steady.elapsed());
  EXPECT_EQ(0U, log.count());
}

TEST_F(StopWatch, TakesTheClockOfATypeAndReference) {
  StopWatchC calendar(CLOCKTYPE_POSIX, CLOCKREF_UTC);
  calendar.start();
  EXPECT_TRUE(calendar.isStarted());
  EXPECT_EQ(0U, log.count());
  StopWatchC const corrected(CLOCKTYPE_POSIX, CLOCKREF_NONE);
  EXPECT_THAT(log.assertionTexts(),
              ::testing::ElementsAre("Calendar clock takes UTC or local time!"));
}

TEST_F(StopWatch, WithoutAClockItReportsAndNeverStarts) {
  StopWatchC none(static_cast<ClockTypeE>(4), CLOCKREF_NONE);
  EXPECT_EQ(2U, log.assertionCount());
  log.clear();
  none.start();
  EXPECT_FALSE(none.isStarted());
  EXPECT_THAT(log.assertionTexts(), ::testing::ElementsAre("Stop watch has no clock!"));
  none.stop();
  EXPECT_THAT(log.assertionTexts(), ::testing::ElementsAre("Stop watch has no clock!",
                                                           "Stop watch is stopped without a start!",
                                                           "Stop watch has no clock!"));
  EXPECT_EQ(0, none.elapsed());
  EXPECT_THAT(
      log.assertionTexts(),
      ::testing::ElementsAre("Stop watch has no clock!", "Stop watch is stopped without a start!",
                             "Stop watch has no clock!", "Stop watch has no clock!",
                             "Stop watch reads zero at its end!"));
  StopWatchC null(boost::shared_ptr<ClockI<boost::nano>>{});
  null.start();
  EXPECT_FALSE(null.isStarted());
  EXPECT_EQ(6U, log.assertionCount());
}

}  // namespace
}  // namespace KTX::TIM::TEST
