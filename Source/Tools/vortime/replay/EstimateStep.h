#ifndef KTX_VORTIME_ESTIMATESTEP_H
#define KTX_VORTIME_ESTIMATESTEP_H

#include <cstdint>

namespace KTX::VORTIME {

/// One step of the estimator: an observation, what was expected, and what came of both. Instants
/// are Modified Julian Dates in UTC, in days.
struct EstimateStepC {
  std::int64_t steadyMs = 0;       ///< reading of the steady clock
  std::int64_t startSteadyMs = 0;  ///< reading of the steady clock at the start of the estimate
  double startMjd = 0;             ///< time at the start of the estimate
  double observedMjd = 0;
  double observedSigma = 0;  ///< days; 0 when the observation set the estimate anew
  double predictedMjd = 0;
  double estimatedMjd = 0;
  double estimatedSigma = 0;      ///< days
  double correction = 0;          ///< days that this observation moved the estimate
  double exactDifferenceMs = 0;   ///< estimate minus the present before this step
  std::int64_t differenceMs = 0;  ///< the same, truncated as the library decides by it
  bool isReset = false;           ///< the residual was too large for the noise
  bool isCorrected = false;       ///< the present was moved onto the estimate
  double presentOffsetMs = 0;     ///< how far the present has been moved since the start
};

/// Takes the steps of the estimator, in order.
class EstimateSinkI {
 public:
  virtual ~EstimateSinkI() = default;
  virtual void onEstimate(EstimateStepC const& step) = 0;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_ESTIMATESTEP_H
