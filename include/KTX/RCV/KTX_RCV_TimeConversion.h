#ifndef KTX_RCV_TIMECONVERSION_H
#define KTX_RCV_TIMECONVERSION_H

#include <cstdint>

#include "KTX/RCV/KTX_RCV_Api.h"
#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

namespace KTX::RCV {

/// UTC calendar with milliseconds of an instant in milliseconds since 1970-01-01; the library's
/// value as a message of that time would give it.
KTX_RCV_API TIM::YmdhmsC utcCalendarOf(std::int64_t unixMs);

/// The same the other way; the base of the calendar does not count.
KTX_RCV_API std::int64_t unixMsOf(TIM::YmdhmsC const& calendar);

/// An instant in UTC as GPS time, by the leap seconds of the given provider.
KTX_RCV_API TIM::GpsC gpsOfUtc(TIM::YmdhmsC const& utc, TIM::LeapSecondProviderI& provider);

/// An instant in GPS time as UTC to the millisecond, by the leap seconds of its own provider.
KTX_RCV_API TIM::YmdhmsC utcOfGps(TIM::GpsC const& gps);

}  // namespace KTX::RCV

#endif  // KTX_RCV_TIMECONVERSION_H
