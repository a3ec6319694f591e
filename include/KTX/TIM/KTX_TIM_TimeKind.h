#ifndef KTX_TIM_TIMEKIND_H
#define KTX_TIM_TIMEKIND_H

#include <cstdint>
#include <iosfwd>

#include "KTX/TIM/KTX_TIM_Api.h"

namespace KTX::TIM {

/// Kinds of time, as labels for people.
enum TimeKindE : std::int32_t {
  TIMEKIND_GPS = 0,  ///< GPS system time
  TIMEKIND_UTC = 1,  ///< Coordinated Universal Time
  TIMEKIND_LOC = 2,  ///< local time
  TIMEKIND_SYS = 3   ///< the time of the operating system
};

/// Writes "GPS", "UTC", "LOC" or "SYS", and "n/a" for any other value. The stream's own
/// formatting neither shows nor changes.
KTX_TIM_API std::ostream& operator<<(std::ostream& stream, TimeKindE kind);

}  // namespace KTX::TIM

#endif  // KTX_TIM_TIMEKIND_H
