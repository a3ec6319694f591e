#include "replay/SimulatedPc.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace KTX::VORTIME {
namespace {

constexpr std::int64_t MAX_USUAL_STEP_MS = 60000;
constexpr std::int64_t MAX_STAGGER_MS = 2000;

// The sum, or the end of the range next to it, which is far outside what the clocks can show.
std::int64_t sumOf(std::int64_t a, std::int64_t b) {
  constexpr std::int64_t LOWEST = std::numeric_limits<std::int64_t>::min();
  constexpr std::int64_t HIGHEST = std::numeric_limits<std::int64_t>::max();
  if (b > 0 && a > HIGHEST - b) {
    return HIGHEST;
  }
  if (b < 0 && a < LOWEST - b) {
    return LOWEST;
  }
  return a + b;
}

std::int64_t differenceOf(std::int64_t a, std::int64_t b) {
  // The lowest number has no negative; one more makes no difference out there.
  return sumOf(a, -std::max(b, -std::numeric_limits<std::int64_t>::max()));
}

std::int64_t nearestMs(double ms) {
  constexpr double LIMIT_MS = 2.0 * static_cast<double>(SimulatedPcC::MAX_ELAPSED_MS);
  // Not-a-number, of a drift that is none, becomes the limit.
  return std::llround(ms < LIMIT_MS ? std::max(ms, -LIMIT_MS) : LIMIT_MS);
}

bool canBeShown(RCV::PcReadingC const& reading) {
  return reading.systemUnixMs >= RCV::FIRST_CIVIL_UNIX_MS &&
         reading.systemUnixMs <= RCV::LAST_CIVIL_UNIX_MS &&
         reading.steadyMs <= SimulatedPcC::STEADY_START_MS + SimulatedPcC::MAX_ELAPSED_MS;
}

}  // namespace

SimulatedPcC::SimulatedPcC(SimulatedPcOptionsC const& pcOptions) : options(pcOptions) {
  present.random = pcOptions.seed;
}

std::optional<RCV::PcReadingC> SimulatedPcC::arrive(RCV::ArrivalC const& arrival) {
  StateC next = present;
  RCV::PcReadingC const reading =
      arrival.hasHostTime ? arriveByHost(next, arrival) : arriveByReceiver(next, arrival);
  if (!canBeShown(reading)) {
    return std::nullopt;
  }
  present = std::move(next);
  return reading;
}

RCV::PcReadingC SimulatedPcC::arriveByHost(StateC& state, RCV::ArrivalC const& arrival) {
  RCV::PcReadingC reading;
  if (arrival.isFirst) {
    state.startUnixMs = arrival.hostUnixMs;
    state.elapsedMs = 0;
  } else if (state.runsByHost) {
    std::int64_t const stepMs = differenceOf(arrival.hostUnixMs, state.lastUnixMs);
    // The steady clock stands still while the calendar clock repeats itself.
    state.elapsedMs = sumOf(state.elapsedMs, std::max<std::int64_t>(stepMs, 0));
    reading.hasRunBack = stepMs < 0;
  } else {
    state.elapsedMs =
        std::max(state.elapsedMs, differenceOf(arrival.hostUnixMs, state.startUnixMs));
  }
  state.runsByHost = true;
  state.lastUnixMs = arrival.hostUnixMs;
  reading.isCalendarKnown = true;
  reading.systemUnixMs = arrival.hostUnixMs;
  reading.steadyMs = sumOf(STEADY_START_MS, state.elapsedMs);
  return reading;
}

RCV::PcReadingC SimulatedPcC::arriveByReceiver(StateC& state, RCV::ArrivalC const& arrival) const {
  if (arrival.isFirst) {
    state.startUnixMs = sumOf(arrival.statedUnixMs, options.offsetMs);
    state.lastUnixMs = arrival.statedUnixMs;
    state.lastMessage = arrival.message;
    state.passedMs = 0;
    state.elapsedMs = 0;
    state.runsByHost = false;
  } else if (!state.runsByHost) {
    pass(state, arrival);
  }
  // Lines without the host's time between others arrive together with the line before.
  if (!state.runsByHost) {
    double const arrivedMs = static_cast<double>(state.passedMs) + nextDelayMs(state);
    std::int64_t const clockMs = nearestMs(arrivedMs * (1.0 + options.driftPpm * 1e-6));
    state.elapsedMs = std::max(state.elapsedMs, clockMs);
  }
  return RCV::PcReadingC{sumOf(state.startUnixMs, state.elapsedMs),
                         sumOf(STEADY_START_MS, state.elapsedMs), false, false};
}

void SimulatedPcC::pass(StateC& state, RCV::ArrivalC const& arrival) {
  std::int64_t const stepMs = differenceOf(arrival.statedUnixMs, state.lastUnixMs);
  if (stepMs >= 0 && (stepMs <= MAX_GAP_MS || arrival.isNewInput)) {
    state.passedMs = sumOf(state.passedMs, stepMs);
    if (stepMs > 0 && stepMs <= MAX_USUAL_STEP_MS) {
      state.usualStepMs = stepMs;
    }
  } else if (stepMs < 0 && stepMs >= -MAX_STAGGER_MS && arrival.message != state.lastMessage) {
    // Another kind of message of the same moment, which states a little earlier time.
    return;
  } else {
    // The receiver's time was set: the PC's own time went on as before.
    state.passedMs = sumOf(state.passedMs, state.usualStepMs);
  }
  state.lastUnixMs = arrival.statedUnixMs;
  state.lastMessage = arrival.message;
}

double SimulatedPcC::nextDelayMs(StateC& state) const {
  if (options.jitterMs == 0) {
    return 0;
  }
  // The sum of twelve evenly spread numbers is nearly normal, and the same on every machine.
  std::int64_t sum = 0;
  for (int i = 0; i < 12; ++i) {
    state.random = state.random * 6364136223846793005ULL + 1442695040888963407ULL;
    sum += static_cast<std::int64_t>(state.random >> 44U);
  }
  return static_cast<double>(sum - (6LL << 20U)) / static_cast<double>(1LL << 20U) *
         static_cast<double>(options.jitterMs);
}

}  // namespace KTX::VORTIME
