#include "Posix/KTX_TIM_ZoneTree.h"

#include <cstring>
#include <string_view>
#include <utility>

#include "KTX/TIM/KTX_TIM_Guard.h"
#include "Posix/KTX_TIM_CivilDate.h"
#include "support/KTX_TIM_ForkLocks.h"

namespace KTX::TIM {

namespace {

// The codes of Windows.
constexpr std::int32_t SUCCESS = 0;
constexpr std::int32_t FILE_NOT_FOUND = 2;
constexpr std::int32_t INVALID_HANDLE = 6;
constexpr std::int32_t BAD_PATH_NAME = 161;
constexpr std::int32_t MORE_DATA = 234;
constexpr std::int32_t NO_MORE_ITEMS = 259;

constexpr std::u16string_view ROOT_PATH =
    u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Time Zones";
constexpr KeyHandleT MACHINE_HANDLE = 0;
constexpr KeyHandleT ROOT_HANDLE = 1;
// That of a zone is this and its place in the table.
constexpr KeyHandleT FIRST_ZONE_HANDLE = 2;

// A text ends at its first zero, as it does for Windows.
std::u16string_view endingAtZero(std::u16string const& text) {
  return std::u16string_view(text).substr(0, text.find(u'\0'));
}

// Takes the root key's path off the front of path, if the whole of it stands there.
bool takeRootPath(std::u16string_view& path) {
  if (!areEqualFolded(path.substr(0, ROOT_PATH.size()), ROOT_PATH)) {
    return false;
  }
  std::u16string_view rest = path.substr(ROOT_PATH.size());
  if (!rest.empty()) {
    if (rest.front() != u'\\') {
      return false;
    }
    rest.remove_prefix(1);
  }
  path = rest;
  return true;
}

std::int32_t openBelowRoot(ZoneTableC const& table, std::u16string_view path, KeyHandleT& key) {
  if (path.empty()) {
    key = ROOT_HANDLE;
    return SUCCESS;
  }
  if (path.back() == u'\\') {
    path.remove_suffix(1);
  }
  ZoneTableC::EntryC const* const entry = table.find(path);
  if (entry == nullptr) {
    return FILE_NOT_FOUND;
  }
  key = FIRST_ZONE_HANDLE + static_cast<KeyHandleT>(entry - table.entries().data());
  return SUCCESS;
}

ZoneTableC::EntryC const* entryOf(ZoneTableC const& table, KeyHandleT key) {
  if (key < FIRST_ZONE_HANDLE || key - FIRST_ZONE_HANDLE >= table.entries().size()) {
    return nullptr;
  }
  ZoneTableC::EntryC const& entry = table.entries()[key - FIRST_ZONE_HANDLE];
  return entry.isPresent ? &entry : nullptr;
}

std::int32_t copyValue(void const* value,
                       std::size_t valueBytes,
                       void* data,
                       std::uint32_t& sizeBytes) {
  std::uint32_t const room = sizeBytes;
  sizeBytes = static_cast<std::uint32_t>(valueBytes);
  if (data == nullptr) {
    return SUCCESS;
  }
  if (room < valueBytes) {
    return MORE_DATA;
  }
  std::memcpy(data, value, valueBytes);
  return SUCCESS;
}

}  // namespace

ZoneTreeC::ZoneTreeC() : ZoneTreeC(currentZoneSources) {}

ZoneTreeC::ZoneTreeC(SourcesProviderT sourcesProvider) : provider(std::move(sourcesProvider)) {}

std::uint32_t ZoneTreeC::getTimeZoneInformation(TimeZoneInformationC& information) {
  Guard const guard(mutex);
  ZoneSourcesC const sources = provider();
  auto const currentTable = [this, &sources]()
                                KTX_TIM_REQUIRES(mutex) { return presentTable(sources); };
  return machineZone.getInformation(sources, currentTable, information);
}

std::int32_t ZoneTreeC::openKey(KeyHandleT parent, std::u16string const& path, KeyHandleT& key) {
  std::u16string_view rest = endingAtZero(path);
  if (!rest.empty() && rest.front() == u'\\') {
    return BAD_PATH_NAME;
  }
  if (parent == MACHINE_HANDLE) {
    if (!takeRootPath(rest)) {
      return FILE_NOT_FOUND;
    }
    TableT const zones = presentTable();
    return zones->isEmpty() ? FILE_NOT_FOUND : openBelowRoot(*zones, rest, key);
  }
  TableT const zones = lastTable();
  if (zones == nullptr) {
    return INVALID_HANDLE;
  }
  if (parent == ROOT_HANDLE) {
    return openBelowRoot(*zones, rest, key);
  }
  if (entryOf(*zones, parent) == nullptr) {
    return INVALID_HANDLE;
  }
  if (!rest.empty()) {
    return FILE_NOT_FOUND;
  }
  key = parent;
  return SUCCESS;
}

std::int32_t ZoneTreeC::enumerateKey(KeyHandleT key,
                                     std::uint32_t index,
                                     char16_t* name,
                                     std::uint32_t& nameLength) {
  TableT const zones = lastTable();
  if (zones == nullptr) {
    return INVALID_HANDLE;
  }
  if (key != ROOT_HANDLE) {
    return entryOf(*zones, key) != nullptr ? NO_MORE_ITEMS : INVALID_HANDLE;
  }
  if (index >= zones->present().size()) {
    return NO_MORE_ITEMS;
  }
  std::u16string const& keyName = zones->entries()[zones->present()[index]].keyName;
  if (nameLength <= keyName.size()) {
    return MORE_DATA;
  }
  std::memcpy(name, keyName.c_str(), (keyName.size() + 1) * sizeof(char16_t));
  nameLength = static_cast<std::uint32_t>(keyName.size());
  return SUCCESS;
}

std::int32_t ZoneTreeC::queryValue(KeyHandleT key,
                                   std::u16string const& name,
                                   void* data,
                                   std::uint32_t& sizeBytes) {
  TableT const zones = lastTable();
  if (zones == nullptr) {
    return INVALID_HANDLE;
  }
  ZoneTableC::EntryC const* const entry = entryOf(*zones, key);
  if (entry == nullptr) {
    return key == ROOT_HANDLE ? FILE_NOT_FOUND : INVALID_HANDLE;
  }
  std::u16string_view const wanted = endingAtZero(name);
  if (areEqualFolded(wanted, u"TZI")) {
    return copyValue(&entry->record, sizeof(entry->record), data, sizeBytes);
  }
  struct {
    std::u16string_view name;
    std::u16string const& text;
  } const texts[] = {
      {u"Display", entry->display}, {u"Std", entry->standardName}, {u"Dlt", entry->daylightName}};
  for (auto const& value : texts) {
    if (areEqualFolded(wanted, value.name)) {
      return copyValue(value.text.c_str(), (value.text.size() + 1) * sizeof(char16_t), data,
                       sizeBytes);
    }
  }
  return FILE_NOT_FOUND;
}

ZoneTreeC::TableT ZoneTreeC::presentTable(ZoneSourcesC const& sources) {
  std::int64_t const year = yearOf(sources.utc);
  // A database that is not there may come: it is looked for each time.
  bool const isUpToDate = table != nullptr && !table->isEmpty() && table->year() == year &&
                          tableFolder == sources.databaseFolder;
  if (!isUpToDate) {
    std::string folder = sources.databaseFolder;
    table = std::make_shared<ZoneTableC const>(folder, year);
    tableFolder = std::move(folder);
  }
  return table;
}

void ZoneTreeC::keepUsableAfterFork() {
  KTX::TIM::keepUsableAfterFork(FORKLOCK_ZONETREE, mutex);
}

ZoneTreeC::TableT ZoneTreeC::presentTable() {
  Guard const guard(mutex);
  return presentTable(provider());
}

ZoneTreeC::TableT ZoneTreeC::lastTable() {
  Guard const guard(mutex);
  return table;
}

}  // namespace KTX::TIM
