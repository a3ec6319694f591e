#!/bin/sh
# fetch_boost_source.sh DIRECTORY: fetches the Boost 1.81 source package once and unpacks the few files that
# the Windows build compiles. Needs no root and no deb-src line in the system's sources.
set -eu
dest=$1
mkdir -p "$dest/lists/partial" "$dest/archives/partial" "$dest/dl" "$dest/sources"
dest=$(cd "$dest" && pwd)
exec 9>"$dest/.lock"
flock 9
[ ! -f "$dest/.unpacked" ] || exit 0
tarball="$dest/dl/boost1.81_1.81.0.orig.tar.xz"
if [ ! -f "$tarball" ]; then
  for file in /etc/apt/sources.list.d/*.sources; do
    [ ! -f "$file" ] || sed 's/^Types: *deb *$/Types: deb-src/' "$file" > "$dest/sources/$(basename "$file")"
  done
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ ! -f "$file" ] || sed 's/^deb /deb-src /' "$file" > "$dest/sources/$(basename "$file" .list).list"
  done
  version=$(dpkg-query -W -f '${source:Version}' libboost1.81-dev)
  set -- -q -o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$dest/sources" -o "Dir::State::Lists=$dest/lists" \
    -o "Dir::Cache::archives=$dest/archives" -o Dir::Cache::pkgcache= -o Dir::Cache::srcpkgcache=
  apt-get "$@" update
  (cd "$dest/dl" && apt-get "$@" source --download-only --tar-only "boost1.81=$version")
fi
tar -xJf "$tarball" --no-same-owner -C "$dest" --strip-components=1 --wildcards --no-wildcards-match-slash \
  '*/libs/thread/src' '*/libs/chrono/src' '*/libs/filesystem/src' 'boost*/LICENSE_1_0.txt'
touch "$dest/.unpacked"
