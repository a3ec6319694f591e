#include "replay/EstimateMirror.h"

#include <cmath>

namespace KTX::VORTIME {
namespace {

constexpr double MS_PER_DAY = 8.64e7;
constexpr double DRIFT_MS_PER_DAY = 5000;
constexpr double FLOOR_MS = 20;
constexpr double START_SIGMA = 5.787037037037037e-05;  // 5000 ms in days
constexpr double CHANGE_THRESHOLD_MS = 51;
constexpr double MAX_UNCERTAINTY_MS = 55;

// The difference of two mappings of the steady clock, a minus b.
double offsetDifferenceMs(double aMjd,
                          std::int64_t aSteadyMs,
                          double bMjd,
                          std::int64_t bSteadyMs) {
  return static_cast<double>(bSteadyMs - aSteadyMs) + aMjd * MS_PER_DAY - bMjd * MS_PER_DAY;
}

}  // namespace

void EstimateMirrorC::start(double systemMjd, std::int64_t steadyMs) {
  x = systemMjd;
  p = START_SIGMA * START_SIGMA;
  estimateSteadyMs = steadyMs;
  presentMjd = systemMjd;
  presentSteadyMs = steadyMs;
  step = EstimateStepC();
  step.steadyMs = steadyMs;
  step.startSteadyMs = steadyMs;
  step.startMjd = systemMjd;
  step.estimatedMjd = systemMjd;
  step.estimatedSigma = START_SIGMA;
}

EstimateStepC const& EstimateMirrorC::observe(double observedMjd,
                                              std::int64_t steadyMs,
                                              std::int64_t noiseMs) {
  double sigma = static_cast<double>(noiseMs) / MS_PER_DAY;
  predict(steadyMs);
  auto const residualMs =
      static_cast<std::int64_t>(offsetDifferenceMs(observedMjd, steadyMs, x, steadyMs));
  double const limitMs = sigma * 300.0 * MS_PER_DAY;
  step.isReset = std::fabs(static_cast<double>(residualMs)) > limitMs;
  if (step.isReset) {
    sigma = 0;
  }
  predict(steadyMs);
  step.predictedMjd = x;
  update(observedMjd, sigma);
  decide(steadyMs);
  return step;
}

void EstimateMirrorC::predict(std::int64_t steadyMs) {
  double const dt = static_cast<double>(steadyMs - estimateSteadyMs) / MS_PER_DAY;
  double const sigma = DRIFT_MS_PER_DAY * dt / MS_PER_DAY;
  x = x + dt;
  p = p + sigma * sigma;
  estimateSteadyMs = steadyMs;
}

void EstimateMirrorC::update(double observedMjd, double sigma) {
  constexpr double H = 1.0;
  constexpr double FLOOR_SIGMA = FLOOR_MS / MS_PER_DAY;
  double const r = sigma * sigma;
  double const k = H / (p * H + r) * p;
  step.correction = (observedMjd - H * x) * k;
  x = x + step.correction;
  p = p - k * H * p;
  if (FLOOR_SIGMA * FLOOR_SIGMA > p) {
    p = FLOOR_SIGMA * FLOOR_SIGMA;
  }
  step.observedMjd = observedMjd;
  step.observedSigma = sigma;
  step.estimatedMjd = x;
  step.estimatedSigma = std::sqrt(p);
}

void EstimateMirrorC::decide(std::int64_t steadyMs) {
  step.steadyMs = steadyMs;
  step.exactDifferenceMs = offsetDifferenceMs(x, steadyMs, presentMjd, presentSteadyMs);
  step.differenceMs = static_cast<std::int64_t>(step.exactDifferenceMs);
  double const size =
      static_cast<double>(step.differenceMs < 0 ? -step.differenceMs : step.differenceMs);
  step.isCorrected = size / MS_PER_DAY * MS_PER_DAY > CHANGE_THRESHOLD_MS &&
                     step.estimatedSigma * MS_PER_DAY <= MAX_UNCERTAINTY_MS;
  if (step.isCorrected) {
    presentMjd = x;
    presentSteadyMs = steadyMs;
  }
  step.presentOffsetMs = (presentMjd - step.startMjd) * MS_PER_DAY -
                         static_cast<double>(presentSteadyMs - step.startSteadyMs);
}

}  // namespace KTX::VORTIME
