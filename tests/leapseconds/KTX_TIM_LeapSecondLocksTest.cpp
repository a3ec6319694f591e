// Which locks the leap second operations hold, seen by a Mutex that reports.
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "common/KTX_TIM_FakePresent.h"
#include "common/KTX_TIM_LockOrder.h"
#include "common/KTX_TIM_LogCapture.h"
#include "common/KTX_TIM_TempFolder.h"
#include "leapseconds/KTX_TIM_LeapSecondModel.h"
#include "leapseconds/KTX_TIM_LeapSecondScopes.h"

namespace KTX::TIM::TEST {
namespace {

using ::testing::Each;
using ::testing::IsEmpty;
using ::testing::Not;

/// What the calling thread holds.
struct HeldC {
  std::size_t library;
  std::size_t all;
};

bool operator==(HeldC const& a, HeldC const& b) {
  return a.library == b.library && a.all == b.all;
}

void PrintTo(HeldC const& held, std::ostream* stream) {
  *stream << held.all << " locks, the library's " << held.library << " times";
}

HeldC held() {
  return {LockOrderC::heldCount(getTimeLock()), LockOrderC::heldLockCount()};
}

constexpr HeldC NOTHING{0, 0};
constexpr HeldC STORE{0, 1};
constexpr HeldC LIBRARY_AND_STORE{1, 2};

class LeapSecondLocks : public ::testing::Test {
 protected:
  /// What is held while each line of the leap second channel is written during operation.
  std::vector<HeldC> heldWhileLogging(std::function<void()> const& operation) {
    std::vector<HeldC> seen;
    LogCaptureC log;
    log.setThreshold("TimeEstimator", LogCaptureC::OFF);
    log.setHook([&seen](LogCaptureC::EntryC const& entry) {
      if (entry.channel == "Time") {
        seen.push_back(held());
      }
    });
    operation();
    return seen;
  }

  static boost::signals2::connection connect(std::function<void()> const& listener) {
    return connectUtcLeapSecondChanged(
        [listener](boost::shared_ptr<UtcLeapSecondChanged> const&) { listener(); });
  }

  /// Another thread can take both locks; it would wait for ever where one is left.
  static void expectLocksFree() {
    EXPECT_EQ(NOTHING, held());
    std::thread other([] {
      getTimeLock().lock();
      getTimeLock().unlock();
      recordInForce();
    });
    other.join();
  }

  /// Held: a GPS record of 2024-02-29.
  void begin() {
    setUtcLeapSecond(withdrawForcedRecord(), false);
    UtcLeapSecondRecord const start{LEAPSECOND_GPS, 18, 18, 2303, 5, true};
    resetSatelliteLeapSecond(&start);
    present.set(1709798945000);
  }

  /// Runs operation from the beginning with a log that throws at its n-th line; false when it did
  /// not come to that.
  bool failsAtLine(int failing, std::function<void()> const& operation) {
    begin();
    int lines = 0;
    LogCaptureC log;
    log.setHook([&](LogCaptureC::EntryC const&) {
      if (++lines == failing) {
        throw std::runtime_error("log");
      }
    });
    try {
      operation();
    } catch (std::runtime_error const&) {
    }
    return lines >= failing;
  }

  ScopedLeapSecondsC const leapSeconds;
  ScopedPresentC present{1709798945000};
  LockOrderC const order;
  UtcLeapSecondRecord const forced17{LEAPSECOND_FORCED, 17, 17, 1929, 7, true};
  UtcLeapSecondRecord const invalid{LEAPSECOND_GPS, 17, 19, 1929, 7, true};
};

TEST_F(LeapSecondLocks, AreBothHeldWhileListenersRun) {
  HeldC seen{};
  boost::signals2::scoped_connection const connection(connect([&seen] { seen = held(); }));
  for (bool const makeCurrent : {false, true}) {
    seen = NOTHING;
    setUtcLeapSecond(forced17, makeCurrent);
    EXPECT_EQ(LIBRARY_AND_STORE, seen);
    setUtcLeapSecond(withdrawForcedRecord(), makeCurrent);
    EXPECT_EQ(NOTHING, held());
  }
  EXPECT_THAT(order.violations(), IsEmpty());
}

TEST_F(LeapSecondLocks, AreBothHeldWhileTheCorrectionOfACarryOverIsAnnounced) {
  std::vector<HeldC> seen;
  boost::signals2::scoped_connection const connection(connectTimeCorrected(
      [&seen](int /*week*/, int /*msOfWeek*/, TimeChangeT /*change*/) { seen.push_back(held()); }));
  setUtcLeapSecond(forced17, true);
  EXPECT_THAT(seen, ::testing::ElementsAre(LIBRARY_AND_STORE));
  setUtcLeapSecond(withdrawForcedRecord(), false);
  EXPECT_EQ(1U, seen.size());
  EXPECT_THAT(order.violations(), IsEmpty());
}

// Before the store's lock is taken: the present of a setter is the one that it found.
TEST_F(LeapSecondLocks, OfTheLibraryAloneIsHeldWhileASetterReadsThePresent) {
  FakePresentC const clocks;
  std::vector<HeldC> seen;
  clocks.steady->setHook([&seen] { seen.push_back(held()); });
  setUtcLeapSecond(forced17, true);
  ASSERT_THAT(seen, Not(IsEmpty()));
  // Once by the setter, once more by the reading itself.
  EXPECT_EQ((HeldC{2, 1}), seen.front());
  EXPECT_EQ(LIBRARY_AND_STORE.all, seen.back().all) << "the carry-over";
  setUtcLeapSecond(withdrawForcedRecord(), false);
}

TEST_F(LeapSecondLocks, AreBothHeldWhileASetterLogs) {
  auto const seen = heldWhileLogging([this] {
    setUtcLeapSecond(forced17, false);
    setUtcLeapSecond(forced17, false);
    setUtcLeapSecond({LEAPSECOND_GPS, 18, 18, 2347, 3, true}, false);  // too far ahead
  });
  EXPECT_THAT(seen, Not(IsEmpty()));
  EXPECT_THAT(seen, Each(LIBRARY_AND_STORE));
}

TEST_F(LeapSecondLocks, AreNotTakenForAnInvalidRecord) {
  std::size_t const before = order.lockCount();
  auto const seen = heldWhileLogging([this] {
    EXPECT_EQ(RC_INVALID_LEAPSECOND, setUtcLeapSecond(invalid, true));
    EXPECT_EQ(RC_INVALID_LEAPSECOND, resetSatelliteLeapSecond(&invalid));
    EXPECT_EQ(RC_INVALID_LEAPSECOND, resetSatelliteLeapSecond(&forced17));
  });
  EXPECT_THAT(seen, Not(IsEmpty()));
  EXPECT_THAT(seen, Each(NOTHING));
  EXPECT_EQ(before, order.lockCount());
}

TEST_F(LeapSecondLocks, AreTheStoresAloneInAReset) {
  auto const seen = heldWhileLogging([] {
    resetSatelliteLeapSecond();
    UtcLeapSecondRecord const record = defaultLeapSecondRecord();
    resetSatelliteLeapSecond(&record);
  });
  EXPECT_THAT(seen, Not(IsEmpty()));
  EXPECT_THAT(seen, Each(STORE));
}

TEST_F(LeapSecondLocks, AreTakenOnceInARead) {
  GpsC const time(2000, 0);
  UtcLeapSecondRecord record{};
  GpsC effectivity;
  std::size_t const before = order.lockCount();
  getUtcLeapSecondAt(time, record);
  EXPECT_EQ(before + 1, order.lockCount());
  getUtcLeapSecondsAt(time);
  EXPECT_EQ(before + 2, order.lockCount());
  getNormalLeapSecond(record);
  EXPECT_EQ(before + 3, order.lockCount());
  getDefaultLeapSecondProvider()->getLeapSecond(time, record, &effectivity);
  EXPECT_EQ(before + 4, order.lockCount());
  time.getLeapSeconds();
  EXPECT_EQ(before + 5, order.lockCount());
}

TEST_F(LeapSecondLocks, AreFreeAgainAfterACountBeyond8Bits) {
  setUtcLeapSecond({LEAPSECOND_FORCED, 300, 300, 1929, 7, true}, false);
  EXPECT_ANY_THROW(getUtcLeapSecondsAt(GpsC(2000, 0)));
  expectLocksFree();
}

// A listener that holds the store's lock asks a provider, which asks the store when it has no site
// record: a provider that kept its own lock meanwhile would close a circle.
TEST_F(LeapSecondLocks, OfAProviderAreNotHeldWhileItAsksTheStore) {
  UtcLeapSecondProvider withSite;
  UtcLeapSecondProvider withoutSite;
  withSite.setSiteLeapSecond(18, 18, 57754);
  auto const ask = [&] {
    UtcLeapSecondRecord record{};
    withSite.getLeapSecond(GpsC(2000, 0), record);
    withoutSite.getLeapSecond(GpsC(2000, 0), record);
  };
  boost::signals2::scoped_connection const connection(connect(ask));
  ask();
  setUtcLeapSecond(forced17, true);
  EXPECT_THAT(order.violations(), IsEmpty());
}

TEST_F(LeapSecondLocks, OfAProviderAreNotHeldWhileItLogs) {
  HeldC seen{9, 9};
  LogCaptureC log;
  log.setHook([&seen](LogCaptureC::EntryC const&) { seen = held(); });
  UtcLeapSecondProvider provider;
  provider.setSiteLeapSecond(0, 0, 0);
  EXPECT_EQ(NOTHING, seen);
  provider.setSiteLeapSecond(18, 18, 0);
  seen = {9, 9};
  UtcLeapSecondRecord record{};
  provider.getLeapSecond(GpsC(2000, 0), record);
  EXPECT_EQ(NOTHING, seen);
}

TEST_F(LeapSecondLocks, AreFreeAgainAfterAListenerThrows) {
  for (bool const makeCurrent : {false, true}) {
    boost::signals2::scoped_connection const connection(
        connect([] { throw std::runtime_error("listener"); }));
    EXPECT_THROW(setUtcLeapSecond(forced17, makeCurrent), std::runtime_error);
    expectLocksFree();
    EXPECT_EQ(forced17, recordInForce());
    EXPECT_THROW(setUtcLeapSecond(withdrawForcedRecord(), makeCurrent), std::runtime_error);
    expectLocksFree();
  }
}

TEST_F(LeapSecondLocks, KeepTheirOrderInEveryOperation) {
  TempFolderC const folder;
  auto const path = folder.write("leap.txt", "16,16,1929,7\n").wstring();
  UtcLeapSecondProvider provider;
  int nested = 0;
  boost::signals2::scoped_connection const connection(connect([&] {
    recordInForce();
    normalRecord();
    GpsC::currentTime();
    resetSatelliteLeapSecond();
    if (++nested == 1) {
      setUtcLeapSecond({LEAPSECOND_FORCED, 19, 19, 1929, 7, true}, true);
    }
  }));
  setUtcLeapSecond(forced17, true);
  setUtcLeapSecond({LEAPSECOND_GPS, 18, 18, 1929, 7, true}, true);
  setUtcLeapSecond(17, 18, 2308, 1, LEAPSECOND_GPS);
  setUtcLeapSecond(17, 18, GPSTimeC(2308, 86400000), LEAPSECOND_FORCED);
  setUtcLeapSecond(18);
  loadLeapSecondFile(path, true);
  UtcLeapSecondRecord record{};
  getCurrentUtcLeapSecond(record);
  provider.setSiteLeapSecond(17, 18, 57754);
  provider.getLeapSecond(GpsC(2000, 0), record);
  EXPECT_GT(nested, 1);
  EXPECT_GT(order.lockCount(), 20U);
  EXPECT_THAT(order.violations(), IsEmpty());
  EXPECT_EQ(NOTHING, held());
}

// Each line of an operation in turn: the logging library throws instead of writing it.
TEST_F(LeapSecondLocks, AreFreeAgainAfterTheLoggingLibraryThrows) {
  UtcLeapSecondRecord const strange{LEAPSECOND_DEFAULT, 18, 18, 5, 3, false};
  std::function<void()> const operations[] = {
      [&] { setUtcLeapSecond(forced17, true); },
      [&] { setUtcLeapSecond(18, 18, 2308, 1, LEAPSECOND_GPS); },
      [&] { setUtcLeapSecond(18, 18, 1929, 7, LEAPSECOND_GPS); },
      [&] { setUtcLeapSecond(invalid, true); },
      [&] { setUtcLeapSecond(18); },
      [&] { resetSatelliteLeapSecond(); },
      [&] { resetSatelliteLeapSecond(&strange); },
      [&] { resetSatelliteLeapSecond(&forced17); },
      [&] { setUtcLeapSecond(withdrawForcedRecord(), true); }};
  for (auto const& operation : operations) {
    SCOPED_TRACE(&operation - operations);
    begin();
    StoreStateC const before = storeState();
    {
      LogCaptureC const log;
      operation();
    }
    StoreStateC const after = storeState();
    int failing = 1;
    for (; failsAtLine(failing, operation); ++failing) {
      expectLocksFree();
      StoreStateC const now = storeState();
      EXPECT_TRUE(now == before || now == after) << "failing line " << failing;
      ASSERT_LT(failing, 100);
    }
    EXPECT_GT(failing, 1) << "an operation that logs nothing shows nothing";
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
