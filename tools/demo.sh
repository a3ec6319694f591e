#!/bin/sh
# Builds the tool and replays a recorded receiver: a PC whose clock is 260 ms ahead and runs 1.2 ms a second too fast
# against a receiver whose own time steps back by 302 ms at the start. Ends with a summary and a picture in build/demo.
set -eu
cd "$(dirname "$0")/.."
tools/install_packages.sh demo
mkdir -p build/demo

# quietly COMMAND...: shows what it prints only where it fails.
quietly() {
  if ! "$@" > build/demo/build.log 2>&1; then
    cat build/demo/build.log >&2
    exit 1
  fi
}
echo "Building vortime in build/demo"
quietly cmake --preset demo
if [ -t 1 ]; then
  cmake --build --preset demo --target vortime -j "$(nproc)"
else
  quietly cmake --build --preset demo --target vortime -j "$(nproc)"
fi
build/demo/bin/vortime replay --quiet --pc-offset 260 --pc-drift 1200 --jitter 12 --noise 20 \
  --plot "$PWD/build/demo/telit-he910" samples/telit-he910.log
echo "The tool is build/demo/bin/vortime."
