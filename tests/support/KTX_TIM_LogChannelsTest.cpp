#include "support/KTX_TIM_LogChannels.h"

#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/KTX_TIM_LogCapture.h"

namespace KTX::TIM::TEST {
namespace {

using KTX::DBG::DbgLogFileC;
using ::testing::ElementsAre;

TEST(LogChannels, HaveTheirNames) {
  struct {
    DbgLogFileC& (*channel)();
    char const* name;
  } const cases[] = {
      {timeLog, "Time"},
      {offsetLog, "TimeEstimator"},
      {estimatorLog, "TimeEstimator"},
      {estimatorDataLog, "TimeEstimatorData"},
      {ymdhmsLog, "TimeYmdhms"},
      {leapSecondLog, "Time"},
  };
  for (auto const& c : cases) {
    LogCaptureC const log;
    c.channel().printLine(3, "line\n");
    EXPECT_THAT(log.lines(c.name), ElementsAre("line\n"));
    EXPECT_EQ(1U, log.count());
  }
}

TEST(LogChannels, AreSixObjectsThatStay) {
  auto const all = [] {
    return std::set<DbgLogFileC*>{&timeLog(),          &offsetLog(), &estimatorLog(),
                                  &estimatorDataLog(), &ymdhmsLog(), &leapSecondLog()};
  };
  auto const first = all();
  EXPECT_EQ(6U, first.size());
  LogCaptureC const log;
  openLogChannels();
  EXPECT_EQ(first, all());
  for (char const* const name : {"Time", "TimeEstimator", "TimeEstimatorData", "TimeYmdhms"}) {
    EXPECT_EQ(0U, log.builtCount(name)) << name;
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
