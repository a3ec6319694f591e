#!/bin/sh
# install_packages.sh [--list] [GROUP...]: installs on Debian 12 what the named groups need; quick when all is there.
# Without a group it takes all. --list only prints the names of the packages.
#   demo      the tool without gpsd, and a picture
#   build     libraries, tool and examples for Linux
#   test      all tests: GCC, clang, sanitizers, Windows under Wine, fuzz targets
#   lint      format check and clang-tidy
#   format, fuzz, bench, docs, coverage, package, mutation, stress   what the command of make of this name needs
# Works as root or through sudo. Who may not install is told the command, and only where something is missing; a program
# that is found in PATH need not come from its package. The services that packages bring are neither started nor enabled.
set -eu

boost="libboost1.81-dev libboost-thread1.81-dev libboost-chrono1.81-dev libboost-date-time1.81-dev libboost-filesystem1.81-dev"
tool="make cmake ninja-build g++ $boost libspdlog-dev libfmt-dev libcli11-dev nlohmann-json3-dev tzdata"
build="$tool ccache libgps-dev"
googletest="googletest python3"
windows="g++-mingw-w64-x86-64-posix wine wine64 ca-certificates xz-utils util-linux"
format="clang-format-14"
fuzz="$build $googletest clang-14 libclang-rt-14-dev"
test="$fuzz $windows $format gpsd gpsd-clients python3-gps gnuplot-nox doxygen chromium"

packages_of() {
  case $1 in
    demo) echo "$tool gnuplot-nox" ;;
    build) echo "$build" ;;
    test) echo "$test" ;;
    lint) echo "$build clang-14 $googletest $format clang-tidy-14" ;;
    format) echo "$format" ;;
    fuzz) echo "$fuzz" ;;
    bench)
      echo "$build $googletest libhowardhinnant-date-dev libabsl-dev liberfa-dev libicu-dev libbenchmark-dev valgrind" ;;
    docs) echo "make doxygen" ;;
    stress) echo "$build $googletest" ;;
    coverage) echo "$test gcovr" ;;
    package) echo "$build $windows" ;;
    mutation) echo "$test git" ;;
    all) echo "$(packages_of lint) $(packages_of bench) $(packages_of docs) $(packages_of coverage) $(packages_of mutation)" ;;
    *)
      echo "install_packages: no group '$1'" >&2
      return 1
      ;;
  esac
}

# The command of a package whose command is all that is used of it.
program_of() {
  case $1 in
    make | cmake | ccache | git | python3 | doxygen | gcovr | g++ | clang-format-14 | clang-tidy-14 | chromium) echo "$1" ;;
    ninja-build) echo ninja ;;
    gnuplot-nox) echo gnuplot ;;
    gpsd-clients) echo gpsfake ;;
    valgrind) echo valgrind ;;
    util-linux) echo setarch ;;
    xz-utils) echo xz ;;
  esac
}

list_only=""
if [ "${1:-}" = --list ]; then
  list_only=yes
  shift
fi
[ $# -gt 0 ] || set -- all
packages=""
for group in "$@"; do
  names=$(packages_of "$group")
  packages="$packages $names"
done
packages=$(printf '%s\n' $packages | awk '!seen[$0]++')
if [ -n "$list_only" ]; then
  echo $packages
  exit 0
fi

if ! command -v dpkg-query > /dev/null; then
  echo "install_packages: this is no Debian; going on with what is installed. Needed, by Debian's names:" $packages >&2
  exit 0
fi
installed=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n' $packages 2> /dev/null | sed -n 's/ installed$//p' || true)
missing=""
for package in $packages; do
  program=$(program_of "$package")
  case "
$installed
" in
    *"
$package
"*) continue ;;
  esac
  if [ -z "$program" ] || ! command -v "$program" > /dev/null; then
    missing="$missing $package"
  fi
done
[ -n "$missing" ] || exit 0

cannot_install() {
  echo "install_packages: packages are missing, and this user may not install them. Run:" >&2
  echo "sudo apt-get install --no-install-recommends$missing" >&2
  exit 1
}

as_root=""
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo > /dev/null || cannot_install
  # Without a terminal nobody can be asked for a password.
  [ -t 0 ] || sudo -n true 2> /dev/null || cannot_install
  as_root=sudo
fi

# A service that comes with a package is not started, and not enabled for the next start of the machine.
policy=/usr/sbin/policy-rc.d
own_policy=""
without_services() {
  [ -e "$policy" ] || own_policy=yes
  if [ -n "$own_policy" ]; then
    trap 'remove_policy' EXIT
    trap 'exit 1' HUP INT TERM
    printf '#!/bin/sh\nexit 101\n' | $as_root tee "$policy" > /dev/null
    $as_root chmod 755 "$policy"
  fi
}
remove_policy() {
  [ -z "$own_policy" ] || $as_root rm -f "$policy"
  own_policy=""
}
disable_services() {
  case " $missing " in
    *" gpsd "*) $as_root env DPKG_MAINTSCRIPT_PACKAGE=gpsd deb-systemd-helper disable gpsd.socket gpsd.service > /dev/null ;;
  esac
}

echo "Installing:$missing"
$as_root env DEBIAN_FRONTEND=noninteractive apt-get -q update
without_services
$as_root env DEBIAN_FRONTEND=noninteractive apt-get -q install -y --no-install-recommends $missing
disable_services
