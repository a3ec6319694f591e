// The present beside a reading of the system's clock, and one observation beside a bare filter
// step.
#include <absl/time/civil_time.h>
#include <absl/time/clock.h>
#include <absl/time/time.h>
#include <cmath>

#include <benchmark/benchmark.h>

#include "KTX/TIM/KTX_TIM_ClockFactory.h"
#include "KTX_TIM_ManyThreads.h"
#include "KTX_TIM_PresentWorks.h"

namespace KTX::TIM::BENCH {
namespace {

BENCHMARK_TEMPLATE(readPresentAsGpsTime, benchmark::State)->Name("BM_present_as_gps_time/vortime");
BENCHMARK_TEMPLATE(readPresentAsCalendar, benchmark::State)->Name("BM_present_as_calendar/vortime");

void readPresentAsCivilTime(benchmark::State& state) {
  absl::TimeZone const utc = absl::UTCTimeZone();
  for (auto _ : state) {
    benchmark::DoNotOptimize(utc.At(absl::Now()));
  }
}
BENCHMARK(readPresentAsCivilTime)->Name("BM_present_as_gps_time/absl");

BENCHMARK_TEMPLATE(runInThreads, readPresentAsGpsTime<benchmark::State>)
    ->Name("BM_present_as_gps_time/vortime")
    ->Apply(useThreads);
BENCHMARK_TEMPLATE(runInThreads, readPresentAsCivilTime)
    ->Name("BM_present_as_gps_time/absl")
    ->Apply(useThreads);

void observeByTheSteadyClock(benchmark::State& state) {
  observe(state, *createClock<boost::milli>(CLOCKTYPE_STEADY, CLOCKREF_DEFAULT), [] {});
}
BENCHMARK(observeByTheSteadyClock)->Name("BM_observation/vortime");

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
}  // namespace KTX::TIM::BENCH
