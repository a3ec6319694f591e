#!/bin/sh
# Builds the benchmarks, runs them all at once with their peers, counts the instructions of the hot works and writes
# docs/PERFORMANCE.md. With --check, as make bench CHECK=1 calls it, the exit code is 1 when a figure is over its limit.
set -eu
cd "$(dirname "$0")/.."
cmake --preset linux-release -DVORTIME_BENCHMARKS=ON
cmake --build --preset linux-release -j "$(nproc)" --target vortime_benchmarks vortime
results=build/linux-release/benchmarks
tools/count_instructions.py "$results/vortime_instructions" --out "$results/instructions.json"
benchmarks/tool_speed.sh build/linux-release/bin/vortime "$results/tool.json"
for program in "$results"/*_benchmark; do
  "$program" --benchmark_repetitions=7 --benchmark_min_time=0.1 --benchmark_enable_random_interleaving=true \
    --benchmark_report_aggregates_only=true --benchmark_out_format=json --benchmark_out="$program.json"
done
python3 tools/bench_report.py "$results"/*_benchmark.json "$results/tool.json" "$results/instructions.json" \
  --limits benchmarks/limits.tsv --out docs/PERFORMANCE.md "$@"
