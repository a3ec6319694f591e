#ifndef KTX_TIM_LEAPSECONDWORKS_H
#define KTX_TIM_LEAPSECONDWORKS_H

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"

// The leap seconds in force for an instant.
namespace KTX::TIM::BENCH {

constexpr std::size_t INSTANTS = 1024;

/// Seconds from the GPS epoch: some fifty years in no order, or the seconds of a running receiver.
inline std::vector<std::int64_t> instants(bool isSpread) {
  constexpr std::int64_t LATEST_SECOND = 50LL * 366 * 86400;
  std::mt19937 random(1);
  std::vector<std::int64_t> seconds;
  for (std::size_t i = 0; i < INSTANTS; ++i) {
    seconds.push_back(isSpread ? static_cast<std::int64_t>(random()) % LATEST_SECOND
                               : 1393000000 + static_cast<std::int64_t>(i));
  }
  return seconds;
}

inline std::vector<GpsC> gpsInstants(bool isSpread) {
  std::vector<GpsC> times;
  for (std::int64_t const second : instants(isSpread)) {
    times.emplace_back(GPSTimeC() + second * 1000);
  }
  return times;
}

template <class LoopT>
void countLeapSeconds(LoopT& loop, bool isSpread) {
  std::vector<GpsC> const times = gpsInstants(isSpread);
  std::size_t i = 0;
  for (auto _ : loop) {
    benchmark::DoNotOptimize(getUtcLeapSecondsAt(times[i]));
    i = (i + 1) % INSTANTS;
  }
}

template <class LoopT>
void countLeapSecondsNow(LoopT& loop) {
  countLeapSeconds(loop, false);
}

template <class LoopT>
void countLeapSecondsSpread(LoopT& loop) {
  countLeapSeconds(loop, true);
}

template <class LoopT>
void getLeapSecondRecord(LoopT& loop) {
  std::vector<GpsC> const times = gpsInstants(false);
  UtcLeapSecondRecord record{};
  std::size_t i = 0;
  for (auto _ : loop) {
    getUtcLeapSecondAt(times[i], record);
    benchmark::DoNotOptimize(record);
    i = (i + 1) % INSTANTS;
  }
}

}  // namespace KTX::TIM::BENCH

#endif  // KTX_TIM_LEAPSECONDWORKS_H
