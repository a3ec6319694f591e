// Every operation with its n-th allocation failing, and reads that allocate nothing.
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "common/KTX_TIM_AllocationFault.h"
#include "common/KTX_TIM_LogCapture.h"
#include "common/KTX_TIM_TempFolder.h"
#include "leapseconds/KTX_TIM_LeapSecondModel.h"
#include "leapseconds/KTX_TIM_LeapSecondScopes.h"

namespace KTX::TIM::TEST {
namespace {

/// The store and the present that goes with it.
struct WorldC {
  StoreStateC store;
  GPSTimeC presentUtc;
};

bool operator==(WorldC const& a, WorldC const& b) {
  return a.store == b.store && a.presentUtc == b.presentUtc;
}

WorldC world() {
  GpsC utc = GpsC::currentTime();
  utc.gpsToUtc();
  return {storeState(), utc};
}

class LeapSecondFaults : public ::testing::Test {
 protected:
  void begin() {
    setUtcLeapSecond(withdrawForcedRecord(), false);
    UtcLeapSecondRecord const start{LEAPSECOND_GPS, 18, 18, 2303, 5, true};  // 2024-02-29
    resetSatelliteLeapSecond(&start);
    present.set(1709798945000);
    prepare();
  }

  /// Another thread can take both locks; it would wait for ever where one is left.
  static void expectLocksFree() {
    std::thread other([] {
      getTimeLock().lock();
      getTimeLock().unlock();
      recordInForce();
    });
    other.join();
  }

  /// On Windows the C++ runtime is a module of its own, whose memory this program gives back
  /// without having seen it taken.
  static void expectNoLeak(std::ptrdiff_t balance) {
#if defined(_WIN32)
    EXPECT_LE(balance, 0);
#else
    EXPECT_EQ(0, balance);
#endif
  }

  /// What operation leaves behind when nothing fails; it runs once before, so that what is made
  /// on first use is there.
  WorldC worldAfter(std::function<void()> const& operation) {
    begin();
    operation();
    begin();
    operation();
    return world();
  }

  /// Returns how many allocations failed, one in each run.
  std::size_t sweep(std::function<void()> const& operation) {
    WorldC const after = worldAfter(operation);
    begin();
    WorldC const before = world();
    for (std::size_t failing = 1;; ++failing) {
      begin();
      AllocationWatchC const watch(failing);
      try {
        operation();
      } catch (std::bad_alloc const&) {
      }
      if (!watch.hasFailed()) {
        EXPECT_TRUE(world() == after);
        return failing - 1;
      }
      expectNoLeak(watch.balance());
      expectLocksFree();
      WorldC const now = world();
      EXPECT_TRUE(now == before || now == after) << "failing allocation " << failing;
    }
  }

  TempFolderC const folder;
  ScopedLeapSecondsC const leapSeconds;
  ScopedPresentC present{1709798945000};
  std::function<void()> prepare = [] {};
  UtcLeapSecondRecord const forced17{LEAPSECOND_FORCED, 17, 17, 1929, 7, true};
  UtcLeapSecondRecord const gps{LEAPSECOND_GPS, 18, 18, 2308, 1, true};  // 2024-03-31
  UtcLeapSecondRecord const invalid{LEAPSECOND_GPS, 17, 19, 1929, 7, true};
};

TEST_F(LeapSecondFaults, LeaveTheOldOrTheNewStateInASetter) {
  ChangeRecorderC changes;
  changes.events.reserve(1000);
  EXPECT_GT(sweep([this] { setUtcLeapSecond(forced17, false); }), 0U);
  EXPECT_GT(sweep([this] { setUtcLeapSecond(forced17, true); }), 0U);
  EXPECT_GT(sweep([this] { setUtcLeapSecond(gps, true); }), 0U);
  EXPECT_GT(sweep([] { setUtcLeapSecond(18, 18, 1929, 7, LEAPSECOND_GPS); }), 0U);
  EXPECT_GT(sweep([] { setUtcLeapSecond(17, 17, 2308, 1, LEAPSECOND_GPS); }), 0U);
  EXPECT_GT(sweep([] { setUtcLeapSecond(18, 19, GPSTimeC(2308, 86400000), LEAPSECOND_GPS); }), 0U);
  prepare = [this] { setUtcLeapSecond(forced17, true); };
  EXPECT_GT(sweep([] { setUtcLeapSecond(withdrawForcedRecord(), true); }), 0U);
}

TEST_F(LeapSecondFaults, LeaveAnAnnouncedCountOfItsTime) {
  prepare = [] {
    UtcLeapSecondRecord const announced{LEAPSECOND_GPS, 18, 19, 2308, 1, true};
    resetSatelliteLeapSecond(&announced);
  };
  EXPECT_GT(sweep([this] { setUtcLeapSecond(forced17, true); }), 0U);
}

TEST_F(LeapSecondFaults, LeaveTheOldOrTheNewStateInASetterThatLogs) {
  LogCaptureC log;
  log.setHook([&log](LogCaptureC::EntryC const&) { log.clear(); });
  EXPECT_GT(sweep([this] { setUtcLeapSecond(forced17, true); }), 0U);
  EXPECT_GT(sweep([] { setUtcLeapSecond(18, 18, 1929, 7, LEAPSECOND_GPS); }), 0U);
  EXPECT_GT(sweep([] { resetSatelliteLeapSecond(); }), 0U);
  EXPECT_GT(sweep([] { setUtcLeapSecond(18); }), 0U);
  EXPECT_GT(sweep([this] { setUtcLeapSecond(invalid, true); }), 0U);
  EXPECT_GT(sweep([this] { resetSatelliteLeapSecond(&forced17); }), 0U);
}

TEST_F(LeapSecondFaults, LeaveTheOldOrTheNewStateInAReset) {
  UtcLeapSecondRecord const strange{LEAPSECOND_DEFAULT, 18, 18, 5, 3, false};
  EXPECT_GT(sweep([&strange] { resetSatelliteLeapSecond(&strange); }), 0U);
  EXPECT_EQ(0U, sweep([this] { resetSatelliteLeapSecond(&gps); }));
}

TEST_F(LeapSecondFaults, LeaveTheOldOrTheNewStateInAFileLoad) {
  auto const path = folder.write("leap.txt", "; comment\n17,17,1929,7\n").wstring();
  EXPECT_GT(sweep([&path] { loadLeapSecondFile(path, true); }), 0U);
}

TEST_F(LeapSecondFaults, LeaveNoHalfConnectedListener) {
  auto const counter = std::make_shared<int>(0);
  for (std::size_t failing = 1;; ++failing) {
    AllocationWatchC const watch(failing);
    try {
      boost::signals2::scoped_connection const connection(connectUtcLeapSecondChanged(
          [counter](boost::shared_ptr<UtcLeapSecondChanged> const&) { ++*counter; }));
    } catch (std::bad_alloc const&) {
    }
    if (!watch.hasFailed()) {
      EXPECT_GT(failing, 1U);
      break;
    }
  }
  expectLocksFree();
  setUtcLeapSecond(forced17, false);
  EXPECT_EQ(0, *counter);
  // The signal frees what was disconnected a little later, while it is used.
  for (int i = 0; i < 10; ++i) {
    ChangeRecorderC const other;
  }
  EXPECT_EQ(1, counter.use_count());
}

TEST_F(LeapSecondFaults, LeaveASiteProviderAsItWas) {
  EXPECT_GT(sweep([] {
              UtcLeapSecondProvider provider;
              UtcLeapSecondRecord record{};
              try {
                provider.setSiteLeapSecond(17, 18, 57754);
              } catch (std::bad_alloc const&) {
                provider.getLeapSecond(GpsC(0, 0), record);
                EXPECT_EQ(LEAPSECOND_GPS, record.source) << "the store still answers";
                throw;
              }
            }),
            0U);
}

TEST_F(LeapSecondFaults, CannotHappenInARead) {
  UtcLeapSecondProvider site;
  site.setSiteLeapSecond(17, 18, 57754);
  UtcLeapSecondProvider empty;
  for (auto const& record : {forced17, withdrawForcedRecord()}) {
    setUtcLeapSecond(record, false);
    GpsC const time(2000, 0);
    GpsC effectivity;
    UtcLeapSecondRecord answer{};
    AllocationWatchC const watch;
    getUtcLeapSecondAt(time, answer);
    getNormalLeapSecond(answer);
    getCurrentUtcLeapSecond(answer);
    getUtcLeapSecondsAt(time);
    getDefaultLeapSecondProvider()->getLeapSecond(time, answer, &effectivity);
    site.getLeapSecond(time, answer, &effectivity);
    empty.getLeapSecond(time, answer, &effectivity);
    leapSecondSourceName(answer.source);
    defaultLeapSecondRecord();
    EXPECT_EQ(0U, watch.allocationCount());
  }
}

TEST_F(LeapSecondFaults, CannotHappenInAReadOfASiteValueThatIsNewlySet) {
  UtcLeapSecondProvider site;
  site.setSiteLeapSecond(17, 18, 57754);
  AllocationWatchC const watch;
  site.setSiteLeapSecond(18, 18, 57755);
  EXPECT_EQ(0U, watch.allocationCount());
}

// A line of any length is read in the same memory.
TEST_F(LeapSecondFaults, DoNotGrowWithTheLengthOfALine) {
  auto const shortPath = folder.write("short.txt", "17,17,1929,7\n").wstring();
  auto const longPath =
      folder.write("long.txt", std::string(1U << 20U, ',') + "\n17,17,1929,7\n").wstring();
  auto const allocationsFor = [](std::wstring const& path) {
    setUtcLeapSecond(withdrawForcedRecord(), false);
    AllocationWatchC const watch;
    EXPECT_EQ(RC_OK, loadLeapSecondFile(path, false));
    return watch.allocationCount();
  };
  allocationsFor(shortPath);
  EXPECT_EQ(allocationsFor(shortPath), allocationsFor(longPath));
}

}  // namespace
}  // namespace KTX::TIM::TEST
