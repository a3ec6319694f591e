#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_TimeZoneWindows.h"
#include "common/KTX_TIM_LockOrder.h"
#include "common/KTX_TIM_LogCapture.h"
#include "timezones/KTX_TIM_FakeZoneRegistry.h"
#include "timezones/KTX_TIM_ZoneLayout.h"

namespace KTX::TIM::TEST {
namespace {

// Everything that is called out to, with the locks held at that moment.
class TimeZoneLocks : public ::testing::Test {
 protected:
  TimeZoneLocks() {
    addFourZones(registry);
    registry.calls.setZone(-540, u"Tokyo Standard Time");
    registry.calls.setHook([this](SystemCallE /*call*/) { noteCall(); });
    log.setHook([this](LogCaptureC::EntryC const& /*entry*/) { noteCall(); });
  }

  void noteCall() {
    ++calls;
    bool const isLibraryLocked = LockOrderC::heldCount(getTimeLock()) != 0;
    callsUnderLibraryLock += isLibraryLocked ? 1 : 0;
    callsUnderOtherLocks += LockOrderC::heldLockCount() > (isLibraryLocked ? 1U : 0U) ? 1 : 0;
  }

  LockOrderC order;
  LogCaptureC log;
  FakeZoneRegistryC registry;
  TimeZoneWindowsC zone;
  int calls = 0;
  int callsUnderLibraryLock = 0;
  int callsUnderOtherLocks = 0;
};

TEST_F(TimeZoneLocks, OnlyTheConfirmationOfAZoneRunsUnderTheLibraryWideLock) {
  zone.setTimeZone(L"GMT Standard Time");
  // To open and to close the root key and the zone's.
  EXPECT_EQ(4, callsUnderLibraryLock);
  registry.calls.failFrom(CALL_OPENKEY, 3);
  zone.setTimeZone(L"Tokyo Standard Time");
  // The root key that does not open, and the assertion.
  EXPECT_EQ(6, callsUnderLibraryLock);
  registry.calls.clearFailures();
  EXPECT_LT(6, calls);
  EXPECT_EQ(0, callsUnderOtherLocks);
}

TEST_F(TimeZoneLocks, QueriesCallOutWithoutALock) {
  std::wstring text;
  std::int32_t bias = 0;
  TimeZoneC::ZoneNamesT zones;
  zone.getTimeZone(text);
  zone.getTimeZoneList(zones);
  zone.getTimeZoneOffsetText();
  zone.getTimeZoneBias(text, bias);
  zone.resolveTimeZone(L"Nowhere", 0, text);
  zone.setTimeZone(L"Nowhere");
  EXPECT_LT(50, calls);
  EXPECT_EQ(0, callsUnderLibraryLock);
  EXPECT_EQ(0, callsUnderOtherLocks);
}

TEST_F(TimeZoneLocks, AChangeIsAnnouncedWithoutALock) {
  std::size_t heldLocks = 99;
  auto const connection =
      zone.connectTimeZoneChanged([&heldLocks] { heldLocks = LockOrderC::heldLockCount(); });
  zone.setTimeZone(L"GMT Standard Time");
  EXPECT_EQ(0U, heldLocks);
  connection.disconnect();
}

TEST_F(TimeZoneLocks, TheLibraryWideLockComesFirst) {
  std::wstring name;
  zone.setTimeZone(L"GMT Standard Time");
  zone.setTimeZone(L"Nowhere");
  zone.getTimeZone(name);
  EXPECT_LT(3U, order.lockCount());
  EXPECT_THAT(order.violations(), ::testing::IsEmpty());
}

}  // namespace
}  // namespace KTX::TIM::TEST
