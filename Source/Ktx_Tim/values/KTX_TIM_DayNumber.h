#ifndef KTX_TIM_DAYNUMBER_H
#define KTX_TIM_DAYNUMBER_H

#include "KTX/TIM/KTX_TIM_GpsTimeValue.h"

namespace KTX::TIM {

/// The Modified Julian Date of a week and milliseconds, unrounded.
double dayNumberOf(GPSTimeC const& time);

/// The week and milliseconds nearest a Modified Julian Date; the week is cut to 16 bits, so days
/// before the GPS epoch wrap.
GPSTimeC gpsTimeOf(double dayNumber);

}  // namespace KTX::TIM

#endif  // KTX_TIM_DAYNUMBER_H
