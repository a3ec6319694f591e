#ifndef KTX_TIM_LEAPSECONDRULES_H
#define KTX_TIM_LEAPSECONDRULES_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_GpsTimeValue.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"

namespace KTX::TIM {

/// What the acceptance rule says about an incoming record.
enum LeapSecondVerdictE : std::int32_t {
  LEAPSECOND_ACCEPT = 0,
  LEAPSECOND_REJECT = 1,
  LEAPSECOND_SAME_DAY = 3  ///< rejected: both announce the same effectivity day
};

/// Whether a record may be considered at all. An invalid one is reported in the log, except a
/// satellite record of a system other than GPS with a known effectivity. Any thread may call.
bool isValidLeapSecond(UtcLeapSecondRecord const& record);

/// Whether incoming may replace held, the record of the slot it is meant for, at the present. The
/// library-wide lock is taken where the present matters.
LeapSecondVerdictE compareLeapSecond(UtcLeapSecondRecord const& held,
                                     UtcLeapSecondRecord const& incoming);

/// As compareLeapSecond() at the instant now, in GPS time. It takes no lock.
LeapSecondVerdictE compareLeapSecondAt(UtcLeapSecondRecord const& held,
                                       UtcLeapSecondRecord const& incoming,
                                       GPSTimeC const& now);

}  // namespace KTX::TIM

#endif  // KTX_TIM_LEAPSECONDRULES_H
