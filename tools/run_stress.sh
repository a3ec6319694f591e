#!/bin/sh
# run_stress.sh [LOCKS]: many threads on the reader/writer lock, 100 million locks in all unless told otherwise, then a
# fiftieth of them under the thread sanitizer.
set -eu
cd "$(dirname "$0")/.."
locks=${1:-100000000}
for preset in linux-release tsan; do
  cmake --preset "$preset" > /dev/null
  cmake --build --preset "$preset" -j "$(nproc)" --target test_lock_stress
done
VORTIME_LOCK_OPERATIONS=$locks build/linux-release/bin/test_lock_stress
fixed=""
if setarch -R true 2> /dev/null; then fixed="setarch -R"; fi
VORTIME_LOCK_OPERATIONS=$((locks / 50)) TSAN_OPTIONS=halt_on_error=1 $fixed build/tsan/bin/test_lock_stress
