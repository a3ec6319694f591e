#!/bin/sh
# run_wine.sh PREFIX [PROGRAM [ARGS...]]: runs a Windows program headless in a wine prefix, made on first use.
set -eu
export WINEPREFIX="$1"; shift
export WINEDEBUG="${WINEDEBUG:--all}" WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe=" LC_ALL=C.UTF-8
unset DISPLAY
# The loader is not position independent: its randomised heap now and then takes the page at 0x7ffe0000
# that wine needs, and the program then ends with 1 and no word.
fixed=""
if setarch -R true 2>/dev/null; then fixed="setarch -R"; fi
mkdir -p "$WINEPREFIX"
exec 9>"$WINEPREFIX/.session.lock"
flock 9
if ! wineserver -k0 >/dev/null 2>&1; then
  # The services of the session keep the descriptors of whoever starts it: give them none of ours.
  wineserver -p60 </dev/null >/dev/null 2>&1 9>&-
  if [ -f "$WINEPREFIX/.ready" ]; then
    $fixed wine cmd /c exit </dev/null >/dev/null 2>&1 9>&-
  else
    $fixed wineboot -i </dev/null >/dev/null 2>&1 9>&-
    touch "$WINEPREFIX/.ready"
  fi
fi
exec 9>&-
[ $# -gt 0 ] || exit 0
exec $fixed wine "$@"
