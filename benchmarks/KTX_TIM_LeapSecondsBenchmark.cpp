// The leap seconds in force for an instant, beside a library that looks them up in a table without
// a lock.
#include <chrono>
#include <cstdint>
#include <date/tz.h>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"

namespace {

using KTX::TIM::GpsC;
using KTX::TIM::GPSTimeC;
using KTX::TIM::UtcLeapSecondRecord;
using UtcSecondsT = date::utc_seconds;

constexpr std::size_t COUNT = 1024;
constexpr std::int64_t LATEST_SECOND = 50LL * 366 * 86400;

/// The same instants for both, as seconds from the GPS epoch: some fifty years in no order, or the
/// seconds of a running receiver.
std::vector<std::int64_t> instants(bool isSpread) {
  std::mt19937 random(1);
  std::vector<std::int64_t> seconds;
  for (std::size_t i = 0; i < COUNT; ++i) {
    seconds.push_back(isSpread ? static_cast<std::int64_t>(random()) % LATEST_SECOND
                               : 1393000000 + static_cast<std::int64_t>(i));
  }
  return seconds;
}

std::vector<GpsC> gpsInstants(bool isSpread) {
  std::vector<GpsC> times;
  for (std::int64_t const second : instants(isSpread)) {
    times.emplace_back(GPSTimeC() + second * 1000);
  }
  return times;
}

std::vector<UtcSecondsT> utcInstants(bool isSpread) {
  date::sys_days const epoch = date::sys_days(date::year(1980) / 1 / 6);
  std::vector<UtcSecondsT> times;
  for (std::int64_t const second : instants(isSpread)) {
    times.push_back(date::utc_clock::from_sys(epoch + std::chrono::seconds(second)));
  }
  return times;
}

void countByVorTime(benchmark::State& state, bool isSpread) {
  std::vector<GpsC> const times = gpsInstants(isSpread);
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(KTX::TIM::getUtcLeapSecondsAt(times[i]));
    i = (i + 1) % COUNT;
  }
}

void recordByVorTime(benchmark::State& state, bool isSpread) {
  std::vector<GpsC> const times = gpsInstants(isSpread);
  UtcLeapSecondRecord record{};
  std::size_t i = 0;
  for (auto _ : state) {
    KTX::TIM::getUtcLeapSecondAt(times[i], record);
    benchmark::DoNotOptimize(record);
    i = (i + 1) % COUNT;
  }
}

void countByDate(benchmark::State& state, bool isSpread) {
  std::vector<UtcSecondsT> const times = utcInstants(isSpread);
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(date::get_leap_second_info(times[i]));
    i = (i + 1) % COUNT;
  }
}

BENCHMARK_CAPTURE(countByVorTime, now, false)->Name("BM_leap_second_now/vortime");
BENCHMARK_CAPTURE(countByDate, now, false)->Name("BM_leap_second_now/date");
BENCHMARK_CAPTURE(countByVorTime, spread, true)->Name("BM_leap_second_spread/vortime");
BENCHMARK_CAPTURE(countByDate, spread, true)->Name("BM_leap_second_spread/date");
BENCHMARK_CAPTURE(recordByVorTime, now, false)->Name("BM_leap_second_record/vortime");
BENCHMARK_CAPTURE(countByDate, record, false)->Name("BM_leap_second_record/date");
BENCHMARK_CAPTURE(countByVorTime, two, false)
    ->Name("BM_leap_second_two_threads/vortime")
    ->Threads(2)
    ->UseRealTime();
BENCHMARK_CAPTURE(countByDate, two, false)
    ->Name("BM_leap_second_two_threads/date")
    ->Threads(2)
    ->UseRealTime();

}  // namespace
