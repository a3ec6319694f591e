#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeZoneWindows.h"
#include "common/KTX_TIM_LogCapture.h"
#include "common/KTX_TIM_TempFolder.h"
#include "timezones/KTX_TIM_LibraryClock.h"
#include "timezones/KTX_TIM_WindowsZoneTable.h"

// The zones of the machine's own tz database and the machine's own zone.
namespace KTX::TIM::TEST {
namespace {

class TimeZonePosix : public ::testing::Test {
 protected:
  std::wstring machineZone() {
    TimeZoneWindowsC fresh;
    std::wstring name;
    fresh.getTimeZone(name);
    return name;
  }

  std::wstring firstWithBias(std::int32_t bias) {
    std::wstring name;
    EXPECT_EQ(RC_OK, zone.findTimeZoneByBias(bias, name));
    return name;
  }

  LogCaptureC log;
  TimeZoneWindowsC zone;
};

TEST_F(TimeZonePosix, ListsAllZonesSortedFromUtcToTheDateLine) {
  TimeZoneC::ZoneNamesT zones;
  ASSERT_EQ(RC_OK, zone.getTimeZoneList(zones));
  EXPECT_EQ(139U, zones.size());
  EXPECT_TRUE(std::is_sorted(zones.begin(), zones.end(), [](auto const& left, auto const& right) {
    return left.second < right.second;
  }));
  EXPECT_EQ(0U, zones.front().second.find(L"(UTC) "));
  EXPECT_EQ(L"Dateline Standard Time", zones.back().first);
}

TEST_F(TimeZonePosix, EveryZoneOfTheTableIsResolvedAndReadable) {
  for (auto const& row : WINDOWS_ZONE_TABLE) {
    std::wstring name;
    EXPECT_EQ(RC_OK, zone.resolveTimeZone(row.primaryIanaName, 77777, name));
    EXPECT_EQ(row.windowsName, name);
    std::int32_t bias = 99999;
    EXPECT_EQ(RC_OK, zone.getTimeZoneBias(name, bias));
    EXPECT_LE(-840, bias);
    EXPECT_GE(720, bias);
    EXPECT_EQ(RC_OK, zone.setTimeZone(name));
    EXPECT_NE(L"", zone.getTimeZoneOffsetText());
  }
}

TEST_F(TimeZonePosix, FindsTheFirstZoneOfABias) {
  EXPECT_EQ(L"Central Europe Standard Time", firstWithBias(-60));
  EXPECT_EQ(L"China Standard Time", firstWithBias(-480));
  EXPECT_EQ(L"Cuba Standard Time", firstWithBias(300));
  std::wstring name;
  EXPECT_EQ(RC_OK, zone.findPreferredTimeZoneByBias(0, name));
  EXPECT_EQ(L"GMT Standard Time", name);
  EXPECT_EQ(RC_OK, zone.findPreferredTimeZoneByBias(-480, name));
  EXPECT_EQ(L"Singapore Standard Time", name);
}

TEST_F(TimeZonePosix, OpensKeysByTheRulesOfWindows) {
  EXPECT_EQ(RC_OK, zone.checkTimeZone(L""));
  EXPECT_EQ(RC_OK, zone.checkTimeZone(L"tokyo STANDARD time"));
  EXPECT_EQ(RC_OK, zone.checkTimeZone(L"UTC\\"));
  EXPECT_EQ(RC_OK, zone.checkTimeZone(std::wstring(L"UTC\0rest", 8)));
  EXPECT_EQ(RC_FAILED, zone.checkTimeZone(L"UTC "));
  EXPECT_EQ(RC_FAILED, zone.checkTimeZone(L"\\UTC"));
  EXPECT_EQ(RC_FAILED, zone.checkTimeZone(L"Nowhere"));
}

TEST_F(TimeZonePosix, TheZoneAtTheStartIsTheMachines) {
  struct {
    char const* environment;
    wchar_t const* name;
    wchar_t const* offsetText;
  } const cases[] = {{"Europe/Berlin", L"W. Europe Standard Time", L"GMT--1:00"},
                     {":America/New_York", L"Eastern Standard Time", L"GMT+05:00"},
                     {"Asia/Kolkata", L"India Standard Time", L"GMT--5:-30"},
                     {"America/St_Johns", L"Newfoundland Standard Time", L"GMT+03:30"},
                     {"UTC", L"UTC", L"GMT+00:00"},
                     {"", L"UTC", L"GMT+00:00"}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.environment);
    EnvironmentZoneC const environment(c.environment);
    TimeZoneWindowsC fresh;
    std::wstring name;
    EXPECT_EQ(RC_OK, fresh.getTimeZone(name));
    EXPECT_EQ(c.name, name);
    EXPECT_EQ(c.offsetText, fresh.getTimeZoneOffsetText());
  }
  EXPECT_EQ(0U, log.assertionCount());
}

TEST_F(TimeZonePosix, AMachinesZoneThatFitsNoKeyIsAsserted) {
  EnvironmentZoneC const environment("XYZ3:17");
  EXPECT_EQ(L"", machineZone());
  EXPECT_EQ(1U, log.assertionCount());
  EXPECT_EQ(-197, zone.getUtcOffset(GpsC(0, 0)));
}

TEST_F(TimeZonePosix, TheOffsetNowIsThatOfTheCLibraryInEveryZone) {
  for (auto const& row : WINDOWS_ZONE_TABLE) {
    std::wstring const wide(row.primaryIanaName);
    std::string const name(wide.begin(), wide.end());
    EnvironmentZoneC const environment(name.c_str());
    EXPECT_EQ(libraryOffsetSeconds(std::time(nullptr)), zone.getUtcOffset(GpsC(0, 0)) * 60) << name;
  }
}

TEST_F(TimeZonePosix, WithoutADatabaseTheZoneOperationsFailAndNothingElse) {
  TempFolderC const folder;
  setenv("TZDIR", folder.path().c_str(), 1);  // NOLINT(concurrency-mt-unsafe) one thread
  EnvironmentZoneC const environment("Europe/Berlin");
  TimeZoneC::ZoneNamesT zones;
  EXPECT_EQ(RC_FAILED, zone.getTimeZoneList(zones));
  EXPECT_EQ(RC_FAILED, zone.checkTimeZone(L"UTC"));
  EXPECT_EQ(RC_FAILED, zone.setTimeZone(L"UTC"));
  EXPECT_EQ(L"", machineZone());
  EXPECT_EQ(0, zone.getUtcOffset(GpsC(0, 0)));
  EXPECT_EQ(L"GMT Standard Time", zone.getDefaultTimeZone());
  unsetenv("TZDIR");  // NOLINT(concurrency-mt-unsafe) one thread
  EXPECT_EQ(RC_OK, zone.checkTimeZone(L"UTC"));
}

}  // namespace
}  // namespace KTX::TIM::TEST
