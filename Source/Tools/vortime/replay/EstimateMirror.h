#ifndef KTX_VORTIME_ESTIMATEMIRROR_H
#define KTX_VORTIME_ESTIMATEMIRROR_H

#include <cstdint>

#include "replay/EstimateStep.h"

namespace KTX::VORTIME {

/// Follows the library's estimate from the observations that are handed to the library.
///
/// The library tells its corrections; its estimate and uncertainty stand in its log alone. Both
/// follow from the observations and the clocks, which the tool knows. The same sums in the same
/// order give the same bits: a test compares the lines with those of the library's log.
class EstimateMirrorC {
 public:
  /// Begins anew, as the library does when its clocks are replaced: at the system clock's time
  /// systemMjd (days, UTC) for the reading steadyMs.
  void start(double systemMjd, std::int64_t steadyMs);

  /// Follows one observation (days, UTC) with its standard deviation.
  EstimateStepC const& observe(double observedMjd, std::int64_t steadyMs, std::int64_t noiseMs);

  /// The last step; that of start() has no observation.
  EstimateStepC const& last() const { return step; }

 private:
  void predict(std::int64_t steadyMs);
  void update(double observedMjd, double sigma);
  void decide(std::int64_t steadyMs);

  double x = 0;  ///< state, days
  double p = 0;  ///< its variance, days squared
  std::int64_t estimateSteadyMs = 0;
  double presentMjd = 0;
  std::int64_t presentSteadyMs = 0;
  EstimateStepC step;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_ESTIMATEMIRROR_H
