#include <cstddef>
#include <vector>

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_DefaultCurrentTimeProvider.h"
#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_PresentStatus.h"
#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX/TIM/KTX_TIM_TimeEstimate.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "common/KTX_TIM_FakePresent.h"
#include "common/KTX_TIM_LockOrder.h"
#include "common/KTX_TIM_LogCapture.h"

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PresentLockOrder : public ::testing::Test {
 protected:
  LogCaptureC log;
  FakePresentC present;
  LockOrderC order;
};

TEST_F(PresentLockOrder, TheLibraryLockComesFirstInEveryOperation) {
  int corrections = 0;
  boost::signals2::scoped_connection const listener =
      connectTimeCorrected([&corrections](int, int, TimeChangeT) {
        GpsC::currentTime();
        ++corrections;
      });
  GpsC::currentTime();
  YmdhmsC const now;
  now.makeToCurrentTime(10);
  DefaultCurrentTimeProviderC provider;
  provider.getCurrentMjdTime();
  GpsC(2304, 374963500).makeToCurrentTime(0, 1);
  GpsC(2304, 374963500).emitTimeSignal();
  resetSysTime();
  setSysTimeClocks(present.utc, present.steady);
  GpsC const framed(std::uint32_t{1000});
  setUtcLeapSecond({LEAPSECOND_FORCED, 17, 17, 1929, 7, true}, true);
  setUtcLeapSecond(withdrawForcedRecord(), true);
  EXPECT_THAT(order.violations(), IsEmpty());
  EXPECT_GT(corrections, 0);
  EXPECT_GT(order.lockCount(), 10u);
  EXPECT_EQ(0u, LockOrderC::heldLockCount());
}

TEST_F(PresentLockOrder, TheObservationStepHoldsTheLockAndTheListenerDoesNot) {
  std::size_t heldWhileLogging = 0;
  std::size_t heldInListener = 99;
  std::size_t heldInStep = 99;
  log.setHook([&](LogCaptureC::EntryC const& entry) {
    if (entry.channel == "TimeYmdhms") {
      heldWhileLogging = LockOrderC::heldCount(getTimeLock());
    }
  });
  boost::signals2::scoped_connection const listener = connectTimeCorrected(
      [&](int, int, TimeChangeT) { heldInListener = LockOrderC::heldLockCount(); });
  boost::signals2::scoped_connection const stepListener = connectTimeEstimated(
      [&](TimeEstimateStepC const&) { heldInStep = LockOrderC::heldLockCount(); });
  GpsC(2304, 374963500).makeToCurrentTime(0, 1);
  EXPECT_EQ(1u, heldWhileLogging);
  EXPECT_EQ(0u, heldInListener);
  EXPECT_EQ(0u, heldInStep);
}

TEST_F(PresentLockOrder, AStepInsideALeapSecondSetterIsToldWithBothLocksHeld) {
  std::vector<std::size_t> held;
  boost::signals2::scoped_connection const listener =
      connectTimeCorrected([&](int, int, TimeChangeT) {
        held.push_back(LockOrderC::heldCount(getTimeLock()));
        held.push_back(LockOrderC::heldLockCount());
      });
  boost::signals2::scoped_connection const stepListener =
      connectTimeEstimated([&](TimeEstimateStepC const&) {
        held.push_back(LockOrderC::heldCount(getTimeLock()));
        held.push_back(LockOrderC::heldLockCount());
      });
  setUtcLeapSecond({LEAPSECOND_FORCED, 17, 17, 1929, 7, true}, true);
  EXPECT_THAT(held, ElementsAre(1u, 2u, 1u, 2u));
  setUtcLeapSecond(withdrawForcedRecord(), false);
}

TEST_F(PresentLockOrder, ACallerThatHoldsTheLockStillHoldsItInTheListener) {
  std::vector<std::size_t> held;
  boost::signals2::scoped_connection const listener = connectTimeCorrected(
      [&held](int, int, TimeChangeT) { held.push_back(LockOrderC::heldCount(getTimeLock())); });
  {
    Guard const guard(getTimeLock());
    GpsC(2304, 374963500).makeToCurrentTime(0, 1);
    Guard const again(getTimeLock());
    GpsC(2304, 374964500).makeToCurrentTime(0, 1);
  }
  GpsC(2304, 374965500).makeToCurrentTime(0, 1);
  EXPECT_THAT(held, ::testing::ElementsAre(1, 2, 0));
}

TEST_F(PresentLockOrder, TheTimeSignalTakesNoLibraryLock) {
  YmdhmsC const time = YmdhmsC::zero(TIMEBASE_GPS, 1);
  std::size_t const before = order.lockCount();
  time.emitTimeSignal();
  EXPECT_EQ(before, order.lockCount());
}

TEST_F(PresentLockOrder, ThePresentIsComputedUnderTheLibraryLock) {
  std::size_t held = 0;
  present.steady->setHook([&] { held = LockOrderC::heldCount(getTimeLock()); });
  GpsC::currentTime();
  EXPECT_EQ(1u, held);
  held = 0;
  YmdhmsC::zero().makeToCurrentTime();
  EXPECT_EQ(1u, held);
  held = 0;
  resetSysTime();
  EXPECT_EQ(1u, held);
  held = 0;
  setSysTimeClocks(present.utc, present.steady);
  EXPECT_EQ(1u, held);
  held = 0;
  getPresentStatus();
  EXPECT_EQ(1u, held);
}

}  // namespace
}  // namespace KTX::TIM::TEST
