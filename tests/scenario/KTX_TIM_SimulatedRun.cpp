#include "scenario/KTX_TIM_SimulatedRun.h"

#include <algorithm>
#include <cmath>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_TimeCorrection.h"

namespace KTX::TIM::TEST {

namespace {

constexpr std::int64_t GPS_EPOCH_UNIX_MS = 315964800000;
constexpr std::int64_t LEAP_SECONDS_MS = 18000;
constexpr std::int64_t STEADY_START_MS = 1000000;

std::int64_t simulatedTotalMs = 0;

GpsC gpsOf(std::int64_t gpsMs) {
  return GpsC(static_cast<std::uint16_t>(gpsMs / MS_PER_WEEK),
              static_cast<std::uint32_t>(gpsMs % MS_PER_WEEK));
}

}  // namespace

SimulatedRunC::SimulatedRunC(ScenarioC const& simulated, unsigned seed)
    : scenario(simulated),
      random(seed),
      present(GPS_EPOCH_UNIX_MS + simulated.startGpsMs - LEAP_SECONDS_MS + simulated.startOffsetMs,
              STEADY_START_MS),
      oscillatorPpm(simulated.oscillatorPpm),
      steadyMs(STEADY_START_MS) {
  connection = connectTimeCorrected([this](int, int, TimeChangeT) {
    ++result.corrections;
    result.settledCorrections += nowMs >= scenario.settledMs ? 1 : 0;
    if (result.firstCorrection == 0) {
      result.firstCorrection = result.observations;
    }
  });
}

RunResultC SimulatedRunC::run() {
  auto next = scenario.events.begin();
  while (nowMs < scenario.durationMs) {
    for (; next != scenario.events.end() && next->atMs <= nowMs; ++next) {
      apply(*next);
    }
    measure();
    if (nowMs >= silentUntilMs) {
      observe();
    }
    pass(scenario.intervalMs);
  }
  result.rmsSettledMs = settledCount == 0 ? 0.0 : std::sqrt(squares / settledCount);
  return result;
}

std::int64_t SimulatedRunC::simulatedMs() {
  return simulatedTotalMs;
}

void SimulatedRunC::pass(std::int64_t durationMs) {
  nowMs += durationMs;
  simulatedTotalMs += durationMs;
  steadyMs += static_cast<double>(durationMs) * (1.0 + static_cast<double>(oscillatorPpm) * 1e-6);
  present.steady->set(static_cast<std::int64_t>(steadyMs));
  present.utc->advanceMs(durationMs);
}

void SimulatedRunC::apply(RunEventC const& event) {
  switch (event.kind) {
    case RunEventC::GAP:
      silentUntilMs = nowMs + event.value;
      break;
    case RunEventC::OUTLIER:
      outlierMs = event.value;
      break;
    case RunEventC::OSCILLATOR:
      oscillatorPpm = event.value;
      break;
    case RunEventC::CALENDAR:
      present.utc->advanceMs(event.value);
      break;
    case RunEventC::SUSPEND:
      nowMs += event.value;
      simulatedTotalMs += event.value;
      present.utc->advanceMs(event.value);
      break;
    case RunEventC::TIME_STEP:
      timeStepMs += event.value;
      break;
  }
}

void SimulatedRunC::measure() {
  auto const presentMs = static_cast<std::int64_t>(GpsC::currentTime().toMilliseconds64());
  auto const errorMs = static_cast<double>(presentMs - scenario.startGpsMs - nowMs - timeStepMs);
  if (std::abs(errorMs) > SETTLED_ERROR_MS) {
    result.lastBadMs = nowMs;
  }
  if (nowMs >= scenario.settledMs) {
    result.worstSettledMs = std::max(result.worstSettledMs, std::abs(errorMs));
    squares += errorMs * errorMs;
    ++settledCount;
  }
}

void SimulatedRunC::observe() {
  std::normal_distribution<double> noise(0.0, static_cast<double>(scenario.noiseMs));
  std::int64_t const errorMs = std::llround(noise(random)) + outlierMs;
  outlierMs = 0;
  ++result.observations;
  gpsOf(scenario.startGpsMs + nowMs + timeStepMs + errorMs).makeToCurrentTime(scenario.noiseMs, 1);
}

}  // namespace KTX::TIM::TEST
