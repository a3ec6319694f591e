#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeZoneWindows.h"
#include "KTX/TIM/KTX_TIM_WindowsZoneNames.h"
#include "timezones/KTX_TIM_CodeUnits.h"
#include "timezones/KTX_TIM_FakeZoneRegistry.h"

namespace KTX::TIM::TEST {

namespace {

void require(bool isTrue) {
  if (!isTrue) {
    std::abort();
  }
}

void lookUp(std::wstring const& name) {
  std::wstring found = L"untouched";
  if (getWindowsZoneName(name, found) == RC_OK) {
    std::wstring primary;
    std::wstring again;
    require(getIanaZoneName(found, primary) == RC_OK);
    require(getWindowsZoneName(primary, again) == RC_OK && again == found);
  } else {
    require(found == L"untouched");
  }
  found = L"untouched";
  if (getIanaZoneName(name, found) == RC_OK) {
    std::wstring again;
    require(getWindowsZoneName(found, again) == RC_OK && again == name);
  } else {
    require(found == L"untouched");
  }
}

void useName(TimeZoneWindowsC& zone, std::wstring const& name) {
  bool const isKnown = zone.checkTimeZone(name) == RC_OK;
  require((zone.setTimeZone(name) == RC_OK) == isKnown);
  std::wstring resolved;
  require(zone.resolveTimeZone(name, -60, resolved) == RC_OK);
  require(zone.checkTimeZone(resolved) == RC_OK);
}

}  // namespace

}  // namespace KTX::TIM::TEST

// The bytes are taken as narrow characters and as wide ones.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace KTX::TIM;
  std::wstring const narrow(data, data + size);
  std::wstring wide(size / sizeof(wchar_t), L'\0');
  if (!wide.empty()) {
    std::memcpy(wide.data(), data, wide.size() * sizeof(wchar_t));
  }
  TEST::FakeZoneRegistryC registry;
  TEST::addFourZones(registry);
  TimeZoneWindowsC zone;
  for (std::wstring const& name : {narrow, wide}) {
    std::u16string const units = toCodeUnits(name);
    TEST::require(toCodeUnits(toWideText(units)) == units);
    TEST::lookUp(name);
    TEST::useName(zone, name);
  }
  TEST::require(registry.openKeyCount() == 0);
  return 0;
}
