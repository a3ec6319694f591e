#!/bin/sh
# Installs what the build, the tests and the tools of this project need on Debian 12; quick when all is there.
# Works as root or through sudo. With --list it only prints the names.
set -eu
packages="
  ca-certificates git make cmake ninja-build ccache g++ python3 xz-utils util-linux
  libboost1.81-dev libboost-thread1.81-dev libboost-chrono1.81-dev libboost-date-time1.81-dev libboost-filesystem1.81-dev
  googletest g++-mingw-w64-x86-64-posix wine wine64
  clang-14 libclang-rt-14-dev clang-format-14 clang-tidy-14 gcovr
  libspdlog-dev libfmt-dev libcli11-dev nlohmann-json3-dev libgps-dev gpsd gpsd-clients python3-gps tzdata
  libhowardhinnant-date-dev libabsl-dev liberfa-dev libicu-dev libbenchmark-dev valgrind
  doxygen chromium gnuplot-nox"
if [ "${1:-}" = --list ]; then
  echo $packages
  exit 0
fi

installed=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n' $packages 2>/dev/null | sed -n 's/ installed$//p' || true)
missing=""
for package in $packages; do
  case "
$installed
" in
    *"
$package
"*) ;;
    *) missing="$missing $package" ;;
  esac
done
[ -n "$missing" ] || exit 0

as_root=""
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null; then
    echo "install_packages: missing:$missing" >&2
    echo "install_packages: run this script as root, or install sudo" >&2
    exit 1
  fi
  as_root=sudo
fi
echo "Installing:$missing"
$as_root env DEBIAN_FRONTEND=noninteractive apt-get -q update
$as_root env DEBIAN_FRONTEND=noninteractive apt-get -q install -y --no-install-recommends $missing
