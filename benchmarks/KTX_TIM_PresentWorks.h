#ifndef KTX_TIM_PRESENTWORKS_H
#define KTX_TIM_PRESENTWORKS_H

#include <cstdint>

#include <benchmark/benchmark.h>
#include <boost/ratio/ratio.hpp>

#include "KTX/TIM/KTX_TIM_Clock.h"
#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_SysTimeClocks.h"
#include "KTX/TIM/KTX_TIM_TimeConstants.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

// The present, and observations that keep it. Runs without KTX_LOG: the library logs nothing here.
namespace KTX::TIM::BENCH {

template <class LoopT>
void readPresentAsGpsTime(LoopT& loop) {
  for (auto _ : loop) {
    benchmark::DoNotOptimize(GpsC::currentTime());
  }
}

template <class LoopT>
void readPresentAsCalendar(LoopT& loop) {
  for (auto _ : loop) {
    YmdhmsC const now;
    benchmark::DoNotOptimize(&now);
  }
}

inline GpsC gpsTimeAt(std::int64_t gpsMs) {
  return GpsC(static_cast<std::uint16_t>(gpsMs / MS_PER_WEEK),
              static_cast<std::uint32_t>(gpsMs % MS_PER_WEEK));
}

/// Observations of a receiver that agrees with the library's present, which clock advances, within
/// 7 ms. wait() passes the time from one to the next.
template <class LoopT, class WaitT>
void observe(LoopT& loop, ClockI<boost::milli> const& clock, WaitT const& wait) {
  resetSysTime();
  auto const startGpsMs = static_cast<std::int64_t>(GpsC::currentTime().toMilliseconds64());
  std::int64_t const startSteadyMs = clock.now().count();
  std::int64_t number = 0;
  for (auto _ : loop) {
    wait();
    std::int64_t const errorMs = ++number % 15 - 7;
    GpsC const observed = gpsTimeAt(startGpsMs + clock.now().count() - startSteadyMs + errorMs);
    benchmark::DoNotOptimize(observed.makeToCurrentTime(10, 1));
  }
}

}  // namespace KTX::TIM::BENCH

#endif  // KTX_TIM_PRESENTWORKS_H
