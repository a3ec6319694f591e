#!/bin/sh
# tool_speed.sh TOOL RESULT.json: what a line costs in a replay and in a conversion, beside those of GNU date. Writes
# the medians as Google Benchmark does.
set -eu
tool=$1
result=$2
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
python3 - "$tool" "$work" "$result" <<'PY'
import json, statistics, subprocess, sys, time
REPETITIONS = 7
LINES = 1000000
tool, work, result = sys.argv[1:]
log, dates = work + "/log", work + "/dates"
convert = [tool, "convert", "--from", "iso", "--to"]
date = ["date", "-u", "-f", dates, "+%s"]
commands = {
    "tool_replay_summary/vortime": ([tool, "replay", "-q", log], None),
    "tool_replay_text/vortime": ([tool, "replay", log], None),
    "tool_replay_json/vortime": ([tool, "replay", "--json", log], None),
    "tool_convert_iso_to_unix/vortime": (convert + ["unix"], dates),
    "tool_convert_iso_to_week/vortime": (convert + ["week"], dates),
    "tool_convert_iso_to_unix/gnu_date": (date, None),
}
def seconds(command, source):
    with open(source or "/dev/null") as stdin:
        start = time.perf_counter()
        subprocess.run(command, stdin=stdin, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
        return time.perf_counter() - start
times = {name: [] for name in commands}
for _ in range(REPETITIONS):
    for name, (command, source) in commands.items():
        times[name].append(seconds(command, source))
each = {name: statistics.median(values) / LINES * 1e9 for name, values in times.items()}
each["tool_convert_iso_to_week/gnu_date"] = each["tool_convert_iso_to_unix/gnu_date"]
for name, nanoseconds in each.items():
    print(f"{name}: {1e9 / nanoseconds:.0f} lines/s")
rows = [{"run_name": "BM_" + name, "family_index": index, "per_family_instance_index": 0, "aggregate_name": "median",
         "repetitions": REPETITIONS, "cpu_time": nanoseconds, "time_unit": "ns"}
        for index, (name, nanoseconds) in enumerate(each.items())]
with open(result, "w") as file:
    json.dump({"benchmarks": rows}, file, indent=1)
PY
