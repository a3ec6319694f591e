#include <functional>
#include <memory>
#include <new>
#include <thread>
#include <utility>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_DefaultCurrentTimeProvider.h"
#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_PresentStatus.h"
#include "KTX/TIM/KTX_TIM_SystemTime.h"
#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX/TIM/KTX_TIM_TimeEstimate.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "common/KTX_TIM_AllocationFault.h"
#include "common/KTX_TIM_FakePresent.h"
#include "common/KTX_TIM_FakeSystemCalls.h"
#include "common/KTX_TIM_LogCapture.h"
#include "common/KTX_TIM_ScopedSystemCalls.h"

namespace KTX::TIM::TEST {
namespace {

constexpr std::uint16_t WEEK = 2304;
constexpr std::uint32_t NOW_MS = 374963000;

// Sets nothing, remembers nothing.
class SettableC final : public FakeSystemCallsC {
 public:
  std::int32_t setSystemTime(SystemTimeRecordC const& /*utc*/) override { return 1; }
};

bool isLockFree() {
  bool isFree = false;
  std::thread([&isFree] {
    Guard const guard(getTimeLock());
    isFree = true;
  }).join();
  return isFree;
}

// A negative balance is no loss: signals clear away what was disconnected when they are next used.
class PresentFault : public ::testing::Test {
 protected:
  // Runs operation with its n-th allocation failing for each n, with every log line on and with
  // none. Afterwards nothing may be lost, the lock free, and the present one of the two given.
  void sweep(std::function<void()> const& operation,
             GPSTimeC const& before,
             GPSTimeC const& after) {
    for (bool const isLogging : {false, true}) {
      SCOPED_TRACE(isLogging);
      auto const attempt = [&] {
        std::unique_ptr<LogCaptureC> const log(isLogging ? new LogCaptureC : nullptr);
        operation();
      };
      start();
      attempt();  // what is built once is there from now on
      start();
      failures = sweepAllocationFaults(attempt, [&](std::ptrdiff_t balance) {
        EXPECT_LE(balance, 0);
        EXPECT_TRUE(isLockFree());
        GPSTimeC const now = GpsC::currentTime();
        EXPECT_TRUE(now == before || now == after) << now;
        start();
      });
      EXPECT_EQ(after, GpsC::currentTime());
    }
  }

  void start() {
    present.steady->set(1000000);
    present.seed(FakePresentC::THURSDAY_MS);
    present.utc->set(laterUtcMs);
  }

  FakePresentC present;
  std::int64_t laterUtcMs = FakePresentC::THURSDAY_MS;
  std::size_t failures = 0;
};

TEST_F(PresentFault, AnObservationThatIsReleased) {
  int heard = 0;
  boost::signals2::scoped_connection const listener =
      connectTimeCorrected([&heard](int, int, TimeChangeT) { ++heard; });
  GpsC const observation(WEEK, NOW_MS + 2500);
  sweep([&] { observation.makeToCurrentTime(0, 1); }, GPSTimeC(WEEK, NOW_MS), observation);
  EXPECT_GT(failures, 10u);
  EXPECT_GT(heard, 0);
}

TEST_F(PresentFault, AnObservationThatIsNotReleased) {
  GpsC const observation(WEEK, NOW_MS + 40);
  sweep([&] { observation.makeToCurrentTime(10, 1); }, GPSTimeC(WEEK, NOW_MS),
        GPSTimeC(WEEK, NOW_MS));
  EXPECT_GT(failures, 10u);
}

TEST_F(PresentFault, ACalendarObservation) {
  YmdhmsC const observation(MjdTimeC(GPSTimeC(WEEK, NOW_MS + 2500)), 1);
  sweep([&] { observation.makeToCurrentTime(0); }, GPSTimeC(WEEK, NOW_MS),
        GPSTimeC(WEEK, NOW_MS + 2500));
}

TEST_F(PresentFault, Reset) {
  laterUtcMs += 5000;
  sweep([] { resetSysTime(); }, GPSTimeC(WEEK, NOW_MS), GPSTimeC(WEEK, NOW_MS + 5000));
  EXPECT_GT(failures, 1u);
}

TEST_F(PresentFault, NewClocks) {
  auto const utc = boost::make_shared<FakeClockC>(FakePresentC::THURSDAY_MS + 5000, CLOCKTYPE_POSIX,
                                                  CLOCKREF_UTC);
  auto const steady = boost::make_shared<FakeClockC>(5);
  for (bool const isLogging : {false, true}) {
    SCOPED_TRACE(isLogging);
    setSysTimeClocks(present.utc, present.steady);
    failures = sweepAllocationFaults(
        [&] {
          std::unique_ptr<LogCaptureC> const log(isLogging ? new LogCaptureC : nullptr);
          setSysTimeClocks(utc, steady);
        },
        [&](std::ptrdiff_t balance) {
          EXPECT_LE(balance, 0);
          EXPECT_TRUE(isLockFree());
          GPSTimeC const now = GpsC::currentTime();
          EXPECT_TRUE(now == GPSTimeC(WEEK, NOW_MS) || now == GPSTimeC(WEEK, NOW_MS + 5000));
        });
    EXPECT_GT(failures, 1u);
    EXPECT_EQ(GPSTimeC(WEEK, NOW_MS + 5000), GpsC::currentTime());
  }
}

TEST_F(PresentFault, ThePresentInEveryForm) {
  GPSTimeC const now(WEEK, NOW_MS);
  sweep(
      [] {
        GpsC::currentTime();
        GpsC(std::uint32_t{1000}).makeToCurrentTime();
        YmdhmsC const calendar;
        YmdhmsC::zero().setToCurrentTime();
        DefaultCurrentTimeProviderC provider;
        provider.getCurrentGpsTime();
        provider.getCurrentMjdTime();
      },
      now, now);
}

TEST_F(PresentFault, TheTimeSignal) {
  int heard = 0;
  boost::signals2::scoped_connection const listener =
      connectTimeSignal([&heard](int, int) { ++heard; });
  GPSTimeC const now(WEEK, NOW_MS);
  sweep(
      [&] {
        GpsC(now).emitTimeSignal();
        YmdhmsC(GpsC(now)).emitTimeSignal();
      },
      now, now);
  EXPECT_GT(heard, 0);
}

TEST_F(PresentFault, SettingTheClockOfThePc) {
  SettableC calls;
  ScopedSystemCallsC const scope(calls);
  YmdhmsC utc(MjdTimeC(60376.25, TIMEBASE_UTC), 1);
  YmdhmsC const gps(MjdTimeC(60376.25, TIMEBASE_GPS), 1);
  GPSTimeC const now(WEEK, NOW_MS);
  sweep(
      [&] {
        utc.applyToCurrentSystemTime();
        gps.applyToCurrentSystemTime();
      },
      now, now);
}

TEST_F(PresentFault, Connecting) {
  TimeCorrectedSlot const corrected([](int, int, TimeChangeT) {});
  TimeSignalSlot const signalled([](int, int) {});
  boost::signals2::connection connection;
  std::size_t const failedToConnect =
      sweepAllocationFaults([&] { connection = connectTimeCorrected(corrected); },
                            [](std::ptrdiff_t balance) { EXPECT_LE(balance, 0); });
  EXPECT_GT(failedToConnect, 0u);
  EXPECT_TRUE(connection.connected());
  connection.disconnect();
  std::size_t const failedToListen =
      sweepAllocationFaults([&] { connection = connectTimeSignal(signalled); },
                            [](std::ptrdiff_t balance) { EXPECT_LE(balance, 0); });
  EXPECT_GT(failedToListen, 0u);
  EXPECT_TRUE(connection.connected());
  connection.disconnect();
  int heard = 0;
  TimeEstimatedSlot const estimated([&heard](TimeEstimateStepC const&) { ++heard; });
  std::size_t const failedToFollow =
      sweepAllocationFaults([&] { connection = connectTimeEstimated(estimated); },
                            [](std::ptrdiff_t balance) { EXPECT_LE(balance, 0); });
  EXPECT_GT(failedToFollow, 0u);
  EXPECT_TRUE(connection.connected());
  connection.disconnect();
}

TEST_F(PresentFault, NothingIsAllocatedInTheSteadyState) {
  SettableC calls;
  ScopedSystemCallsC const scope(calls);
  GpsC const observation(WEEK, NOW_MS + 20);
  YmdhmsC const calendar(MjdTimeC(60376.25, TIMEBASE_UTC), 1);
  observation.makeToCurrentTime(10, 1);
  AllocationWatchC const watch;
  observation.makeToCurrentTime(10, 1);
  observation.makeToCurrentTime(10, 0);
  observation.makeToCurrentTime(0, 1);
  YmdhmsC(observation).makeToCurrentTime(10);
  GpsC::currentTime();
  YmdhmsC const now;
  GpsC const framed(std::uint32_t{1000});
  DefaultCurrentTimeProviderC().getCurrentMjdTime();
  observation.emitTimeSignal();
  calendar.applyToCurrentSystemTime();
  getPresentStatus();
  EXPECT_EQ(0u, watch.allocationCount());
}

TEST_F(PresentFault, AStepIsToldWithoutAllocating) {
  int heard = 0;
  boost::signals2::scoped_connection const listener =
      connectTimeEstimated([&heard](TimeEstimateStepC const&) { ++heard; });
  GpsC const observation(WEEK, NOW_MS + 20);
  observation.makeToCurrentTime(10, 1);
  AllocationWatchC const watch;
  observation.makeToCurrentTime(10, 1);
  EXPECT_EQ(0u, watch.allocationCount());
  EXPECT_EQ(2, heard);
}

}  // namespace
}  // namespace KTX::TIM::TEST
