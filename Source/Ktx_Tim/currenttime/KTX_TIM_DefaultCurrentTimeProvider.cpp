#include "KTX/TIM/KTX_TIM_DefaultCurrentTimeProvider.h"

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"

namespace KTX::TIM {

DefaultCurrentTimeProviderC::DefaultCurrentTimeProviderC() = default;

DefaultCurrentTimeProviderC::~DefaultCurrentTimeProviderC() = default;

GPSTimeC DefaultCurrentTimeProviderC::getCurrentGpsTime() {
  return GpsC::currentTime();
}

MjdTimeC DefaultCurrentTimeProviderC::getCurrentMjdTime() {
  GPSTimeC const present = GpsC::currentTime();
  return MjdTimeC(present);
}

}  // namespace KTX::TIM
