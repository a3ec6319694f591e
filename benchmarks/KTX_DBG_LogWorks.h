#ifndef KTX_DBG_LOGWORKS_H
#define KTX_DBG_LOGWORKS_H

#include <string>

#include <benchmark/benchmark.h>

#include "KTX/DBG/KTX_DBG_DbgLogFile.h"

// What a line costs that nobody wants to see. Runs without KTX_LOG: level 6 alone is enabled.
namespace KTX::DBG::BENCH {

template <class LoopT>
void testDisabledLevel(LoopT& loop) {
  DbgLogFileC const channel("Benchmark");
  for (auto _ : loop) {
    benchmark::DoNotOptimize(channel.isLevelEnabled(5));
  }
}

template <class LoopT>
void printDisabledLine(LoopT& loop) {
  DbgLogFileC channel("Benchmark");
  for (auto _ : loop) {
    channel.printLine(5, "%s %d\n", "text", 1);
  }
}

template <class LoopT>
void makeBriefChannel(LoopT& loop) {
  std::string const name = "KTX_TIM_AssertLogger";
  for (auto _ : loop) {
    DbgLogFileC const channel(name);
    benchmark::DoNotOptimize(&channel);
  }
}

}  // namespace KTX::DBG::BENCH

#endif  // KTX_DBG_LOGWORKS_H
