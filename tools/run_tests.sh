#!/usr/bin/env bash
# run_tests.sh [PRESET...]: configures, builds and tests each preset in turn and stops at the first that fails. Without
# arguments it takes all, and fuzzes for a minute at the end.
# Closes with the line "N passed, N failed", summed over all presets, on standard output or, where the variable
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

finish() {
  local line="$passed passed, $failed failed"
  if [ -n "${VORTIME_TEST_SUMMARY:-}" ]; then
    echo "$line" > "$VORTIME_TEST_SUMMARY"
  else
    echo "$line"
  fi
  exit "$1"
}

step() {
  local title=$1 start=$SECONDS
  shift
  echo "== $title"
  if "$@"; then
    echo "== $title: done in $((SECONDS - start)) s"
    return 0
  fi
  echo "== $title: FAILED after $((SECONDS - start)) s"
  return 1
}

required_step() {
  step "$@" && return 0
  failed=$((failed + 1))
  finish 1
}

test_preset() {
  local preset=$1 results ok=0 counts
  results="$PWD/build/$preset/ctest.xml"
  rm -f "$results"
  step "$preset: tests" ctest --preset "$preset" -j "$jobs" --output-junit "$results" || ok=1
  counts=$(python3 tools/count_tests.py "$results") || counts="0 1"
  passed=$((passed + ${counts% *}))
  failed=$((failed + ${counts#* }))
  return $ok
}

required_step "packages" tools/install_packages.sh
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
  required_step "fuzz: $fuzz_seconds s a target" tools/run_fuzz.sh "$fuzz_seconds"
fi
finish 0
