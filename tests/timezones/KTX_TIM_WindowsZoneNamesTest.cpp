#include "KTX/TIM/KTX_TIM_WindowsZoneNames.h"

#include <map>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "timezones/KTX_TIM_WindowsZoneTable.h"

namespace KTX::TIM::TEST {
namespace {

// Every IANA name of the table and its Windows name; of one Windows name the primary name first.
struct ZonePairC {
  wchar_t const* ianaName;
  wchar_t const* windowsName;
} const PAIRS[] = {
    {L"Australia/Darwin", L"AUS Central Standard Time"},
    {L"Australia/Sydney", L"AUS Eastern Standard Time"},
    {L"Asia/Kabul", L"Afghanistan Standard Time"},
    {L"America/Anchorage", L"Alaskan Standard Time"},
    {L"America/Adak", L"Aleutian Standard Time"},
    {L"Asia/Barnaul", L"Altai Standard Time"},
    {L"Asia/Riyadh", L"Arab Standard Time"},
    {L"Asia/Dubai", L"Arabian Standard Time"},
    {L"Etc/GMT-4", L"Arabian Standard Time"},
    {L"Asia/Baghdad", L"Arabic Standard Time"},
    {L"America/Buenos_Aires", L"Argentina Standard Time"},
    {L"Europe/Astrakhan", L"Astrakhan Standard Time"},
    {L"America/Halifax", L"Atlantic Standard Time"},
    {L"Australia/Eucla", L"Aus Central W. Standard Time"},
    {L"Asia/Baku", L"Azerbaijan Standard Time"},
    {L"Atlantic/Azores", L"Azores Standard Time"},
    {L"America/Bahia", L"Bahia Standard Time"},
    {L"Asia/Dhaka", L"Bangladesh Standard Time"},
    {L"Europe/Minsk", L"Belarus Standard Time"},
    {L"Pacific/Bougainville", L"Bougainville Standard Time"},
    {L"America/Regina", L"Canada Central Standard Time"},
    {L"Atlantic/Cape_Verde", L"Cape Verde Standard Time"},
    {L"Etc/GMT+1", L"Cape Verde Standard Time"},
    {L"Asia/Yerevan", L"Caucasus Standard Time"},
    {L"Australia/Adelaide", L"Cen. Australia Standard Time"},
    {L"America/Guatemala", L"Central America Standard Time"},
    {L"Etc/GMT+6", L"Central America Standard Time"},
    {L"Asia/Bishkek", L"Central Asia Standard Time"},
    {L"Etc/GMT-6", L"Central Asia Standard Time"},
    {L"America/Cuiaba", L"Central Brazilian Standard Time"},
    {L"Europe/Budapest", L"Central Europe Standard Time"},
    {L"Europe/Warsaw", L"Central European Standard Time"},
    {L"Pacific/Guadalcanal", L"Central Pacific Standard Time"},
    {L"Etc/GMT-11", L"Central Pacific Standard Time"},
    {L"America/Chicago", L"Central Standard Time"},
    {L"CST6CDT", L"Central Standard Time"},
    {L"America/Mexico_City", L"Central Standard Time (Mexico)"},
    {L"Pacific/Chatham", L"Chatham Islands Standard Time"},
    {L"Asia/Shanghai", L"China Standard Time"},
    {L"America/Havana", L"Cuba Standard Time"},
    {L"Etc/GMT+12", L"Dateline Standard Time"},
    {L"Africa/Nairobi", L"E. Africa Standard Time"},
    {L"Etc/GMT-3", L"E. Africa Standard Time"},
    {L"Australia/Brisbane", L"E. Australia Standard Time"},
    {L"Europe/Chisinau", L"E. Europe Standard Time"},
    {L"America/Sao_Paulo", L"E. South America Standard Time"},
    {L"Pacific/Easter", L"Easter Island Standard Time"},
    {L"America/New_York", L"Eastern Standard Time"},
    {L"EST5EDT", L"Eastern Standard Time"},
    {L"America/Cancun", L"Eastern Standard Time (Mexico)"},
    {L"Africa/Cairo", L"Egypt Standard Time"},
    {L"Asia/Yekaterinburg", L"Ekaterinburg Standard Time"},
    {L"Europe/Kiev", L"FLE Standard Time"},
    {L"Pacific/Fiji", L"Fiji Standard Time"},
    {L"Europe/London", L"GMT Standard Time"},
    {L"Europe/Bucharest", L"GTB Standard Time"},
    {L"Asia/Tbilisi", L"Georgian Standard Time"},
    {L"America/Godthab", L"Greenland Standard Time"},
    {L"Atlantic/Reykjavik", L"Greenwich Standard Time"},
    {L"America/Port-au-Prince", L"Haiti Standard Time"},
    {L"Pacific/Honolulu", L"Hawaiian Standard Time"},
    {L"Etc/GMT+10", L"Hawaiian Standard Time"},
    {L"Asia/Calcutta", L"India Standard Time"},
    {L"Asia/Tehran", L"Iran Standard Time"},
    {L"Asia/Jerusalem", L"Israel Standard Time"},
    {L"Asia/Amman", L"Jordan Standard Time"},
    {L"Europe/Kaliningrad", L"Kaliningrad Standard Time"},
    {L"Asia/Seoul", L"Korea Standard Time"},
    {L"Africa/Tripoli", L"Libya Standard Time"},
    {L"Pacific/Kiritimati", L"Line Islands Standard Time"},
    {L"Etc/GMT-14", L"Line Islands Standard Time"},
    {L"Australia/Lord_Howe", L"Lord Howe Standard Time"},
    {L"Asia/Magadan", L"Magadan Standard Time"},
    {L"America/Punta_Arenas", L"Magallanes Standard Time"},
    {L"Pacific/Marquesas", L"Marquesas Standard Time"},
    {L"Indian/Mauritius", L"Mauritius Standard Time"},
    {L"Asia/Beirut", L"Middle East Standard Time"},
    {L"America/Montevideo", L"Montevideo Standard Time"},
    {L"Africa/Casablanca", L"Morocco Standard Time"},
    {L"America/Denver", L"Mountain Standard Time"},
    {L"MST7MDT", L"Mountain Standard Time"},
    {L"America/Mazatlan", L"Mountain Standard Time (Mexico)"},
    {L"Asia/Rangoon", L"Myanmar Standard Time"},
    {L"Asia/Novosibirsk", L"N. Central Asia Standard Time"},
    {L"Africa/Windhoek", L"Namibia Standard Time"},
    {L"Asia/Katmandu", L"Nepal Standard Time"},
    {L"Pacific/Auckland", L"New Zealand Standard Time"},
    {L"America/St_Johns", L"Newfoundland Standard Time"},
    {L"Pacific/Norfolk", L"Norfolk Standard Time"},
    {L"Asia/Irkutsk", L"North Asia East Standard Time"},
    {L"Asia/Krasnoyarsk", L"North Asia Standard Time"},
    {L"Asia/Pyongyang", L"North Korea Standard Time"},
    {L"Asia/Omsk", L"Omsk Standard Time"},
    {L"America/Santiago", L"Pacific SA Standard Time"},
    {L"America/Los_Angeles", L"Pacific Standard Time"},
    {L"PST8PDT", L"Pacific Standard Time"},
    {L"America/Tijuana", L"Pacific Standard Time (Mexico)"},
    {L"Asia/Karachi", L"Pakistan Standard Time"},
    {L"America/Asuncion", L"Paraguay Standard Time"},
    {L"Asia/Qyzylorda", L"Qyzylorda Standard Time"},
    {L"Europe/Paris", L"Romance Standard Time"},
    {L"Asia/Srednekolymsk", L"Russia Time Zone 10"},
    {L"Asia/Kamchatka", L"Russia Time Zone 11"},
    {L"Europe/Samara", L"Russia Time Zone 3"},
    {L"Europe/Moscow", L"Russian Standard Time"},
    {L"America/Cayenne", L"SA Eastern Standard Time"},
    {L"Etc/GMT+3", L"SA Eastern Standard Time"},
    {L"America/Bogota", L"SA Pacific Standard Time"},
    {L"Etc/GMT+5", L"SA Pacific Standard Time"},
    {L"America/La_Paz", L"SA Western Standard Time"},
    {L"Etc/GMT+4", L"SA Western Standard Time"},
    {L"Asia/Bangkok", L"SE Asia Standard Time"},
    {L"Etc/GMT-7", L"SE Asia Standard Time"},
    {L"America/Miquelon", L"Saint Pierre Standard Time"},
    {L"Asia/Sakhalin", L"Sakhalin Standard Time"},
    {L"Pacific/Apia", L"Samoa Standard Time"},
    {L"Africa/Sao_Tome", L"Sao Tome Standard Time"},
    {L"Europe/Saratov", L"Saratov Standard Time"},
    {L"Asia/Singapore", L"Singapore Standard Time"},
    {L"Etc/GMT-8", L"Singapore Standard Time"},
    {L"Africa/Johannesburg", L"South Africa Standard Time"},
    {L"Etc/GMT-2", L"South Africa Standard Time"},
    {L"Africa/Juba", L"South Sudan Standard Time"},
    {L"Asia/Colombo", L"Sri Lanka Standard Time"},
    {L"Africa/Khartoum", L"Sudan Standard Time"},
    {L"Asia/Damascus", L"Syria Standard Time"},
    {L"Asia/Taipei", L"Taipei Standard Time"},
    {L"Australia/Hobart", L"Tasmania Standard Time"},
    {L"America/Araguaina", L"Tocantins Standard Time"},
    {L"Asia/Tokyo", L"Tokyo Standard Time"},
    {L"Etc/GMT-9", L"Tokyo Standard Time"},
    {L"Asia/Tomsk", L"Tomsk Standard Time"},
    {L"Pacific/Tongatapu", L"Tonga Standard Time"},
    {L"Asia/Chita", L"Transbaikal Standard Time"},
    {L"Europe/Istanbul", L"Turkey Standard Time"},
    {L"America/Grand_Turk", L"Turks And Caicos Standard Time"},
    {L"America/Indianapolis", L"US Eastern Standard Time"},
    {L"America/Phoenix", L"US Mountain Standard Time"},
    {L"Etc/GMT+7", L"US Mountain Standard Time"},
    {L"Etc/UTC", L"UTC"},
    {L"Etc/GMT", L"UTC"},
    {L"Etc/GMT-12", L"UTC+12"},
    {L"Etc/GMT-13", L"UTC+13"},
    {L"Etc/GMT+2", L"UTC-02"},
    {L"Etc/GMT+8", L"UTC-08"},
    {L"Etc/GMT+9", L"UTC-09"},
    {L"Etc/GMT+11", L"UTC-11"},
    {L"Asia/Ulaanbaatar", L"Ulaanbaatar Standard Time"},
    {L"America/Caracas", L"Venezuela Standard Time"},
    {L"Asia/Vladivostok", L"Vladivostok Standard Time"},
    {L"Europe/Volgograd", L"Volgograd Standard Time"},
    {L"Australia/Perth", L"W. Australia Standard Time"},
    {L"Africa/Lagos", L"W. Central Africa Standard Time"},
    {L"Etc/GMT-1", L"W. Central Africa Standard Time"},
    {L"Europe/Berlin", L"W. Europe Standard Time"},
    {L"Asia/Hovd", L"W. Mongolia Standard Time"},
    {L"Asia/Tashkent", L"West Asia Standard Time"},
    {L"Etc/GMT-5", L"West Asia Standard Time"},
    {L"Asia/Hebron", L"West Bank Standard Time"},
    {L"Pacific/Port_Moresby", L"West Pacific Standard Time"},
    {L"Etc/GMT-10", L"West Pacific Standard Time"},
    {L"Asia/Yakutsk", L"Yakutsk Standard Time"},
    {L"America/Whitehorse", L"Yukon Standard Time"},
};

std::wstring windowsNameOf(std::wstring const& ianaName) {
  std::wstring name;
  EXPECT_EQ(RC_OK, getWindowsZoneName(ianaName, name));
  return name;
}

std::wstring ianaNameOf(std::wstring const& windowsName) {
  std::wstring name;
  EXPECT_EQ(RC_OK, getIanaZoneName(windowsName, name));
  return name;
}

TEST(WindowsZoneNames, EveryIanaNameOfTheTableGivesItsWindowsName) {
  for (auto const& pair : PAIRS) {
    EXPECT_EQ(pair.windowsName, windowsNameOf(pair.ianaName));
  }
}

TEST(WindowsZoneNames, EveryWindowsNameOfTheTableGivesItsPrimaryIanaName) {
  std::map<std::wstring, std::wstring> primary;
  for (auto const& pair : PAIRS) {
    primary.emplace(pair.windowsName, pair.ianaName);
  }
  EXPECT_EQ(139U, primary.size());
  for (auto const& [windowsName, ianaName] : primary) {
    EXPECT_EQ(ianaName, ianaNameOf(windowsName));
    EXPECT_EQ(windowsName, windowsNameOf(ianaName));
  }
}

TEST(WindowsZoneNames, TheTableHas139RowsInCodeUnitOrderAnd170PairsOfWhichSevenRepeat) {
  std::set<std::wstring> ianaNames;
  std::multiset<std::wstring> repeats;
  std::size_t pairCount = 0;
  std::wstring previous;
  for (auto const& row : WINDOWS_ZONE_TABLE) {
    EXPECT_LT(previous, row.windowsName);
    previous = row.windowsName;
    for (wchar_t const* const name : {row.primaryIanaName, row.furtherIanaName}) {
      if (name == nullptr) {
        continue;
      }
      ++pairCount;
      if (!ianaNames.insert(name).second) {
        repeats.insert(name);
      }
    }
  }
  EXPECT_EQ(139U, std::size(WINDOWS_ZONE_TABLE));
  EXPECT_EQ(170U, pairCount);
  EXPECT_EQ(163U, ianaNames.size());
  EXPECT_THAT(repeats, ::testing::UnorderedElementsAre(L"Etc/GMT+12", L"Etc/GMT-12", L"Etc/GMT-13",
                                                       L"Etc/GMT+2", L"Etc/GMT+8", L"Etc/GMT+9",
                                                       L"Etc/GMT+11"));
}

TEST(WindowsZoneNames, AFurtherNameNeverComesBack) {
  EXPECT_EQ(L"Arabian Standard Time", windowsNameOf(L"Etc/GMT-4"));
  EXPECT_EQ(L"Asia/Dubai", ianaNameOf(L"Arabian Standard Time"));
  EXPECT_EQ(L"UTC", windowsNameOf(L"Etc/GMT"));
  EXPECT_EQ(L"UTC", windowsNameOf(L"Etc/UTC"));
  EXPECT_EQ(L"Etc/UTC", ianaNameOf(L"UTC"));
}

TEST(WindowsZoneNames, AMissLeavesTheNameAlone) {
  std::wstring const misses[] = {L"",
                                 L"europe/berlin",
                                 L"Europe/Berlin ",
                                 L" Europe/Berlin",
                                 L"Europe/Berli",
                                 L"Europe/Berlin2",
                                 std::wstring(L"Europe/Berlin\0", 14),
                                 L"Asia/Kolkata",
                                 L"Europe/Kyiv",
                                 L"America/Argentina/Buenos_Aires",
                                 L"W. Europe Standard Time"};
  for (auto const& miss : misses) {
    std::wstring name = L"untouched";
    EXPECT_EQ(RC_FAILED, getWindowsZoneName(miss, name));
    EXPECT_EQ(L"untouched", name);
  }
  std::wstring const windowsMisses[] = {L"",
                                        L"utc",
                                        L"UTC ",
                                        L"W. Europe Standard Tim",
                                        L"W. Europe Standard Times",
                                        L"w. europe standard time",
                                        L"Europe/Berlin"};
  for (auto const& miss : windowsMisses) {
    std::wstring name = L"untouched";
    EXPECT_EQ(RC_FAILED, getIanaZoneName(miss, name));
    EXPECT_EQ(L"untouched", name);
  }
}

TEST(WindowsZoneNames, OneStringMayBeBothArguments) {
  std::wstring name = L"Asia/Tokyo";
  EXPECT_EQ(RC_OK, getWindowsZoneName(name, name));
  EXPECT_EQ(L"Tokyo Standard Time", name);
  EXPECT_EQ(RC_OK, getIanaZoneName(name, name));
  EXPECT_EQ(L"Asia/Tokyo", name);
}

}  // namespace
}  // namespace KTX::TIM::TEST
