#ifndef KTX_TIM_MANYTHREADS_H
#define KTX_TIM_MANYTHREADS_H

#include <benchmark/benchmark.h>

namespace KTX::TIM::BENCH {

/// A work in each of several threads; what counts is how many calls they get done together.
template <void (*WORK)(benchmark::State&)>
void runInThreads(benchmark::State& state) {
  WORK(state);
  state.SetItemsProcessed(state.iterations());
}

inline void useThreads(benchmark::internal::Benchmark* rows) {
  rows->ThreadRange(1, 4)->UseRealTime();
}

}  // namespace KTX::TIM::BENCH

#endif  // KTX_TIM_MANYTHREADS_H
