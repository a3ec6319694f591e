// Beside a library that looks leap seconds up in a table without a lock.
#include <chrono>
#include <cstdint>
#include <date/tz.h>
#include <vector>

#include <benchmark/benchmark.h>

#include "KTX_TIM_LeapSecondWorks.h"
#include "KTX_TIM_ManyThreads.h"

namespace KTX::TIM::BENCH {
namespace {

using UtcSecondsT = date::utc_seconds;

std::vector<UtcSecondsT> utcInstants(bool isSpread) {
  date::sys_days const epoch = date::sys_days(date::year(1980) / 1 / 6);
  std::vector<UtcSecondsT> times;
  for (std::int64_t const second : instants(isSpread)) {
    times.push_back(date::utc_clock::from_sys(epoch + std::chrono::seconds(second)));
  }
  return times;
}

void countByDate(benchmark::State& state, bool isSpread) {
  std::vector<UtcSecondsT> const times = utcInstants(isSpread);
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(date::get_leap_second_info(times[i]));
    i = (i + 1) % INSTANTS;
  }
}

BENCHMARK_TEMPLATE(countLeapSecondsNow, benchmark::State)->Name("BM_leap_second_now/vortime");
BENCHMARK_CAPTURE(countByDate, now, false)->Name("BM_leap_second_now/date");
BENCHMARK_TEMPLATE(countLeapSecondsSpread, benchmark::State)->Name("BM_leap_second_spread/vortime");
BENCHMARK_CAPTURE(countByDate, spread, true)->Name("BM_leap_second_spread/date");
BENCHMARK_TEMPLATE(getLeapSecondRecord, benchmark::State)->Name("BM_leap_second_record/vortime");
BENCHMARK_CAPTURE(countByDate, record, false)->Name("BM_leap_second_record/date");

void countByDateNow(benchmark::State& state) {
  countByDate(state, false);
}

BENCHMARK_TEMPLATE(runInThreads, countLeapSecondsNow<benchmark::State>)
    ->Name("BM_leap_second_now/vortime")
    ->Apply(useThreads);
BENCHMARK_TEMPLATE(runInThreads, countByDateNow)
    ->Name("BM_leap_second_now/date")
    ->Apply(useThreads);

}  // namespace
}  // namespace KTX::TIM::BENCH
