#include "currenttime/KTX_TIM_SysTimeOffset.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include "KTX/TIM/KTX_TIM_ClockFactory.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "currenttime/KTX_TIM_TimeText.h"
#include "support/KTX_TIM_LogChannels.h"
#include "support/KTX_TIM_Numeric.h"
#include "support/KTX_TIM_ProcessObject.h"

namespace KTX::TIM {

namespace {

namespace posix_time = boost::posix_time;

constexpr std::int64_t CHANGE_THRESHOLD_MS = 51;
constexpr std::int64_t PERIOD_MS = 60000;
constexpr std::int64_t MAX_UNCERTAINTY_MS = 55;
constexpr std::int64_t DRIFT_MS_PER_DAY = 5000;
constexpr std::int64_t MIN_SIGMA_MS = 20;
constexpr std::int64_t SEED_SIGMA_MS = 5000;

using ClockT = SysTimeOffsetT::ClockT;

std::unique_ptr<SysTimeOffsetT> makeOffset(ClockT const& systemClock, ClockT const& steadyClock) {
  return std::make_unique<SysTimeOffsetT>(systemClock, steadyClock, CHANGE_THRESHOLD_MS, PERIOD_MS,
                                          MAX_UNCERTAINTY_MS);
}

std::unique_ptr<SysTimeOffsetT> makeSystemOffset() {
  return makeOffset(createClock<boost::milli>(CLOCKTYPE_POSIX, CLOCKREF_DEFAULT),
                    createClock<boost::milli>(CLOCKTYPE_STEADY, CLOCKREF_DEFAULT));
}

std::unique_ptr<SysTimeOffsetT>& processInstance() {
  static ProcessObjectC<std::unique_ptr<SysTimeOffsetT>> instance(makeSystemOffset());
  return *instance;
}

posix_time::ptime epochOf(ClockI<boost::milli> const& clock) {
  posix_time::ptime const epoch = clock.getEpoch();
  if (!epoch.is_special()) {
    return epoch;
  }
  logAssertion("System clock has no epoch!");
  return posix_time::ptime(boost::gregorian::date(1970, 1, 1));
}

posix_time::ptime readCalendar(ClockI<boost::milli> const& clock) {
  posix_time::ptime const epoch = epochOf(clock);
  std::int64_t const readingMs = clock.now().count();
  // The date library's own sum would overflow for a reading far beyond its years.
  posix_time::ptime const first(boost::date_time::min_date_time);
  posix_time::ptime const last(boost::date_time::max_date_time);
  if (readingMs < (first - epoch).total_milliseconds() ||
      readingMs > (last - epoch).total_milliseconds()) {
    boost::throw_exception(boost::gregorian::bad_year());
  }
  return epoch + posix_time::microseconds(readingMs * 1000);
}

YmdhmsC calendarOf(posix_time::ptime const& instant, TimeBaseE timeBase) {
  auto const date = instant.date().year_month_day();
  std::int64_t const msOfDay = instant.time_of_day().total_milliseconds();
  YmdhmsC calendar = YmdhmsC::zero(timeBase);
  calendar.year = date.year;
  calendar.month = static_cast<std::uint8_t>(date.month.as_number());
  calendar.day = static_cast<std::uint8_t>(date.day.as_number());
  calendar.hour = static_cast<std::uint8_t>(msOfDay / 3600000);
  calendar.minute = static_cast<std::uint8_t>(msOfDay / 60000 % 60);
  calendar.second = static_cast<std::uint8_t>(msOfDay / 1000 % 60);
  calendar.milliseconds = msOfDay % 1000;
  calendar.hundredths = static_cast<std::uint8_t>(calendar.milliseconds / 10);
  return calendar;
}

// The day number of a local clock is taken as it is: from here on it stands for UTC.
double readDayNumber(ClockI<boost::milli> const& clock) {
  bool const isLocal = clock.getReference() == CLOCKREF_LOCAL;
  YmdhmsC const calendar = calendarOf(readCalendar(clock), isLocal ? TIMEBASE_LOCAL : TIMEBASE_UTC);
  return MjdTimeC(calendar).getDayNumber();
}

// As a double it also holds the magnitude of the least integer.
double magnitudeOf(std::int64_t value) {
  double const exact = static_cast<double>(value);
  return exact < 0.0 ? -exact : exact;
}

std::string msText(std::int64_t ms) {
  return std::to_string(ms) + "ms";
}

void logUpdate(std::int32_t level, std::string const& text) {
  std::string const line = "KTX::TIM::SysTimeOffsetT::update" + text;
  offsetLog().printLine(level, "%s\n", line.c_str());
}

}  // namespace

SysTimeOffsetT::SysTimeOffsetT(ClockT const& calendarClock,
                               ClockT const& tickClock,
                               std::int64_t thresholdMs,
                               std::int64_t period,
                               std::int64_t uncertaintyMs)
    : systemClock(calendarClock),
      steadyClock(tickClock),
      changeThresholdMs(thresholdMs),
      periodMs(period),
      maxUncertaintyMs(uncertaintyMs) {
  if (changeThresholdMs <= 0) {
    logAssertion("Change threshold is not positive!");
  }
  if (periodMs <= 0) {
    logAssertion("Period is not positive!");
  }
  if (maxUncertaintyMs <= 0) {
    logAssertion("Uncertainty limit is not positive!");
  }
  if (maxUncertaintyMs <= MIN_SIGMA_MS) {
    logAssertion("Uncertainty limit is not above the floor of the estimate!");
  }
  seed();
}

SysTimeOffsetT::~SysTimeOffsetT() = default;

SysTimeOffsetT& SysTimeOffsetT::instance() {
  return *processInstance();
}

void SysTimeOffsetT::setClocks(ClockT const& calendarClock, ClockT const& tickClock) {
  Guard const guard(getTimeLock());
  std::unique_ptr<SysTimeOffsetT> replacement = makeOffset(calendarClock, tickClock);
  replacement->step.number = instance().step.number;
  processInstance() = std::move(replacement);
}

void SysTimeOffsetT::reset() {
  Guard const guard(getTimeLock());
  timeLog().printLine(3, "%s\n", "KTX::TIM::SysTimeOffsetT::reset");
  instance().seed();
}

void SysTimeOffsetT::seed() {
  // The steady clock first: the time that reading the calendar takes must not shift the mapping.
  std::int64_t const steadyMs = steadyClock->now().count();
  SteadyTimeC const seeded{readDayNumber(*systemClock), steadyMs};
  TimeEstimateC const first{seeded, static_cast<double>(SEED_SIGMA_MS) / DAY_MS};
  estimator = std::make_unique<TimeEstimator>(DRIFT_MS_PER_DAY, MIN_SIGMA_MS, first);
  lastObservationMs.reset();
  lastCorrectionMs.reset();
  std::fill(std::begin(verdictCounts), std::end(verdictCounts), std::uint64_t{0});
  setCurrentSysTime(seeded);
}

void SysTimeOffsetT::update(double observedMjd,
                            std::int64_t noiseMs,
                            bool& correct,
                            std::int64_t& differenceMs) {
  std::int64_t const steadyMs = steadyClock->now().count();
  TimeEstimateC observation{{observedMjd, steadyMs}, static_cast<double>(noiseMs) / DAY_MS};
  TimeEstimateC const predicted = estimator->predict(steadyMs);
  if (offsetLog().isLevelEnabled(4)) {
    logUpdate(4, " - observation: " + estimateText(observation) + "\n");
  }
  step.resetByOutlier = resetByOutlier(observation, predicted);
  TimeEstimateC const updated = estimator->update(observation);
  differenceMs = offsetDifferenceMs(updated.time, currentSysTime);
  step.differenceMs = differenceMs;
  step.verdict = decide(updated, differenceMs);
  correct = step.verdict == TIMEVERDICT_CORRECTED;
  recordStep(observation, predicted, updated);
}

void SysTimeOffsetT::recordStep(TimeEstimateC const& observation,
                                TimeEstimateC const& predicted,
                                TimeEstimateC const& updated) {
  step.steadyMs = observation.time.steadyMs;
  step.observedMjd = observation.time.mjd;
  step.observedSigma = observation.sigma;
  step.predictedMjd = predicted.time.mjd;
  step.predictedSigma = predicted.sigma;
  step.estimatedMjd = updated.time.mjd;
  step.estimatedSigma = updated.sigma;
  step.correction = estimator->lastCorrection();
  step.startMjd = estimator->startTime().mjd;
  step.startSteadyMs = estimator->startTime().steadyMs;
  step.mappedMjd = currentSysTime.mjd;
  step.mappedSteadyMs = currentSysTime.steadyMs;
}

void SysTimeOffsetT::setState(StateC const& newState) {
  *estimator = newState.estimator;
  currentSysTime = newState.sysTime;
}

TimeEstimateStepC const& SysTimeOffsetT::commitStep() {
  ++step.number;
  ++verdictCounts[step.verdict];
  lastObservationMs = step.steadyMs;
  if (step.verdict == TIMEVERDICT_CORRECTED) {
    lastCorrectionMs = step.steadyMs;
  }
  return step;
}

PresentStatusC SysTimeOffsetT::status() const {
  std::int64_t const steadyMs = steadyClock->now().count();
  PresentStatusC status{};
  status.steadyMs = steadyMs;
  status.mappedMjd = currentSysTime.mjd;
  status.mappedSteadyMs = currentSysTime.steadyMs;
  status.sigma = estimator->sigmaAt(steadyMs);
  if (lastObservationMs) {
    status.observationAgeMs = elapsedMs(steadyMs, *lastObservationMs);
  }
  if (lastCorrectionMs) {
    status.correctionAgeMs = elapsedMs(steadyMs, *lastCorrectionMs);
  }
  status.unchangedCount = verdictCounts[TIMEVERDICT_UNCHANGED];
  status.tooUncertainCount = verdictCounts[TIMEVERDICT_TOO_UNCERTAIN];
  status.correctedCount = verdictCounts[TIMEVERDICT_CORRECTED];
  return status;
}

// An observation that its noise cannot explain counts as exact, so that the estimate jumps onto it.
bool SysTimeOffsetT::resetByOutlier(TimeEstimateC& observation,
                                    TimeEstimateC const& predicted) const {
  std::int64_t const residualMs = offsetDifferenceMs(observation.time, predicted.time);
  double const limitMs = observation.sigma * 300.0 * DAY_MS;
  if (!(magnitudeOf(residualMs) > limitMs)) {
    return false;
  }
  observation.sigma = 0.0;
  if (offsetLog().isLevelEnabled(4)) {
    logUpdate(4, ": residual too high to be caused by observation noise (|" + msText(residualMs) +
                     "| > " + msText(truncToInt64(limitMs)) +
                     "). Observation will reset the filter\n");
  }
  return true;
}

TimeVerdictE SysTimeOffsetT::decide(TimeEstimateC const& updated, std::int64_t differenceMs) {
  double const changeMs = magnitudeOf(differenceMs);
  // Through days and back, which for some thresholds is not the identity; this is meant.
  if (!(changeMs / DAY_MS * DAY_MS > static_cast<double>(changeThresholdMs))) {
    if (offsetLog().isLevelEnabled(3)) {
      logUpdate(3, ": current time does not change: |new - current = " + msText(differenceMs) +
                       "| <= " + msText(changeThresholdMs));
    }
    return TIMEVERDICT_UNCHANGED;
  }
  double const uncertaintyMs = updated.sigma * DAY_MS;
  if (uncertaintyMs > static_cast<double>(maxUncertaintyMs)) {
    if (offsetLog().isLevelEnabled(3)) {
      logUpdate(3, ": Time estimation uncertainty too high for time correction: " +
                       msText(truncToInt64(uncertaintyMs)) + " > " + msText(maxUncertaintyMs));
    }
    return TIMEVERDICT_TOO_UNCERTAIN;
  }
  if (offsetLog().isLevelEnabled(4)) {
    logUpdate(
        4, ": current time changes: |" + msText(differenceMs) + "| > " + msText(changeThresholdMs));
  }
  setCurrentSysTime(updated.time);
  return TIMEVERDICT_CORRECTED;
}

void SysTimeOffsetT::setCurrentSysTime(SteadyTimeC const& newTime) {
  currentSysTime = newTime;
  if (timeLog().isLevelEnabled(3)) {
    std::string const line = "New sys time: " + timeText(currentSysTime);
    timeLog().printLine(3, "%s\n", line.c_str());
  }
}

}  // namespace KTX::TIM
