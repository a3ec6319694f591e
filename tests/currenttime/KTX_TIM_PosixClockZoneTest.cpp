// Runs with TZ=XYZ-5:30, a zone that is 330 minutes east of UTC.
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_ClockFactory.h"
#include "support/KTX_TIM_SystemCalls.h"

namespace KTX::TIM::TEST {
namespace {

TEST(PosixClockZone, ALocalClockCountsTheWallTimeAsIfItWereUtc) {
  auto const utcClock = createClock<boost::milli>(CLOCKTYPE_POSIX, CLOCKREF_UTC);
  auto const localClock = createClock<boost::milli>(CLOCKTYPE_POSIX, CLOCKREF_LOCAL);
  constexpr std::int64_t OFFSET_MS = 330 * 60000;
  for (int turn = 0; turn < 100; ++turn) {
    std::int64_t const before = utcClock->now().count();
    std::int64_t const local = localClock->now().count();
    std::int64_t const after = utcClock->now().count();
    ASSERT_LE(before + OFFSET_MS, local);
    ASSERT_GE(after + OFFSET_MS, local);
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
