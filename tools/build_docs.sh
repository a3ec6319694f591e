#!/bin/sh
# build_docs.sh [FOLDER]: builds the interface reference in FOLDER/html, without it in build/docs/html. A warning of Doxygen,
# as for a function without a comment, fails the build.
set -eu
cd "$(dirname "$0")/.."
folder=${1:-build/docs}
mkdir -p "$folder"
{
  cat docs/Doxyfile
  echo "OUTPUT_DIRECTORY = \"$folder\""
  echo "GENERATE_TAGFILE = \"$folder/VorTime.tag\""
} | doxygen -
echo "$folder/html/index.html"
