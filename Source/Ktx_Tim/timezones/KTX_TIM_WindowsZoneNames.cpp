#include "KTX/TIM/KTX_TIM_WindowsZoneNames.h"

#include <map>

#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "support/KTX_TIM_ProcessObject.h"
#include "timezones/KTX_TIM_WindowsZoneTable.h"

namespace KTX::TIM {

namespace {

using ZoneNameMapT = std::map<std::wstring, std::wstring>;

// A name that stands in the table twice keeps its first entry.
ZoneNameMapT ianaToWindowsZones() {
  ZoneNameMapT names;
  for (WindowsZoneRowC const& row : WINDOWS_ZONE_TABLE) {
    names.emplace(row.primaryIanaName, row.windowsName);
    if (row.furtherIanaName != nullptr) {
      names.emplace(row.furtherIanaName, row.windowsName);
    }
  }
  return names;
}

ZoneNameMapT windowsToIanaZones() {
  ZoneNameMapT names;
  for (WindowsZoneRowC const& row : WINDOWS_ZONE_TABLE) {
    names.emplace(row.windowsName, row.primaryIanaName);
  }
  return names;
}

std::uint32_t lookUp(ZoneNameMapT const& names, std::wstring const& key, std::wstring& value) {
  auto const found = names.find(key);
  if (found == names.end()) {
    return RC_FAILED;
  }
  value = found->second;
  return RC_OK;
}

}  // namespace

std::uint32_t getWindowsZoneName(std::wstring const& ianaName, std::wstring& windowsName) {
  static ProcessObjectC<ZoneNameMapT> ianaToWindowsZoneMap(ianaToWindowsZones());
  return lookUp(*ianaToWindowsZoneMap, ianaName, windowsName);
}

std::uint32_t getIanaZoneName(std::wstring const& windowsName, std::wstring& ianaName) {
  static ProcessObjectC<ZoneNameMapT> windowsToIanaZoneMap(windowsToIanaZones());
  return lookUp(*windowsToIanaZoneMap, windowsName, ianaName);
}

}  // namespace KTX::TIM
