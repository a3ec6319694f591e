#!/bin/sh
# Builds the release of each system and packs it into dist/.
set -eu
cd "$(dirname "$0")/.."
for preset in linux-release windows; do
  cmake --preset "$preset" -DBUILD_TESTING=OFF -B "build/package-$preset"
  cmake --build "build/package-$preset" -j "$(nproc)"
  (cd "build/package-$preset" && cpack)
done
rm -rf dist/_CPack_Packages
ls -l dist
