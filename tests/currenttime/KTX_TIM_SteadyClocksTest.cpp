#include <cstdint>

#include <boost/chrono/system_clocks.hpp>
#include <gtest/gtest.h>

#include "currenttime/KTX_TIM_GetTickCountClock.h"
#include "currenttime/KTX_TIM_SteadyClock.h"

namespace KTX::TIM::TEST {
namespace {

constexpr std::int64_t NS_PER_MS = 1000000;

std::int64_t machineNs() {
  return boost::chrono::steady_clock::now().time_since_epoch().count();
}

// Each reading lies between two of the machine's own, cut in the same way.
template <class ReadT>
void expectBetween(std::int64_t nsPerTick, ReadT const& read) {
  for (int turn = 0; turn < 1000; ++turn) {
    std::int64_t const before = machineNs() / nsPerTick;
    std::int64_t const reading = read();
    std::int64_t const after = machineNs() / nsPerTick;
    ASSERT_LE(before, reading);
    ASSERT_GE(after, reading);
  }
}

TEST(SteadyClocks, BothReadTheSameMilliseconds) {
  GetTickCountClockC<boost::milli> const tickClock;
  SteadyClockC<boost::milli> const steadyClock;
  expectBetween(NS_PER_MS, [&] { return tickClock.now().count(); });
  expectBetween(NS_PER_MS, [&] { return steadyClock.now().count(); });
}

TEST(SteadyClocks, TheSteadyOneReadsNanoseconds) {
  SteadyClockC<boost::nano> const clock;
  expectBetween(1, [&] { return clock.now().count(); });
}

TEST(SteadyClocks, TheTickClockReadsWholeMillisecondsInNanoseconds) {
  GetTickCountClockC<boost::nano> const clock;
  expectBetween(NS_PER_MS, [&] {
    std::int64_t const reading = clock.now().count();
    EXPECT_EQ(0, reading % NS_PER_MS);
    return reading / NS_PER_MS;
  });
}

TEST(SteadyClocks, HaveTheirTypesAndNoCalendar) {
  GetTickCountClockC<boost::nano> const tickClock;
  SteadyClockC<boost::nano> const steadyClock;
  EXPECT_EQ(CLOCKTYPE_GETTICKCOUNT, tickClock.getType());
  EXPECT_EQ(CLOCKTYPE_STEADY, steadyClock.getType());
  for (ClockI<boost::nano> const* const clock :
       {static_cast<ClockI<boost::nano> const*>(&tickClock),
        static_cast<ClockI<boost::nano> const*>(&steadyClock)}) {
    EXPECT_EQ(CLOCKREF_NONE, clock->getReference());
    EXPECT_TRUE(clock->getEpoch().is_not_a_date_time());
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
