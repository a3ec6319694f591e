#ifndef KTX_VORTIME_TIMECONVERSION_H
#define KTX_VORTIME_TIMECONVERSION_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

namespace KTX::VORTIME {

/// UTC calendar with milliseconds of an instant in milliseconds since 1970-01-01; the library's
/// value as a message of that time would give it.
TIM::YmdhmsC utcCalendarOf(std::int64_t unixMs);

/// The same the other way; the base of the calendar does not count.
std::int64_t unixMsOf(TIM::YmdhmsC const& calendar);

/// An instant in UTC as GPS time, by the leap seconds of the given provider.
TIM::GpsC gpsOfUtc(TIM::YmdhmsC const& utc, TIM::LeapSecondProviderI& provider);

/// An instant in GPS time as UTC to the millisecond, by the leap seconds of its own provider.
TIM::YmdhmsC utcOfGps(TIM::GpsC const& gps);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_TIMECONVERSION_H
