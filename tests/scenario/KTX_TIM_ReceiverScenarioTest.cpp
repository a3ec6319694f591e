#include <algorithm>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_TimeConstants.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "scenario/KTX_TIM_SimulatedRun.h"

// The bands hold for a second implementation of the filter's rules with other random numbers too.

namespace KTX::TIM::TEST {
namespace {

constexpr unsigned SEED_COUNT = 16;
constexpr int ANY = std::numeric_limits<int>::max();
constexpr std::int64_t EVENT_MS = 10 * MINUTE_MS;

// The extremes over all seeds of a scenario.
struct SummaryC {
  int firstMin = ANY;
  int firstMax = 0;
  int correctionsMin = ANY;
  int correctionsMax = 0;
  int settledCorrectionsMax = 0;
  double worstMs = 0.0;
  double rmsMinMs = 1e300;
  double rmsMaxMs = 0.0;
  std::int64_t lastBadMs = 0;
};

// Runs a scenario for every seed. What the library warns of on standard output is swallowed.
SummaryC runAll(std::string const& name, ScenarioC const& scenario) {
  SummaryC all;
  ::testing::internal::CaptureStdout();
  for (unsigned seed = 1; seed <= SEED_COUNT; ++seed) {
    RunResultC const one = SimulatedRunC(scenario, seed).run();
    all.firstMin = std::min(all.firstMin, one.firstCorrection);
    all.firstMax = std::max(all.firstMax, one.firstCorrection);
    all.correctionsMin = std::min(all.correctionsMin, one.corrections);
    all.correctionsMax = std::max(all.correctionsMax, one.corrections);
    all.settledCorrectionsMax = std::max(all.settledCorrectionsMax, one.settledCorrections);
    all.worstMs = std::max(all.worstMs, one.worstSettledMs);
    all.rmsMinMs = std::min(all.rmsMinMs, one.rmsSettledMs);
    all.rmsMaxMs = std::max(all.rmsMaxMs, one.rmsSettledMs);
    all.lastBadMs = std::max(all.lastBadMs, one.lastBadMs);
  }
  ::testing::internal::GetCapturedStdout();
  std::printf(
      "%-34s first %3d..%-3d corrections %4d..%-4d worst %7.0f ms, RMS %5.1f to %5.1f ms, last "
      "beyond "
      "75 ms at %lld s\n",
      name.c_str(), all.firstMin, all.firstMax, all.correctionsMin, all.correctionsMax, all.worstMs,
      all.rmsMinMs, all.rmsMaxMs, static_cast<long long>(all.lastBadMs / SECOND_MS));
  return all;
}

ScenarioC receiver(std::int64_t noiseMs,
                   std::int64_t intervalMs,
                   std::int64_t durationMs,
                   std::int64_t oscillatorPpm) {
  ScenarioC scenario;
  scenario.noiseMs = noiseMs;
  scenario.intervalMs = intervalMs;
  scenario.durationMs = durationMs;
  scenario.oscillatorPpm = oscillatorPpm;
  return scenario;
}

// Right at the start, ten minutes long, with one event after ten minutes.
ScenarioC withEvent(std::int64_t noiseMs, RunEventC::KindE kind, std::int64_t value) {
  ScenarioC scenario = receiver(noiseMs, SECOND_MS, 30 * MINUTE_MS, 0);
  scenario.startOffsetMs = 0;
  scenario.events = {{EVENT_MS, kind, value}};
  return scenario;
}

// 2.5 s is beyond 300 times a noise up to 8 ms: then the first observation counts as exact. Else
// the estimate must become certain to 55 ms, which takes (noise / 55 ms) squared observations.
TEST(ReceiverScenario, TheFirstCorrectionWaitsUntilTheEstimateIsCertain) {
  struct {
    std::int64_t noiseMs;
    int first;
  } const cases[] = {{1, 1}, {8, 1}, {9, 1}, {55, 1}, {56, 2}, {100, 4}, {300, 30}, {1000, 331}};
  for (auto const& c : cases) {
    std::string const name = "start, " + std::to_string(c.noiseMs) + " ms each s";
    SCOPED_TRACE(name);
    SummaryC const all = runAll(name, receiver(c.noiseMs, SECOND_MS, 6 * MINUTE_MS, 0));
    EXPECT_EQ(c.first, all.firstMin);
    EXPECT_EQ(c.first, all.firstMax);
  }
}

TEST(ReceiverScenario, AnOffsetOfHoursIsCorrectedAtTheFirstObservation) {
  for (std::int64_t const offsetMs : {5 * HOUR_MS, -7 * HOUR_MS, -40 * DAY_LENGTH_MS}) {
    ScenarioC scenario = receiver(100, SECOND_MS, 10 * MINUTE_MS, 20);
    scenario.startOffsetMs = offsetMs;
    scenario.settledMs = SECOND_MS;
    std::string const name = "start off by " + std::to_string(offsetMs / HOUR_MS) + " h";
    SCOPED_TRACE(name);
    SummaryC const all = runAll(name, scenario);
    EXPECT_EQ(1, all.firstMin);
    EXPECT_EQ(1, all.firstMax);
    EXPECT_LE(all.worstMs, 450.0);  // the first observation's own noise, taken as exact
    EXPECT_LE(all.lastBadMs, 2 * MINUTE_MS);
  }
}

TEST(ReceiverScenario, OneObservationASecondHoldsThePresent) {
  struct {
    std::int64_t noiseMs;
    std::int64_t ppm;
    double rmsMinMs;
    double rmsMaxMs;
  } const cases[] = {{1, 50, 26, 30},   {4, -50, 20, 30},  {10, 50, 14, 30},  {10, 20, 14, 30},
                     {55, 50, 14, 30},  {56, -50, 14, 30}, {100, 50, 14, 30}, {100, -50, 14, 30},
                     {100, 20, 12, 30}, {10, 5, 5, 30},    {100, 5, 5, 30},   {100, 0, 0, 30}};
  for (auto const& c : cases) {
    std::string const name =
        std::to_string(c.noiseMs) + " ms each s, " + std::to_string(c.ppm) + " ppm";
    SCOPED_TRACE(name);
    SummaryC const all = runAll(name, receiver(c.noiseMs, SECOND_MS, 2 * HOUR_MS, c.ppm));
    EXPECT_LE(all.worstMs, SETTLED_ERROR_MS);
    EXPECT_GE(all.rmsMinMs, c.rmsMinMs);
    EXPECT_LE(all.rmsMaxMs, c.rmsMaxMs);
  }
}

TEST(ReceiverScenario, GreatNoiseIsSmoothedAsFarAsTheDriftModelAllows) {
  struct {
    std::int64_t noiseMs;
    std::int64_t intervalMs;
    std::int64_t ppm;
    double worstMs;
    double rmsMaxMs;
  } const cases[] = {{300, SECOND_MS, 20, 90, 40},        {1000, SECOND_MS, 5, 180, 90},
                     {1, 10 * SECOND_MS, 50, 60, 32},     {10, 10 * SECOND_MS, 50, 60, 26},
                     {100, 10 * SECOND_MS, 50, 110, 42},  {300, 10 * SECOND_MS, 20, 150, 90},
                     {1000, 10 * SECOND_MS, 20, 500, 360}};
  for (auto const& c : cases) {
    std::string const name = std::to_string(c.noiseMs) + " ms each " +
                             std::to_string(c.intervalMs / SECOND_MS) + " s, " +
                             std::to_string(c.ppm) + " ppm";
    SCOPED_TRACE(name);
    bool const isEachSecond = c.intervalMs == SECOND_MS;
    ScenarioC scenario =
        receiver(c.noiseMs, c.intervalMs, (isEachSecond ? 2 : 12) * HOUR_MS, c.ppm);
    scenario.settledMs = isEachSecond ? 30 * MINUTE_MS : 2 * HOUR_MS;
    SummaryC const all = runAll(name, scenario);
    EXPECT_GE(all.correctionsMin, 1);
    EXPECT_LE(all.worstMs, c.worstMs);
    EXPECT_LE(all.rmsMaxMs, c.rmsMaxMs);
  }
}

// Above these noises the estimate never becomes certain to 55 ms: between two observations the
// drift model adds as much uncertainty as one takes away. The present then runs free for ever.
TEST(ReceiverScenario, RareObservationsCorrectOnlyBelowALimitOfNoise) {
  std::int64_t const before = SimulatedRunC::simulatedMs();
  struct {
    std::int64_t noiseMs;
    std::int64_t intervalMs;
    std::int64_t ppm;
    bool isCorrected;
    double worstMs;
    double rmsMaxMs;
  } const cases[] = {{10, 10 * MINUTE_MS, 50, true, 135, 60},
                     {10, 10 * MINUTE_MS, 5, true, 75, 30},
                     {55, 10 * MINUTE_MS, -20, true, 190, 55},
                     {103, 10 * MINUTE_MS, 20, true, 280, 75},
                     {104, 10 * MINUTE_MS, 20, false, 37100, 22800},
                     {300, 10 * MINUTE_MS, -5, false, 12000, 9000},
                     {56, HOUR_MS, 20, true, 340, 115},
                     {57, HOUR_MS, 20, false, 37100, 22800}};
  for (auto const& c : cases) {
    std::string const name = std::to_string(c.noiseMs) + " ms each " +
                             std::to_string(c.intervalMs / MINUTE_MS) + " min, " +
                             std::to_string(c.ppm) + " ppm";
    SCOPED_TRACE(name);
    ScenarioC scenario = receiver(c.noiseMs, c.intervalMs, 20 * DAY_LENGTH_MS, c.ppm);
    scenario.settledMs = DAY_LENGTH_MS;
    SummaryC const all = runAll(name, scenario);
    EXPECT_EQ(c.isCorrected, all.correctionsMin > 0);
    EXPECT_EQ(c.isCorrected, all.correctionsMax > 0);
    EXPECT_LE(all.worstMs, c.worstMs);
    EXPECT_LE(all.rmsMaxMs, c.rmsMaxMs);
  }
  constexpr std::int64_t YEAR_MS = 366 * DAY_LENGTH_MS;
  EXPECT_GE(SimulatedRunC::simulatedMs() - before, YEAR_MS);
}

TEST(ReceiverScenario, AStepOfASecondIsFollowed) {
  struct {
    std::int64_t noiseMs;
    std::int64_t withinMs;
  } const cases[] = {{1, SECOND_MS},      {3, SECOND_MS},  {4, SECOND_MS},
                     {10, 5 * SECOND_MS}, {55, MINUTE_MS}, {100, 130 * SECOND_MS}};
  for (std::int64_t const stepMs : {-SECOND_MS, SECOND_MS}) {
    for (auto const& c : cases) {
      std::string const name =
          "step of " + std::to_string(stepMs) + " ms, " + std::to_string(c.noiseMs) + " ms each s";
      SCOPED_TRACE(name);
      SummaryC const all = runAll(name, withEvent(c.noiseMs, RunEventC::TIME_STEP, stepMs));
      EXPECT_GE(all.lastBadMs, EVENT_MS);
      EXPECT_LT(all.lastBadMs, EVENT_MS + c.withinMs);
    }
  }
}

// The leap second is announced, so the receiver's GPS time runs on; UTC, which the mapping holds,
// steps back against the steady clock.
TEST(ReceiverScenario, AnAnnouncedLeapSecondIsFollowed) {
  struct {
    std::int64_t noiseMs;
    std::int64_t withinMs;
  } const cases[] = {{1, 2 * SECOND_MS}, {4, 2 * SECOND_MS}, {100, 130 * SECOND_MS}};
  // The new count of 19 begins 19 s into week 2305.
  constexpr std::int64_t LEAP_GPS_MS = std::int64_t{2305} * MS_PER_WEEK + 19000;
  for (auto const& c : cases) {
    std::string const name = "leap second, " + std::to_string(c.noiseMs) + " ms each s";
    SCOPED_TRACE(name);
    ScenarioC scenario = receiver(c.noiseMs, SECOND_MS, 30 * MINUTE_MS, 0);
    scenario.startGpsMs = LEAP_GPS_MS - EVENT_MS;
    scenario.startOffsetMs = 0;
    scenario.settledMs = EVENT_MS + c.withinMs;
    ASSERT_EQ(0u, setUtcLeapSecond({LEAPSECOND_FORCED, 18, 19, 2304, 7, true}, false));
    SummaryC const all = runAll(name, scenario);
    EXPECT_EQ(0u, setUtcLeapSecond(withdrawForcedRecord(), false));
    EXPECT_LE(all.worstMs, SETTLED_ERROR_MS);
    EXPECT_GE(all.lastBadMs, EVENT_MS - SECOND_MS);
  }
}

TEST(ReceiverScenario, ASuspendedPcIsCorrected) {
  struct {
    std::int64_t noiseMs;
    std::int64_t sleepMs;
    std::int64_t withinMs;
  } const cases[] = {{10, HOUR_MS, 2 * SECOND_MS},
                     {10, 2 * SECOND_MS, 10 * SECOND_MS},
                     {100, DAY_LENGTH_MS, 3 * MINUTE_MS},
                     {100, 20 * SECOND_MS, 5 * MINUTE_MS}};
  for (auto const& c : cases) {
    std::string const name = "asleep for " + std::to_string(c.sleepMs / SECOND_MS) + " s, " +
                             std::to_string(c.noiseMs) + " ms each s";
    SCOPED_TRACE(name);
    ScenarioC scenario = withEvent(c.noiseMs, RunEventC::SUSPEND, c.sleepMs);
    scenario.durationMs += c.sleepMs;
    SummaryC const all = runAll(name, scenario);
    EXPECT_GE(all.lastBadMs, EVENT_MS);
    EXPECT_LT(all.lastBadMs, EVENT_MS + c.sleepMs + c.withinMs);
  }
}

TEST(ReceiverScenario, WithoutAReceiverThePresentRunsOnTheOscillator) {
  struct {
    std::int64_t gapMs;
    std::int64_t ppm;
    double worstMs;
  } const cases[] = {{6 * HOUR_MS, 20, 500}, {3 * DAY_LENGTH_MS, 5, 1400}, {HOUR_MS, -50, 260}};
  for (auto const& c : cases) {
    std::string const name =
        "silent for " + std::to_string(c.gapMs / HOUR_MS) + " h, " + std::to_string(c.ppm) + " ppm";
    SCOPED_TRACE(name);
    ScenarioC scenario = receiver(10, 10 * SECOND_MS, c.gapMs + 2 * HOUR_MS, c.ppm);
    scenario.events = {{HOUR_MS, RunEventC::GAP, c.gapMs}};
    SummaryC const all = runAll(name, scenario);
    double const driftMs =
        static_cast<double>(c.gapMs) * static_cast<double>(c.ppm < 0 ? -c.ppm : c.ppm) * 1e-6;
    EXPECT_GE(all.worstMs, driftMs - SETTLED_ERROR_MS);
    EXPECT_LE(all.worstMs, c.worstMs);
    EXPECT_LE(all.lastBadMs, HOUR_MS + c.gapMs + MINUTE_MS);
  }
}

// One wrong observation beyond 300 times the noise takes the present with it, and the next one
// back.
TEST(ReceiverScenario, ASingleOutlierIsBelieved) {
  struct {
    std::int64_t noiseMs;
    std::int64_t outlierMs;
    double worstMinMs;
    double worstMaxMs;
    std::int64_t withinMs;
  } const cases[] = {{10, 10000, 9900, 10100, 3 * SECOND_MS},
                     {10, 2000, 1500, 1800, 10 * SECOND_MS},
                     {100, 40000, 39000, 41000, 3 * MINUTE_MS},
                     {100, 2000, 51, 140, 2 * MINUTE_MS},
                     {100, 1000, 0, 75, 0}};
  for (auto const& c : cases) {
    std::string const name = "outlier of " + std::to_string(c.outlierMs) + " ms, " +
                             std::to_string(c.noiseMs) + " ms each s";
    SCOPED_TRACE(name);
    ScenarioC scenario = withEvent(c.noiseMs, RunEventC::OUTLIER, c.outlierMs);
    scenario.settledMs = 5 * MINUTE_MS;
    SummaryC const all = runAll(name, scenario);
    EXPECT_GE(all.worstMs, c.worstMinMs);
    EXPECT_LE(all.worstMs, c.worstMaxMs);
    EXPECT_LE(all.lastBadMs, EVENT_MS + c.withinMs);
  }
}

TEST(ReceiverScenario, TemperatureStepsOfTheOscillatorAreFollowed) {
  ScenarioC scenario = receiver(50, SECOND_MS, 3 * HOUR_MS, 50);
  std::int64_t ppm = 50;
  for (std::int64_t atMs = 20 * MINUTE_MS; atMs < scenario.durationMs; atMs += 20 * MINUTE_MS) {
    ppm = ppm == 50 ? -50 : (ppm == -50 ? -5 : 50);
    scenario.events.push_back({atMs, RunEventC::OSCILLATOR, ppm});
  }
  SummaryC const all = runAll("temperature steps, 50 ms each s", scenario);
  EXPECT_LE(all.worstMs, SETTLED_ERROR_MS);
  EXPECT_LE(all.rmsMaxMs, 30.0);
}

TEST(ReceiverScenario, OthersMaySetTheCalendarClockOfThePc) {
  ScenarioC scenario = receiver(20, SECOND_MS, HOUR_MS, 20);
  scenario.events = {{20 * MINUTE_MS, RunEventC::CALENDAR, 3 * HOUR_MS},
                     {30 * MINUTE_MS, RunEventC::CALENDAR, -9 * HOUR_MS},
                     {40 * MINUTE_MS, RunEventC::CALENDAR, 700}};
  SummaryC const all = runAll("calendar clock set by others", scenario);
  EXPECT_LE(all.worstMs, SETTLED_ERROR_MS);
}

}  // namespace
}  // namespace KTX::TIM::TEST
