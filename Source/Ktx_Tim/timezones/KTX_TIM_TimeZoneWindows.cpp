#include "KTX/TIM/KTX_TIM_TimeZoneWindows.h"

#include <algorithm>
#include <locale>
#include <sstream>
#include <utility>

#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_WindowsZoneNames.h"
#include "support/KTX_TIM_ForkLocks.h"
#include "support/KTX_TIM_PermanentSlot.h"
#include "support/KTX_TIM_ProcessObject.h"
#include "support/KTX_TIM_SystemCalls.h"
#include "timezones/KTX_TIM_CodeUnits.h"
#include "timezones/KTX_TIM_RootTimeZoneRegistryKeyWrapper.h"
#include "timezones/KTX_TIM_TimeZoneRegistryKeyWrapper.h"

namespace KTX::TIM {

namespace {

constexpr wchar_t const* DEFAULT_ZONE = L"GMT Standard Time";
constexpr wchar_t const* PREFERRED_ZONES[] = {L"GMT Standard Time", L"W. Europe Standard Time",
                                              L"Singapore Standard Time"};
constexpr std::uint32_t ZONE_ID_UNKNOWN = 0;
constexpr std::uint32_t ZONE_ID_STANDARD = 1;
constexpr std::uint32_t ZONE_ID_DAYLIGHT = 2;
constexpr std::int32_t MINUTES_PER_HOUR = 60;

bool isKnownZone(std::wstring const& name) {
  RootTimeZoneRegistryKeyWrapperC const root;
  TimeZoneRegistryKeyWrapperC const zone(root, toCodeUnits(name));
  return zone.isOpen();
}

template <class Predicate>
bool findZone(RootTimeZoneRegistryKeyWrapperC const& root,
              Predicate const& isWanted,
              std::wstring& name) {
  std::u16string keyName;
  for (std::uint32_t index = 0; root.enumerate(index, keyName); ++index) {
    TimeZoneRegistryKeyWrapperC const zone(root, keyName);
    TimeZoneInformationC information{};
    if (zone.readTimeZoneInformation(information) && isWanted(keyName, information)) {
      name = toWideText(keyName);
      return true;
    }
  }
  return false;
}

std::u16string_view standardNameOf(TimeZoneInformationC const& information) {
  return textInBuffer(information.standardName, std::size(information.standardName));
}

// The key name of the system's zone, empty when there is none.
std::wstring systemZoneName() {
  TimeZoneInformationC system{};
  std::uint32_t const zoneId = systemCalls().getTimeZoneInformation(system);
  if (zoneId != ZONE_ID_UNKNOWN && zoneId != ZONE_ID_STANDARD && zoneId != ZONE_ID_DAYLIGHT) {
    return {};
  }
  RootTimeZoneRegistryKeyWrapperC const root;
  if (!root.isOpen()) {
    logAssertion("Failed to open registry to get the current Time Zone!");
    return {};
  }
  std::u16string_view const standardName = standardNameOf(system);
  auto const isSystemZone = [standardName](std::u16string const& keyName,
                                           TimeZoneInformationC const& zone) {
    return standardNameOf(zone) == standardName || keyName == standardName;
  };
  std::wstring name;
  findZone(root, isSystemZone, name);
  return name;
}

std::int16_t systemUtcOffset() {
  TimeZoneInformationC system{};
  std::uint32_t const zoneId = systemCalls().getTimeZoneInformation(system);
  std::int64_t bias = system.bias;
  if (zoneId == ZONE_ID_STANDARD && system.standardDate.month != 0) {
    bias += system.standardBias;
  } else if (zoneId == ZONE_ID_DAYLIGHT && system.daylightDate.month != 0) {
    bias += system.daylightBias;
  }
  return static_cast<std::int16_t>(-bias);
}

void sortByDisplayName(TimeZoneC::ZoneNamesT& zones) {
  std::sort(zones.begin(), zones.end(), [](auto const& left, auto const& right) {
    return toCodeUnits(left.second) < toCodeUnits(right.second);
  });
}

}  // namespace

TimeZoneWindowsC::TimeZoneWindowsC() {
  connectPermanentSlot(timeZoneChanged);
}

TimeZoneWindowsC::TimeZoneWindowsC(TimeZoneWindowsC&& other) noexcept
    : timeZoneName(other.takeHeldName()),
      timeZoneChanged(std::move(other.timeZoneChanged)),
      hasSignal(std::exchange(other.hasSignal, false)) {}

TimeZoneWindowsC::~TimeZoneWindowsC() = default;

boost::signals2::connection TimeZoneWindowsC::connectTimeZoneChanged(
    boost::function<void()> const& slot) {
  if (!hasSignal) {
    logAssertion();
    return {};
  }
  return timeZoneChanged.connect(slot);
}

std::uint32_t TimeZoneWindowsC::getTimeZoneList(ZoneNamesT& zones) {
  zones.clear();
  RootTimeZoneRegistryKeyWrapperC const root;
  std::u16string keyName;
  for (std::uint32_t index = 0; root.enumerate(index, keyName); ++index) {
    TimeZoneRegistryKeyWrapperC const zone(root, keyName);
    if (!zone.isOpen()) {
      continue;
    }
    std::u16string display;
    if (!zone.readDisplayName(display)) {
      return RC_FAILED;
    }
    std::wstring name = toWideText(keyName);
    if (checkTimeZone(name) == RC_OK) {
      zones.emplace_back(std::move(name), toWideText(display));
    }
  }
  sortByDisplayName(zones);
  return zones.empty() ? RC_FAILED : RC_OK;
}

std::uint32_t TimeZoneWindowsC::getTimeZone(std::wstring& name) {
  name = currentTimeZoneName();
  return name.empty() ? RC_FAILED : RC_OK;
}

std::uint32_t TimeZoneWindowsC::setTimeZone(std::wstring const& name) {
  if (checkTimeZone(name) != RC_OK) {
    logAssertion("Timezone is invalid or out of range!");
    return RC_FAILED;
  }
  if (name == heldName()) {
    return RC_OK;
  }
  {
    Guard const guard(getTimeLock());
    std::wstring previous = takeHeldName();
    bool isKnown = false;
    try {
      isKnown = isKnownZone(name);
      if (isKnown) {
        holdName(name);
      }
    } catch (...) {
      Guard const nameGuard(nameMutex);
      timeZoneName.swap(previous);
      throw;
    }
    if (!isKnown) {
      // The name stays empty on purpose: the next getTimeZone() asks the system again.
      logAssertion("Setting Windows Timezone failed!");
      return RC_FAILED;
    }
  }
  emitTimeZoneChanged();
  return RC_OK;
}

std::wstring TimeZoneWindowsC::getDefaultTimeZone() {
  return DEFAULT_ZONE;
}

std::uint32_t TimeZoneWindowsC::checkTimeZone(std::wstring const& name) {
  return isKnownZone(name) ? RC_OK : RC_FAILED;
}

std::wstring TimeZoneWindowsC::getTimeZoneOffsetText() {
  std::wstring name;
  std::int32_t bias = 0;
  if (getTimeZone(name) != RC_OK || checkTimeZone(name) != RC_OK ||
      getTimeZoneBias(name, bias) != RC_OK) {
    return {};
  }
  // The bias is written as it is stored, with its own sign in hours and minutes, on purpose.
  std::wostringstream text;
  text.imbue(std::locale::classic());
  text.fill(L'0');
  text << L"GMT" << (bias < 0 ? L'-' : L'+');
  text.width(2);
  text << bias / MINUTES_PER_HOUR << L':';
  text.width(2);
  text << bias % MINUTES_PER_HOUR;
  return text.str();
}

std::int16_t TimeZoneWindowsC::getUtcOffset(MjdTimeC const& /*time*/) {
  return systemUtcOffset();
}

std::int16_t TimeZoneWindowsC::getUtcOffset(YmdhmsC const& /*time*/) {
  return systemUtcOffset();
}

std::int16_t TimeZoneWindowsC::getUtcOffset(GpsC const& /*time*/) {
  return systemUtcOffset();
}

std::int16_t TimeZoneWindowsC::getUtcOffset(GpsTimeC const& /*time*/) {
  return systemUtcOffset();
}

std::uint32_t TimeZoneWindowsC::getTimeZoneBias(std::wstring const& name, std::int32_t& bias) {
  bias = 0;
  if (checkTimeZone(name) != RC_OK) {
    return RC_FAILED;
  }
  RootTimeZoneRegistryKeyWrapperC const root;
  TimeZoneRegistryKeyWrapperC const zone(root, toCodeUnits(name));
  TimeZoneInformationC information{};
  if (!zone.readTimeZoneInformation(information)) {
    return RC_FAILED;
  }
  bias = information.bias;
  return RC_OK;
}

std::uint32_t TimeZoneWindowsC::getTimeZoneDisplayName(std::wstring const& name,
                                                       std::wstring& display) {
  RootTimeZoneRegistryKeyWrapperC const root;
  TimeZoneRegistryKeyWrapperC const zone(root, toCodeUnits(name));
  std::u16string text;
  if (!zone.readDisplayName(text)) {
    return RC_FAILED;
  }
  display = toWideText(text);
  return RC_OK;
}

std::uint32_t TimeZoneWindowsC::findTimeZoneByBias(std::int32_t bias, std::wstring& name) {
  RootTimeZoneRegistryKeyWrapperC const root;
  // Only the standard bias counts; daylight saving plays no part.
  auto const hasBias = [bias](std::u16string const& /*keyName*/, TimeZoneInformationC const& zone) {
    return zone.bias == bias;
  };
  return findZone(root, hasBias, name) ? RC_OK : RC_FAILED;
}

std::uint32_t TimeZoneWindowsC::getPreferredTimeZoneBias(std::wstring const& name,
                                                         std::int32_t& bias) {
  for (wchar_t const* const preferred : PREFERRED_ZONES) {
    if (name == preferred) {
      return getTimeZoneBias(name, bias);
    }
  }
  bias = 0;
  return RC_FAILED;
}

std::uint32_t TimeZoneWindowsC::findPreferredTimeZoneByBias(std::int32_t bias, std::wstring& name) {
  for (wchar_t const* const preferred : PREFERRED_ZONES) {
    std::int32_t zoneBias = 0;
    std::uint32_t const result = getTimeZoneBias(preferred, zoneBias);
    if (result == RC_OK && zoneBias == bias) {
      name = preferred;
      return RC_OK;
    }
  }
  name.clear();
  return RC_FAILED;
}

std::uint32_t TimeZoneWindowsC::resolveTimeZone(std::wstring const& name,
                                                std::int32_t bias,
                                                std::wstring& resolved) {
  if (checkTimeZone(name) == RC_OK) {
    resolved = name;
    return RC_OK;
  }
  if (getWindowsZoneName(name, resolved) == RC_OK && checkTimeZone(resolved) == RC_OK) {
    return RC_OK;
  }
  return findTimeZoneByBias(bias, resolved);
}

std::wstring TimeZoneWindowsC::currentTimeZoneName() {
  std::wstring name = heldName();
  if (name.empty()) {
    // Asked without the lock; a zone that was set meanwhile wins.
    name = holdNameIfNone(systemZoneName());
  }
  if (name.empty()) {
    logAssertion("Timezone set to the system is invalid!");
  }
  return name;
}

std::wstring TimeZoneWindowsC::heldName() const {
  Guard const guard(nameMutex);
  return timeZoneName;
}

std::wstring TimeZoneWindowsC::takeHeldName() {
  Guard const guard(nameMutex);
  return std::exchange(timeZoneName, std::wstring());
}

void TimeZoneWindowsC::holdName(std::wstring const& name) {
  Guard const guard(nameMutex);
  timeZoneName = name;
}

std::wstring TimeZoneWindowsC::holdNameIfNone(std::wstring const& name) {
  Guard const guard(nameMutex);
  if (timeZoneName.empty()) {
    timeZoneName = name;
  }
  return timeZoneName;
}

void TimeZoneWindowsC::emitTimeZoneChanged() {
  if (!hasSignal) {
    logAssertion();
    return;
  }
  timeZoneChanged();
}

TimeZoneC& getTimeZoneInstance() {
  static ProcessObjectC<TimeZoneWindowsC> zone;
  [[maybe_unused]] static bool const isKept =
      (keepUsableAfterFork(FORKLOCK_ZONENAME, (*zone).nameMutex), true);
  return *zone;
}

}  // namespace KTX::TIM
