#include <cstddef>
#include <cstdint>
#include <functional>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeZoneWindows.h"
#include "KTX/TIM/KTX_TIM_WindowsZoneNames.h"
#include "common/KTX_TIM_AllocationFault.h"
#include "timezones/KTX_TIM_FakeZoneRegistry.h"
#include "timezones/KTX_TIM_ZoneLayout.h"

#ifndef _WIN32
#include "Posix/KTX_TIM_ZoneTree.h"
#include "common/KTX_TIM_TempFolder.h"
#include "timezones/KTX_TIM_TzFileBuilder.h"
#endif

// Every operation with each of its allocations failing in turn: the exception passes, nothing is
// lost, no key stays open, and the next call works.
namespace KTX::TIM::TEST {
namespace {

void expectNothingLost(std::ptrdiff_t balance) {
  if (SEES_ALL_MEMORY) {
    EXPECT_EQ(0, balance);
  }
}

// The two name tables stay until the end of the process, so they must stand before memory is
// counted.
void buildNameTables() {
  std::wstring found;
  getWindowsZoneName(L"Asia/Tokyo", found);
  getIanaZoneName(L"Tokyo Standard Time", found);
}

class TimeZoneAllocation : public ::testing::Test {
 protected:
  TimeZoneAllocation() {
    addFourZones(registry);
    registry.calls.setZone(-540, u"Tokyo Standard Time");
  }

  // Runs on a fresh object each time; returns how many allocations there were to fail.
  std::size_t sweep(std::function<void(TimeZoneC&)> const& operation) {
    buildNameTables();
    return sweepAllocationFaults(
        [&operation] {
          TimeZoneWindowsC zone;
          operation(zone);
        },
        [this](std::ptrdiff_t balance) {
          expectNothingLost(balance);
          EXPECT_EQ(0U, registry.openKeyCount());
        });
  }

  FakeZoneRegistryC registry;
};

// The first test of the program: the name tables are not yet built.
TEST_F(TimeZoneAllocation, ANameTableThatCouldNotBeBuiltIsBuiltByTheNextLookup) {
  std::wstring const iana = L"Africa/Cairo";
  std::wstring const windows = L"Egypt Standard Time";
  // Once the table stands, what is left to fail is the copy of the name.
  int keptTables = 0;
  auto const countKept = [&keptTables](std::ptrdiff_t balance) {
    keptTables += balance != 0 ? 1 : 0;
  };
  auto const lookUpWindows = [&iana] {
    std::wstring found;
    getWindowsZoneName(iana, found);
  };
  auto const lookUpIana = [&windows] {
    std::wstring found;
    getIanaZoneName(windows, found);
  };
  EXPECT_LE(163U, sweepAllocationFaults(lookUpWindows, countKept));
  EXPECT_LE(139U, sweepAllocationFaults(lookUpIana, countKept));
  EXPECT_TRUE(!SEES_ALL_MEMORY || keptTables <= 2) << keptTables;
  std::wstring found;
  EXPECT_EQ(RC_OK, getWindowsZoneName(iana, found));
  EXPECT_EQ(windows, found);
  EXPECT_EQ(RC_OK, getIanaZoneName(windows, found));
  EXPECT_EQ(iana, found);
}

TEST_F(TimeZoneAllocation, EveryOperationPassesTheFailureOnAndLosesNothing) {
  std::wstring const tokyo = L"Tokyo Standard Time";
  std::wstring const berlin = L"Europe/Berlin";
  std::wstring const london = L"GMT Standard Time";
  std::function<void(TimeZoneC&)> const operations[] = {
      [](TimeZoneC& zone) {
        TimeZoneC::ZoneNamesT zones;
        zone.getTimeZoneList(zones);
      },
      [](TimeZoneC& zone) {
        std::wstring name;
        zone.getTimeZone(name);
      },
      [&tokyo](TimeZoneC& zone) { zone.setTimeZone(tokyo); },
      [&berlin](TimeZoneC& zone) { zone.setTimeZone(berlin); },
      [&tokyo](TimeZoneC& zone) {
        boost::signals2::scoped_connection const connection = zone.connectTimeZoneChanged([] {});
        zone.setTimeZone(tokyo);
      },
      [](TimeZoneC& zone) { zone.getDefaultTimeZone(); },
      [&tokyo](TimeZoneC& zone) { zone.checkTimeZone(tokyo); },
      [](TimeZoneC& zone) { zone.getTimeZoneOffsetText(); },
      [&tokyo](TimeZoneC& zone) {
        std::int32_t bias = 0;
        zone.getTimeZoneBias(tokyo, bias);
      },
      [&tokyo](TimeZoneC& zone) {
        std::wstring display;
        zone.getTimeZoneDisplayName(tokyo, display);
      },
      [](TimeZoneC& zone) {
        std::wstring name;
        zone.findTimeZoneByBias(-540, name);
      },
      [&london](TimeZoneC& zone) {
        std::int32_t bias = 0;
        zone.getPreferredTimeZoneBias(london, bias);
      },
      [](TimeZoneC& zone) {
        std::wstring name;
        zone.findPreferredTimeZoneByBias(-480, name);
      },
      [&berlin](TimeZoneC& zone) {
        std::wstring name;
        zone.resolveTimeZone(berlin, -60, name);
      }};
  for (auto const& operation : operations) {
    EXPECT_LE(1U, sweep(operation));
  }
}

TEST_F(TimeZoneAllocation, TheOffsetNeedsNoMemory) {
  TimeZoneWindowsC zone;
  zone.setTimeZone(L"W. Europe Standard Time");
  GpsC const time(0, 0);
  AllocationWatchC const watch;
  zone.getUtcOffset(time);
  EXPECT_EQ(0U, watch.allocationCount());
}

TEST_F(TimeZoneAllocation, AFailedChangeLeavesTheZoneThatWasHeld) {
  TimeZoneWindowsC zone;
  std::wstring const london = L"GMT Standard Time";
  std::wstring const berlin = L"W. Europe Standard Time";
  zone.setTimeZone(london);
  std::size_t const failed = sweepAllocationFaults([&] { zone.setTimeZone(berlin); },
                                                   [&](std::ptrdiff_t /*balance*/) {
                                                     std::wstring name;
                                                     EXPECT_EQ(RC_OK, zone.getTimeZone(name));
                                                     EXPECT_EQ(london, name);
                                                     EXPECT_EQ(0U, registry.openKeyCount());
                                                   });
  EXPECT_LE(1U, failed);
  std::wstring name;
  EXPECT_EQ(RC_OK, zone.getTimeZone(name));
  EXPECT_EQ(berlin, name);
}

TEST_F(TimeZoneAllocation, AFirstConnectionThatFailsLeavesNoSubscriber) {
  for (std::size_t failing = 1;; ++failing) {
    SCOPED_TRACE(failing);
    TimeZoneWindowsC zone;
    boost::signals2::connection connection;
    int heard = 0;
    bool hasFailed = false;
    {
      AllocationWatchC const watch(failing);
      try {
        connection = zone.connectTimeZoneChanged([&heard] { ++heard; });
      } catch (std::bad_alloc const&) {
      }
      hasFailed = watch.hasFailed();
    }
    EXPECT_EQ(RC_OK, zone.setTimeZone(L"GMT Standard Time"));
    EXPECT_EQ(!hasFailed, connection.connected());
    EXPECT_EQ(hasFailed ? 0 : 1, heard);
    if (!hasFailed) {
      EXPECT_LE(2U, failing);
      break;
    }
  }
}

#ifndef _WIN32
TEST(ZoneTreeAllocation, ATreeThatCouldNotBeBuiltIsBuiltByTheNextCall) {
  buildNameTables();
  TempFolderC const folder;
  TzFileBuilderC file;
  file.footer = "\nJST-9\n";
  std::filesystem::create_directory(folder.path() / "Asia");
  folder.write("Asia/Tokyo", file.bytes());
  std::string const path = folder.path().string();
  ZoneSourcesC const sources{"Asia/Tokyo", path.c_str(), "", 1768478400};
  std::u16string const root = ZONES_PATH;
  auto const use = [&sources, &root] {
    ZoneTreeC tree([&sources] { return sources; });
    for (int attempt = 0; attempt < 2; ++attempt) {
      try {
        KeyHandleT key = 0;
        TimeZoneInformationC information{};
        EXPECT_EQ(0, tree.openKey(0, root, key));
        EXPECT_EQ(0U, tree.getTimeZoneInformation(information));
        EXPECT_EQ(-540, information.bias);
        EXPECT_EQ(u'T', information.standardName[0]);
      } catch (std::bad_alloc const&) {
        EXPECT_EQ(0, attempt);
      }
    }
  };
  EXPECT_LT(139U, sweepAllocationFaults(use, expectNothingLost));
}
#endif

}  // namespace
}  // namespace KTX::TIM::TEST
