#!/bin/sh
# tool_speed.sh TOOL: lines a second of a replay, and conversions against those of GNU date.
set -eu
tool=$1
here=$(cd "$(dirname "$0")/.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
python3 - "$work" <<'PY'
import datetime, sys
def sentence(body):
    c = 0
    for b in body.encode():
        c ^= b
    return f"${body}*{c:02X}\r\n"
start = datetime.datetime(2024, 3, 7)
with open(sys.argv[1] + "/log", "w", newline="") as log, open(sys.argv[1] + "/dates", "w") as dates:
    for i in range(1000000):
        t = start + datetime.timedelta(seconds=i // 4)
        clock, kind = t.strftime("%H%M%S.00"), i % 4
        if kind == 0:
            log.write(sentence(f"GPRMC,{clock},A,4829.0005,N,00022.0015,E,0.15,212.28,{t:%d%m%y},,,A"))
        elif kind == 1:
            log.write(sentence(f"GPGGA,{clock},4829.0005,N,00022.0015,E,1,08,1.2,50.0,M,47.0,M,,"))
        elif kind == 2:
            log.write(sentence(f"GPZDA,{clock},{t:%d,%m,%Y},00,00"))
        else:
            log.write(sentence("GPGSV,3,1,12,20,76,058,40,11,73,252,,06,41,274,,14,41,185,"))
        dates.write((start + datetime.timedelta(seconds=i * 37)).strftime("%Y-%m-%dT%H:%M:%SZ\n"))
PY
python3 - "$tool" "$work" <<'PY'
import subprocess, sys, time
tool, work = sys.argv[1:]
def best(command, source=None):
    times = []
    for _ in range(3):
        with open(source or "/dev/null") as stdin:
            start = time.perf_counter()
            subprocess.run(command, stdin=stdin, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
            times.append(time.perf_counter() - start)
    return min(times)
for name, options in (("summary", ["-q"]), ("text", []), ("json", ["--json"])):
    seconds = best([tool, "replay", *options, work + "/log"])
    print(f"replay of 1000000 NMEA lines, {name}: {1e6 / seconds:.0f} lines/s")
own = best([tool, "convert", "--from", "iso", "--to", "unix"], work + "/dates")
week = best([tool, "convert", "--from", "iso", "--to", "week"], work + "/dates")
date = best(["date", "-u", "-f", work + "/dates", "+%s"])
print(f"convert of 1000000 values: ISO to Unix {own:.3f} s, ISO to week {week:.3f} s, date -f {date:.3f} s: "
      f"{date / own:.1f} and {date / week:.1f} times as fast")
PY
