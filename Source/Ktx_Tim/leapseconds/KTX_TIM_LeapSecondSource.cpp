#include "KTX/TIM/KTX_TIM_LeapSecondSource.h"

namespace KTX::TIM {

char const* leapSecondSourceName(LeapSecondSource source) {
  switch (source) {
    case LEAPSECOND_DEFAULT:
      return "Default";
    case LEAPSECOND_FORCED:
      return "Forced";
    case LEAPSECOND_SITE:
      return "Site";
    case LEAPSECOND_GPS:
      return "GPS";
    case LEAPSECOND_GLONASS:
      return "GLONASS";
    case LEAPSECOND_GALILEO:
      return "GALILEO";
    case LEAPSECOND_SBAS:
      return "SBAS";
    case LEAPSECOND_QZSS:
      return "QZSS";
    case LEAPSECOND_BEIDOU:
      return "BEIDOU";
  }
  return "Unknown";
}

}  // namespace KTX::TIM
