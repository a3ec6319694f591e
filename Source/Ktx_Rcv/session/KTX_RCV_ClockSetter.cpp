#include "KTX/RCV/KTX_RCV_ClockSetter.h"

#include <cstdlib>

#include "KTX/RCV/KTX_RCV_TimeConversion.h"

namespace KTX::RCV {
namespace {

// The step from what the PC's clock reads to the library's present.
ClockStepC stepToPresent(PcReadingC const& reading) {
  ClockStepC step;
  step.utc.setToCurrentTime();
  step.utc.toUtc();
  step.stepMs = unixMsOf(step.utc) - reading.systemUnixMs;
  return step;
}

}  // namespace

ClockSetterC::ClockSetterC(PcClockI& pcClock, std::int64_t maxStep)
    : clock(pcClock), maxStepMs(maxStep) {}

std::optional<ClockStepC> ClockSetterC::onObservation(std::int64_t unixMs,
                                                      PcReadingC const& reading) {
  if (!isSet) {
    return setFirst(unixMs, reading);
  }
  if (!isDue) {
    return std::nullopt;
  }
  return setAgain(reading);
}

std::optional<ClockStepC> ClockSetterC::setFirst(std::int64_t unixMs, PcReadingC const& reading) {
  agreement.add(unixMs, reading.steadyMs);
  if (agreement.durationMs() < AGREEMENT_MS) {
    return std::nullopt;
  }
  ClockStepC step = stepToPresent(reading);
  if (std::llabs(unixMsOf(step.utc) - unixMs) > AGREEMENT_LIMIT_MS) {
    return std::nullopt;
  }
  step.isFirst = true;
  isSet = clock.set(step.utc);
  isDue = false;
  if (!isSet) {
    step.outcome = CLOCK_REFUSED;
    agreement.clear();
  }
  return step;
}

ClockStepC ClockSetterC::setAgain(PcReadingC const& reading) {
  isDue = false;
  ClockStepC step = stepToPresent(reading);
  if (std::llabs(step.stepMs) > maxStepMs) {
    step.outcome = CLOCK_STEP_TOO_LARGE;
  } else if (!clock.set(step.utc)) {
    step.outcome = CLOCK_REFUSED;
  }
  return step;
}

}  // namespace KTX::RCV
