#!/bin/sh
# Builds the release of each system, packs it into dist/ and tries each archive: unpacked into an empty folder it must
# serve a project of its own.
set -eu
cd "$(dirname "$0")/.."
for preset in linux-release windows; do
  cmake --preset "$preset" -DBUILD_TESTING=OFF -B "build/package-$preset"
  cmake --build "build/package-$preset" -j "$(nproc)"
  (cd "build/package-$preset" && cpack)
done
rm -rf dist/_CPack_Packages

try_package() {
  archive=$1
  shift
  echo "Trying $archive"
  cmake "-DARCHIVE=$PWD/$archive" "-DWORK_DIR=$PWD/build/package-try" "-DCONSUMER_DIR=$PWD/tests/exports/consumer" \
    -DCONFIG=Release -DGENERATOR=Ninja "$@" -P tests/exports/check_install.cmake
}
try_package "$(ls dist/*-Linux-*.tar.gz)" -DCOMPILER=c++
try_package "$(ls dist/*-Windows-*.zip)" "-DTOOLCHAIN_FILE=$PWD/cmake/toolchain-mingw64.cmake" \
  "-DBOOST_INCLUDE=$PWD/build/package-windows/header-packages/boost_headers" "-DRUN_WINE=$PWD/tools/run_wine.sh" \
  "-DWINE_PREFIX=$PWD/build/package-wine"
ls -l dist
