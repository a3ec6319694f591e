// Each allocation of each operation fails in turn: nothing is lost and no lock stays taken.
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_ClockFactory.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "KTX/TIM/KTX_TIM_Mutex.h"
#include "KTX/TIM/KTX_TIM_ReaderWriterSpinLock.h"
#include "KTX/TIM/KTX_TIM_StopWatch.h"
#include "KTX/TIM/KTX_TIM_TickCount.h"
#include "common/KTX_TIM_AllocationFault.h"
#include "support/KTX_TIM_LogChannels.h"
#include "support/KTX_TIM_ThreadId.h"

namespace KTX::TIM::TEST {
namespace {

template <class Period>
void createClocks(std::uint32_t type, std::uint32_t reference) {
  auto const clock =
      createClock<Period>(static_cast<ClockTypeE>(type), static_cast<ClockReferenceE>(reference));
  if (clock) {
    clock->now();
  }
}

// How many allocations the operation makes, each of which has failed once and lost nothing.
std::size_t sweep(std::function<void()> const& operation) {
  operation();  // what is built on first use stays
  return sweepAllocationFaults(operation, [](std::ptrdiff_t balance) {
#ifdef _WIN32
    EXPECT_GE(0, balance);
#else
    EXPECT_EQ(0, balance);
#endif
  });
}

TEST(SupportFaults, CreatingAClockLosesNothing) {
  struct {
    std::uint32_t type;
    std::uint32_t reference;
    bool hasAssertion;
  } const cases[] = {{1, 3, false}, {1, 1, true},  {2, 3, false},
                     {2, 2, true},  {3, 1, false}, {3, 7, true}};
  for (auto const& c : cases) {
    SCOPED_TRACE(std::to_string(c.type) + ", " + std::to_string(c.reference));
    std::size_t const ms = sweep([&] { createClocks<boost::milli>(c.type, c.reference); });
    std::size_t const ns = sweep([&] { createClocks<boost::nano>(c.type, c.reference); });
    EXPECT_EQ(ms, ns);
    EXPECT_EQ(c.hasAssertion, ms > 1);
    EXPECT_LE(1U, ms);
  }
  EXPECT_LE(2U, sweep([] { createClocks<boost::milli>(4, 3); }));
}

TEST(SupportFaults, AnAssertionLosesNothing) {
  EXPECT_LE(1U, sweep([] { logAssertion(); }));
  EXPECT_LE(1U, sweep([] { logAssertion("text"); }));
}

TEST(SupportFaults, AStopWatchLosesNothing) {
  EXPECT_EQ(1U, sweep([] {
              StopWatchC watch;
              watch.start();
              StopWatchC copy(watch);
              copy.stop();
              watch = copy;
              watch.elapsed();
            }));
  EXPECT_LE(3U, sweep([] {
              StopWatchC watch(static_cast<ClockTypeE>(4), CLOCKREF_NONE);
              watch.start();
            }));
}

TEST(SupportFaults, AGuardUnlocks) {
  ReaderWriterSpinLock lock;
  sweep([&] {
    Guard const guard(lock.getWriteLock());
    createClocks<boost::milli>(3, 7);
  });
  EXPECT_FALSE(lock.isWriteLocked());
  sweep([&] {
    Guard const guard(lock.getReadLock());
    createClocks<boost::nano>(3, 7);
  });
  EXPECT_TRUE(lock.tryLockWrite());
  lock.unlockWrite();
}

TEST(SupportFaults, WhatRunsOftenAllocatesNothing) {
  openLogChannels();
  getTickCountMs();
  auto const utcClock = createClock<boost::nano>(CLOCKTYPE_POSIX, CLOCKREF_UTC);
  auto const steadyClock = createClock<boost::milli>(CLOCKTYPE_STEADY, CLOCKREF_NONE);
  ReaderWriterSpinLock lock;
  Mutex mutex;
  AllocationWatchC const watch;
  {
    Guard const guard(mutex);
    Guard const writing(lock.getWriteLock());
    Guard const reading(lock.getReadLock());
    utcClock->now();
    steadyClock->now();
    getTickCountMs();
    openLogChannels();
    currentThreadIdText();
  }
  EXPECT_EQ(0U, watch.allocationCount());
}

}  // namespace
}  // namespace KTX::TIM::TEST
