#ifndef KTX_TIM_TIMEESTIMATOR_H
#define KTX_TIM_TIMEESTIMATOR_H

#include <cstdint>

#include "currenttime/KTX_TIM_ScalarKalman.h"
#include "currenttime/KTX_TIM_SteadyTime.h"

namespace KTX::TIM {

/// Estimates the time at a reading of the steady clock from noisy observations.
///
/// Between observations the estimate advances with the clock and its variance grows; an
/// observation corrects it by the usual gain; the variance never falls below a floor. Writes a
/// trace and one data line per observation. Has no lock: the owner serialises the calls.
class TimeEstimator {
 public:
  /// driftMsPerDay is the standard deviation that a day without observations adds, minSigmaMs the
  /// floor of the estimate's own, first the initial observation.
  TimeEstimator(std::int64_t driftMsPerDay, std::int64_t minSigmaMs, TimeEstimateC const& first);

  /// Moves the estimate to a reading of the steady clock, which may also lie in the past: the
  /// variance grows either way.
  TimeEstimateC predict(std::int64_t steadyMs);

  /// Moves the estimate to the observation's reading and corrects it by the observation.
  TimeEstimateC update(TimeEstimateC const& observation);

 private:
  void logUpdate(TimeEstimateC const& observation,
                 TimeEstimateC const& predicted,
                 double correction) const;

  std::int64_t driftMsPerDay;
  ScalarKalmanC kalman;
  TimeEstimateC start;
  TimeEstimateC estimate;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_TIMEESTIMATOR_H
