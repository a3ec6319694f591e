// The present beside a reading of the system's clock, and one observation beside a bare filter
// step. Runs without KTX_LOG: the library logs nothing here.
#include <absl/time/civil_time.h>
#include <absl/time/clock.h>
#include <absl/time/time.h>
#include <cmath>
#include <cstdint>

#include <benchmark/benchmark.h>

#include "KTX/TIM/KTX_TIM_ClockFactory.h"
#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_SysTimeClocks.h"
#include "KTX/TIM/KTX_TIM_TimeConstants.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

namespace {

using KTX::TIM::GpsC;

void presentGps(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(GpsC::currentTime());
  }
}
BENCHMARK(presentGps)->Name("BM_present_as_gps_time/vortime");

void presentCivil(benchmark::State& state) {
  absl::TimeZone const utc = absl::UTCTimeZone();
  for (auto _ : state) {
    benchmark::DoNotOptimize(utc.At(absl::Now()));
  }
}
BENCHMARK(presentCivil)->Name("BM_present_as_gps_time/absl");

void presentCalendar(benchmark::State& state) {
  for (auto _ : state) {
    KTX::TIM::YmdhmsC const now;
    benchmark::DoNotOptimize(&now);
  }
}
BENCHMARK(presentCalendar)->Name("BM_present_as_calendar/vortime");

// Observations of a receiver that agrees with the PC within 7 ms.
void observation(benchmark::State& state) {
  auto const clock =
      KTX::TIM::createClock<boost::milli>(KTX::TIM::CLOCKTYPE_STEADY, KTX::TIM::CLOCKREF_DEFAULT);
  KTX::TIM::resetSysTime();
  auto const startGpsMs = static_cast<std::int64_t>(GpsC::currentTime().toMilliseconds64());
  std::int64_t const startSteadyMs = clock->now().count();
  std::int64_t number = 0;
  for (auto _ : state) {
    std::int64_t const errorMs = ++number % 15 - 7;
    std::int64_t const gpsMs = startGpsMs + clock->now().count() - startSteadyMs + errorMs;
    GpsC const observed(static_cast<std::uint16_t>(gpsMs / KTX::TIM::MS_PER_WEEK),
                        static_cast<std::uint32_t>(gpsMs % KTX::TIM::MS_PER_WEEK));
    benchmark::DoNotOptimize(observed.makeToCurrentTime(10, 1));
  }
}
BENCHMARK(observation)->Name("BM_observation/vortime");

// Two predictions and one update of a one-state filter, without a clock, calendar, lock or log.
void bareKalman(benchmark::State& state) {
  double x = 60376.0;
  double p = 1e-9;
  double const q = 1e-18;
  double const r = 1e-14;
  double const floor = 5e-14;
  double z = x;
  for (auto _ : state) {
    benchmark::DoNotOptimize(z);
    x += 1e-8;
    p += q;
    x += 0.0;
    p += 0.0;
    double const k = 1.0 / (p + r) * p;
    x += (z - x) * k;
    p -= k * p;
    p = p < floor ? floor : p;
    benchmark::DoNotOptimize(x);
    benchmark::DoNotOptimize(std::sqrt(p));
  }
}
BENCHMARK(bareKalman)->Name("BM_observation/bare_kalman");

}  // namespace
