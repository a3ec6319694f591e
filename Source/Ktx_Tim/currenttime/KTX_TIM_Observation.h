#ifndef KTX_TIM_OBSERVATION_H
#define KTX_TIM_OBSERVATION_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_TimeEstimate.h"

namespace KTX::TIM {

class YmdhmsC;

/// What one observation did; announce() hands it to the listeners.
struct ObservationResultC {
  GPSTimeC present;  ///< after the observation
  std::int64_t differenceMs = 0;
  bool isCorrected = false;
  TimeEstimateStepC step{};
};

// Each takes the library-wide lock for the whole step, and gives it back before it returns. When
// something throws, the present and the filter are as they were.

/// Takes in an observation, with its standard deviation.
ObservationResultC observe(YmdhmsC const& observation, std::int64_t noiseMs);

/// Takes in an observation of GPS time; it keeps its milliseconds when precisionFlag is 1, else it
/// goes to hundredths of a second.
ObservationResultC observe(GpsC const& observation,
                           std::int64_t noiseMs,
                           std::int32_t precisionFlag);

/// Tells the listeners of the filter's steps, then those of corrections, on this thread. What a
/// listener throws passes to the caller; one of a step does not keep the correction from being
/// told.
void announce(ObservationResultC const& result);

}  // namespace KTX::TIM

#endif  // KTX_TIM_OBSERVATION_H
