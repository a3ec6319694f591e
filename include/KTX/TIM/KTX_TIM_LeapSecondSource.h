#ifndef KTX_TIM_LEAPSECONDSOURCE_H
#define KTX_TIM_LEAPSECONDSOURCE_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_Api.h"

namespace KTX::TIM {

/// Where a leap second statement comes from; GPS to BEIDOU are the satellite systems.
enum LeapSecondSource : std::uint32_t {
  LEAPSECOND_DEFAULT = 0,  ///< compiled into the library
  LEAPSECOND_FORCED = 1,   ///< set by the operator, directly or by a leap second file
  LEAPSECOND_SITE = 2,     ///< the site configuration of one provider
  LEAPSECOND_GPS = 3,      ///< broadcast by GPS
  LEAPSECOND_GLONASS = 4,  ///< broadcast by GLONASS
  LEAPSECOND_GALILEO = 5,  ///< broadcast by Galileo
  LEAPSECOND_SBAS = 6,     ///< broadcast by an SBAS satellite
  LEAPSECOND_QZSS = 7,     ///< broadcast by QZSS
  LEAPSECOND_BEIDOU = 8    ///< broadcast by BeiDou
};

/// The name of a source as log lines print it, for example "GPS"; "Unknown" for a value outside
/// the enumeration. The text is static. Any thread may call.
KTX_TIM_API char const* leapSecondSourceName(LeapSecondSource source);

}  // namespace KTX::TIM

#endif  // KTX_TIM_LEAPSECONDSOURCE_H
