#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeZone.h"
#include "KTX/TIM/KTX_TIM_TimeZoneWindows.h"
#include "common/KTX_TIM_LogCapture.h"
#include "timezones/KTX_TIM_RootTimeZoneRegistryKeyWrapper.h"
#include "timezones/KTX_TIM_WindowsZoneTable.h"

// The zones of the real registry and the real zone of the machine, which the environment sets.
namespace KTX::TIM::TEST {
namespace {

struct MachineZoneC {
  char const* environment;
  wchar_t const* name;
  std::int32_t bias;
  wchar_t const* offsetText;
  std::int16_t winterOffset;
  std::int16_t summerOffset;
} const MACHINE_ZONES[] = {
    {"UTC", L"Greenwich Standard Time", 0, L"GMT+00:00", 0, 0},
    {"Europe/London", L"GMT Standard Time", 0, L"GMT+00:00", 0, 60},
    {"Europe/Berlin", L"Central Europe Standard Time", -60, L"GMT--1:00", 60, 120},
    {"America/New_York", L"Eastern Standard Time", 300, L"GMT+05:00", -300, -240},
    {"Asia/Singapore", L"China Standard Time", -480, L"GMT--8:00", 480, 480},
    {"Asia/Tokyo", L"Tokyo Standard Time", -540, L"GMT--9:00", 540, 540},
    {"Asia/Kolkata", L"India Standard Time", -330, L"GMT--5:-30", 330, 330},
    {"Australia/Sydney", L"AUS Eastern Standard Time", -600, L"GMT--10:00", 600, 660},
    {"America/St_Johns", L"Newfoundland Standard Time", 210, L"GMT+03:30", -210, -150}};

// The environment's zone, UTC where it has none that is listed.
MachineZoneC const& machineZone() {
  char const* const set = std::getenv("TZ");  // NOLINT(concurrency-mt-unsafe) nobody changes it
  std::string const wanted = set != nullptr ? set : "UTC";
  auto const* const found =
      std::find_if(std::begin(MACHINE_ZONES), std::end(MACHINE_ZONES),
                   [&wanted](MachineZoneC const& zone) { return zone.environment == wanted; });
  return found != std::end(MACHINE_ZONES) ? *found : MACHINE_ZONES[0];
}

class TimeZoneRegistry : public ::testing::Test {
 protected:
  std::wstring firstWithBias(std::int32_t bias) {
    std::wstring name;
    EXPECT_EQ(RC_OK, zone.findTimeZoneByBias(bias, name));
    return name;
  }

  LogCaptureC log;
  TimeZoneC& zone = getTimeZoneInstance();
};

TEST_F(TimeZoneRegistry, HasTheZonesOfTheNameTable) {
  TimeZoneC::ZoneNamesT zones;
  ASSERT_EQ(RC_OK, zone.getTimeZoneList(zones));
  EXPECT_EQ(139U, zones.size());
  std::set<std::wstring> names;
  for (auto const& entry : zones) {
    names.insert(entry.first);
  }
  std::set<std::wstring> expected;
  for (auto const& row : WINDOWS_ZONE_TABLE) {
    expected.insert(row.windowsName);
  }
  EXPECT_EQ(expected, names);
}

TEST_F(TimeZoneRegistry, ListsThemSortedFromUtcToTheDateLine) {
  TimeZoneC::ZoneNamesT zones;
  ASSERT_EQ(RC_OK, zone.getTimeZoneList(zones));
  EXPECT_TRUE(std::is_sorted(zones.begin(), zones.end(), [](auto const& left, auto const& right) {
    return left.second < right.second;
  }));
  EXPECT_EQ(L"UTC", zones.front().first);
  EXPECT_EQ(L"Dateline Standard Time", zones.back().first);
}

TEST_F(TimeZoneRegistry, EveryZoneIsReadableByEveryQuery) {
  TimeZoneC::ZoneNamesT zones;
  ASSERT_EQ(RC_OK, zone.getTimeZoneList(zones));
  for (auto const& entry : zones) {
    std::int32_t bias = 99999;
    EXPECT_EQ(RC_OK, zone.checkTimeZone(entry.first));
    EXPECT_EQ(RC_OK, zone.getTimeZoneBias(entry.first, bias));
    EXPECT_LE(-840, bias);
    EXPECT_GE(720, bias);
    std::wstring display;
    EXPECT_EQ(RC_OK, zone.getTimeZoneDisplayName(entry.first, display));
    EXPECT_EQ(entry.second, display);
    std::wstring found;
    EXPECT_EQ(RC_OK, zone.findTimeZoneByBias(bias, found));
  }
}

TEST_F(TimeZoneRegistry, EnumeratesInAnOrderThatDoesNotLookAtCase) {
  RootTimeZoneRegistryKeyWrapperC const root;
  std::u16string name;
  ASSERT_TRUE(root.enumerate(0, name));
  EXPECT_EQ(u"Afghanistan Standard Time", name);
  ASSERT_TRUE(root.enumerate(138, name));
  EXPECT_EQ(u"Yukon Standard Time", name);
  EXPECT_FALSE(root.enumerate(139, name));
}

TEST_F(TimeZoneRegistry, FindsTheFirstZoneOfABias) {
  EXPECT_EQ(L"Central Europe Standard Time", firstWithBias(-60));
  EXPECT_EQ(L"GMT Standard Time", firstWithBias(0));
  EXPECT_EQ(L"China Standard Time", firstWithBias(-480));
  EXPECT_EQ(L"Cuba Standard Time", firstWithBias(300));
  std::wstring name = L"untouched";
  EXPECT_EQ(RC_FAILED, zone.findTimeZoneByBias(1, name));
  EXPECT_EQ(L"untouched", name);
}

TEST_F(TimeZoneRegistry, KnowsThePreferredZones) {
  struct {
    std::int32_t bias;
    wchar_t const* name;
  } const cases[] = {{0, L"GMT Standard Time"},
                     {-60, L"W. Europe Standard Time"},
                     {-480, L"Singapore Standard Time"}};
  for (auto const& c : cases) {
    std::int32_t bias = 99;
    EXPECT_EQ(RC_OK, zone.getPreferredTimeZoneBias(c.name, bias));
    EXPECT_EQ(c.bias, bias);
    std::wstring name;
    EXPECT_EQ(RC_OK, zone.findPreferredTimeZoneByBias(c.bias, name));
    EXPECT_EQ(c.name, name);
  }
}

TEST_F(TimeZoneRegistry, OpensKeysByTheSystemsRules) {
  EXPECT_EQ(RC_OK, zone.checkTimeZone(L""));
  EXPECT_EQ(RC_OK, zone.checkTimeZone(L"tokyo STANDARD time"));
  EXPECT_EQ(RC_OK, zone.checkTimeZone(L"UTC\\"));
  EXPECT_EQ(RC_OK, zone.checkTimeZone(std::wstring(L"UTC\0rest", 8)));
  EXPECT_EQ(RC_FAILED, zone.checkTimeZone(L"UTC "));
  EXPECT_EQ(RC_FAILED, zone.checkTimeZone(L"\\UTC"));
  EXPECT_EQ(RC_FAILED, zone.checkTimeZone(L"Nowhere"));
}

TEST_F(TimeZoneRegistry, ResolvesEveryNameOfTheTable) {
  for (auto const& row : WINDOWS_ZONE_TABLE) {
    std::wstring resolved;
    EXPECT_EQ(RC_OK, zone.resolveTimeZone(row.primaryIanaName, 77777, resolved));
    EXPECT_EQ(row.windowsName, resolved);
  }
  std::wstring resolved;
  EXPECT_EQ(RC_OK, zone.resolveTimeZone(L"Mars/Olympus", -60, resolved));
  EXPECT_EQ(L"Central Europe Standard Time", resolved);
}

TEST_F(TimeZoneRegistry, TheZoneAtTheStartIsTheMachines) {
  MachineZoneC const& machine = machineZone();
  TimeZoneWindowsC fresh;
  std::wstring name;
  EXPECT_EQ(RC_OK, fresh.getTimeZone(name));
  EXPECT_EQ(machine.name, name);
  std::int32_t bias = 99999;
  EXPECT_EQ(RC_OK, fresh.getTimeZoneBias(name, bias));
  EXPECT_EQ(machine.bias, bias);
  EXPECT_EQ(machine.offsetText, fresh.getTimeZoneOffsetText());
  EXPECT_EQ(0U, log.assertionCount());
}

TEST_F(TimeZoneRegistry, TheOffsetIsTheMachinesOfTheSeason) {
  MachineZoneC const& machine = machineZone();
  TimeZoneInformationC information{};
  std::uint32_t const season = operatingSystemCalls().getTimeZoneInformation(information);
  ASSERT_EQ(machine.winterOffset == machine.summerOffset, season == 0);
  EXPECT_EQ(season == 2 ? machine.summerOffset : machine.winterOffset,
            zone.getUtcOffset(GpsC(0, 0)));
}

}  // namespace
}  // namespace KTX::TIM::TEST
