#ifndef KTX_TIM_LEAPSECONDRULES_H
#define KTX_TIM_LEAPSECONDRULES_H

#include <cstdint>
#include <functional>
#include <vector>

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

/// Texts of assertions, for the caller to log.
using LeapSecondAssertionsT = std::vector<char const*>;
/// Gives the present in GPS time.
using PresentT = std::function<GPSTimeC()>;

/// Whether incoming may replace held, the record of the slot it is meant for. Asks for the present
/// at most once, and only where it decides: reading it may print a warning. Logs nothing; appends
/// to assertions.
LeapSecondVerdictE compareLeapSecond(UtcLeapSecondRecord const& held,
                                     UtcLeapSecondRecord const& incoming,
                                     PresentT const& present,
                                     LeapSecondAssertionsT& assertions);

}  // namespace KTX::TIM

#endif  // KTX_TIM_LEAPSECONDRULES_H
