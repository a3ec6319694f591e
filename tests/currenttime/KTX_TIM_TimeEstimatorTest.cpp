#include "currenttime/KTX_TIM_TimeEstimator.h"

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "common/KTX_TIM_LogCapture.h"
#include "currenttime/KTX_TIM_FilterTraces.h"

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;

constexpr double SEED_SIGMA = 5000.0 / DAY_MS;

double dayNumber(std::uint8_t hour, std::uint8_t minute, std::uint8_t second, std::int64_t ms) {
  YmdhmsC time = YmdhmsC::zero(TIMEBASE_UTC, 1);
  time.year = 2024;
  time.month = 3;
  time.day = 7;
  time.hour = hour;
  time.minute = minute;
  time.second = second;
  time.milliseconds = ms;
  time.hundredths = static_cast<std::uint8_t>(ms / 10);
  return MjdTimeC(time).getDayNumber();
}

class TimeEstimatorTest : public ::testing::Test {
 protected:
  LogCaptureC log;
  double const seedMjd = dayNumber(8, 9, 5, 0);
  TimeEstimator estimator{5000, 20, {{seedMjd, 1000000}, SEED_SIGMA}};
};

TEST_F(TimeEstimatorTest, TheSeedHasExactlyFiveSeconds) {
  EXPECT_EQ(5.787037037037037e-05, SEED_SIGMA);
  EXPECT_EQ(0x1.e573ac901e574p-15, SEED_SIGMA);
}

TEST_F(TimeEstimatorTest, PredictAtTheSameReadingChangesNothing) {
  TimeEstimateC const predicted = estimator.predict(1000000);
  EXPECT_EQ(seedMjd, predicted.time.mjd);
  EXPECT_EQ(1000000, predicted.time.steadyMs);
  EXPECT_EQ(SEED_SIGMA, predicted.sigma);
  EXPECT_EQ(1u, log.count("TimeEstimator"));
}

TEST_F(TimeEstimatorTest, ADayAddsTheSquareOfTheDrift) {
  TimeEstimateC const later = estimator.predict(1000000 + 86400000);
  EXPECT_EQ(seedMjd + 1.0, later.time.mjd);
  EXPECT_EQ(std::sqrt(SEED_SIGMA * SEED_SIGMA + SEED_SIGMA * SEED_SIGMA), later.sigma);
  EXPECT_EQ(7071, static_cast<int>(later.sigma * DAY_MS));
}

TEST_F(TimeEstimatorTest, PredictIntoThePastMovesBackAndAddsVarianceToo) {
  TimeEstimateC const earlier = estimator.predict(1000000 - 86400000);
  EXPECT_EQ(seedMjd - 1.0, earlier.time.mjd);
  EXPECT_EQ(1000000 - 86400000, earlier.time.steadyMs);
  EXPECT_EQ(7071, static_cast<int>(earlier.sigma * DAY_MS));
}

TEST_F(TimeEstimatorTest, ElapsedTimeWrapsLikeTheClock) {
  constexpr std::int64_t LOWEST = std::numeric_limits<std::int64_t>::min();
  constexpr std::int64_t HIGHEST = std::numeric_limits<std::int64_t>::max();
  TimeEstimator wrapping(5000, 20, {{seedMjd, HIGHEST - 499}, SEED_SIGMA});
  EXPECT_EQ(seedMjd + 1000 / DAY_MS, wrapping.predict(LOWEST + 500).time.mjd);
}

TEST_F(TimeEstimatorTest, AnExactObservationIsTakenWholeDownToTheFloor) {
  double const observed = dayNumber(8, 9, 6, 123);
  TimeEstimateC const estimate = estimator.update({{observed, 1001000}, 0.0});
  EXPECT_EQ(observed, estimate.time.mjd);
  EXPECT_EQ(1001000, estimate.time.steadyMs);
  EXPECT_EQ(20.0 / DAY_MS, estimate.sigma);
  EXPECT_EQ(20.0, estimate.sigma * DAY_MS);
}

TEST_F(TimeEstimatorTest, EveryBitFollowsTheRecordedRuns) {
  std::unique_ptr<TimeEstimator> run;
  int trace = -1;
  for (FilterStepC const& step : FILTER_STEPS) {
    SCOPED_TRACE(::testing::Message() << "trace " << step.trace << " at " << step.steadyMs);
    if (step.trace != trace) {
      trace = step.trace;
      run.reset();
    }
    if (!run) {
      std::int64_t const seedSeconds = step.seedUtcMs / 1000;
      YmdhmsC seed = YmdhmsC::zero(TIMEBASE_UTC, 1);
      std::time_t const seconds = static_cast<std::time_t>(seedSeconds);
      seed.fromTm(std::gmtime(&seconds));  // NOLINT(concurrency-mt-unsafe): one thread
      seed.milliseconds = step.seedUtcMs % 1000;
      seed.hundredths = static_cast<std::uint8_t>(seed.milliseconds / 10);
      TimeEstimateC const first{{MjdTimeC(seed).getDayNumber(), step.seedSteadyMs}, SEED_SIGMA};
      run = std::make_unique<TimeEstimator>(5000, 20, first);
    }
    double const sigma = step.isOutlier ? 0.0 : static_cast<double>(step.noiseMs) / DAY_MS;
    run->predict(step.steadyMs);
    TimeEstimateC const estimate = run->update({{step.observedMjd, step.steadyMs}, sigma});
    ASSERT_EQ(step.estimateMjd, estimate.time.mjd);
    ASSERT_EQ(step.estimateSigma, estimate.sigma);
  }
}

TEST_F(TimeEstimatorTest, TracesAnObservationOnTwoChannels) {
  estimator.predict(1001000);
  estimator.update({{dayNumber(8, 9, 6, 100), 1001000}, 10 / DAY_MS});
  EXPECT_THAT(log.lines("TimeEstimator"),
              ElementsAre("predict estimate: Time: 60376.339652777780429d @ 1001000ms (2024-03-07 "
                          "08:09:06:000000) Noise (std. dev.): 0.000057870370374d (5000ms)\n",
                          "predict estimate: Time: 60376.339652777780429d @ 1001000ms (2024-03-07 "
                          "08:09:06:000000) Noise (std. dev.): 0.000057870370374d (5000ms)\n",
                          "new observation : Time: 60376.339653935188835d @ 1001000ms (2024-03-07 "
                          "08:09:06:100000) Noise (std. dev.): 0.000000115740741d (10ms)\n",
                          "new estimate    : Time: 60376.339653935181559d @ 1001000ms (2024-03-07 "
                          "08:09:06:100000) Noise (std. dev.): 0.000000231481481d (20ms)\n"));
  EXPECT_THAT(log.lines("TimeEstimatorData"),
              ElementsAre("STT-D:\t1000\tOBS-A:\t60376.339653935188835\tOBS-R:\t1100\tOBS-N:\t10\t"
                          "PRE-A:\t60376.339652777780429\tPRE-R:\t1000\t"
                          "UPD-A:\t60376.339653935181559\tUPD-R:\t1099\tUPD-N:\t20\tUPD-D:\t99\t"
                          "RES-A:\t0\t\n"));
}

TEST_F(TimeEstimatorTest, TheDataLineTruncatesDifferencesOfDayNumbers) {
  estimator.update({{dayNumber(8, 9, 5, 100), 1000000}, 1000 / DAY_MS});
  EXPECT_THAT(log.lines("TimeEstimatorData").back(),
              ::testing::HasSubstr("UPD-R:\t96\tUPD-N:\t980\tUPD-D:\t96\tRES-A:\t3\t\n"));
  TimeEstimator other(5000, 20, {{seedMjd, 1000000}, SEED_SIGMA});
  other.update({{dayNumber(8, 9, 5, 51), 1000000}, 0.0});
  EXPECT_THAT(log.lines("TimeEstimatorData").back(), ::testing::HasSubstr("OBS-R:\t50\t"));
}

TEST_F(TimeEstimatorTest, TheDataLineCountsFromTheFirstObservation) {
  estimator.update({{dayNumber(8, 9, 10, 0), 1005000}, 0.0});
  estimator.update({{dayNumber(8, 9, 15, 0), 1010000}, 0.0});
  EXPECT_THAT(log.lines("TimeEstimatorData").back(), ::testing::StartsWith("STT-D:\t10000\t"));
}

TEST_F(TimeEstimatorTest, EachTextIsItsOwnFormat) {
  estimator.update({{seedMjd, 1000000}, 0.0});
  for (auto const& entry : log.entries()) {
    EXPECT_EQ(entry.text, entry.format);
    EXPECT_EQ(entry.text.compare(0, 8, "predict ") == 0 ? 1 : 4, entry.level);
  }
  EXPECT_EQ(4u, log.count());
}

TEST_F(TimeEstimatorTest, EachLineAsksForItsOwnLevel) {
  struct {
    std::int32_t traceThreshold;
    std::int32_t dataThreshold;
    std::size_t traceLines;
    std::size_t dataLines;
  } const cases[] = {{1, 4, 3, 1}, {2, 4, 2, 1}, {4, 5, 2, 0}, {5, 4, 0, 1}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.traceThreshold << " " << c.dataThreshold);
    log.clear();
    log.setThreshold("TimeEstimator", c.traceThreshold);
    log.setThreshold("TimeEstimatorData", c.dataThreshold);
    estimator.update({{seedMjd, 1000000}, 0.0});
    EXPECT_EQ(c.traceLines, log.count("TimeEstimator"));
    EXPECT_EQ(c.dataLines, log.count("TimeEstimatorData"));
    EXPECT_EQ(0u, log.unaskedCount());
  }
}

TEST_F(TimeEstimatorTest, ADayBeyondTheCalendarStopsOnlyTheTrace) {
  TimeEstimateC const far{{2973484.5, 1000000}, 0.0};
  log.setThreshold("TimeEstimator", LogCaptureC::OFF);
  EXPECT_GT(estimator.update(far).time.mjd, 2973484.0);
  log.setThreshold("TimeEstimator", 0);
  EXPECT_ANY_THROW(estimator.predict(1000000));
}

TEST_F(TimeEstimatorTest, AssertsOnceForVarianceAndFloor) {
  TimeEstimator const broken(5000, 0, {{seedMjd, 1000000}, 0.0});
  EXPECT_THAT(log.assertionTexts(),
              ::testing::ElementsAre("Initial variance or its floor is not positive!"));
}

}  // namespace
}  // namespace KTX::TIM::TEST
