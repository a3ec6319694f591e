#include "KTX/TIM/KTX_TIM_PresentStatus.h"

#include <cmath>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_TimeEstimate.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "common/KTX_TIM_FakePresent.h"
#include "common/KTX_TIM_LogCapture.h"
#include "common/KTX_TIM_PlainFilter.h"

namespace KTX::TIM::TEST {
namespace {

static_assert(offsetof(PresentStatusC, steadyMs) == 0 && offsetof(PresentStatusC, mappedMjd) == 8 &&
              offsetof(PresentStatusC, mappedSteadyMs) == 16 &&
              offsetof(PresentStatusC, sigma) == 24 &&
              offsetof(PresentStatusC, observationAgeMs) == 32 &&
              offsetof(PresentStatusC, correctionAgeMs) == 48 &&
              offsetof(PresentStatusC, unchangedCount) == 64 &&
              offsetof(PresentStatusC, tooUncertainCount) == 72 &&
              offsetof(PresentStatusC, correctedCount) == 80);

constexpr std::uint16_t WEEK = 2304;
constexpr std::uint32_t NOW_MS = 374963000;
constexpr double START_MJD = 60376.339641203703;
constexpr double START_SIGMA = 5000 / 8.64e7;

void observe(std::uint32_t aheadMs, std::int64_t noiseMs) {
  GpsC(WEEK, NOW_MS + aheadMs).makeToCurrentTime(noiseMs, 1);
}

void expectFresh(PresentStatusC const& status) {
  EXPECT_EQ(std::nullopt, status.observationAgeMs);
  EXPECT_EQ(std::nullopt, status.correctionAgeMs);
  EXPECT_EQ(0U, status.unchangedCount);
  EXPECT_EQ(0U, status.tooUncertainCount);
  EXPECT_EQ(0U, status.correctedCount);
}

class PresentStatus : public ::testing::Test {
 protected:
  FakePresentC present;
};

TEST_F(PresentStatus, OfAFreshSeedHasNoAgesAndNoCounts) {
  PresentStatusC const status = getPresentStatus();
  EXPECT_EQ(1000000, status.steadyMs);
  EXPECT_EQ(START_MJD, status.mappedMjd);
  EXPECT_EQ(1000000, status.mappedSteadyMs);
  EXPECT_EQ(START_SIGMA, status.sigma);
  expectFresh(status);
}

TEST_F(PresentStatus, CountsEachVerdictAndTellsTheAges) {
  observe(60, 56);
  PresentStatusC status = getPresentStatus();
  EXPECT_EQ(0, status.observationAgeMs);
  EXPECT_EQ(std::nullopt, status.correctionAgeMs);
  EXPECT_EQ(1U, status.tooUncertainCount);
  present.steady->advanceMs(7);
  observe(2500, 0);
  present.steady->advanceMs(1000);
  observe(3500, 10);
  observe(3500, 10);
  present.steady->advanceMs(30);
  status = getPresentStatus();
  EXPECT_EQ(1001037, status.steadyMs);
  EXPECT_EQ(1000007, status.mappedSteadyMs);
  EXPECT_EQ(30, status.observationAgeMs);
  EXPECT_EQ(1030, status.correctionAgeMs);
  EXPECT_EQ(2U, status.unchangedCount);
  EXPECT_EQ(1U, status.tooUncertainCount);
  EXPECT_EQ(1U, status.correctedCount);
}

TEST_F(PresentStatus, TheUncertaintyGrowsWithTheClockBothWays) {
  observe(0, 0);
  double const floor = 20 / 8.64e7;
  EXPECT_EQ(floor, getPresentStatus().sigma);
  for (std::int64_t const ms : {1, 86400000, -86400000}) {
    SCOPED_TRACE(ms);
    present.steady->set(1000000 + ms);
    PlainFilterC plain;
    plain.variance = floor * floor;
    plain.stateClock = 1000000;
    plain.predict(static_cast<std::uint64_t>(1000000 + ms));
    EXPECT_EQ(std::sqrt(plain.variance), getPresentStatus().sigma);
    EXPECT_EQ(ms, getPresentStatus().observationAgeMs);
  }
}

TEST_F(PresentStatus, BeginsAnewWithASeedAndWithNewClocks) {
  for (bool const hasNewClocks : {false, true}) {
    SCOPED_TRACE(hasNewClocks);
    observe(60, 56);
    observe(2500, 0);
    observe(2500, 0);
    if (hasNewClocks) {
      setSysTimeClocks(present.utc, present.steady);
    } else {
      resetSysTime();
    }
    expectFresh(getPresentStatus());
    EXPECT_EQ(START_SIGMA, getPresentStatus().sigma);
  }
}

TEST_F(PresentStatus, ReadsOnceAndChangesAndWritesNothing) {
  std::vector<TimeEstimateStepC> steps;
  boost::signals2::scoped_connection const connection =
      connectTimeEstimated([&](TimeEstimateStepC const& step) { steps.push_back(step); });
  for (bool const isAsked : {false, true}) {
    present.steady->set(1000000);
    resetSysTime();
    observe(40, 30);
    present.steady->advanceMs(3600000);
    if (isAsked) {
      LogCaptureC log;
      std::size_t const reads = present.steady->readCount();
      getPresentStatus();
      EXPECT_EQ(reads + 1, present.steady->readCount());
      EXPECT_EQ(0U, log.count());
    }
    present.steady->advanceMs(3600000);
    observe(7200040, 30);
  }
  ASSERT_EQ(4U, steps.size());
  EXPECT_EQ(steps[1].predictedSigma, steps[3].predictedSigma);
  EXPECT_EQ(steps[1].estimatedMjd, steps[3].estimatedMjd);
  EXPECT_EQ(steps[1].estimatedSigma, steps[3].estimatedSigma);
}

TEST_F(PresentStatus, AnObservationThatFailsIsNotCounted) {
  LogCaptureC log;
  log.setHook([](LogCaptureC::EntryC const&) { throw std::runtime_error("log"); });
  EXPECT_THROW(observe(2500, 0), std::runtime_error);
  log.setHook({});
  expectFresh(getPresentStatus());
  EXPECT_EQ(START_SIGMA, getPresentStatus().sigma);
}

TEST_F(PresentStatus, WhatTheClockThrowsPassesAndLeavesTheLockFree) {
  present.steady->setHook([] { throw std::runtime_error("clock"); });
  EXPECT_THROW(getPresentStatus(), std::runtime_error);
  present.steady->setHook({});
  std::thread([] { Guard const guard(getTimeLock()); }).join();
  expectFresh(getPresentStatus());
}

}  // namespace
}  // namespace KTX::TIM::TEST
