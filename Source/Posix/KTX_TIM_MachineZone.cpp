#include "Posix/KTX_TIM_MachineZone.h"

#include <algorithm>
#include <iterator>
#include <tuple>

#include <boost/filesystem/operations.hpp>

#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_WindowsZoneNames.h"
#include "Posix/KTX_TIM_CivilDate.h"
#include "Posix/KTX_TIM_TzFile.h"
#include "Posix/KTX_TIM_TzFileBytes.h"
#include "Posix/KTX_TIM_YearlyZoneRecord.h"
#include "timezones/KTX_TIM_CodeUnits.h"

namespace KTX::TIM {

namespace {

constexpr std::uint32_t ZONE_ID_WITHOUT_RULES = 0;
constexpr std::uint32_t ZONE_ID_STANDARD = 1;
constexpr std::uint32_t ZONE_ID_DAYLIGHT = 2;
constexpr std::string_view DATABASE_MARK = "/zoneinfo/";

// The zone's name in the path of its file, empty where the path does not tell.
std::string nameInPath(std::string const& path) {
  std::size_t const mark = path.rfind(DATABASE_MARK);
  return mark == std::string::npos ? std::string() : path.substr(mark + DATABASE_MARK.size());
}

std::string linkTarget(std::string const& path) {
  boost::system::error_code error;
  return boost::filesystem::read_symlink(path, error).string();
}

template <std::size_t LENGTH>
void setName(char16_t (&buffer)[LENGTH], std::u16string_view name) {
  std::size_t const length = std::min(name.size(), LENGTH - 1);
  std::fill(std::copy_n(name.begin(), length, buffer), std::end(buffer), u'\0');
}

bool areEqual(SystemTimeRecordC const& left, SystemTimeRecordC const& right) {
  return left.month == right.month && left.dayOfWeek == right.dayOfWeek && left.day == right.day &&
         left.hour == right.hour && left.minute == right.minute && left.second == right.second;
}

bool areEqual(ZoneRecordC const& left, ZoneRecordC const& right) {
  return std::tie(left.bias, left.standardBias, left.daylightBias) ==
             std::tie(right.bias, right.standardBias, right.daylightBias) &&
         areEqual(left.standardDate, right.standardDate) &&
         areEqual(left.daylightDate, right.daylightDate);
}

}  // namespace

std::uint32_t MachineZoneC::getInformation(ZoneSourcesC const& sources,
                                           TableProviderT const& table,
                                           TimeZoneInformationC& information) {
  if (!isUpToDate(sources)) {
    load(sources);
  }
  if (!isUsable) {
    information = {};
    return ZONE_ID_INVALID;
  }
  if (sources.utc < validFromUtc || sources.utc >= validUntilUtc) {
    compose(sources.utc, table);
  }
  information = answer;
  return zoneId;
}

bool MachineZoneC::isUpToDate(ZoneSourcesC const& sources) {
  bool const isSameSetting =
      isLoaded && loadedFolder == sources.databaseFolder &&
      (sources.environmentZone == nullptr
           ? !loadedEnvironmentZone
           : loadedEnvironmentZone && *loadedEnvironmentZone == sources.environmentZone);
  if (!isSameSetting || checkedAtUtc == sources.utc) {
    return isSameSetting;
  }
  checkedAtUtc = sources.utc;
  if (!isUsable || sources.environmentZone != nullptr) {
    return isUsable;
  }
  return machineFileStamp == FileStampC(sources.machineZoneFile);
}

void MachineZoneC::load(ZoneSourcesC const& sources) {
  isLoaded = false;
  isUsable = false;
  validUntilUtc = validFromUtc;
  ianaName.clear();
  fingerprint.reset();
  loadedFolder = sources.databaseFolder;
  if (sources.environmentZone == nullptr) {
    loadedEnvironmentZone.reset();
    loadMachineFile(sources);
  } else {
    loadedEnvironmentZone = sources.environmentZone;
    loadEnvironmentZone(sources);
  }
  checkedAtUtc = sources.utc;
  isLoaded = true;
}

void MachineZoneC::setUtc() {
  zone = ZoneDataC();
  ianaName = "Etc/UTC";
  isUsable = true;
}

bool MachineZoneC::loadFile(std::string const& path) {
  std::string bytes;
  if (!readTzFileBytes(path, bytes) || !parseTzFile(bytes, zone)) {
    return false;
  }
  fingerprint = tzFileFingerprint(bytes);
  isUsable = true;
  return true;
}

// A machine without the file keeps UTC; one whose file is damaged has no zone.
void MachineZoneC::loadMachineFile(ZoneSourcesC const& sources) {
  std::string const path = sources.machineZoneFile;
  machineFileStamp = FileStampC(path);
  if (!machineFileStamp.isPresent()) {
    setUtc();
  } else if (loadFile(path)) {
    ianaName = nameInPath(linkTarget(path));
  }
}

// A text that names no file of the database may be rules instead.
void MachineZoneC::loadEnvironmentZone(ZoneSourcesC const& sources) {
  std::string name = sources.environmentZone;
  if (!name.empty() && name.front() == ':') {
    name.erase(0, 1);
  }
  if (name.empty()) {
    setUtc();
    return;
  }
  bool const isPath = name.front() == '/';
  if (loadFile(isPath ? name : loadedFolder + "/" + name)) {
    ianaName = isPath ? nameInPath(name) : name;
    return;
  }
  PosixZoneRuleC rule;
  if (PosixZoneRuleC::parse(name, rule)) {
    zone = ZoneDataC(rule);
    isUsable = true;
  }
}

void MachineZoneC::compose(std::int64_t utc, TableProviderT const& table) {
  validUntilUtc = validFromUtc;
  answer = {};
  composeNames(utc, *table());
  composeRecord(utc);
}

void MachineZoneC::composeRecord(std::int64_t utc) {
  std::int32_t const secondsEast = zone.offsetAt(utc).secondsEast;
  std::int64_t const year = yearOf(utc + secondsEast);
  ZoneRecordC record = yearlyZoneRecord(zone, year);
  std::int32_t const bias = -wholeMinutes(secondsEast);
  zoneId = ZONE_ID_WITHOUT_RULES;
  if (record.daylightDate.month != 0 && bias == record.bias + record.daylightBias) {
    zoneId = ZONE_ID_DAYLIGHT;
  } else if (record.daylightDate.month != 0 && bias == record.bias) {
    zoneId = ZONE_ID_STANDARD;
  } else {
    // The present offset holds, also where the year has more offsets than the record can say.
    record = fixedZoneRecord(secondsEast);
  }
  answer.bias = record.bias;
  answer.standardBias = record.standardBias;
  answer.standardDate = record.standardDate;
  answer.daylightBias = record.daylightBias;
  answer.daylightDate = record.daylightDate;

  std::int64_t from = localStartOfYear(zone, year);
  std::int64_t until = localStartOfYear(zone, year + 1);
  for (std::int64_t const moment : zone.changesBetween(from, until)) {
    (moment <= utc ? from : until) = moment;
    if (moment > utc) {
      break;
    }
  }
  validFromUtc = from;
  validUntilUtc = until;
}

void MachineZoneC::composeNames(std::int64_t utc, ZoneTableC const& table) {
  ZoneTableC::EntryC const* const entry = entryIn(table);
  if (entry != nullptr) {
    setName(answer.standardName, entry->standardName);
    setName(answer.daylightName, entry->daylightName);
    return;
  }
  std::string const& abbreviation = zone.offsetAt(utc).abbreviation;
  std::u16string const name(abbreviation.begin(), abbreviation.end());
  setName(answer.standardName, name);
  setName(answer.daylightName, name);
}

// By name, else the zone with the same file, else the first with the same rules this year.
ZoneTableC::EntryC const* MachineZoneC::entryIn(ZoneTableC const& table) const {
  std::wstring keyName;
  if (getWindowsZoneName(std::wstring(ianaName.begin(), ianaName.end()), keyName) == RC_OK) {
    return table.find(toCodeUnits(keyName));
  }
  ZoneRecordC const record = yearlyZoneRecord(zone, table.year());
  ZoneTableC::EntryC const* sameRules = nullptr;
  for (std::size_t const place : table.present()) {
    ZoneTableC::EntryC const& entry = table.entries()[place];
    if (entry.fingerprint == fingerprint) {
      return &entry;
    }
    if (sameRules == nullptr && areEqual(entry.record, record)) {
      sameRules = &entry;
    }
  }
  return sameRules;
}

}  // namespace KTX::TIM
