#include "Posix/KTX_TIM_ZoneTree.h"

#include <atomic>
#include <cctype>
#include <chrono>
#include <filesystem>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/KTX_TIM_TempFolder.h"
#include "timezones/KTX_TIM_CodeUnits.h"
#include "timezones/KTX_TIM_TzFileBuilder.h"
#include "timezones/KTX_TIM_WindowsZoneTable.h"
#include "timezones/KTX_TIM_ZoneLayout.h"

namespace KTX::TIM::TEST {
namespace {

constexpr std::int64_t WINTER = 1768478400;  // 2026-01-15 12:00
constexpr std::int64_t SUMMER = 1784116800;  // 2026-07-15 12:00
constexpr std::uint32_t INVALID_ZONE = 0xFFFFFFFF;

class ZoneTree : public ::testing::Test {
 protected:
  ZoneTree() { sources.databaseFolder = currentZoneSources().databaseFolder; }

  void useFolder() {
    folderText = folder.path().string();
    sources.databaseFolder = folderText.c_str();
  }

  void useZone(std::string const& zone) {
    zoneText = zone;
    sources.environmentZone = zoneText.c_str();
  }

  void writeZone(std::string const& name, std::string const& rules) {
    TzFileBuilderC file;
    file.footer = "\n" + rules + "\n";
    std::filesystem::create_directories((folder.path() / name).parent_path());
    folder.write(name, file.bytes());
  }

  KeyHandleT openRoot() {
    KeyHandleT key = 0;
    EXPECT_EQ(0, tree.openKey(0, ZONES_PATH, key));
    return key;
  }

  std::int32_t openZone(std::u16string const& name) {
    KeyHandleT key = 0;
    return tree.openKey(openRoot(), name, key);
  }

  std::u16string text(std::u16string const& zone, std::u16string const& value) {
    KeyHandleT key = 0;
    EXPECT_EQ(0, tree.openKey(openRoot(), zone, key));
    char16_t buffer[256] = {};
    std::uint32_t size = sizeof(buffer);
    EXPECT_EQ(0, tree.queryValue(key, value, buffer, size));
    std::u16string const found(textInBuffer(buffer, 256));
    EXPECT_EQ((found.size() + 1) * 2, size);
    return found;
  }

  std::string information(std::int64_t utc) {
    sources.utc = utc;
    TimeZoneInformationC zone{};
    zone.bias = 12345;
    std::uint32_t const id = tree.getTimeZoneInformation(zone);
    if (id == INVALID_ZONE) {
      EXPECT_EQ(0, zone.bias);
      return "invalid";
    }
    std::u16string const name(textInBuffer(zone.standardName, 32));
    return std::to_string(id) + " " + std::to_string(zone.bias) + " " +
           std::to_string(zone.daylightBias) + " " + std::string(name.begin(), name.end());
  }

  std::vector<std::u16string> keyNames() {
    KeyHandleT const root = openRoot();
    std::vector<std::u16string> names;
    char16_t buffer[256];
    std::uint32_t length = 256;
    while (tree.enumerateKey(root, static_cast<std::uint32_t>(names.size()), buffer, length) == 0) {
      names.emplace_back(buffer, length);
      length = 256;
    }
    return names;
  }

  TempFolderC folder;
  std::string folderText;
  std::string zoneText;
  std::string machineFile = (folder.path() / "localtime").string();
  ZoneSourcesC sources{nullptr, nullptr, machineFile.c_str(), WINTER};
  ZoneTreeC tree{[this] { return sources; }};
};

TEST_F(ZoneTree, HasEveryKeyOfTheNameTableInTheRegistrysOrder) {
  std::vector<std::u16string> const names = keyNames();
  std::vector<std::u16string> expected;
  for (auto const& row : WINDOWS_ZONE_TABLE) {
    expected.push_back(toCodeUnits(row.windowsName));
  }
  EXPECT_THAT(names, ::testing::UnorderedElementsAreArray(expected));
  ASSERT_EQ(139U, names.size());
  EXPECT_EQ(u"Afghanistan Standard Time", names.front());
  EXPECT_EQ(u"Yukon Standard Time", names.back());
  for (std::size_t i = 1; i < names.size(); ++i) {
    auto const upper = [](std::u16string const& name) {
      std::string result;
      for (char16_t const unit : name) {
        result.push_back(static_cast<char>(std::toupper(static_cast<char>(unit))));
      }
      return result;
    };
    EXPECT_LT(upper(names[i - 1]), upper(names[i]));
  }
}

TEST_F(ZoneTree, DisplaysOffsetAndPlace) {
  EXPECT_EQ(u"(UTC+01:00) Berlin", text(u"W. Europe Standard Time", u"Display"));
  EXPECT_EQ(u"(UTC+00:00) London", text(u"GMT Standard Time", u"Display"));
  EXPECT_EQ(u"(UTC) Reykjavik", text(u"Greenwich Standard Time", u"Display"));
  EXPECT_EQ(u"(UTC) UTC", text(u"UTC", u"Display"));
  EXPECT_EQ(u"(UTC-12:00) UTC-12", text(u"Dateline Standard Time", u"Display"));
  EXPECT_EQ(u"(UTC+13:00) UTC+13", text(u"UTC+13", u"Display"));
  EXPECT_EQ(u"(UTC-03:30) St Johns", text(u"Newfoundland Standard Time", u"Display"));
  EXPECT_EQ(u"(UTC+10:30) Lord Howe", text(u"Lord Howe Standard Time", u"Display"));
  EXPECT_EQ(u"(UTC-05:00) New York", text(u"Eastern Standard Time", u"Display"));
}

TEST_F(ZoneTree, NamesStandardAndDaylightTime) {
  EXPECT_EQ(u"W. Europe Standard Time", text(u"W. Europe Standard Time", u"Std"));
  EXPECT_EQ(u"W. Europe Daylight Time", text(u"W. Europe Standard Time", u"Dlt"));
  EXPECT_EQ(u"Coordinated Universal Time", text(u"UTC", u"Std"));
  EXPECT_EQ(u"Coordinated Universal Time", text(u"UTC", u"Dlt"));
  EXPECT_EQ(u"UTC+13", text(u"UTC+13", u"Dlt"));
  for (std::u16string const& name : keyNames()) {
    EXPECT_GE(31U, text(name, u"Std").size());
    EXPECT_GE(31U, text(name, u"Dlt").size());
  }
}

TEST_F(ZoneTree, NoTwoZonesDisplayAlike) {
  std::set<std::u16string> displays;
  for (std::u16string const& name : keyNames()) {
    EXPECT_TRUE(displays.insert(text(name, u"Display")).second);
  }
}

TEST_F(ZoneTree, OpensKeysAsWindowsDoes) {
  KeyHandleT const root = openRoot();
  KeyHandleT key = 77;
  EXPECT_EQ(0, tree.openKey(root, u"", key));
  EXPECT_EQ(root, key);
  EXPECT_EQ(0, openZone(u"utc"));
  EXPECT_EQ(0, openZone(u"UTC\\"));
  EXPECT_EQ(0, openZone(std::u16string(u"UTC\0rest", 8)));
  EXPECT_EQ(2, openZone(u"UTC "));
  EXPECT_EQ(2, openZone(u" UTC"));
  EXPECT_EQ(2, openZone(u"UTC\\\\"));
  EXPECT_EQ(2, openZone(u"UTC\\Dynamic DST"));
  EXPECT_EQ(2, openZone(u"Nowhere"));
  EXPECT_EQ(2, openZone(u"{UTC}"));
  EXPECT_EQ(2, openZone(u"Zone after the last"));
  EXPECT_EQ(161, openZone(u"\\UTC"));
  std::u16string const path = ZONES_PATH;
  EXPECT_EQ(0, tree.openKey(0, path + u"\\", key));
  EXPECT_EQ(0, tree.openKey(0, path + u"\\tokyo standard TIME", key));
  EXPECT_EQ(0,
            tree.openKey(0, u"software\\MICROSOFT\\windows nt\\currentversion\\time zones", key));
  EXPECT_EQ(2, tree.openKey(0, path + u"s", key));
  EXPECT_EQ(2, tree.openKey(0, u"", key));
  EXPECT_EQ(2, tree.openKey(0, u"SOFTWARE", key));
  EXPECT_EQ(161, tree.openKey(0, u"\\" + path, key));
  EXPECT_EQ(6, tree.openKey(999, u"UTC", key));
}

TEST_F(ZoneTree, AZoneKeyHasNoKeysBelow) {
  KeyHandleT zone = 0;
  ASSERT_EQ(0, tree.openKey(openRoot(), u"UTC", zone));
  KeyHandleT key = 0;
  EXPECT_EQ(0, tree.openKey(zone, u"", key));
  EXPECT_EQ(zone, key);
  EXPECT_EQ(2, tree.openKey(zone, u"UTC", key));
  char16_t name[256];
  std::uint32_t length = 256;
  EXPECT_EQ(259, tree.enumerateKey(zone, 0, name, length));
  tree.closeKey(zone);
}

TEST_F(ZoneTree, EnumeratesWithinTheRoomGiven) {
  KeyHandleT const root = openRoot();
  char16_t name[26];
  std::uint32_t length = 25;  // the first name, without room for its end
  EXPECT_EQ(234, tree.enumerateKey(root, 0, name, length));
  length = 26;
  EXPECT_EQ(0, tree.enumerateKey(root, 0, name, length));
  EXPECT_EQ(25U, length);
  EXPECT_EQ(u"Afghanistan Standard Time", std::u16string(name));
  EXPECT_EQ(0, tree.enumerateKey(root, 138, name, length = 26));
  EXPECT_EQ(259, tree.enumerateKey(root, 139, name, length = 26));
  EXPECT_EQ(6, tree.enumerateKey(999, 0, name, length = 26));
}

TEST_F(ZoneTree, QueriesValuesByTheirSizeInBytes) {
  KeyHandleT zone = 0;
  ASSERT_EQ(0, tree.openKey(openRoot(), u"UTC", zone));
  std::uint8_t data[44];
  std::uint32_t size = 43;
  EXPECT_EQ(234, tree.queryValue(zone, u"TZI", data, size));
  EXPECT_EQ(44U, size);
  EXPECT_EQ(0, tree.queryValue(zone, u"tzi", data, size));
  size = 0;
  EXPECT_EQ(0, tree.queryValue(zone, u"TZI", nullptr, size));
  EXPECT_EQ(44U, size);
  EXPECT_EQ(2, tree.queryValue(zone, u"Nothing", data, size));
  EXPECT_EQ(2, tree.queryValue(zone, u"", data, size));
  EXPECT_EQ(2, tree.queryValue(openRoot(), u"TZI", data, size));
  EXPECT_EQ(6, tree.queryValue(999, u"TZI", data, size));
}

TEST_F(ZoneTree, BeforeAnyKeyIsOpenedNoHandleIsValid) {
  KeyHandleT key = 0;
  char16_t name[256];
  std::uint32_t number = 256;
  EXPECT_EQ(6, tree.openKey(1, u"UTC", key));
  EXPECT_EQ(6, tree.enumerateKey(1, 0, name, number));
  EXPECT_EQ(6, tree.queryValue(2, u"TZI", name, number));
}

TEST_F(ZoneTree, WithoutADatabaseThereIsNoRootKeyUntilOneComes) {
  useFolder();
  KeyHandleT key = 0;
  EXPECT_EQ(2, tree.openKey(0, ZONES_PATH, key));
  writeZone("Asia/Tokyo", "JST-9");
  EXPECT_EQ(0, tree.openKey(0, ZONES_PATH, key));
  EXPECT_THAT(keyNames(), ::testing::ElementsAre(u"Tokyo Standard Time"));
}

TEST_F(ZoneTree, LeavesOutWhatTheDatabaseLacksOrHasDamaged) {
  useFolder();
  writeZone("Asia/Tokyo", "JST-9");
  writeZone("Europe/Berlin", "CET-1CEST,M3.5.0,M10.5.0/3");
  folder.write("Europe/London", "TZif2 and nothing more");
  EXPECT_THAT(keyNames(),
              ::testing::ElementsAre(u"Tokyo Standard Time", u"W. Europe Standard Time"));
  EXPECT_EQ(2, openZone(u"GMT Standard Time"));
}

TEST_F(ZoneTree, FindsRenamedZonesUnderTheirPresentNames) {
  useFolder();
  writeZone("Asia/Kolkata", "IST-5:30");
  writeZone("America/Indiana/Indianapolis", "EST5");
  EXPECT_THAT(keyNames(),
              ::testing::ElementsAre(u"India Standard Time", u"US Eastern Standard Time"));
  EXPECT_EQ(u"(UTC+05:30) Calcutta", text(u"India Standard Time", u"Display"));
}

TEST_F(ZoneTree, FollowsTheFolderAndTheYear) {
  useFolder();
  writeZone("America/Godthab", "<-02>2<-01>,M3.5.0/-1,M10.5.0/0");
  ZoneRecordC record{};
  auto const readRecord = [this, &record] {
    KeyHandleT key = 0;
    EXPECT_EQ(0, tree.openKey(openRoot(), u"Greenland Standard Time", key));
    std::uint32_t size = sizeof(record);
    EXPECT_EQ(0, tree.queryValue(key, u"TZI", &record, size));
  };
  readRecord();
  EXPECT_EQ(5, record.daylightDate.day);
  sources.utc = 1861920000;  // 2029-01-01 00:00
  readRecord();
  EXPECT_EQ(4, record.daylightDate.day);
  sources.databaseFolder = currentZoneSources().databaseFolder;
  EXPECT_EQ(139U, keyNames().size());
}

TEST_F(ZoneTree, AKeyIsInvalidOnceItsZoneHasLeftTheDatabase) {
  useFolder();
  writeZone("Asia/Tokyo", "JST-9");
  writeZone("Europe/Berlin", "CET-1CEST,M3.5.0,M10.5.0/3");
  KeyHandleT berlin = 0;
  KeyHandleT tokyo = 0;
  ASSERT_EQ(0, tree.openKey(openRoot(), u"W. Europe Standard Time", berlin));
  ASSERT_EQ(0, tree.openKey(openRoot(), u"Tokyo Standard Time", tokyo));
  std::filesystem::remove(folder.path() / "Europe/Berlin");
  ZoneRecordC record{};
  std::uint32_t size = sizeof(record);
  EXPECT_EQ(0, tree.queryValue(berlin, u"TZI", &record, size));
  sources.utc = 1861920000;  // 2029-01-01 00:00
  EXPECT_THAT(keyNames(), ::testing::ElementsAre(u"Tokyo Standard Time"));
  EXPECT_EQ(6, tree.queryValue(berlin, u"TZI", &record, size));
  char16_t name[256];
  std::uint32_t length = 256;
  EXPECT_EQ(6, tree.enumerateKey(berlin, 0, name, length));
  KeyHandleT key = 0;
  EXPECT_EQ(6, tree.openKey(berlin, u"", key));
  EXPECT_EQ(0, tree.queryValue(tokyo, u"TZI", &record, size));
}

TEST_F(ZoneTree, TheMachinesZoneIsWhatTheEnvironmentSays) {
  struct {
    char const* zone;
    char const* winter;
    char const* summer;
  } const cases[] = {
      {"Europe/Berlin", "1 -60 -60 W. Europe Standard Time", "2 -60 -60 W. Europe Standard Time"},
      {":Europe/Berlin", "1 -60 -60 W. Europe Standard Time", "2 -60 -60 W. Europe Standard Time"},
      {"America/New_York", "1 300 -60 Eastern Standard Time", "2 300 -60 Eastern Standard Time"},
      {"EST5EDT", "1 300 -60 Eastern Standard Time", "2 300 -60 Eastern Standard Time"},
      {"Australia/Sydney", "2 -600 -60 AUS Eastern Standard Time",
       "1 -600 -60 AUS Eastern Standard Time"},
      {"Asia/Tokyo", "0 -540 0 Tokyo Standard Time", "0 -540 0 Tokyo Standard Time"},
      {"Asia/Kolkata", "0 -330 0 India Standard Time", "0 -330 0 India Standard Time"},
      {"Europe/Dublin", "1 0 -60 GMT Standard Time", "2 0 -60 GMT Standard Time"},
      {"Europe/Vienna", "1 -60 -60 Central Europe Standard Time",
       "2 -60 -60 Central Europe Standard Time"},
      {"Etc/GMT-9", "0 -540 0 Tokyo Standard Time", "0 -540 0 Tokyo Standard Time"},
      {"UTC", "0 0 0 Coordinated Universal Time", "0 0 0 Coordinated Universal Time"},
      {"", "0 0 0 Coordinated Universal Time", "0 0 0 Coordinated Universal Time"},
      {":", "0 0 0 Coordinated Universal Time", "0 0 0 Coordinated Universal Time"},
      {"CET-1CEST,M3.5.0,M10.5.0/3", "1 -60 -60 Central Europe Standard Time",
       "2 -60 -60 Central Europe Standard Time"},
      {":CET-1CEST,M3.5.0,M10.5.0/3", "1 -60 -60 Central Europe Standard Time",
       "2 -60 -60 Central Europe Standard Time"},
      {"XYZ3:17", "0 197 0 XYZ", "0 197 0 XYZ"},
      {"Nowhere/Land", "invalid", "invalid"},
      {"Europe", "invalid", "invalid"}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.zone);
    useZone(c.zone);
    EXPECT_EQ(c.winter, information(WINTER));
    EXPECT_EQ(c.summer, information(SUMMER));
  }
}

TEST_F(ZoneTree, TheMachinesZoneMayBeGivenByAPath) {
  std::string const database = currentZoneSources().databaseFolder;
  useZone(database + "/Europe/Berlin");
  EXPECT_EQ("1 -60 -60 W. Europe Standard Time", information(WINTER));
  std::filesystem::copy_file(database + "/Asia/Tokyo", folder.path() / "mine");
  useZone((folder.path() / "mine").string());
  EXPECT_EQ("0 -540 0 Tokyo Standard Time", information(WINTER));
}

TEST_F(ZoneTree, WithoutASettingAndAFileTheMachinesZoneIsUtc) {
  EXPECT_EQ("0 0 0 Coordinated Universal Time", information(WINTER));
}

TEST_F(ZoneTree, TheMachinesFileNamesItsZoneByItsLinkOrItsContent) {
  std::string const database = currentZoneSources().databaseFolder;
  std::filesystem::create_symlink(database + "/Europe/Berlin", machineFile);
  EXPECT_EQ("1 -60 -60 W. Europe Standard Time", information(WINTER));
  // A change of the file is seen in the next second.
  std::filesystem::remove(machineFile);
  std::filesystem::copy_file(database + "/America/New_York", machineFile);
  EXPECT_EQ("1 300 -60 Eastern Standard Time", information(WINTER + 1));
  std::filesystem::remove(machineFile);
  EXPECT_EQ("0 0 0 Coordinated Universal Time", information(WINTER + 2));
  folder.write("localtime", "damaged");
  EXPECT_EQ("invalid", information(WINTER + 3));
  std::filesystem::remove(machineFile);
  std::filesystem::create_symlink(database + "/Asia/Tokyo", machineFile);
  EXPECT_EQ("0 -540 0 Tokyo Standard Time", information(WINTER + 4));
}

TEST_F(ZoneTree, AChangeOfTheSettingIsSeenAtOnce) {
  std::filesystem::create_symlink(sources.databaseFolder + std::string("/Asia/Tokyo"), machineFile);
  EXPECT_EQ("0 -540 0 Tokyo Standard Time", information(WINTER));
  useZone("Europe/Berlin");
  EXPECT_EQ("1 -60 -60 W. Europe Standard Time", information(WINTER));
  sources.environmentZone = nullptr;
  EXPECT_EQ("0 -540 0 Tokyo Standard Time", information(WINTER));
}

TEST_F(ZoneTree, TheMachinesFileIsReadAgainOnlyWhenItHasChanged) {
  useFolder();
  writeZone("localtime", "AAA-9");
  auto const written = std::filesystem::last_write_time(machineFile);
  EXPECT_EQ("0 -540 0 AAA", information(WINTER));
  writeZone("localtime", "BBB-8");
  std::filesystem::last_write_time(machineFile, written);
  EXPECT_EQ("0 -540 0 AAA", information(WINTER + 1));
  std::filesystem::last_write_time(machineFile, written + std::chrono::nanoseconds(1000));
  EXPECT_EQ("0 -480 0 BBB", information(WINTER + 2));
}

TEST_F(ZoneTree, AMachinesZoneWithoutANameHasThatOfTheZoneWithTheSameRules) {
  useFolder();
  writeZone("Europe/Berlin", "CET-1CEST,M3.5.0,M10.5.0/3");
  struct {
    char const* zone;
    char const* expected;
  } const cases[] = {{"XXX-1YYY,M3.5.0,M10.5.0/3", "1 -60 -60 W. Europe Standard Time"},
                     {"XXX-2YYY,M3.5.0,M10.5.0/3", "1 -120 -60 XXX"},
                     {"XXX-1YYY-3,M3.5.0,M10.5.0/3", "1 -60 -120 XXX"},
                     {"XXX-1YYY,M4.5.0,M10.5.0/3", "1 -60 -60 XXX"},
                     {"XXX-1YYY,M3.4.0,M10.5.0/3", "1 -60 -60 XXX"},
                     {"XXX-1YYY,M3.5.1,M10.5.0/3", "1 -60 -60 XXX"},
                     {"XXX-1YYY,M3.5.0/3,M10.5.0/3", "1 -60 -60 XXX"},
                     {"XXX-1YYY,M3.5.0/2:01,M10.5.0/3", "1 -60 -60 XXX"},
                     {"XXX-1YYY,M3.5.0/2:00:01,M10.5.0/3", "1 -60 -60 XXX"},
                     {"XXX-1YYY,M3.5.0,M11.5.0/3", "1 -60 -60 XXX"},
                     {"XXX-1YYY,M3.5.0,M10.4.0/3", "1 -60 -60 XXX"},
                     {"XXX-1YYY,M3.5.0,M10.5.1/3", "1 -60 -60 XXX"},
                     {"XXX-1YYY,M3.5.0,M10.5.0/4", "1 -60 -60 XXX"},
                     {"XXX-1YYY,M3.5.0,M10.5.0/3:01", "1 -60 -60 XXX"},
                     {"XXX-1YYY,M3.5.0,M10.5.0/3:00:01", "1 -60 -60 XXX"}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.zone);
    useZone(c.zone);
    EXPECT_EQ(c.expected, information(WINTER));
  }
}

TEST_F(ZoneTree, TheMachinesZoneNeedsNoDatabaseWhereRulesAreGiven) {
  useFolder();
  useZone("CET-1CEST,M3.5.0,M10.5.0/3");
  EXPECT_EQ("1 -60 -60 CET", information(WINTER));
  EXPECT_EQ("2 -60 -60 CEST", information(SUMMER));
  useZone("Europe/Berlin");
  EXPECT_EQ("invalid", information(WINTER));
  writeZone("Europe/Berlin", "CET-1CEST,M3.5.0,M10.5.0/3");
  EXPECT_EQ("1 -60 -60 W. Europe Standard Time", information(WINTER + 1));
}

TEST_F(ZoneTree, ThePresentOffsetHoldsToTheSecondAndWhenTheClockIsSetBack) {
  useZone("Europe/Berlin");
  constexpr std::int64_t SPRING = 1774746000;  // 2026-03-29 01:00
  EXPECT_EQ("1 -60 -60 W. Europe Standard Time", information(SPRING - 1));
  EXPECT_EQ("2 -60 -60 W. Europe Standard Time", information(SPRING));
  EXPECT_EQ("1 -60 -60 W. Europe Standard Time", information(SPRING - 1));
}

TEST_F(ZoneTree, ThePresentOffsetHoldsWhereTheYearHasMoreOffsetsThanARecord) {
  useFolder();
  TzFileBuilderC file;
  file.offsets = {{0, 0, 0}, {3600, 0, 0}, {7200, 0, 0}};
  file.changes = {{WINTER, 1}, {SUMMER, 2}};
  file.footer = "\n\n";
  folder.write("Strange", file.bytes());
  useZone("Strange");
  EXPECT_EQ("0 0 0 AAA", information(WINTER - 1));
  EXPECT_EQ("1 -60 -60 AAA", information(WINTER));
  EXPECT_EQ("1 -60 -60 AAA", information(SUMMER - 1));
  EXPECT_EQ("2 -60 -60 AAA", information(SUMMER));
}

TEST_F(ZoneTree, MayBeUsedFromManyThreadsFromTheFirstCallOn) {
  useZone("Europe/Berlin");
  std::atomic<bool> isOpen{false};
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 6; ++i) {
    threads.emplace_back([this, &isOpen, &wrong] {
      while (!isOpen) {
        std::this_thread::yield();
      }
      KeyHandleT root = 0;
      KeyHandleT zone = 0;
      TimeZoneInformationC information{};
      wrong += tree.getTimeZoneInformation(information) == 1 ? 0 : 1;
      wrong += tree.openKey(0, ZONES_PATH, root) == 0 ? 0 : 1;
      wrong += tree.openKey(root, u"UTC", zone) == 0 ? 0 : 1;
    });
  }
  isOpen = true;
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(0, wrong);
}

}  // namespace
}  // namespace KTX::TIM::TEST
