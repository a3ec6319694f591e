#ifndef KTX_VORTIME_ZONECOMMAND_H
#define KTX_VORTIME_ZONECOMMAND_H

#include <cstdint>
#include <optional>
#include <string>

#include "system/ExitCode.h"

namespace KTX::VORTIME {

/// Lists the zones of the system.
ExitCodeE runZoneList(bool isJson, int resultDescriptor);
/// Shows the zone that the library works with and the system's present offset.
ExitCodeE runZoneCurrent(bool isJson, int resultDescriptor);
/// Shows one zone by its Windows key name.
ExitCodeE runZoneShow(std::string const& name, bool isJson, int resultDescriptor);
/// Translates between Windows and IANA names, in either direction.
ExitCodeE runZoneMap(std::string const& name, bool isJson, int resultDescriptor);
/// Turns a Windows or IANA name into a Windows key name. For a name that is unknown, and only with
/// a bias (UTC minus local time in minutes), answers the first zone of that bias and says so.
ExitCodeE runZoneResolve(std::string const& name,
                         std::optional<std::int32_t> bias,
                         bool isJson,
                         int resultDescriptor);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_ZONECOMMAND_H
