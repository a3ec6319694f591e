#ifndef KTX_RCV_LEAPLIST_H
#define KTX_RCV_LEAPLIST_H

#include <cstdint>
#include <string_view>
#include <vector>

#include "KTX/RCV/KTX_RCV_Api.h"

namespace KTX::RCV {

/// One change of the leap second count.
struct LeapListEntryC {
  std::int64_t unixMs = 0;       ///< UTC at which the count begins, ms since 1970-01-01
  std::int32_t gpsMinusUtc = 0;  ///< s; negative before 1980
};

/// A published list of leap seconds: "leap-seconds.list" with NTP seconds, or "leapseconds" of the
/// tz database.
struct LeapListC {
  std::vector<LeapListEntryC> entries;  ///< in the order of the list
  bool hasUpdate = false;               ///< updateUnixMs means something
  std::int64_t updateUnixMs = 0;        ///< when the list was made, ms since 1970-01-01 UTC
  bool hasExpiry = false;               ///< expiryUnixMs means something
  std::int64_t expiryUnixMs = 0;        ///< when the list expires, ms since 1970-01-01 UTC

  /// True from the moment of its expiry on; false for a list that states none.
  bool isExpired(std::int64_t unixMs) const { return hasExpiry && unixMs >= expiryUnixMs; }
};

/// Reads a list by its content. False for a text that is none.
KTX_RCV_API bool readLeapList(std::string_view text, LeapListC& list);

}  // namespace KTX::RCV

#endif  // KTX_RCV_LEAPLIST_H
