#ifndef KTX_TIM_TIMEBASE_H
#define KTX_TIM_TIMEBASE_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_Api.h"

namespace KTX::TIM {

/// The time base in which an instant is to be read.
enum TimeBaseE : std::int32_t {
  TIMEBASE_INV = -1,  ///< invalid or not set
  TIMEBASE_GPS = 0,   ///< GPS system time, without leap seconds
  TIMEBASE_UTC = 1,   ///< GPS time less the UTC leap seconds
  TIMEBASE_LOCAL = 2  ///< UTC plus the offset of the time zone
};

/// The name of a time base, for example "TIMEBASE_UTC"; "UNKNOWN" for a value outside the
/// enumeration. The text is static. Any thread may call.
KTX_TIM_API char const* timeBaseToString(TimeBaseE timeBase);

}  // namespace KTX::TIM

#endif  // KTX_TIM_TIMEBASE_H
