#include "currenttime/KTX_TIM_TimeEstimator.h"

#include <string>

#include "currenttime/KTX_TIM_TimeText.h"
#include "support/KTX_TIM_LogChannels.h"
#include "support/KTX_TIM_Numeric.h"

namespace KTX::TIM {

namespace {

void appendInteger(std::string& line, char const* label, std::int64_t value) {
  line += label;
  line += '\t';
  line += std::to_string(value);
  line += '\t';
}

void appendMs(std::string& line, char const* label, double days) {
  appendInteger(line, label, truncToInt64(days * DAY_MS));
}

void appendDays(std::string& line, char const* label, double days) {
  line += label;
  line += '\t';
  appendFixed15(line, days);
  line += '\t';
}

}  // namespace

TimeEstimator::TimeEstimator(std::int64_t driftPerDay,
                             std::int64_t minSigmaMs,
                             TimeEstimateC const& first)
    : driftMsPerDay(driftPerDay), start(first), estimate(first) {
  double const minSigma = static_cast<double>(minSigmaMs) / DAY_MS;
  kalman.init(first.time.mjd, first.sigma * first.sigma, minSigma * minSigma);
}

void TimeEstimator::movePrediction(ScalarKalmanC& filter, std::int64_t steadyMs) const {
  double const dt = static_cast<double>(elapsedMs(steadyMs, estimate.time.steadyMs)) / DAY_MS;
  double const s = static_cast<double>(driftMsPerDay) * dt / DAY_MS;
  filter.predict(dt, s * s);
}

double TimeEstimator::sigmaAt(std::int64_t steadyMs) const {
  // On a copy: the variance that a prediction adds is not the same in two steps as in one.
  ScalarKalmanC grown = kalman;
  movePrediction(grown, steadyMs);
  return grown.stdDev();
}

TimeEstimateC TimeEstimator::predict(std::int64_t steadyMs) {
  movePrediction(kalman, steadyMs);
  estimate = {{kalman.value(), steadyMs}, kalman.stdDev()};
  if (estimatorLog().isLevelEnabled(1)) {
    printComposed(estimatorLog(), 1, "predict estimate: " + estimateText(estimate) + "\n");
  }
  return estimate;
}

TimeEstimateC TimeEstimator::update(TimeEstimateC const& observation) {
  TimeEstimateC const predicted = predict(observation.time.steadyMs);
  kalman.update(observation.time.mjd, 1.0, observation.sigma * observation.sigma, correction);
  estimate = {{kalman.value(), observation.time.steadyMs}, kalman.stdDev()};
  logUpdate(observation, predicted);
  return estimate;
}

void TimeEstimator::logUpdate(TimeEstimateC const& observation,
                              TimeEstimateC const& predicted) const {
  if (estimatorLog().isLevelEnabled(4)) {
    printComposed(estimatorLog(), 4, "new observation : " + estimateText(observation) + "\n");
    printComposed(estimatorLog(), 4, "new estimate    : " + estimateText(estimate) + "\n");
  }
  if (!estimatorDataLog().isLevelEnabled(4)) {
    return;
  }
  double const observed = observation.time.mjd;
  std::string line;
  appendInteger(line, "STT-D:", elapsedMs(observation.time.steadyMs, start.time.steadyMs));
  appendDays(line, "OBS-A:", observed);
  appendMs(line, "OBS-R:", observed - start.time.mjd);
  appendMs(line, "OBS-N:", observation.sigma);
  appendDays(line, "PRE-A:", predicted.time.mjd);
  appendMs(line, "PRE-R:", predicted.time.mjd - start.time.mjd);
  appendDays(line, "UPD-A:", kalman.value());
  appendMs(line, "UPD-R:", estimate.time.mjd - start.time.mjd);
  appendMs(line, "UPD-N:", estimate.sigma);
  appendMs(line, "UPD-D:", correction);
  appendMs(line, "RES-A:", observed - estimate.time.mjd);
  line += '\n';
  printComposed(estimatorDataLog(), 4, line);
}

}  // namespace KTX::TIM
