// Observations of hours on end: the millionth costs what the first ones cost.
#include <cstddef>
#include <cstdint>

#include <benchmark/benchmark.h>

#include "KTX_TIM_CountedLoop.h"
#include "KTX_TIM_PresentWorks.h"
#include "KTX_TIM_SimulatedClocks.h"
#include "common/KTX_TIM_AllocationFault.h"

namespace KTX::TIM::BENCH {
namespace {

void observeOnEnd(benchmark::State& state) {
  // Of a receiver with 20 observations a second: a million are within the day that the present may
  // go without a correction.
  constexpr std::int64_t PERIOD_MS = 50;
  std::int64_t const observations = state.range(0);
  SimulatedClocksC clocks;
  std::size_t allocations = 0;
  std::ptrdiff_t keptBlocks = 0;
  for (auto _ : state) {
    TEST::AllocationWatchC const memory;
    CountedLoopC run(observations);
    observe(run, clocks.steady(), [&] { clocks.advanceMs(PERIOD_MS); });
    allocations = memory.allocationCount();
    keptBlocks = memory.balance();
  }
  state.SetItemsProcessed(state.iterations() * observations);
  state.counters["allocations"] = static_cast<double>(allocations);
  state.counters["kept_blocks"] = static_cast<double>(keptBlocks);
}
BENCHMARK(observeOnEnd)
    ->Name("BM_observation_run/vortime")
    ->ArgName("observations")
    ->RangeMultiplier(10)
    ->Range(10000, 1000000);

}  // namespace
}  // namespace KTX::TIM::BENCH
