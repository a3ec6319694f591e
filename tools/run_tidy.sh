#!/bin/sh
# run_tidy.sh [PATH REGEX]: clang-tidy over the sources of the libraries and the tool, or over those that match.
set -eu
cd "$(dirname "$0")/.."
cmake --preset linux-clang > /dev/null
run-clang-tidy-14 -quiet -p build/linux-clang -j "$(nproc)" "${1:-/Source/}"
