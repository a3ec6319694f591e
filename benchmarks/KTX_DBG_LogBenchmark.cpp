// What a line costs that nobody wants to see. Runs without KTX_LOG: level 6 alone is enabled.
#include <string>

#include <benchmark/benchmark.h>

#include "KTX/DBG/KTX_DBG_DbgLogFile.h"

namespace {

using KTX::DBG::DbgLogFileC;

void levelTest(benchmark::State& state) {
  DbgLogFileC const channel("Benchmark");
  for (auto _ : state) {
    benchmark::DoNotOptimize(channel.isLevelEnabled(5));
  }
}
BENCHMARK(levelTest)->Name("BM_log_disabled_level_test/vortime");

void disabledLine(benchmark::State& state) {
  DbgLogFileC channel("Benchmark");
  for (auto _ : state) {
    channel.printLine(5, "%s %d\n", "text", 1);
  }
}
BENCHMARK(disabledLine)->Name("BM_log_disabled_line/vortime");

void briefHandle(benchmark::State& state) {
  std::string const name = "KTX_TIM_AssertLogger";
  for (auto _ : state) {
    DbgLogFileC const channel(name);
    benchmark::DoNotOptimize(&channel);
  }
}
BENCHMARK(briefHandle)->Name("BM_log_brief_channel_object/vortime");

}  // namespace
