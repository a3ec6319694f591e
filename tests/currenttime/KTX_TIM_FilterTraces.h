#ifndef KTX_TIM_FILTERTRACES_H
#define KTX_TIM_FILTERTRACES_H

#include <cstdint>

namespace KTX::TIM::TEST {

/// One step of a recorded run of the filter, made by filter_model.py with arithmetic of its own.
struct FilterStepC {
  int trace;
  std::int64_t seedUtcMs;
  std::int64_t seedSteadyMs;
  std::int64_t steadyMs;
  double observedMjd;
  std::int64_t noiseMs;
  bool isOutlier;
  double estimateMjd;
  double estimateSigma;
  std::int64_t differenceMs;
  bool isReleased;
  double mappingMjd;
  std::int64_t mappingSteadyMs;
};

inline constexpr FilterStepC FILTER_STEPS[] = {
#include "currenttime/KTX_TIM_FilterTraces.inc"
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_FILTERTRACES_H
