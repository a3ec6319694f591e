#ifndef KTX_TIM_LEAPSECONDEFFECTIVITY_H
#define KTX_TIM_LEAPSECONDEFFECTIVITY_H

#include "KTX/TIM/KTX_TIM_GpsTimeValue.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"

namespace KTX::TIM {

/// The end of the record's effectivity day, without leap seconds. The week wraps at 16 bits.
GPSTimeC effectivityDayEnd(UtcLeapSecondRecord const& record);

/// The instant in GPS time from which the future count holds: the end of the effectivity day plus
/// that count.
GPSTimeC effectivityInstant(UtcLeapSecondRecord const& record);

/// Sets week and day to the day before firstDay, the start of the first day with the future count,
/// and marks the effectivity as known.
void setEffectivityDayBefore(UtcLeapSecondRecord& record, GPSTimeC const& firstDay);

}  // namespace KTX::TIM

#endif  // KTX_TIM_LEAPSECONDEFFECTIVITY_H
