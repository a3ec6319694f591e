#!/usr/bin/env bash
# run_tests.sh [PRESET...]: configures, builds and tests each preset in turn and stops at the first that fails. Without
# arguments it takes all, and runs each fuzz target for ten seconds at the end.
# At the end stand the time of each step, also in build/test-times.tsv, and the skipped tests. With CI=true a skipped test
# that tests/accepted_skips.tsv does not name counts as failed.
# Closes with the line "N passed, N failed, N skipped", summed over all presets, on standard output or, where the variable
# VORTIME_TEST_SUMMARY names a file, there. A step that fails without a test result counts as one failure.
set -u
cd "$(dirname "$0")/.."
presets=("$@")
fuzz_seconds=0
if [ ${#presets[@]} -eq 0 ]; then
  presets=(linux-debug linux-clang asan-ubsan tsan windows)
  fuzz_seconds=10
fi
jobs=$(nproc)
# Another checkout on this machine finds in the compiler cache what this one compiles.
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
passed=0
failed=0
skipped=0
mkdir -p build
times=build/test-times.tsv
skips=build/skipped-tests.txt
: > "$times"
: > "$skips"

finish() {
  echo "== seconds of each step"
  awk -F '\t' '{ printf "%6d  %s\n", $1, $2; sum += $1 } END { printf "%6d  all\n", sum }' "$times"
  if [ "$skipped" -gt 0 ]; then
    echo "== skipped tests"
    cat "$skips"
  fi
  local line="$passed passed, $failed failed, $skipped skipped"
  if [ -n "${VORTIME_TEST_SUMMARY:-}" ]; then
    echo "$line" > "$VORTIME_TEST_SUMMARY"
  else
    echo "$line"
  fi
  exit "$1"
}

step() {
  local title=$1 start=$SECONDS status=0
  shift
  echo "== $title"
  "$@" || status=1
  printf '%s\t%s\n' "$((SECONDS - start))" "$title" >> "$times"
  if [ $status -eq 0 ]; then
    echo "== $title: done in $((SECONDS - start)) s"
  else
    echo "== $title: FAILED after $((SECONDS - start)) s"
  fi
  return $status
}

required_step() {
  step "$@" && return 0
  failed=$((failed + 1))
  finish 1
}

# The whole output of each test, for the tests that a program skips are told there.
test_preset() {
  local preset=$1 results ok=0 counts
  results="$PWD/build/$preset/ctest.xml"
  rm -f "$results"
  step "$preset: tests" ctest --preset "$preset" -j "$jobs" --output-junit "$results" --test-output-size-passed 10000000 || ok=1
  counts=$(python3 tools/count_tests.py "$results" --accepted tests/accepted_skips.tsv --title "$preset" --skips "$skips") ||
    counts="0 1 0"
  read -r -a counts <<< "$counts"
  passed=$((passed + counts[0]))
  failed=$((failed + counts[1]))
  skipped=$((skipped + counts[2]))
  [ "${counts[1]}" -eq 0 ] || ok=1
  return $ok
}

required_step "packages" tools/install_packages.sh test
required_step "format" tools/check_format.sh
for preset in "${presets[@]}"; do
  required_step "$preset: configure" cmake --preset "$preset"
  required_step "$preset: build" cmake --build --preset "$preset" -j "$jobs"
  if ! test_preset "$preset"; then
    [ "$failed" -gt 0 ] || failed=1
    finish 1
  fi
done
if [ "$fuzz_seconds" -gt 0 ]; then
  required_step "fuzz: configure" cmake --preset fuzz
  required_step "fuzz: build" cmake --build --preset fuzz -j "$jobs" --target vortime_fuzzers
  required_step "fuzz: $fuzz_seconds s a target" tools/run_fuzz.sh "$fuzz_seconds"
fi
finish 0
