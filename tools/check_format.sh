#!/bin/sh
# check_format.sh [--fix]: compares every C++ file under version control with .clang-format, or formats it.
set -eu
cd "$(dirname "$0")/.."
mode="--dry-run --Werror"
[ "${1:-}" != --fix ] || mode="-i"
git ls-files -z --cached --others --exclude-standard '*.h' '*.cpp' | xargs -0 -r clang-format-14 $mode
