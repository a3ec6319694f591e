#include <benchmark/benchmark.h>

#include "KTX_DBG_LogWorks.h"

namespace KTX::DBG::BENCH {
namespace {

BENCHMARK_TEMPLATE(testDisabledLevel, benchmark::State)->Name("BM_log_disabled_level_test/vortime");
BENCHMARK_TEMPLATE(printDisabledLine, benchmark::State)->Name("BM_log_disabled_line/vortime");
BENCHMARK_TEMPLATE(makeBriefChannel, benchmark::State)->Name("BM_log_brief_channel_object/vortime");

}  // namespace
}  // namespace KTX::DBG::BENCH
