#include "evidence/KTX_RCV_WarningDetector.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "KTX/RCV/KTX_RCV_SessionOptions.h"
#include "KTX/RCV/KTX_RCV_Warning.h"

namespace KTX::RCV::TEST {
namespace {

constexpr std::int64_t DAY_MS = 86400000;
constexpr std::int64_t START_MS = 20000 * DAY_MS;
constexpr std::int64_t ROLLOVER_MS = 1024 * 7 * DAY_MS;
constexpr std::uint32_t STEP_AND_BURST = WARNING_TIME_STEP | WARNING_BURST;

ArrivedTimeC timeAt(std::int64_t unixMs, std::int64_t steadyMs) {
  return {unixMs, steadyMs, false, 0};
}

// A time that is ahead of a PC whose steady clock started with START_MS.
ArrivedTimeC aheadBy(std::int64_t aheadMs, std::int64_t steadyMs) {
  return timeAt(START_MS + steadyMs + aheadMs, steadyMs);
}

ArrivedTimeC besideHost(std::int64_t unixMs, std::int64_t hostUnixMs) {
  return {unixMs, 0, true, hostUnixMs};
}

class SignDetector : public ::testing::Test {
 protected:
  std::uint32_t use(ArrivedTimeC const& time) {
    std::uint32_t const warnings = detector.warningsOfTime(time);
    detector.useTime(time, warnings);
    return warnings;
  }

  // As with --strict.
  std::uint32_t useWithoutSigns(ArrivedTimeC const& time) {
    std::uint32_t const warnings = detector.warningsOfTime(time);
    if (warnings == WARNING_NONE) {
      detector.useTime(time, warnings);
    } else {
      detector.leaveOutTime(time, warnings);
    }
    return warnings;
  }

  WarningDetectorC detector{SessionOptionsC::DEFAULT_STEP_LIMIT_MS};
};

TEST(SignDetectorLimit, IsTheLargestStepThatIsNoSign) {
  for (std::int64_t const limitMs : {0, 500, 2000}) {
    for (std::int64_t const stepMs : {limitMs - 1, limitMs, limitMs + 1}) {
      for (std::int64_t const direction : {-1, 1}) {
        SCOPED_TRACE(stepMs * direction);
        WarningDetectorC detector(limitMs);
        detector.useTime(aheadBy(0, 0), WARNING_NONE);
        std::uint32_t const expected =
            std::llabs(stepMs) > limitMs ? WARNING_TIME_STEP : WARNING_NONE;
        EXPECT_EQ(expected, detector.warningsOfTime(aheadBy(stepMs * direction, 1000)));
      }
    }
  }
}

TEST_F(SignDetector, TheFirstTimeIsNoStepAndThatOfANewInputIsNone) {
  EXPECT_EQ(WARNING_NONE, use(aheadBy(0, 0)));
  EXPECT_EQ(WARNING_TIME_STEP, detector.warningsOfTime(aheadBy(501, 1000)));
  detector.expectStep();
  EXPECT_EQ(WARNING_NONE, use(aheadBy(DAY_MS, 1000)));
  EXPECT_EQ(WARNING_NONE, use(aheadBy(DAY_MS, 2000)));
}

TEST_F(SignDetector, AStepThatIsLeftOutIsNotMeasuredAgainst) {
  useWithoutSigns(aheadBy(0, 0));
  EXPECT_EQ(WARNING_TIME_STEP, useWithoutSigns(aheadBy(501, 1000)));
  EXPECT_EQ(WARNING_NONE, useWithoutSigns(aheadBy(0, 2000)));
}

TEST_F(SignDetector, ALastingStepIsBelievedAfterTenSeconds) {
  for (std::int64_t const lastMs : {9999, 10000, 10001}) {
    SCOPED_TRACE(lastMs);
    detector.expectStep();
    useWithoutSigns(aheadBy(0, 0));
    EXPECT_EQ(WARNING_TIME_STEP, useWithoutSigns(aheadBy(-3600000, 1000)));
    EXPECT_EQ(WARNING_TIME_STEP, useWithoutSigns(aheadBy(-3600000, 5000)));
    EXPECT_EQ(WARNING_TIME_STEP, useWithoutSigns(aheadBy(-3600000, 1000 + lastMs)));
    std::uint32_t const expected = lastMs >= 10000 ? WARNING_NONE : WARNING_TIME_STEP;
    EXPECT_EQ(expected, detector.warningsOfTime(aheadBy(-3600000, 12000)));
  }
}

TEST_F(SignDetector, ASeriesThatContradictsItselfIsNotBelieved) {
  useWithoutSigns(aheadBy(0, 0));
  for (std::int64_t steadyMs = 1000; steadyMs <= 60000; steadyMs += 1000) {
    SCOPED_TRACE(steadyMs);
    std::int64_t const aheadMs = steadyMs % 2000 == 0 ? 5000 : 5501;
    EXPECT_EQ(WARNING_TIME_STEP, useWithoutSigns(aheadBy(aheadMs, steadyMs)));
  }
}

TEST_F(SignDetector, OneTimeThatContinuesTheLastEndsASeriesThatDoesNot) {
  useWithoutSigns(aheadBy(0, 0));
  for (std::int64_t steadyMs = 1000; steadyMs <= 60000; steadyMs += 1000) {
    SCOPED_TRACE(steadyMs);
    bool const isGood = steadyMs % 9000 == 0;
    EXPECT_EQ(isGood ? WARNING_NONE : WARNING_TIME_STEP,
              useWithoutSigns(aheadBy(isGood ? 0 : 5000, steadyMs)));
  }
}

TEST_F(SignDetector, ABurstEndsWithTheTimeThatWaitedLeast) {
  useWithoutSigns(aheadBy(-10000, 0));
  for (std::int64_t waitedS = 9; waitedS >= 0; --waitedS) {
    EXPECT_EQ(STEP_AND_BURST, useWithoutSigns(aheadBy(-1000 * waitedS, 10 - waitedS)));
  }
  EXPECT_EQ(WARNING_NONE, useWithoutSigns(aheadBy(0, 1000)));
}

TEST_F(SignDetector, TheMessageAfterABurstMayBeAhead) {
  struct {
    std::int64_t aheadMs;
    std::uint32_t warnings;
  } const cases[] = {{-501, WARNING_TIME_STEP},
                     {-500, WARNING_NONE},
                     {999, WARNING_NONE},
                     {10000, WARNING_NONE},
                     {10001, WARNING_TIME_STEP}};
  for (auto const& c : cases) {
    for (bool const isStrict : {false, true}) {
      SCOPED_TRACE(c.aheadMs);
      detector.expectStep();
      use(aheadBy(-2000, 0));
      ArrivedTimeC const waited = aheadBy(-1000, 10);
      EXPECT_EQ(STEP_AND_BURST, isStrict ? useWithoutSigns(waited) : use(waited));
      EXPECT_EQ(c.warnings, use(aheadBy(c.aheadMs - 1000, 1000)));
      EXPECT_EQ(WARNING_TIME_STEP, use(aheadBy(c.aheadMs - 1000 + 501, 2000)));
    }
  }
}

TEST_F(SignDetector, ABurstIsKnownByItsGapAndItsStep) {
  struct {
    std::int64_t gapMs;
    std::int64_t stepMs;
    std::uint32_t warnings;
  } const cases[] = {
      {100, 1000, STEP_AND_BURST},  {101, 1000, WARNING_TIME_STEP}, {0, 500, WARNING_NONE},
      {0, 501, STEP_AND_BURST},     {0, 10000, STEP_AND_BURST},     {0, 10001, WARNING_TIME_STEP},
      {0, -501, WARNING_TIME_STEP}, {100, 600, WARNING_NONE},       {100, 601, STEP_AND_BURST}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.gapMs);
    SCOPED_TRACE(c.stepMs);
    detector.expectStep();
    use(timeAt(START_MS, 0));
    EXPECT_EQ(c.warnings, detector.warningsOfTime(timeAt(START_MS + c.stepMs, c.gapMs)));
  }
}

TEST_F(SignDetector, ATimeThatContinuesTheLastIsNoBurstAfterAWrongOne) {
  useWithoutSigns(aheadBy(0, 0));
  EXPECT_EQ(WARNING_TIME_STEP, useWithoutSigns(aheadBy(-5000, 1000)));
  EXPECT_EQ(WARNING_NONE, useWithoutSigns(aheadBy(0, 1010)));
}

TEST_F(SignDetector, TellsARolloverAgainstTheHost) {
  std::int64_t const host = 2 * ROLLOVER_MS;
  struct {
    std::int64_t unixMs;
    std::uint32_t warnings;
  } const cases[] = {{host, WARNING_NONE},
                     {host - ROLLOVER_MS, WARNING_WEEK_ROLLOVER},
                     {host + ROLLOVER_MS, WARNING_WEEK_ROLLOVER},
                     {host - ROLLOVER_MS - 7 * DAY_MS, WARNING_WEEK_ROLLOVER},
                     {host - ROLLOVER_MS - 7 * DAY_MS - 1, WARNING_NONE}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.unixMs - host);
    EXPECT_EQ(c.warnings, detector.warningsOfTime(besideHost(c.unixMs, host)));
    EXPECT_EQ(WARNING_NONE, detector.warningsOfTime(timeAt(c.unixMs, 0)));
  }
}

TEST_F(SignDetector, TellsARolloverAgainstADate) {
  detector.setReferenceDate(START_MS);
  struct {
    std::int64_t unixMs;
    std::uint32_t warnings;
  } const cases[] = {{START_MS, WARNING_NONE},
                     {START_MS - ROLLOVER_MS + 180 * DAY_MS, WARNING_WEEK_ROLLOVER},
                     {START_MS - ROLLOVER_MS + 180 * DAY_MS + 1, WARNING_NONE}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.unixMs - START_MS);
    EXPECT_EQ(c.warnings, detector.warningsOfTime(timeAt(c.unixMs, 0)));
  }
}

TEST_F(SignDetector, EveryTimeThatIsRolledOverShowsIt) {
  use(aheadBy(0, 0));
  EXPECT_EQ(WARNING_WEEK_ROLLOVER | WARNING_TIME_STEP, use(aheadBy(-ROLLOVER_MS, 1000)));
  for (std::int64_t steadyMs = 2000; steadyMs <= 60000; steadyMs += 1000) {
    SCOPED_TRACE(steadyMs);
    EXPECT_EQ(WARNING_WEEK_ROLLOVER, use(aheadBy(-ROLLOVER_MS, steadyMs)));
  }
  EXPECT_EQ(WARNING_TIME_STEP, use(aheadBy(0, 61000)));
  EXPECT_EQ(WARNING_NONE, use(aheadBy(0, 62000)));
}

TEST_F(SignDetector, ARolloverThatIsLeftOutIsNeverBelieved) {
  useWithoutSigns(aheadBy(0, 0));
  for (std::int64_t steadyMs = 1000; steadyMs <= 60000; steadyMs += 1000) {
    SCOPED_TRACE(steadyMs);
    EXPECT_EQ(WARNING_WEEK_ROLLOVER | WARNING_TIME_STEP,
              useWithoutSigns(aheadBy(ROLLOVER_MS, steadyMs)));
  }
  EXPECT_EQ(WARNING_NONE, useWithoutSigns(aheadBy(0, 61000)));
}

TEST_F(SignDetector, ATimeThatTheHostOrTheDateConfirmsIsNotRolledOver) {
  std::int64_t const host = START_MS + ROLLOVER_MS;
  EXPECT_EQ(WARNING_WEEK_ROLLOVER, use(besideHost(START_MS, host)));
  EXPECT_EQ(WARNING_TIME_STEP, use(besideHost(host, host)));
  detector.expectStep();
  use(timeAt(START_MS, 0));
  detector.setReferenceDate(host);
  EXPECT_EQ(WARNING_TIME_STEP, use(timeAt(host, 0)));
}

TEST_F(SignDetector, AHostWithAnyOtherTimeConfirmsNothing) {
  std::int64_t const host = START_MS + 400 * DAY_MS;
  use(besideHost(START_MS, host));
  EXPECT_EQ(WARNING_WEEK_ROLLOVER | WARNING_TIME_STEP,
            use(besideHost(START_MS + ROLLOVER_MS, host)));
}

TEST(Agreement, LastsFromTheFirstToTheLastOfTimesWithinTheLimit) {
  AgreementC agreement(500);
  EXPECT_EQ(0, agreement.durationMs());
  agreement.add(START_MS, 1000);
  EXPECT_EQ(0, agreement.durationMs());
  agreement.add(START_MS + 1000 + 300, 2000);
  agreement.add(START_MS + 2000 - 200, 3000);
  EXPECT_EQ(2000, agreement.durationMs());
  // 501 ms from one of them, though nearer to the others.
  agreement.add(START_MS + 3000 + 301, 4000);
  EXPECT_EQ(0, agreement.durationMs());
  agreement.add(START_MS + 4000 + 301 + 500, 5000);
  EXPECT_EQ(1000, agreement.durationMs());
  agreement.clear();
  EXPECT_EQ(0, agreement.durationMs());
  agreement.add(START_MS + 6000, 7000);
  EXPECT_EQ(0, agreement.durationMs());
}

TEST_F(SignDetector, TellsLeapSecondsThatEndNoMonth) {
  LeapStatementC leap;
  leap.hasCount = true;
  leap.hasEffectivity = true;
  leap.current = 18;
  leap.future = 18;
  struct {
    int week, day;
    std::uint32_t warnings;
  } const cases[] = {{1929, 7, WARNING_NONE},
                     {1929, 6, WARNING_LEAP_DAY},
                     {1929 + 256, 7, WARNING_LEAP_DAY | WARNING_LEAP_WEEK},
                     {137, 7, WARNING_LEAP_DAY | WARNING_LEAP_WEEK},
                     {1573, 64, WARNING_LEAP_DAY},
                     {1929, 0, WARNING_LEAP_DAY}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.week * 100 + c.day);
    leap.week = c.week;
    leap.day = c.day;
    EXPECT_EQ(c.warnings, WarningDetectorC::warningsOfLeap(leap, 18));
    EXPECT_EQ(c.warnings | WARNING_LEAP_COUNT, WarningDetectorC::warningsOfLeap(leap, 17));
  }
}

}  // namespace
}  // namespace KTX::RCV::TEST
