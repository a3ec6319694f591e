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

  /// The initial observation's time.
  SteadyTimeC const& startTime() const { return start.time; }

  /// The days by which the last update() moved the estimate.
  double lastCorrection() const { return correction; }

  /// The standard deviation in days that a prediction for this reading would have.
  double sigmaAt(std::int64_t steadyMs) const;

 private:
  void movePrediction(ScalarKalmanC& filter, std::int64_t steadyMs) const;
  void logUpdate(TimeEstimateC const& observation, TimeEstimateC const& predicted) const;

  std::int64_t driftMsPerDay;
  ScalarKalmanC kalman;
  TimeEstimateC start;
  TimeEstimateC estimate;
  double correction = 0.0;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_TIMEESTIMATOR_H
