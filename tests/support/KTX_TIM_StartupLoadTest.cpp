// What happens while the library is loaded, on system calls that were put in before.
#include <filesystem>
#include <iterator>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "common/KTX_TIM_FakeSystemCalls.h"
#include "common/KTX_TIM_ScopedSystemCalls.h"

namespace KTX::TIM::TEST {
namespace {

// The thread sanitizer runs a thread of its own.
#if !defined(_WIN32) && !defined(__SANITIZE_THREAD__)
#define KTX_TIM_COUNTS_THREADS
std::size_t threadCount() {
  namespace fs = std::filesystem;
  return static_cast<std::size_t>(
      std::distance(fs::directory_iterator("/proc/self/task"), fs::directory_iterator()));
}
#endif

// Built before the library's own objects.
class WatchC {
 public:
  std::size_t keyUses() const {
    return calls.useCount(CALL_OPENKEY) + calls.useCount(CALL_ENUMERATEKEY) +
           calls.useCount(CALL_QUERYVALUE) + calls.useCount(CALL_CLOSEKEY);
  }
  std::size_t setUses() const { return calls.useCount(CALL_SETSYSTEMTIME); }
  std::size_t zoneUses() const { return calls.useCount(CALL_GETTIMEZONEINFORMATION); }

 private:
  FakeSystemCallsC calls;
  ScopedSystemCallsC const scope{calls};
};

__attribute__((init_priority(101))) WatchC const watch;

// Runs first: no other test may have used the library before.
TEST(StartupLoad, AsksTheSystemForNothingAndStartsNoThread) {
  EXPECT_EQ(0U, watch.keyUses());
  EXPECT_EQ(0U, watch.setUses());
  EXPECT_EQ(0U, watch.zoneUses());
#ifdef KTX_TIM_COUNTS_THREADS
  EXPECT_EQ(1U, threadCount());
#endif
}

TEST(StartupLoad, LeavesTheDefaultLeapSecondWithItsEffectivity) {
  UtcLeapSecondRecord record{};
  GpsC effectivity(0, 0);
  EXPECT_EQ(0U, getDefaultLeapSecondProvider()->getLeapSecond(GpsC(0, 0), record, &effectivity));
  EXPECT_EQ(defaultLeapSecondRecord(), record);
  EXPECT_EQ(GPSTimeC(1930, 18000), effectivity);
}

TEST(StartupLoad, LeavesThePresentReadyForUse) {
  EXPECT_LT(2000, GpsC::currentTime().getWeek());
  EXPECT_EQ(0U, watch.keyUses());
}

}  // namespace
}  // namespace KTX::TIM::TEST
