#ifndef KTX_TIM_ZONESOURCES_H
#define KTX_TIM_ZONESOURCES_H

#include <cstdint>

namespace KTX::TIM {

/// Where the machine's zones come from, and its time. The texts belong to others.
struct ZoneSourcesC {
  /// The zone that the environment sets, null when it sets none.
  char const* environmentZone;
  char const* databaseFolder;
  /// The zone of the machine where the environment sets none.
  char const* machineZoneFile;
  /// Seconds since 1970-01-01.
  std::int64_t utc;
};

/// What the environment, the usual places and the clock say now.
ZoneSourcesC currentZoneSources();

}  // namespace KTX::TIM

#endif  // KTX_TIM_ZONESOURCES_H
