#include "currenttime/KTX_TIM_SysTimeOffset.h"

#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <boost/date_time/gregorian/greg_year.hpp>
#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/KTX_TIM_FakeClock.h"
#include "common/KTX_TIM_LogCapture.h"
#include "currenttime/KTX_TIM_FilterTraces.h"

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr std::int64_t THURSDAY_MS = 1709769600000;  // 2024-03-07 00:00:00 UTC, day 60376
constexpr double THURSDAY_MJD = 60376.0;
constexpr std::int64_t LOWEST = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t HIGHEST = std::numeric_limits<std::int64_t>::max();

// Midnight and some milliseconds, as the calendar form gives them.
double dayNumberAt(std::int64_t msOfDay) {
  return THURSDAY_MJD + static_cast<double>(msOfDay / 3600000) / 24.0 +
         static_cast<double>(msOfDay / 60000 % 60) / 1440.0 +
         static_cast<double>(msOfDay / 1000 % 60) / 86400.0 +
         static_cast<double>(msOfDay % 1000) / 86400000.0;
}

class SysTimeOffset : public ::testing::Test {
 protected:
  SysTimeOffset() { seedAt(0); }

  void seedAt(std::int64_t msOfDay,
              std::int64_t thresholdMs = 51,
              std::int64_t maxUncertaintyMs = 55) {
    utc = boost::make_shared<FakeClockC>(THURSDAY_MS + msOfDay, CLOCKTYPE_POSIX, CLOCKREF_UTC);
    offset = std::make_unique<SysTimeOffsetT>(utc, steady, thresholdMs, 60000, maxUncertaintyMs);
    log.clear();
  }

  void observe(std::int64_t msOfDay, std::int64_t noiseMs) {
    offset->update(dayNumberAt(msOfDay), noiseMs, isReleased, differenceMs);
  }

  std::vector<LogCaptureC::EntryC> decisionEntries() const {
    std::vector<LogCaptureC::EntryC> found;
    for (LogCaptureC::EntryC const& entry : log.entries()) {
      if (entry.text.compare(0, 32, "KTX::TIM::SysTimeOffsetT::update") == 0 &&
          entry.text.find("observation: Time") == std::string::npos) {
        found.push_back(entry);
      }
    }
    return found;
  }

  std::vector<std::string> decisions() const {
    std::vector<std::string> texts;
    for (LogCaptureC::EntryC const& entry : decisionEntries()) {
      texts.push_back(entry.text.substr(32));
    }
    return texts;
  }

  LogCaptureC log;
  boost::shared_ptr<FakeClockC> utc;
  boost::shared_ptr<FakeClockC> steady = boost::make_shared<FakeClockC>(1000000);
  std::unique_ptr<SysTimeOffsetT> offset;
  bool isReleased = true;
  std::int64_t differenceMs = -77;
};

TEST_F(SysTimeOffset, SeedsTheMappingFromBothClocks) {
  struct {
    std::int64_t msOfDay;
    double mjd;
  } const cases[] = {{0, 60376.0}, {43200000, 60376.5}, {29345123, dayNumberAt(29345123)}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.msOfDay);
    seedAt(c.msOfDay);
    EXPECT_EQ(c.mjd, offset->getCurrentSysTime().mjd);
    EXPECT_EQ(1000000, offset->getCurrentSysTime().steadyMs);
  }
}

TEST_F(SysTimeOffset, ReadsTheSteadyClockBeforeTheCalendar) {
  std::vector<std::string> journal;
  auto const calendar = boost::make_shared<FakeClockC>(THURSDAY_MS, CLOCKTYPE_POSIX, CLOCKREF_UTC);
  calendar->recordReadsIn(journal, "calendar");
  steady->recordReadsIn(journal, "steady");
  SysTimeOffsetT const built(calendar, steady, 51, 60000, 55);
  EXPECT_THAT(journal, ElementsAre("steady", "calendar"));
}

TEST_F(SysTimeOffset, TakesALocalCalendarUnshifted) {
  auto const local =
      boost::make_shared<FakeClockC>(THURSDAY_MS + 3600000, CLOCKTYPE_POSIX, CLOCKREF_LOCAL);
  SysTimeOffsetT const built(local, steady, 51, 60000, 55);
  EXPECT_EQ(dayNumberAt(3600000), built.getCurrentSysTime().mjd);
}

TEST_F(SysTimeOffset, CountsFromTheEpochOfTheClock) {
  utc->setEpoch(boost::posix_time::ptime(boost::gregorian::date(1980, 1, 6)));
  utc->set(86400000);
  SysTimeOffsetT const built(utc, steady, 51, 60000, 55);
  EXPECT_EQ(44245.0, built.getCurrentSysTime().mjd);
  EXPECT_EQ(0u, log.assertionCount());
}

TEST_F(SysTimeOffset, AssertsOnACalendarWithoutEpochAndTakes1970) {
  FakeClockC::DurationT const reading(86400000);
  auto const counter = boost::make_shared<FakeClockC>(reading.count());
  SysTimeOffsetT const built(counter, steady, 51, 60000, 55);
  EXPECT_THAT(log.assertionTexts(), ::testing::ElementsAre("System clock has no epoch!"));
  EXPECT_EQ(40588.0, built.getCurrentSysTime().mjd);
}

TEST_F(SysTimeOffset, TakesCalendarReadingsOfTheYears1400To9999) {
  struct {
    std::int64_t utcMs;
    bool isAccepted;
    double mjd;
  } const cases[] = {
      {-1, true, 40586 + 23 / 24.0 + 59 / 1440.0 + 59 / 86400.0 + 999 / 86400000.0},
      {253402300799999, true, 2973483 + 23 / 24.0 + 59 / 1440.0 + 59 / 86400.0 + 999 / 86400000.0},
      {253402300800000, false, 0},
      {-17987443200000, true, -167601.0},
      {-17987443200001, false, 0},
      {HIGHEST, false, 0},
      {LOWEST, false, 0}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.utcMs);
    utc->set(c.utcMs);
    if (c.isAccepted) {
      log.setThreshold("Time", LogCaptureC::OFF);
      SysTimeOffsetT const built(utc, steady, 51, 60000, 55);
      EXPECT_EQ(c.mjd, built.getCurrentSysTime().mjd);
    } else {
      EXPECT_THROW(SysTimeOffsetT(utc, steady, 51, 60000, 55), boost::gregorian::bad_year);
    }
  }
}

TEST_F(SysTimeOffset, AssertsOnEachNumberOutOfRange) {
  std::string const threshold = "Change threshold is not positive!";
  std::string const period = "Period is not positive!";
  std::string const limit = "Uncertainty limit is not positive!";
  std::string const tooLow = "Uncertainty limit is not above the floor of the estimate!";
  struct {
    std::int64_t thresholdMs;
    std::int64_t periodMs;
    std::int64_t maxUncertaintyMs;
    std::vector<std::string> assertions;
  } const cases[] = {{51, 60000, 55, {}},
                     {1, 1, 21, {}},
                     {51, 60000, 20, {tooLow}},
                     {51, 60000, 1, {tooLow}},
                     {51, 60000, 0, {limit, tooLow}},
                     {51, 60000, -1, {limit, tooLow}},
                     {0, 60000, 55, {threshold}},
                     {-1, 60000, 55, {threshold}},
                     {51, 0, 55, {period}},
                     {51, -1, 55, {period}},
                     {0, 0, 0, {threshold, period, limit, tooLow}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message()
                 << c.thresholdMs << " " << c.periodMs << " " << c.maxUncertaintyMs);
    log.clear();
    SysTimeOffsetT const built(utc, steady, c.thresholdMs, c.periodMs, c.maxUncertaintyMs);
    EXPECT_EQ(c.assertions, log.assertionTexts());
    EXPECT_EQ(THURSDAY_MJD, built.getCurrentSysTime().mjd);
  }
}

TEST_F(SysTimeOffset, ReleasesAChangeAboveTheThreshold) {
  struct {
    std::int64_t seedMsOfDay;
    std::int64_t observedMsOfDay;
    bool isReleased;
  } const cases[] = {{0, 0, false}, {0, 50, false},     {0, 51, false},
                     {0, 52, true}, {50, 0, false},     {51, 0, false},
                     {52, 0, true}, {0, 3600000, true}, {3600000, 0, true}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.seedMsOfDay << " " << c.observedMsOfDay);
    seedAt(c.seedMsOfDay);
    observe(c.observedMsOfDay, 0);
    EXPECT_EQ(c.observedMsOfDay - c.seedMsOfDay, differenceMs);
    EXPECT_EQ(c.isReleased, isReleased);
    EXPECT_EQ(dayNumberAt(c.isReleased ? c.observedMsOfDay : c.seedMsOfDay),
              offset->getCurrentSysTime().mjd);
  }
}

// Differences of day numbers lose a millisecond in many instants; the sum's written order decides
// in which.
TEST_F(SysTimeOffset, TheDifferenceKeepsItsOrderOfRounding) {
  struct {
    std::int64_t seedMsOfDay;
    std::int64_t changeMs;
    std::int64_t differenceMs;
    bool isReleased;
  } const cases[] = {{9456105, 52, 52, true}, {29345000, 51, 51, false}, {41002963, 52, 51, false}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.seedMsOfDay);
    seedAt(c.seedMsOfDay);
    observe(c.seedMsOfDay + c.changeMs, 0);
    EXPECT_EQ(c.differenceMs, differenceMs);
    EXPECT_EQ(c.isReleased, isReleased);
  }
}

TEST_F(SysTimeOffset, TheThresholdIsComparedThroughDays) {
  struct {
    std::int64_t thresholdMs;
    bool isReleased;
  } const cases[] = {{54, true},  {61, true},  {93, true},  {107, true}, {108, true},  {122, true},
                     {47, false}, {62, false}, {94, false}, {95, false}, {109, false}, {51, false}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.thresholdMs);
    seedAt(0, c.thresholdMs);
    observe(c.thresholdMs, 0);
    ASSERT_EQ(c.thresholdMs, differenceMs);
    EXPECT_EQ(c.isReleased, isReleased);
  }
}

TEST_F(SysTimeOffset, AnUncertainEstimateIsRefusedAndKept) {
  observe(100, 56);
  EXPECT_FALSE(isReleased);
  EXPECT_EQ(99, differenceMs);
  EXPECT_EQ(THURSDAY_MJD, offset->getCurrentSysTime().mjd);
  EXPECT_THAT(decisions(),
              ElementsAre(": Time estimation uncertainty too high for time correction: 55ms > "
                          "55ms\n"));
  observe(100, 56);
  EXPECT_TRUE(isReleased);
}

TEST_F(SysTimeOffset, ANoiseOf55MsIsCertainEnoughAtOnce) {
  observe(100, 55);
  EXPECT_TRUE(isReleased);
  EXPECT_EQ(99, differenceMs);
}

TEST_F(SysTimeOffset, TheUncertaintyLimitItselfIsCertainEnough) {
  seedAt(0, 51, 21);
  observe(100, 0);  // leaves 20 ms
  EXPECT_TRUE(isReleased);
  seedAt(0, 51, 20);
  observe(100, 0);
  EXPECT_TRUE(isReleased);
  seedAt(0, 51, 19);
  observe(100, 0);
  EXPECT_FALSE(isReleased);
}

TEST_F(SysTimeOffset, AResidualBeyond300TimesTheNoiseMakesTheObservationExact) {
  struct {
    std::int64_t noiseMs;
    std::int64_t residualMs;
    char const* line;
  } const cases[] = {
      {10, 3000, ""},
      {10, 3001, "(|3001ms| > 3000ms)"},
      {13, 3900, ""},
      {13, 3901, "(|3901ms| > 3900ms)"},
      {19, 5699, ""},
      {19, 5700, "(|5700ms| > 5699ms)"},
      {20, 6000, ""},
      {1, 300, ""},
      {1, 301, "(|301ms| > 300ms)"},
      {0, 0, ""},
      {0, 1, "(|1ms| > 0ms)"},
      {-10, 0, "(|0ms| > -3000ms)"},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.noiseMs << " " << c.residualMs);
    seedAt(0);
    observe(c.residualMs, c.noiseMs);
    std::string const line(c.line);
    if (line.empty()) {
      EXPECT_THAT(decisions(), ::testing::Not(::testing::Contains(HasSubstr("residual"))));
    } else {
      EXPECT_EQ(": residual too high to be caused by observation noise " + line +
                    ". Observation will reset the filter\n\n",
                decisions().front());
      EXPECT_EQ(c.residualMs, differenceMs);
    }
  }
}

TEST_F(SysTimeOffset, TheLimitIsOneRoundingLowForSomeNoises) {
  struct {
    std::int64_t noiseMs;
    bool isReset;
  } const cases[] = {{19, true},   {21, true},   {38, true},   {42, true},   {47, true},
                     {71, true},   {1, false},   {2, false},   {3, false},   {5, false},
                     {10, false},  {20, false},  {50, false},  {55, false},  {56, false},
                     {100, false}, {200, false}, {300, false}, {500, false}, {1000, false}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.noiseMs);
    seedAt(0);
    observe(c.noiseMs * 300, c.noiseMs);
    EXPECT_EQ(c.isReset, !decisions().empty() && decisions().front().find("residual") == 2);
  }
}

TEST_F(SysTimeOffset, AnOutlierMovesTheEstimateAlsoWhenNothingIsLogged) {
  log.setThreshold(LogCaptureC::OFF);
  observe(3001, 10);
  EXPECT_TRUE(isReleased);
  EXPECT_EQ(3001, differenceMs);
  EXPECT_EQ(dayNumberAt(3001), offset->getCurrentSysTime().mjd);
}

TEST_F(SysTimeOffset, TheDifferenceIsAgainstTheMappingAndNotThePrediction) {
  observe(40, 0);
  EXPECT_FALSE(isReleased);
  EXPECT_EQ(40, differenceMs);
  observe(40, 0);  // now equals the prediction
  EXPECT_EQ(40, differenceMs);
  observe(52, 0);
  EXPECT_TRUE(isReleased);
  EXPECT_EQ(52, differenceMs);
  observe(52, 0);
  EXPECT_EQ(0, differenceMs);
}

TEST_F(SysTimeOffset, TheMappingMovesWithTheSteadyClock) {
  steady->advanceMs(10000);
  observe(10000, 0);
  EXPECT_EQ(0, differenceMs);
  steady->advanceMs(-20000);
  observe(10052, 0);
  EXPECT_EQ(20052, differenceMs);
  EXPECT_TRUE(isReleased);
  EXPECT_EQ(1000000 - 10000, offset->getCurrentSysTime().steadyMs);
}

TEST_F(SysTimeOffset, ExtremeObservationsSaturate) {
  log.setThreshold(LogCaptureC::OFF);
  offset->update(1e300, 0, isReleased, differenceMs);
  EXPECT_EQ(HIGHEST, differenceMs);
  EXPECT_TRUE(isReleased);
  seedAt(0);
  offset->update(-1e300, HIGHEST, isReleased, differenceMs);
  EXPECT_EQ(LOWEST, differenceMs);
  EXPECT_FALSE(isReleased);
  seedAt(0);
  offset->update(-1e300, 0, isReleased, differenceMs);
  EXPECT_EQ(LOWEST, differenceMs);
  EXPECT_TRUE(isReleased);
  seedAt(0);
  offset->update(std::numeric_limits<double>::quiet_NaN(), 10, isReleased, differenceMs);
  EXPECT_EQ(0, differenceMs);
  EXPECT_FALSE(isReleased);
}

TEST_F(SysTimeOffset, EveryDecisionFollowsTheRecordedRuns) {
  log.setThreshold(LogCaptureC::OFF);
  int trace = -1;
  for (FilterStepC const& step : FILTER_STEPS) {
    SCOPED_TRACE(::testing::Message() << "trace " << step.trace << " at " << step.steadyMs);
    if (step.trace != trace) {
      trace = step.trace;
      utc->set(step.seedUtcMs);
      steady->set(step.seedSteadyMs);
      offset = std::make_unique<SysTimeOffsetT>(utc, steady, 51, 60000, 55);
    }
    steady->set(step.steadyMs);
    offset->update(step.observedMjd, step.noiseMs, isReleased, differenceMs);
    ASSERT_EQ(step.isReleased, isReleased);
    ASSERT_EQ(step.differenceMs, differenceMs);
    ASSERT_EQ(step.mappingMjd, offset->getCurrentSysTime().mjd);
    ASSERT_EQ(step.mappingSteadyMs, offset->getCurrentSysTime().steadyMs);
  }
}

TEST_F(SysTimeOffset, LogsAReleasedCorrectionInOrder) {
  observe(100, 10);
  std::vector<std::string> starts;
  for (auto const& entry : log.entries()) {
    starts.push_back(entry.channel + "/" + std::to_string(entry.level) + " " +
                     entry.text.substr(0, 54));
  }
  EXPECT_THAT(
      starts,
      ElementsAre(
          "TimeEstimator/1 predict estimate: Time: 60376.000000000000000d @ 10000",
          "TimeEstimator/4 KTX::TIM::SysTimeOffsetT::update - observation: Time: ",
          "TimeEstimator/1 predict estimate: Time: 60376.000000000000000d @ 10000",
          "TimeEstimator/4 new observation : Time: 60376.000001157408406d @ 10000",
          "TimeEstimator/4 new estimate    : Time: 60376.000001157401130d @ 10000",
          "TimeEstimatorData/4 STT-D:\t0\tOBS-A:\t60376.000001157408406\tOBS-R:\t100\tOBS-N",
          "TimeEstimator/4 KTX::TIM::SysTimeOffsetT::update: current time changes",
          "Time/3 New sys time: Time: 60376.000001157401130d @ 1000000ms"));
}

TEST_F(SysTimeOffset, LogsThroughAFormatAndEndsWithALineBreakOfItsOwn) {
  observe(100, 0);
  for (auto const& entry : log.entries()) {
    bool const isEstimators = entry.text.compare(0, 3, "KTX") != 0 && entry.channel != "Time";
    EXPECT_EQ(isEstimators ? entry.text : "%s\n", entry.format);
  }
  EXPECT_EQ(
      "KTX::TIM::SysTimeOffsetT::update - observation: Time: 60376.000001157408406d @ "
      "1000000ms (2024-03-07 00:00:00:100000) Noise (std. dev.): 0.000000000000000d "
      "(0ms)\n\n",
      log.lines("TimeEstimator")[1]);
  EXPECT_THAT(decisions(),
              ElementsAre(": residual too high to be caused by observation noise (|100ms| > 0ms). "
                          "Observation will reset the filter\n\n",
                          ": current time changes: |100ms| > 51ms\n"));
  EXPECT_THAT(log.lines("Time"),
              ElementsAre("New sys time: Time: 60376.000001157408406d @ 1000000ms (2024-03-07 "
                          "00:00:00:100000)\n"));
}

TEST_F(SysTimeOffset, LogsThatNothingChanges) {
  observe(0, 10);
  EXPECT_EQ(0, differenceMs);
  EXPECT_THAT(decisions(),
              ElementsAre(": current time does not change: |new - current = 0ms| <= 51ms\n"));
  log.clear();
  offset->update(dayNumberAt(86400000 - 51) - 1.0, 0, isReleased, differenceMs);
  EXPECT_EQ(": current time does not change: |new - current = -51ms| <= 51ms\n",
            decisions().back());
}

TEST_F(SysTimeOffset, EachLineAsksForItsOwnLevel) {
  struct {
    std::int32_t threshold;
    std::int64_t msOfDay;
    std::int64_t noiseMs;
    std::vector<std::string> lines;
  } const cases[] = {
      {4, 100, 0, {": residual", ": current time changes"}}, {5, 100, 0, {}},
      {3, 0, 0, {": current time does not change"}},         {4, 0, 0, {}},
      {3, 100, 100, {": Time estimation uncertainty"}},      {4, 100, 100, {}},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.threshold << " " << c.msOfDay << " " << c.noiseMs);
    seedAt(0);
    log.setThreshold("TimeEstimator", c.threshold);
    observe(c.msOfDay, c.noiseMs);
    auto const found = decisionEntries();
    ASSERT_EQ(c.lines.size(), found.size());
    EXPECT_EQ(0U, log.unaskedCount());
    for (std::size_t i = 0; i < found.size(); ++i) {
      EXPECT_EQ(32u, found[i].text.find(c.lines[i])) << found[i].text;
      EXPECT_EQ(c.threshold, found[i].level);
    }
  }
}

TEST_F(SysTimeOffset, ANewSystemTimeIsComposedOnlyWhereItsLevelIsEnabled) {
  seedAt(0);
  log.setThreshold("Time", 4);
  log.clear();
  observe(100, 0);
  EXPECT_TRUE(isReleased);
  EXPECT_EQ(0U, log.unaskedCount());
  log.setThreshold("Time", 3);
  observe(200, 0);
  EXPECT_EQ(1U, log.count("Time"));
}

TEST_F(SysTimeOffset, TheVarianceGrowsOncePerUpdate) {
  steady->advanceMs(86400000);
  log.setThreshold("TimeEstimatorData", LogCaptureC::OFF);
  observe(0, 1000000);
  auto const lines = log.lines("TimeEstimator");
  ASSERT_GE(lines.size(), 3u);
  EXPECT_THAT(lines[0], HasSubstr("(7071ms)"));
  EXPECT_EQ(lines[0], lines[2]);
}

// The caller of a step that threw puts the filter back.
TEST_F(SysTimeOffset, AStateThatWasKeptPutsAThrowingStepBack) {
  seedAt(0);
  SysTimeOffsetT::StateC const before = offset->state();
  log.setHook([](LogCaptureC::EntryC const& entry) {
    if (entry.text.find("New sys time") != std::string::npos) {
      throw std::runtime_error("log");
    }
  });
  EXPECT_THROW(observe(100, 0), std::runtime_error);
  log.setHook({});
  EXPECT_NE(THURSDAY_MJD, offset->getCurrentSysTime().mjd);
  offset->setState(before);
  EXPECT_EQ(THURSDAY_MJD, offset->getCurrentSysTime().mjd);
  log.clear();
  observe(100, 0);
  EXPECT_TRUE(isReleased);
  EXPECT_THAT(log.lines("TimeEstimator").front(), HasSubstr("(5000ms)"));
}

}  // namespace
}  // namespace KTX::TIM::TEST
