#include <cstdint>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/RCV/KTX_RCV_CivilTime.h"
#include "KTX/RCV/KTX_RCV_ClockSetter.h"
#include "KTX/RCV/KTX_RCV_ReceiverSession.h"
#include "KTX/RCV/KTX_RCV_TimeConversion.h"

namespace KTX::RCV::TEST {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::int64_t START_MS = 1709798945000;  // 2024-03-07T08:09:05Z
constexpr std::int64_t MAX_STEP_MS = ClockSetterC::DEFAULT_MAX_STEP_MS;

/// A PC whose clocks stand where the test puts them; its steady clock begins with START_MS.
class FakePcC : public HostPcI, public PcClockI {
 public:
  std::optional<PcReadingC> arrive(ArrivalC const& /*arrival*/) override {
    return PcReadingC{trueUnixMs() + aheadMs, steadyMs, false, true};
  }

  bool set(TIM::YmdhmsC const& utc) override {
    EXPECT_EQ(TIM::TIMEBASE_UTC, utc.timeBase);
    settings.push_back(unixMsOf(utc));
    if (acceptsTime) {
      aheadMs = unixMsOf(utc) - trueUnixMs();
    }
    return acceptsTime;
  }

  std::int64_t trueUnixMs() const { return START_MS + steadyMs; }

  std::int64_t steadyMs = 0;
  std::int64_t aheadMs = 0;  ///< of the calendar clock
  bool acceptsTime = true;
  std::vector<std::int64_t> settings;
};

class ClockRecorderC : public SessionListenerI {
 public:
  void setLeapSeconds(TIM::LeapSecondProviderI& /*provider*/) override {}
  void onInput(std::string const& /*name*/) override {}
  void onObservation(MessageReportC const& /*message*/,
                     ObservationEffectC const& /*effect*/) override {}
  void onRefusal(MessageReportC const& /*message*/, RefusalE /*refusal*/) override { ++refusals; }
  void onCorrection(CorrectionReportC const& correction) override {
    corrections.push_back(correction.changeMs);
  }
  void onClock(ClockStepC const& clock) override { clocks.push_back(clock); }
  void onLeapStatement(MessageReportC const& /*message*/, LeapReportC const& /*leap*/) override {}
  void onLeapChange(TIM::UtcLeapSecondRecord const& /*previous*/,
                    TIM::UtcLeapSecondRecord const& /*current*/) override {}
  void onOldMapping(std::int64_t /*ageMs*/) override {}
  void onSummary(SummaryReportC const& /*summary*/) override {}

  int refusals = 0;
  std::vector<std::int64_t> corrections;
  std::vector<ClockStepC> clocks;
};

/// A receiver, a PC and the run between them.
class RunC {
 public:
  explicit RunC(SessionOptionsC const& options, std::int64_t pcAheadMs = -5000000)
      : setter(pc, MAX_STEP_MS), engine(pc, options, report, nullptr) {
    engine.setClockSetter(setter);
    pc.aheadMs = pcAheadMs;
  }

  /// A message that states the true time plus errorMs arrives atMs after the start.
  void observe(std::int64_t atMs, std::int64_t errorMs = 0) {
    pc.steadyMs = atMs;
    ReceiverMessageC event;
    event.timeForm = TIMEFORM_UTC;
    event.name = "RMC";
    event.utc = civilTimeOf(pc.trueUnixMs() + errorMs);
    engine.onMessage(event);
  }

  void observeEverySecond(std::int64_t fromMs, std::int64_t toMs, std::int64_t errorMs = 0) {
    for (std::int64_t atMs = fromMs; atMs <= toMs; atMs += 1000) {
      observe(atMs, errorMs);
    }
  }

  ClockRecorderC report;
  FakePcC pc;
  ClockSetterC setter;
  ReceiverSessionC engine;
};

SessionOptionsC trusting() {
  SessionOptionsC options;
  options.usesLeapHistory = false;
  return options;
}

SessionOptionsC strict() {
  SessionOptionsC options = trusting();
  options.isStrict = true;
  return options;
}

TEST(ClockSetting, BeginsByAnyAmountAfterTenSecondsOfAgreement) {
  for (std::int64_t const lastMs : {9999, 10000, 10001}) {
    SCOPED_TRACE(lastMs);
    RunC run(strict());
    run.observeEverySecond(0, 9000);
    EXPECT_THAT(run.report.corrections, ElementsAre(5000000));
    EXPECT_THAT(run.pc.settings, IsEmpty());
    run.observe(lastMs);
    if (lastMs < 10000) {
      EXPECT_THAT(run.report.clocks, IsEmpty());
      continue;
    }
    // No correction is released at this moment.
    EXPECT_EQ(1u, run.report.corrections.size());
    EXPECT_THAT(run.pc.settings, ElementsAre(START_MS + lastMs));
    ASSERT_EQ(1u, run.report.clocks.size());
    EXPECT_EQ(CLOCK_SET, run.report.clocks[0].outcome);
    EXPECT_TRUE(run.report.clocks[0].isFirst);
    EXPECT_EQ(5000000, run.report.clocks[0].stepMs);
  }
}

TEST(ClockSetting, BeginsWhereNoCorrectionIsNeeded) {
  RunC run(strict(), 30);
  run.observeEverySecond(0, 30000);
  EXPECT_THAT(run.report.corrections, IsEmpty());
  EXPECT_THAT(run.pc.settings, ElementsAre(START_MS + 10000 + 30));
  EXPECT_EQ(0, run.report.clocks.at(0).stepMs);
}

TEST(ClockSetting, NeedsObservationsWithinHalfASecond) {
  struct {
    std::int64_t errorMs;
    std::int64_t setAtMs;
  } const cases[] = {{499, 10000}, {500, 10000}, {501, 16000}, {-500, 10000}, {-501, 16000}};
  for (auto const& c : cases) {
    for (bool const isStrict : {false, true}) {
      SCOPED_TRACE(c.errorMs);
      SCOPED_TRACE(isStrict);
      RunC run(isStrict ? strict() : trusting());
      run.observeEverySecond(0, 4000);
      run.observe(5000, c.errorMs);
      run.observeEverySecond(6000, c.setAtMs - 1000);
      EXPECT_THAT(run.pc.settings, IsEmpty());
      run.observe(c.setAtMs);
      EXPECT_EQ(1u, run.pc.settings.size());
    }
  }
}

TEST(ClockSetting, NeverBeginsWhereMessagesContradictEachOther) {
  for (bool const isStrict : {false, true}) {
    SCOPED_TRACE(isStrict);
    RunC run(isStrict ? strict() : trusting());
    for (std::int64_t atMs = 0; atMs < 120000; atMs += 1000) {
      run.observe(atMs, atMs % 5000 == 0 ? 3000 : 0);
    }
    EXPECT_THAT(run.report.clocks, IsEmpty());
  }
}

TEST(ClockSetting, WaitsUntilThePresentAgreesToo) {
  SessionOptionsC options = strict();
  options.noiseMs = 300;
  RunC run(options, -2500);
  std::int64_t atMs = 0;
  for (; run.report.corrections.empty() && atMs < 100000; atMs += 1000) {
    EXPECT_THAT(run.pc.settings, IsEmpty());
    run.observe(atMs);
  }
  EXPECT_GT(atMs, 20000);
  ASSERT_EQ(1u, run.report.clocks.size());
  EXPECT_TRUE(run.report.clocks[0].isFirst);
}

TEST(ClockSetting, FollowsReleasedCorrectionsUpToTheLargestStep) {
  struct {
    std::int64_t stepMs;
    bool isSet;
  } const cases[] = {{100, true},          {MAX_STEP_MS - 1, true},
                     {MAX_STEP_MS, true},  {MAX_STEP_MS + 1, false},
                     {-MAX_STEP_MS, true}, {-MAX_STEP_MS - 1, false}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.stepMs);
    SessionOptionsC options = trusting();
    options.noiseMs = 0;
    RunC run(options);
    run.observeEverySecond(0, 10000);
    run.observe(11000, c.stepMs);
    ASSERT_EQ(2u, run.report.clocks.size());
    ClockStepC const& step = run.report.clocks[1];
    EXPECT_EQ(c.isSet ? CLOCK_SET : CLOCK_STEP_TOO_LARGE, step.outcome);
    EXPECT_EQ(c.stepMs, step.stepMs);
    EXPECT_FALSE(step.isFirst);
    EXPECT_EQ(START_MS + 11000 + c.stepMs, unixMsOf(step.utc));
    EXPECT_EQ(c.isSet ? 2u : 1u, run.pc.settings.size());
  }
}

TEST(ClockSetting, LeavesTheClockAloneWithoutACorrection) {
  RunC run(strict());
  run.observeEverySecond(0, 60000, 20);
  EXPECT_EQ(1u, run.pc.settings.size());
  EXPECT_EQ(1u, run.report.clocks.size());
}

TEST(ClockSetting, ASmallCorrectionBringsNoLargeStep) {
  SessionOptionsC options = trusting();
  options.noiseMs = 0;
  RunC run(options);
  run.observeEverySecond(0, 10000);
  run.observe(11000, MAX_STEP_MS + 1);
  run.observe(12000, MAX_STEP_MS + 101);
  ASSERT_EQ(3u, run.report.clocks.size());
  EXPECT_EQ(CLOCK_STEP_TOO_LARGE, run.report.clocks[2].outcome);
  // Somebody else sets the clock.
  run.pc.aheadMs = MAX_STEP_MS + 101;
  run.observe(13000, MAX_STEP_MS + 201);
  EXPECT_EQ(CLOCK_SET, run.report.clocks.at(3).outcome);
  EXPECT_EQ(100, run.report.clocks.at(3).stepMs);
}

TEST(ClockSetting, ARefusedFirstSettingIsTriedAgainAfterTheNextAgreement) {
  RunC run(strict());
  run.pc.acceptsTime = false;
  run.observeEverySecond(0, 20000);
  ASSERT_EQ(1u, run.report.clocks.size());
  EXPECT_EQ(CLOCK_REFUSED, run.report.clocks[0].outcome);
  run.pc.acceptsTime = true;
  run.observe(21000);
  ASSERT_EQ(2u, run.report.clocks.size());
  EXPECT_EQ(CLOCK_SET, run.report.clocks[1].outcome);
  EXPECT_TRUE(run.report.clocks[1].isFirst);
  EXPECT_EQ(5000000, run.report.clocks[1].stepMs);
}

TEST(ClockSetting, ALaterRefusalIsReported) {
  SessionOptionsC options = trusting();
  options.noiseMs = 0;
  RunC run(options);
  run.observeEverySecond(0, 10000);
  run.pc.acceptsTime = false;
  run.observe(11000, 100);
  ASSERT_EQ(2u, run.report.clocks.size());
  EXPECT_EQ(CLOCK_REFUSED, run.report.clocks[1].outcome);
  EXPECT_FALSE(run.report.clocks[1].isFirst);
}

TEST(ClockSetting, ABurstAtTheStartNeitherSetsTheClockNorLocksItOut) {
  RunC run(strict());
  // Twenty messages waited and come at once.
  for (std::int64_t waitedS = 20; waitedS > 0; --waitedS) {
    run.observe(20 - waitedS, -1000 * waitedS);
  }
  EXPECT_EQ(19, run.report.refusals);
  run.observeEverySecond(1000, 11000);
  EXPECT_THAT(run.pc.settings, ElementsAre(START_MS + 11000));
}

TEST(ClockSetting, IsOffWithoutASetter) {
  ClockRecorderC report;
  FakePcC pc;
  ReceiverSessionC engine(pc, strict(), report, nullptr);
  for (std::int64_t atMs = 0; atMs <= 20000; atMs += 1000) {
    pc.steadyMs = atMs;
    ReceiverMessageC event;
    event.timeForm = TIMEFORM_UTC;
    event.utc = civilTimeOf(pc.trueUnixMs() + 100);
    engine.onMessage(event);
  }
  EXPECT_EQ(1u, report.corrections.size());
  EXPECT_THAT(report.clocks, IsEmpty());
  EXPECT_THAT(pc.settings, IsEmpty());
}

}  // namespace
}  // namespace KTX::RCV::TEST
