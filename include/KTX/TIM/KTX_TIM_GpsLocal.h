#ifndef KTX_TIM_GPSLOCAL_H
#define KTX_TIM_GPSLOCAL_H

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_Gps.h"

namespace KTX::TIM {

/// A GPS week and milliseconds that are meant as local time; the class itself is the label.
class KTX_TIM_API GpsLocalC : public GpsC {
 public:
  /// Copies week, milliseconds and provider, also a null one.
  GpsLocalC(GpsLocalC const& other);
  /// Week 0, 0 ms, the given provider; null raises an assertion and is kept.
  explicit GpsLocalC(LeapSecondProviderI* provider);
  ~GpsLocalC() override;

  using GpsC::operator=;
  /// Copies week, milliseconds and provider.
  GpsLocalC& operator=(GpsLocalC const& other);
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_GPSLOCAL_H
