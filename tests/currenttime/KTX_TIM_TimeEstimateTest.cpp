#include "KTX/TIM/KTX_TIM_TimeEstimate.h"

#include <cmath>
#include <cstddef>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_PresentStatus.h"
#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "common/KTX_TIM_FakePresent.h"
#include "common/KTX_TIM_LogCapture.h"
#include "common/KTX_TIM_PlainFilter.h"
#include "currenttime/KTX_TIM_TimeText.h"
#include "support/KTX_TIM_Numeric.h"
#include "values/KTX_TIM_TestSeed.h"

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;

// Callers in other modules depend on the order.
static_assert(std::is_standard_layout_v<TimeEstimateStepC>);
static_assert(sizeof(TimeVerdictE) == 4 && TIMEVERDICT_UNCHANGED == 0 &&
              TIMEVERDICT_TOO_UNCERTAIN == 1 && TIMEVERDICT_CORRECTED == 2);
static_assert(offsetof(TimeEstimateStepC, number) == 0 &&
              offsetof(TimeEstimateStepC, steadyMs) == 8 &&
              offsetof(TimeEstimateStepC, observedMjd) == 16 &&
              offsetof(TimeEstimateStepC, observedSigma) == 24 &&
              offsetof(TimeEstimateStepC, predictedMjd) == 32 &&
              offsetof(TimeEstimateStepC, predictedSigma) == 40 &&
              offsetof(TimeEstimateStepC, estimatedMjd) == 48 &&
              offsetof(TimeEstimateStepC, estimatedSigma) == 56 &&
              offsetof(TimeEstimateStepC, correction) == 64 &&
              offsetof(TimeEstimateStepC, differenceMs) == 72 &&
              offsetof(TimeEstimateStepC, startMjd) == 80 &&
              offsetof(TimeEstimateStepC, startSteadyMs) == 88 &&
              offsetof(TimeEstimateStepC, mappedMjd) == 96 &&
              offsetof(TimeEstimateStepC, mappedSteadyMs) == 104 &&
              offsetof(TimeEstimateStepC, verdict) == 112 &&
              offsetof(TimeEstimateStepC, resetByOutlier) == 116);

constexpr std::uint16_t WEEK = 2304;
constexpr std::uint32_t NOW_MS = 374963000;
constexpr double START_MJD = 60376.339641203703;

void appendMs(std::string& line, char const* label, double days) {
  line += std::string(label) + "\t" + std::to_string(truncToInt64(days * 8.64e7)) + "\t";
}

void appendDays(std::string& line, char const* label, double days) {
  line += std::string(label) + "\t";
  appendFixed15(line, days);
  line += '\t';
}

// The line that the estimator writes of the step.
std::string dataLine(TimeEstimateStepC const& step) {
  std::string line = "STT-D:\t" + std::to_string(step.steadyMs - step.startSteadyMs) + "\t";
  appendDays(line, "OBS-A:", step.observedMjd);
  appendMs(line, "OBS-R:", step.observedMjd - step.startMjd);
  appendMs(line, "OBS-N:", step.observedSigma);
  appendDays(line, "PRE-A:", step.predictedMjd);
  appendMs(line, "PRE-R:", step.predictedMjd - step.startMjd);
  appendDays(line, "UPD-A:", step.estimatedMjd);
  appendMs(line, "UPD-R:", step.estimatedMjd - step.startMjd);
  appendMs(line, "UPD-N:", step.estimatedSigma);
  appendMs(line, "UPD-D:", step.correction);
  appendMs(line, "RES-A:", step.observedMjd - step.estimatedMjd);
  return line + "\n";
}

class TimeEstimate : public ::testing::Test {
 protected:
  TimeEstimateStepC const& observe(std::uint32_t aheadMs, std::int64_t noiseMs) {
    GpsC(WEEK, NOW_MS + aheadMs).makeToCurrentTime(noiseMs, 1);
    return steps.back();
  }

  FakePresentC present;
  std::vector<TimeEstimateStepC> steps;
  boost::signals2::scoped_connection connection =
      connectTimeEstimated([this](TimeEstimateStepC const& step) { steps.push_back(step); });
};

TEST_F(TimeEstimate, TellsTheVerdictAtItsLimits) {
  struct {
    std::uint32_t aheadMs;
    std::int64_t noiseMs;
    TimeVerdictE verdict;
  } const cases[] = {{51, 0, TIMEVERDICT_UNCHANGED},   {52, 0, TIMEVERDICT_CORRECTED},
                     {53, 1, TIMEVERDICT_CORRECTED},   {51, 57, TIMEVERDICT_UNCHANGED},
                     {60, 55, TIMEVERDICT_CORRECTED},  {60, 56, TIMEVERDICT_TOO_UNCERTAIN},
                     {3000, 10, TIMEVERDICT_CORRECTED}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.aheadMs);
    SCOPED_TRACE(c.noiseMs);
    resetSysTime();
    EXPECT_EQ(c.verdict, observe(c.aheadMs, c.noiseMs).verdict);
  }
}

TEST_F(TimeEstimate, TellsAnOutlierBeyond300TimesTheNoise) {
  struct {
    std::uint32_t aheadMs;
    bool isOutlier;
  } const cases[] = {{2999, false}, {3001, true}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.aheadMs);
    resetSysTime();
    TimeEstimateStepC const& step = observe(c.aheadMs, 10);
    EXPECT_EQ(c.isOutlier, step.resetByOutlier);
    EXPECT_EQ(c.isOutlier ? 0.0 : 10 / 8.64e7, step.observedSigma);
    EXPECT_EQ(c.isOutlier, step.estimatedMjd == step.observedMjd);
    EXPECT_EQ(TIMEVERDICT_CORRECTED, step.verdict);
  }
}

TEST_F(TimeEstimate, TellsSeedAndMappingBeforeAndAfterACorrection) {
  present.steady->advanceMs(500);
  TimeEstimateStepC const kept = observe(500, 10);
  EXPECT_EQ(START_MJD, kept.startMjd);
  EXPECT_EQ(1000000, kept.startSteadyMs);
  EXPECT_EQ(START_MJD, kept.mappedMjd);
  EXPECT_EQ(1000000, kept.mappedSteadyMs);
  EXPECT_EQ(1000500, kept.steadyMs);
  TimeEstimateStepC const moved = observe(2500, 0);
  EXPECT_EQ(START_MJD, moved.startMjd);
  EXPECT_EQ(moved.estimatedMjd, moved.mappedMjd);
  EXPECT_EQ(1000500, moved.mappedSteadyMs);
  EXPECT_EQ(2000, moved.differenceMs);
}

// Bit by bit, and as the estimator's own line writes it.
TEST_F(TimeEstimate, TellsTheStepsOfTheFilterOverARandomRun) {
  LogCaptureC log;
  log.setThreshold(LogCaptureC::OFF);
  log.setThreshold("TimeEstimatorData", 4);
  std::mt19937_64 random(testSeed());
  PlainFilterC plain;
  plain.seed(START_MJD, 1000000);
  std::int64_t gpsMs = NOW_MS;
  int verdicts[3] = {};
  constexpr int STEPS = 2000;
  for (int i = 0; i < STEPS; ++i) {
    SCOPED_TRACE(i);
    std::int64_t const elapsed = static_cast<std::int64_t>(random() % 5000);
    std::int64_t noiseMs = static_cast<std::int64_t>(random() % 90);
    present.steady->advanceMs(elapsed);
    std::int64_t const clockMs = present.steady->now().count();
    gpsMs += elapsed + static_cast<std::int64_t>(random() % 301) - 150;
    gpsMs += i % 50 == 49 ? 40000 : 0;
    if (i % 100 == 0) {
      resetSysTime();
      plain.seed(START_MJD, clockMs);
      gpsMs = NOW_MS + 3000;
      noiseMs += 100;
    }
    TimeEstimateStepC const step = observe(static_cast<std::uint32_t>(gpsMs - NOW_MS), noiseMs);

    PlainFilterC predicted = plain;
    predicted.predict(static_cast<std::uint64_t>(clockMs));
    std::int64_t differenceMs = 0;
    bool const isCorrected = plain.observe(step.observedMjd, noiseMs, clockMs, differenceMs);
    EXPECT_EQ(predicted.state, step.predictedMjd);
    EXPECT_EQ(std::sqrt(predicted.variance), step.predictedSigma);
    EXPECT_EQ(plain.state, step.estimatedMjd);
    EXPECT_EQ(std::sqrt(plain.variance), step.estimatedSigma);
    EXPECT_EQ(differenceMs, step.differenceMs);
    EXPECT_EQ(isCorrected, step.verdict == TIMEVERDICT_CORRECTED);
    EXPECT_EQ(plain.mapping, step.mappedMjd);
    EXPECT_EQ(plain.mappingClock, static_cast<std::uint64_t>(step.mappedSteadyMs));
    EXPECT_EQ(log.lines("TimeEstimatorData").back(), dataLine(step));
    log.clear();
    ++verdicts[step.verdict];
  }
  EXPECT_EQ(STEPS, static_cast<int>(steps.size()));
  EXPECT_GT(verdicts[TIMEVERDICT_UNCHANGED], 0);
  EXPECT_GE(verdicts[TIMEVERDICT_TOO_UNCERTAIN], STEPS / 100);
  EXPECT_GE(verdicts[TIMEVERDICT_CORRECTED], STEPS / 50);
}

TEST_F(TimeEstimate, NumbersGoOnOverSeedsAndNewClocks) {
  std::uint64_t const first = observe(0, 10).number;
  EXPECT_GT(first, 0U);
  EXPECT_EQ(first + 1, observe(1, 10).number);
  resetSysTime();
  EXPECT_EQ(first + 2, observe(2, 10).number);
  setSysTimeClocks(present.utc, present.steady);
  EXPECT_EQ(first + 3, observe(3, 10).number);
}

TEST_F(TimeEstimate, AnObservationThatFailsIsNoStep) {
  std::uint64_t const first = observe(0, 10).number;
  YmdhmsC far = YmdhmsC::zero(TIMEBASE_UTC, 1);
  far.year = 10000;
  far.month = 1;
  far.day = 1;
  EXPECT_ANY_THROW(far.makeToCurrentTime(10));
  EXPECT_EQ(1U, steps.size());
  EXPECT_EQ(first + 1, observe(0, 10).number);
}

TEST_F(TimeEstimate, ComesBeforeTheCorrectionOfTheSameStepWithTheLockReleased) {
  std::vector<std::string> order;
  auto const note = [&order](char const* what) {
    bool isFree = false;
    std::thread([&isFree] {
      Guard const guard(getTimeLock());
      isFree = true;
    }).join();
    order.push_back(std::string(what) + (isFree ? " free" : " held"));
  };
  boost::signals2::scoped_connection const corrections =
      connectTimeCorrected([&](int, int, TimeChangeT) { note("correction"); });
  boost::signals2::scoped_connection const estimates =
      connectTimeEstimated([&](TimeEstimateStepC const&) { note("step"); });
  observe(2500, 0);
  observe(2500, 0);
  EXPECT_THAT(order, ElementsAre("step free", "correction free", "step free"));
}

TEST_F(TimeEstimate, AStepInsideALeapSecondSetterIsToldLikeItsCorrection) {
  std::vector<std::string> order;
  boost::signals2::scoped_connection const corrections =
      connectTimeCorrected([&](int, int, TimeChangeT) { order.emplace_back("correction"); });
  boost::signals2::scoped_connection const estimates =
      connectTimeEstimated([&](TimeEstimateStepC const& step) {
        order.push_back("step " + std::to_string(step.differenceMs));
      });
  setUtcLeapSecond({LEAPSECOND_FORCED, 17, 17, 1929, 7, true}, true);
  setUtcLeapSecond(withdrawForcedRecord(), false);
  EXPECT_THAT(order, ElementsAre("step 1000", "correction"));
}

TEST_F(TimeEstimate, AThrowingListenerLeavesStepAndCorrectionInForceAndAnnounced) {
  int later = 0;
  int corrections = 0;
  boost::signals2::scoped_connection const correction =
      connectTimeCorrected([&](int, int, TimeChangeT) { ++corrections; });
  boost::signals2::scoped_connection const thrower =
      connectTimeEstimated([](TimeEstimateStepC const&) { throw std::runtime_error("slot"); });
  boost::signals2::scoped_connection const last =
      connectTimeEstimated([&](TimeEstimateStepC const&) { ++later; });
  EXPECT_THROW(observe(2500, 0), std::runtime_error);
  EXPECT_EQ(1U, steps.size());
  EXPECT_EQ(0, later);
  EXPECT_EQ(1, corrections);
  EXPECT_EQ(GPSTimeC(WEEK, NOW_MS + 2500), GpsC::currentTime());
  EXPECT_EQ(1U, getPresentStatus().correctedCount);
  bool isFree = false;
  std::thread([&isFree] {
    Guard const guard(getTimeLock());
    isFree = true;
  }).join();
  EXPECT_TRUE(isFree);
}

TEST_F(TimeEstimate, WhatACorrectionsListenerThrowsReplacesWhatThatOfTheStepThrew) {
  boost::signals2::scoped_connection const step =
      connectTimeEstimated([](TimeEstimateStepC const&) { throw std::runtime_error("step"); });
  boost::signals2::scoped_connection const correction =
      connectTimeCorrected([](int, int, TimeChangeT) { throw std::logic_error("correction"); });
  EXPECT_THROW(observe(2500, 0), std::logic_error);
}

TEST_F(TimeEstimate, AListenerThatObservesIsToldOfItsOwnStepInside) {
  std::vector<std::uint64_t> numbers;
  bool hasObserved = false;
  boost::signals2::scoped_connection const observer =
      connectTimeEstimated([&](TimeEstimateStepC const&) {
        if (!hasObserved) {
          hasObserved = true;
          GpsC(WEEK, NOW_MS + 1).makeToCurrentTime(10, 1);
        }
      });
  boost::signals2::scoped_connection const last =
      connectTimeEstimated([&](TimeEstimateStepC const& step) { numbers.push_back(step.number); });
  observe(0, 10);
  ASSERT_EQ(2U, steps.size());
  EXPECT_EQ(steps[0].number + 1, steps[1].number);
  EXPECT_THAT(numbers, ElementsAre(steps[1].number, steps[0].number));
}

TEST_F(TimeEstimate, AListenerMayComeAndGo) {
  observe(0, 10);
  connection.disconnect();
  for (int i = 0; i < 3; ++i) {
    GpsC(WEEK, NOW_MS).makeToCurrentTime(10, 1);
  }
  EXPECT_EQ(1U, steps.size());
  connection =
      connectTimeEstimated([this](TimeEstimateStepC const& step) { steps.push_back(step); });
  std::uint64_t const first = steps.front().number;
  EXPECT_EQ(first + 4, observe(0, 10).number);
}

}  // namespace
}  // namespace KTX::TIM::TEST
