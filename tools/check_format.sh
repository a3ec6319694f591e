#!/bin/sh
# check_format.sh [--fix]: compares every C++ file of the project with .clang-format, or formats it.
set -eu
cd "$(dirname "$0")/.."
mode="--dry-run --Werror"
[ "${1:-}" != --fix ] || mode="-i"
find include Source tests benchmarks fuzz examples \( -name '*.h' -o -name '*.cpp' \) -print0 |
  xargs -0 -r clang-format-14 $mode
