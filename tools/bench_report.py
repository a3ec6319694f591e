#!/usr/bin/env python3
"""Turns Google Benchmark results into the table of ratios in docs/PERFORMANCE.md.

bench_report.py RESULT.json... --limits benchmarks/limits.tsv --out docs/PERFORMANCE.md [--check]

A benchmark is named BM_<work>/<who>[/...]; who is "vortime" for this library. Medians of the repetitions of one run
are compared. limits.tsv has the columns work, against, at_most: against is a peer's name, "fastest" for the fastest
peer, another work of this library's, or a unit ("ns", "ms") for an absolute figure; at_most is the ratio or the figure, or
"report" for a ratio that is only shown. With --check the exit code is
1 when a row does not hold.
"""
import argparse
import collections
import json
import platform
import sys

OURS = "vortime"
NS_PER = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}


def read_results(paths):
    """Median nanoseconds and instructions by (work, who), in order of appearance, and the number of repetitions."""
    medians = collections.OrderedDict()
    repetitions = 0
    for path in paths:
        with open(path, encoding="utf-8") as file:
            data = json.load(file)
        for row in data["benchmarks"]:
            if row.get("aggregate_name") != "median":
                continue
            parts = [p for p in row["run_name"].split("/") if not p.startswith(("repeats:", "real_time", "process_time", "threads:"))]
            work, who = parts[0].removeprefix("BM_"), "/".join(parts[1:]) or OURS
            medians[(work, who)] = row["real_time"] * NS_PER[row["time_unit"]]
            repetitions = max(repetitions, int(row["repetitions"]))
    return medians, repetitions


def read_limits(path):
    limits = {}
    with open(path, encoding="utf-8") as file:
        for number, line in enumerate(file, 1):
            line = line.rstrip("\n")
            if not line or line.startswith("#"):
                continue
            fields = line.split("\t")
            if len(fields) != 3:
                sys.exit(f"{path}:{number}: not 'work<TAB>against<TAB>at_most': {line}")
            limits.setdefault(fields[0], []).append((fields[1], None if fields[2] == "report" else float(fields[2])))
    return limits


def show_time(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def judge(ours, peers, against, at_most):
    """A text with the measured value, and whether it stays at or below at_most."""
    if at_most is None:
        return f"{ours / peers[against]:.2f} x {against}", True
    if against in NS_PER:
        value = ours / NS_PER[against]
        return f"{value:.3g} {against}, at most {at_most:g} {against}", value <= at_most
    if against == "fastest":
        if not peers:
            return "no peer in this run", False
        name = min(peers, key=peers.get)
    else:
        name = against
    if name not in peers:
        return f"{name} is not in this run", False
    value = ours / peers[name]
    return f"{value:.2f} x {name}, at most {at_most:g}", value <= at_most


def table(medians, limits):
    works = collections.OrderedDict()
    for (work, who), time in medians.items():
        works.setdefault(work, collections.OrderedDict())[who] = time
    lines = ["| work | this library | beside it | must be | holds |", "|---|---|---|---|---|"]
    broken = [f"{work}: no result" for work in limits if OURS not in works.get(work, {})]
    for work, times in works.items():
        ours = times.get(OURS)
        peers = {who: time for who, time in times.items() if who != OURS}
        beside = ", ".join(
            f"{who} {show_time(time)}" + (f" (ratio {ours / time:.2f})" if ours else "") for who, time in peers.items())
        compared = {**peers, **{other: row[OURS] for other, row in works.items() if OURS in row and other != work}}
        verdicts = [judge(ours, compared if limit[1] is None else peers, *limit) for limit in limits.get(work, [])] if ours else []
        broken += [f"{work}: {text}" for text, holds in verdicts if not holds]
        lines.append("| {} | {} | {} | {} | {} |".format(
            work, show_time(ours) if ours else "-", beside or "-", "; ".join(text for text, _ in verdicts) or "reported",
            "-" if not verdicts else "yes" if all(holds for _, holds in verdicts) else "NO"))
    return lines, broken


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("results", nargs="+")
    parser.add_argument("--limits", required=True)
    parser.add_argument("--out", required=True)
    parser.add_argument("--check", action="store_true")
    arguments = parser.parse_args()
    medians, repetitions = read_results(arguments.results)
    lines, broken = table(medians, read_limits(arguments.limits))
    text = "\n".join([
        "# Performance", "",
        "Written by `make bench`; do not edit. Each figure is the median of "
        f"{repetitions} repetitions of one run on {platform.machine()}, release build; a ratio below 1 means that this "
        "library is the faster one. All works of a row do the same job on the same inputs.", "", *lines, ""])
    with open(arguments.out, "w", encoding="utf-8") as file:
        file.write(text)
    print("\n".join(lines))
    for row in broken:
        print(f"does not hold: {row}", file=sys.stderr)
    return 1 if broken and arguments.check else 0


if __name__ == "__main__":
    sys.exit(main())
