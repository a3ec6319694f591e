// What listeners add to a signal. Each counts, and does nothing else.
#include <cstdint>
#include <vector>

#include <benchmark/benchmark.h>
#include <boost/signals2/connection.hpp>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX_TIM_SimulatedClocks.h"

namespace KTX::TIM::BENCH {
namespace {

using ConnectionsT = std::vector<boost::signals2::scoped_connection>;

template <class ConnectT>
ConnectionsT connectListeners(std::int64_t count, ConnectT const& connect) {
  ConnectionsT connections;
  for (std::int64_t i = 0; i < count; ++i) {
    connections.emplace_back(connect());
  }
  return connections;
}

void checkHeard(benchmark::State& state, std::int64_t heard) {
  if (heard != state.iterations() * state.range(0)) {
    state.SkipWithError("a listener was left out");
  }
  state.SetItemsProcessed(heard);
}

// The receiver jumps to and fro by a second, so that each observation is a correction.
void announceCorrections(benchmark::State& state) {
  SimulatedClocksC const clocks;
  std::int64_t heard = 0;
  ConnectionsT const connections = connectListeners(state.range(0), [&] {
    return connectTimeCorrected([&](int /*week*/, int /*ms*/, TimeChangeT /*change*/) { ++heard; });
  });
  GpsC const start = GpsC::currentTime();
  GpsC const observed[] = {start, start + std::int64_t{1000}};
  std::size_t number = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(observed[++number % 2].makeToCurrentTime(0, 1));
  }
  checkHeard(state, heard);
}

void emitTimeSignals(benchmark::State& state) {
  std::int64_t heard = 0;
  ConnectionsT const connections = connectListeners(state.range(0), [&] {
    return connectTimeSignal([&](int /*week*/, int /*ms*/) { ++heard; });
  });
  GpsC const time(2304, 345600000);
  for (auto _ : state) {
    benchmark::DoNotOptimize(time.emitTimeSignal());
  }
  checkHeard(state, heard);
}

void useListeners(benchmark::internal::Benchmark* rows) {
  rows->ArgName("listeners")->RangeMultiplier(10)->Range(1, 10000);
}

BENCHMARK(announceCorrections)->Name("BM_correction_signal/vortime")->Apply(useListeners);
BENCHMARK(emitTimeSignals)->Name("BM_time_signal/vortime")->Apply(useListeners);

}  // namespace
}  // namespace KTX::TIM::BENCH
