#include "replay/SimulatedPc.h"

#include <algorithm>
#include <cmath>

namespace KTX::VORTIME {
namespace {

constexpr std::int64_t MAX_USUAL_STEP_MS = 60000;
constexpr std::int64_t MAX_STAGGER_MS = 2000;

}  // namespace

SimulatedPcC::SimulatedPcC(SimulatedPcOptionsC const& pcOptions)
    : options(pcOptions), randomState(pcOptions.seed) {}

PcReadingC SimulatedPcC::arrive(ArrivalC const& arrival) {
  return arrival.hasHostTime ? arriveByHost(arrival) : arriveByReceiver(arrival);
}

PcReadingC SimulatedPcC::arriveByHost(ArrivalC const& arrival) {
  PcReadingC reading;
  if (arrival.isFirst) {
    startUnixMs = arrival.hostUnixMs;
    elapsedMs = 0;
  } else if (runsByHost) {
    std::int64_t const stepMs = arrival.hostUnixMs - lastUnixMs;
    // The steady clock stands still while the calendar clock repeats itself.
    elapsedMs += std::max<std::int64_t>(stepMs, 0);
    reading.hasRunBack = stepMs < 0;
  } else {
    elapsedMs = std::max(elapsedMs, arrival.hostUnixMs - startUnixMs);
  }
  runsByHost = true;
  lastUnixMs = arrival.hostUnixMs;
  reading.isCalendarKnown = true;
  reading.systemUnixMs = arrival.hostUnixMs;
  reading.steadyMs = STEADY_START_MS + elapsedMs;
  return reading;
}

PcReadingC SimulatedPcC::arriveByReceiver(ArrivalC const& arrival) {
  if (arrival.isFirst) {
    startUnixMs = arrival.statedUnixMs + options.offsetMs;
    lastUnixMs = arrival.statedUnixMs;
    lastMessage = arrival.message;
    passedMs = 0;
    elapsedMs = 0;
    runsByHost = false;
  } else if (!runsByHost) {
    pass(arrival);
  }
  if (runsByHost) {
    // Lines without the host's time between others arrive together with the line before.
    return PcReadingC{startUnixMs + elapsedMs, STEADY_START_MS + elapsedMs, false, false};
  }
  double const arrivedMs = static_cast<double>(passedMs) + nextDelayMs();
  std::int64_t const clockMs = std::llround(arrivedMs * (1.0 + options.driftPpm * 1e-6));
  elapsedMs = std::max(elapsedMs, clockMs);
  return PcReadingC{startUnixMs + elapsedMs, STEADY_START_MS + elapsedMs, false, false};
}

void SimulatedPcC::pass(ArrivalC const& arrival) {
  std::int64_t const stepMs = arrival.statedUnixMs - lastUnixMs;
  if (stepMs >= 0 && (stepMs <= MAX_GAP_MS || arrival.isNewInput)) {
    passedMs += stepMs;
    if (stepMs > 0 && stepMs <= MAX_USUAL_STEP_MS) {
      usualStepMs = stepMs;
    }
  } else if (stepMs < 0 && stepMs >= -MAX_STAGGER_MS && arrival.message != lastMessage) {
    // Another kind of message of the same moment, which states a little earlier time.
    return;
  } else {
    // The receiver's time was set: the PC's own time went on as before.
    passedMs += usualStepMs;
  }
  lastUnixMs = arrival.statedUnixMs;
  lastMessage = arrival.message;
}

double SimulatedPcC::nextDelayMs() {
  if (options.jitterMs == 0) {
    return 0;
  }
  // The sum of twelve evenly spread numbers is nearly normal, and the same on every machine.
  std::int64_t sum = 0;
  for (int i = 0; i < 12; ++i) {
    randomState = randomState * 6364136223846793005ULL + 1442695040888963407ULL;
    sum += static_cast<std::int64_t>(randomState >> 44U);
  }
  return static_cast<double>(sum - (6LL << 20U)) / static_cast<double>(1LL << 20U) *
         static_cast<double>(options.jitterMs);
}

}  // namespace KTX::VORTIME
