#!/usr/bin/env bash
# run_fuzz.sh SECONDS [TARGET...]: runs each fuzz target for SECONDS, one a core, and prints how many inputs each took, and
# all together.
# Starts from the checked-in corpus, with the dictionary of the target where there is one; what is found stays in build/fuzz. Ends with 1 at the first target that fails.
set -eu
cd "$(dirname "$0")/.."
seconds=$1
shift
cmake --preset fuzz
cmake --build --preset fuzz -j "$(nproc)" --target vortime_fuzzers
if [ $# -eq 0 ]; then
  for program in build/fuzz/bin/fuzz_*; do
    set -- "$@" "$(basename "$program")"
  done
fi

executed() {
  sed -n 's/^stat::number_of_executed_units: *//p' "build/fuzz/runs/${1#fuzz_}/log"
}

run_target() {
  local target=$1 seconds=$2 name=${1#fuzz_} run options=()
  run=build/fuzz/runs/$name
  mkdir -p "$run/corpus"
  if [ -f "fuzz/dictionaries/$name.dict" ]; then
    options=(-dict="fuzz/dictionaries/$name.dict")
  fi
  if ! "build/fuzz/bin/$target" "${options[@]}" -max_total_time="$seconds" -print_final_stats=1 -artifact_prefix="$run/" \
    "$run/corpus" "fuzz/corpus/$name" > "$run/log" 2>&1; then
    echo "$target failed; its input and log are in $run"
    tail -n 40 "$run/log"
    return 1
  fi
  echo "$target: $(executed "$target") inputs, no failure"
}
export -f run_target executed
export UBSAN_OPTIONS=print_stacktrace=1
printf '%s\n' "$@" | xargs -P "$(nproc)" -I{} bash -c 'run_target {} '"$seconds"
total=0
for target in "$@"; do
  total=$((total + $(executed "$target")))
done
echo "$total inputs in all"
