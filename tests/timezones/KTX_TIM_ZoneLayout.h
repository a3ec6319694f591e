#ifndef KTX_TIM_ZONELAYOUT_H
#define KTX_TIM_ZONELAYOUT_H

#include <cstdint>
#include <string>
#include <vector>

#include "support/KTX_TIM_SystemTimeRecord.h"
#include "timezones/KTX_TIM_ZoneRecord.h"

namespace KTX::TIM::TEST {

/// Where the zones are kept, below the machine's part of the registry.
constexpr char16_t const* ZONES_PATH =
    u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Time Zones";

/// The bytes of a text; a terminator is added where wanted.
std::vector<std::uint8_t> textBytes(std::u16string const& text, bool isTerminated = true);

/// The bytes of a zone record.
std::vector<std::uint8_t> recordBytes(ZoneRecordC const& record);

/// A record with a standard bias and central European rules.
ZoneRecordC recordWithBias(std::int32_t bias);

/// Adds a zone with all its values to any kind of zone registry.
template <class RegistryT>
void addZone(RegistryT& registry,
             std::u16string const& name,
             std::u16string const& display,
             std::int32_t bias) {
  registry.addZone(name);
  registry.setValue(name, u"Display", textBytes(display));
  registry.setValue(name, u"Std", textBytes(name));
  registry.setValue(name, u"Dlt", textBytes(name + u" D"));
  registry.setValue(name, u"TZI", recordBytes(recordWithBias(bias)));
}

/// Adds four zones, the three preferred ones among them, whose order by display name is not that
/// by key name.
template <class RegistryT>
void addFourZones(RegistryT& registry) {
  addZone(registry, u"W. Europe Standard Time", u"(UTC+01:00) Berlin", -60);
  addZone(registry, u"GMT Standard Time", u"(UTC+00:00) London", 0);
  addZone(registry, u"Tokyo Standard Time", u"(UTC+09:00) Tokyo", -540);
  addZone(registry, u"Singapore Standard Time", u"(UTC+08:00) Singapore", -480);
}

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_ZONELAYOUT_H
