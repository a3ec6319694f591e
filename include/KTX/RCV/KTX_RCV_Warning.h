#ifndef KTX_RCV_WARNING_H
#define KTX_RCV_WARNING_H

#include <cstdint>

#include "KTX/RCV/KTX_RCV_Api.h"

namespace KTX::RCV {

/// What makes a message doubtful although its form is right; bits of a mask.
enum WarningE : std::uint32_t {
  WARNING_NONE = 0,                   ///< nothing
  WARNING_NO_CHECKSUM = 1U << 0,      ///< a stream without checksums
  WARNING_NO_FIX = 1U << 1,           ///< the receiver tells that it has no fix
  WARNING_NO_ACCURACY = 1U << 2,      ///< the receiver does not know its accuracy
  WARNING_LEAP_UNKNOWN = 1U << 3,     ///< the receiver marks its leap second count as not valid
  WARNING_WEEK_ROLLOVER = 1U << 4,    ///< a multiple of 1024 weeks away from the reference
  WARNING_TIME_STEP = 1U << 5,        ///< does not continue the observation before
  WARNING_LEAP_COUNT = 1U << 6,       ///< another leap second count than the one in force
  WARNING_LEAP_WEEK = 1U << 7,        ///< a leap second week that is off by a multiple of 256
  WARNING_LEAP_DAY = 1U << 8,         ///< a leap second day that ends no month
  WARNING_LEAP_SYSTEM = 1U << 9,      ///< a count that is none of GPS
  WARNING_HOST_TIME_BACK = 1U << 10,  ///< the host's clock ran back
  WARNING_BURST = 1U << 11            ///< came at once with an earlier one, which must have waited
};

/// How many warnings there are, WARNING_NONE not counted.
constexpr std::uint32_t WARNING_COUNT = 12;

/// The name of one warning in reports, such as "week-rollover". Static text.
KTX_RCV_API char const* warningName(WarningE warning);

}  // namespace KTX::RCV

#endif  // KTX_RCV_WARNING_H
