#include "KTX/TIM/KTX_TIM_TickCount.h"

#include <future>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_ClockFactory.h"
#include "common/KTX_TIM_FakeClock.h"
#include "common/KTX_TIM_LogCapture.h"
#include "currenttime/KTX_TIM_TickCountOf.h"

namespace KTX::TIM::TEST {
namespace {

TEST(TickCount, IsTheLowHalfOfTheReading) {
  struct {
    std::int64_t ms;
    std::uint32_t ticks;
  } const cases[] = {
      {0, 0},
      {5, 5},
      {4294967295, 4294967295U},
      {4294967296, 0},
      {4294967301, 5},
      {-1, 4294967295U},
      {std::numeric_limits<std::int64_t>::max(), 4294967295U},
      {std::numeric_limits<std::int64_t>::min(), 0},
  };
  for (auto const& c : cases) {
    EXPECT_EQ(c.ticks, tickCountOf(FakeClockC(c.ms))) << c.ms;
  }
}

TEST(TickCount, IsThatOfTheSteadyClock) {
  LogCaptureC const log;
  auto const clock = createClock<boost::milli>(CLOCKTYPE_STEADY, CLOCKREF_DEFAULT);
  for (int turn = 0; turn < 1000; ++turn) {
    auto const before = static_cast<std::uint32_t>(clock->now().count());
    std::uint32_t const ticks = getTickCountMs();
    auto const after = static_cast<std::uint32_t>(clock->now().count());
    ASSERT_LE(ticks - before, after - before);  // also across the wrap
  }
  EXPECT_EQ(0U, log.count());
}

TEST(TickCount, MayBeAskedFirstByManyThreadsAtOnce) {
  std::vector<std::future<std::uint32_t>> ticks;
  std::promise<void> gate;
  auto const opened = gate.get_future().share();
  for (int thread = 0; thread < 8; ++thread) {
    ticks.push_back(std::async(std::launch::async, [opened] {
      opened.wait();
      return getTickCountMs();
    }));
  }
  gate.set_value();
  constexpr std::uint32_t HOUR_MS = 3600000;
  for (auto& tick : ticks) {
    std::uint32_t const read = tick.get();
    EXPECT_LE(getTickCountMs() - read, HOUR_MS);
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
