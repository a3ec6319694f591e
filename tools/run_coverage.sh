#!/bin/sh
# Runs the tests with coverage and reports it: totals here, pages in build/coverage/report. Fails
# where a line of the library, or more than one branch in fifty, is not reached; what does not count
# is listed in docs/COVERAGE.md.
set -eu
cd "$(dirname "$0")/.."
jobs=$(nproc)
build=build/coverage
cmake --preset coverage
cmake --build --preset coverage -j "$jobs"
find $build -name '*.gcda' -delete
# Left out are the tests that add depth and no coverage.
ctest --preset coverage -j "$jobs" -E '^(test_values_exhaustive|test_lock_model|test_lock_stress|test_scenario)$'
mkdir -p $build/report
echo "Tool, logging library and exported headers, for information:"
gcovr -j "$jobs" -f Source/Tools/ -f Source/Logging/ -f include/ --txt $build/report/rest.txt --print-summary $build/Source
# Only as the library compiles it: what the tests make of its templates is not counted.
echo "The library, Source/Ktx_Tim and Source/Posix:"
gcovr -j "$jobs" -f Source/Ktx_Tim/ -f Source/Posix/ --html-details $build/report/index.html \
  --txt $build/report/summary.txt --print-summary --fail-under-line 100 --fail-under-branch 98 \
  $build/Source/CMakeFiles/vortime_objects.dir
