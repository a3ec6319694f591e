#!/bin/sh
# Builds the tool and replays a recorded receiver: a PC whose clock is 260 ms ahead and runs 1.2 ms a second too fast
# against a receiver whose own time steps back by 302 ms at the start. Ends with a summary and a picture in build/demo.
set -eu
cd "$(dirname "$0")/.."
tools/install_packages.sh
cmake --preset linux-release
cmake --build --preset linux-release --target vortime -j "$(nproc)"
mkdir -p build/demo
build/linux-release/bin/vortime replay --quiet --pc-offset 260 --pc-drift 1200 --jitter 12 --noise 20 \
  --plot "$PWD/build/demo/telit-he910" samples/telit-he910.log
