#!/bin/sh
# Builds the interface reference in build/docs/html; a warning of Doxygen fails the build.
set -eu
cd "$(dirname "$0")/.."
mkdir -p build/docs
doxygen docs/Doxyfile
echo "build/docs/html/index.html"
