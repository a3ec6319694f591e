#include "KTX/TIM/KTX_TIM_GpsLocal.h"

namespace KTX::TIM {

GpsLocalC::GpsLocalC(GpsLocalC const& other) = default;

GpsLocalC::GpsLocalC(LeapSecondProviderI* leapSecondProvider) : GpsC(leapSecondProvider) {}

GpsLocalC::~GpsLocalC() = default;

GpsLocalC& GpsLocalC::operator=(GpsLocalC const& other) = default;

}  // namespace KTX::TIM
