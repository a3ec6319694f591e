#!/bin/sh
# Runs the tests with coverage and reports it: a summary here, pages in build/coverage/report.
set -eu
cd "$(dirname "$0")/.."
cmake --preset coverage
cmake --build --preset coverage -j "$(nproc)"
find build/coverage -name '*.gcda' -delete
ctest --preset coverage -j "$(nproc)"
mkdir -p build/coverage/report
gcovr -r . -f Source/ -f include/ --exclude-throw-branches --print-summary --html-details build/coverage/report/index.html \
  --txt build/coverage/report/summary.txt build/coverage
