#include "Posix/KTX_TIM_ZoneTable.h"

#include <algorithm>
#include <functional>

#include "Posix/KTX_TIM_TzFile.h"
#include "Posix/KTX_TIM_TzFileBytes.h"
#include "Posix/KTX_TIM_YearlyZoneRecord.h"
#include "timezones/KTX_TIM_WindowsZoneTable.h"

namespace KTX::TIM {

namespace {

constexpr std::int32_t MINUTES_PER_HOUR = 60;

// Databases without the names of old have these zones under their present names only.
struct RenamedZoneC {
  std::string_view name;
  std::string_view presentName;
} constexpr RENAMED_ZONES[] = {{"America/Buenos_Aires", "America/Argentina/Buenos_Aires"},
                               {"America/Godthab", "America/Nuuk"},
                               {"America/Indianapolis", "America/Indiana/Indianapolis"},
                               {"Asia/Calcutta", "Asia/Kolkata"},
                               {"Asia/Katmandu", "Asia/Kathmandu"},
                               {"Asia/Rangoon", "Asia/Yangon"},
                               {"Europe/Kiev", "Europe/Kyiv"}};

char16_t folded(char16_t unit) {
  return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - u'a' + u'A') : unit;
}

bool isLessFolded(std::u16string_view left, std::u16string_view right) {
  return std::lexicographical_compare(
      left.begin(), left.end(), right.begin(), right.end(),
      [](char16_t first, char16_t second) { return folded(first) < folded(second); });
}

// The names of the table are ASCII.
std::string narrow(wchar_t const* text) {
  std::wstring_view const wide(text);
  std::string result;
  for (wchar_t const character : wide) {
    result.push_back(static_cast<char>(character));
  }
  return result;
}

std::u16string units(std::string_view text) {
  return {text.begin(), text.end()};
}

std::string twoDigits(std::int32_t number) {
  return {static_cast<char>('0' + number / 10 % 10), static_cast<char>('0' + number % 10)};
}

std::string signedHours(std::int32_t minutesEast) {
  return (minutesEast < 0 ? "-" : "+") + twoDigits(std::abs(minutesEast) / MINUTES_PER_HOUR);
}

// "Berlin" of "Europe/Berlin"; a zone without a place is called by its offset.
std::string placeOf(std::string const& ianaName, std::int32_t minutesEast) {
  bool const hasPlace = ianaName.compare(0, 4, "Etc/") != 0;
  if (!hasPlace && minutesEast == 0) {
    return "UTC";
  }
  if (!hasPlace) {
    return "UTC" + signedHours(minutesEast);
  }
  std::string place = ianaName.substr(ianaName.rfind('/') + 1);
  std::replace(place.begin(), place.end(), '_', ' ');
  return place;
}

std::u16string displayOf(std::string const& ianaName, ZoneRecordC const& record) {
  std::int32_t const minutesEast = -record.bias;
  std::string text = "(UTC";
  if (minutesEast != 0 || record.daylightDate.month != 0) {
    text += signedHours(minutesEast) + ":" + twoDigits(std::abs(minutesEast) % MINUTES_PER_HOUR);
  }
  return units(text + ") " + placeOf(ianaName, minutesEast));
}

std::u16string standardNameOf(std::string const& keyName) {
  if (keyName == "UTC") {
    return u"Coordinated Universal Time";
  }
  return units(keyName);
}

std::u16string daylightNameOf(std::string const& keyName) {
  constexpr std::string_view STANDARD = "Standard";
  std::size_t const position = keyName.find(STANDARD);
  if (position == std::string::npos) {
    return standardNameOf(keyName);
  }
  return units(std::string(keyName).replace(position, STANDARD.size(), "Daylight"));
}

bool readZone(std::string const& databaseFolder, std::string const& ianaName, std::string& bytes) {
  if (readTzFileBytes(databaseFolder + "/" + ianaName, bytes)) {
    return true;
  }
  for (RenamedZoneC const& zone : RENAMED_ZONES) {
    if (ianaName == zone.name) {
      return readTzFileBytes(databaseFolder + "/" + std::string(zone.presentName), bytes);
    }
  }
  return false;
}

ZoneTableC::EntryC makeEntry(WindowsZoneRowC const& row,
                             std::string const& databaseFolder,
                             std::int64_t year) {
  std::string const keyName = narrow(row.windowsName);
  std::string const ianaName = narrow(row.primaryIanaName);
  ZoneTableC::EntryC entry;
  entry.keyName = units(keyName);
  std::string bytes;
  ZoneDataC zone;
  if (!readZone(databaseFolder, ianaName, bytes) || !parseTzFile(bytes, zone)) {
    return entry;
  }
  entry.isPresent = true;
  entry.record = yearlyZoneRecord(zone, year);
  entry.display = displayOf(ianaName, entry.record);
  entry.standardName = standardNameOf(keyName);
  entry.daylightName = daylightNameOf(keyName);
  entry.fingerprint = tzFileFingerprint(bytes);
  return entry;
}

}  // namespace

ZoneTableC::ZoneTableC(std::string const& databaseFolder, std::int64_t tableYear)
    : builtForYear(tableYear) {
  for (WindowsZoneRowC const& row : WINDOWS_ZONE_TABLE) {
    allEntries.push_back(makeEntry(row, databaseFolder, tableYear));
  }
  std::sort(allEntries.begin(), allEntries.end(), [](EntryC const& left, EntryC const& right) {
    return isLessFolded(left.keyName, right.keyName);
  });
  for (std::size_t i = 0; i < allEntries.size(); ++i) {
    if (allEntries[i].isPresent) {
      presentIndices.push_back(i);
    }
  }
}

ZoneTableC::EntryC const* ZoneTableC::find(std::u16string_view keyName) const {
  auto const found = std::lower_bound(allEntries.begin(), allEntries.end(), keyName,
                                      [](EntryC const& entry, std::u16string_view name) {
                                        return isLessFolded(entry.keyName, name);
                                      });
  bool const isFound =
      found != allEntries.end() && found->isPresent && areEqualFolded(found->keyName, keyName);
  return isFound ? &*found : nullptr;
}

std::size_t tzFileFingerprint(std::string const& bytes) {
  return std::hash<std::string>()(bytes);
}

bool areEqualFolded(std::u16string_view left, std::u16string_view right) {
  return std::equal(
      left.begin(), left.end(), right.begin(), right.end(),
      [](char16_t first, char16_t second) { return folded(first) == folded(second); });
}

}  // namespace KTX::TIM
