#!/usr/bin/env python3
"""Turns the results of a run of the benchmarks into the tables of docs/PERFORMANCE.md.

bench_report.py RESULT.json... --limits benchmarks/limits.tsv --out docs/PERFORMANCE.md [--check]

A result file is one of Google Benchmark, or one of tools/count_instructions.py. A benchmark is named BM_<work>/<who>, or
BM_<work>/<who>/<what>:<number> where its cost is measured for growing numbers of something; who is "vortime" for this
library. Medians of the repetitions of one run are compared.

limits.tsv has the columns work, against, at_most. at_most is a ratio or a figure, or "report" for what is only shown.
against is
  a peer's name, "fastest" for the fastest peer: the ratio of the times;
  "ns", "ms": the time itself;
  "instructions": those of one call;
  <what>:<number>: the ratio of the cost of each for the greatest number to that for this one;
  "counter:<name>": a counter of the greatest number.
With --check the exit code is 1 when something does not hold.
"""
import argparse
import collections
import json
import platform
import sys

OURS = "vortime"
NS_PER = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}
TOOL = "tool_"

Limit = collections.namedtuple("Limit", "against at_most")


class Results:
    """What the result files say."""

    def __init__(self, paths):
        self.times = collections.OrderedDict()  # work -> who -> median nanoseconds of a call
        self.growth = collections.OrderedDict()  # (work, who) -> (what, number) -> Step
        self.instructions = {}  # work -> instructions of a call
        self.repetitions = 0
        self.processors = 0
        for path in paths:
            with open(path, encoding="utf-8") as file:
                data = json.load(file)
            self.instructions.update(data.get("instructions", {}))
            self.processors = max(self.processors, data.get("context", {}).get("num_cpus", 0))
            medians = [row for row in data.get("benchmarks", []) if row.get("aggregate_name") == "median"]
            # As the program registers them, not as they came to their end.
            for row in sorted(medians, key=lambda row: (row["family_index"], row["per_family_instance_index"])):
                self._add(row)

    def _add(self, row):
        parts = [part for part in row["run_name"].split("/") if part not in ("real_time", "process_time")]
        steps = [part for part in parts[1:] if ":" in part and not part.startswith("repeats:")]
        work = parts[0].removeprefix("BM_")
        who = "/".join(part for part in parts[1:] if ":" not in part) or OURS
        if steps:
            what, number = steps[0].split(":")
            self.growth.setdefault((work, who), collections.OrderedDict())[(what, int(number))] = Step(row)
            return
        self.times.setdefault(work, collections.OrderedDict())[who] = row["cpu_time"] * NS_PER[row["time_unit"]]
        self.repetitions = max(self.repetitions, int(row["repetitions"]))


class Step:
    """The cost for one number of something."""

    def __init__(self, row):
        self.each = 1e9 / row["items_per_second"]  # nanoseconds
        self.row = row


def read_limits(path):
    limits = collections.OrderedDict()
    with open(path, encoding="utf-8") as file:
        for number, line in enumerate(file, 1):
            line = line.rstrip("\n")
            if not line or line.startswith("#"):
                continue
            fields = line.split("\t")
            if len(fields) != 3:
                sys.exit(f"{path}:{number}: not 'work<TAB>against<TAB>at_most': {line}")
            at_most = None if fields[2] == "report" else float(fields[2])
            limits.setdefault(fields[0], []).append(Limit(fields[1], at_most))
    return limits


def is_growth(limit):
    return ":" in limit.against


def is_time(limit):
    return not is_growth(limit) and limit.against != "instructions"


def show_time(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def show_rate(nanoseconds):
    rate = 1e9 / nanoseconds
    return f"{rate / 1e6:.3g} million" if rate >= 1e6 else f"{rate:,.0f}"


class Verdicts:
    """What must be, for one row, and whether it is."""

    def __init__(self):
        self.texts = []
        self.broken = []

    def add(self, text, value, limit):
        if limit.at_most is None:
            self.texts.append(text)
            return
        self.texts.append(f"{text}, at most {show_limit(limit)}")
        if not value <= limit.at_most:
            self.broken.append(self.texts[-1])

    def missing(self, text):
        self.texts.append(text)
        self.broken.append(text)

    def cells(self):
        holds = "NO" if self.broken else "yes" if any("at most" in text for text in self.texts) else "-"
        return "; ".join(self.texts) or "reported", holds


def show_limit(limit):
    if limit.against in NS_PER:
        return show_time(limit.at_most * NS_PER[limit.against])
    return f"{limit.at_most:g}"


def judge_call(times, limit, verdicts):
    """A limit of the time of a work without a growing number."""
    ours = times[OURS]
    peers = {who: time for who, time in times.items() if who != OURS}
    if limit.against in NS_PER:
        verdicts.add(show_time(ours), ours / NS_PER[limit.against], limit)
    else:
        name = min(peers, key=peers.get) if limit.against == "fastest" and peers else limit.against
        if name not in peers:
            verdicts.missing(f"{name} is not in this run")
        else:
            verdicts.add(f"{ours / peers[name]:.2f} x {name}", ours / peers[name], limit)


def judge_growth(steps, limit, verdicts):
    """A limit of a work with a growing number."""
    key, name = limit.against.split(":")
    last = next(reversed(steps.values()))
    if key == "counter":
        if name not in last.row:
            verdicts.missing(f"{name} was not counted")
        else:
            verdicts.add(f"{name.replace('_', ' ')} {last.row[name]:g}", last.row[name], limit)
    elif (key, int(name)) not in steps:
        verdicts.missing(f"{limit.against} is not in this run")
    else:
        ratio = last.each / steps[(key, int(name))].each
        verdicts.add(f"{ratio:.2f} x {int(name):,} {key}", ratio, limit)


def beside(times):
    ours = times.get(OURS)
    texts = [f"{who} {show_time(time)}" + (f" (ratio {ours / time:.2f})" if ours else "")
             for who, time in times.items() if who != OURS]
    return ", ".join(texts) or "-"


def call_rows(results, limits, is_shown):
    """The rows of the works that is_shown(work) picks, and what is broken."""
    rows, broken = [], []
    for work, times in results.times.items():
        if not is_shown(work):
            continue
        verdicts = Verdicts()
        if OURS in times:
            for limit in limits.get(work, []):
                if is_time(limit):
                    judge_call(times, limit, verdicts)
        rows.append((work, times, *verdicts.cells()))
        broken += [f"{work}: {text}" for text in verdicts.broken]
    return rows, broken


def peer_table(results, limits):
    lines = ["| work | this library | beside it | must be | holds |", "|---|---|---|---|---|"]
    rows, broken = call_rows(results, limits, lambda work: not work.startswith(TOOL))
    for work, times, must_be, holds in rows:
        ours = show_time(times[OURS]) if OURS in times else "-"
        lines.append(f"| {work} | {ours} | {beside(times)} | {must_be} | {holds} |")
    return lines, broken


def instruction_table(results, limits):
    lines = ["| work | instructions | at most | holds |", "|---|---|---|---|"]
    broken = []
    for work, count in results.instructions.items():
        at_most = [limit.at_most for limit in limits.get(work, [])
                   if limit.against == "instructions" and limit.at_most is not None]
        holds = all(count <= most for most in at_most)
        judged = f"{at_most[0]:.0f} | {'yes' if holds else 'NO'}" if at_most else "- | -"
        lines.append(f"| {work} | {count:.0f} | {judged} |")
        if not holds:
            broken.append(f"{work}: {count:.0f} instructions, at most {at_most[0]:.0f}")
    return lines, broken


def tool_table(results, limits):
    lines = ["| work | each | a second | beside it | must be | holds |", "|---|---|---|---|---|---|"]
    rows, broken = call_rows(results, limits, lambda work: work.startswith(TOOL))
    for work, times, must_be, holds in rows:
        ours = times[OURS]
        lines.append(f"| {work} | {show_time(ours)} | {show_rate(ours)} | {beside(times)} | {must_be} | {holds} |")
    return lines, broken


def growth_table(results, limits):
    lines = ["| work | who | how many | each | a second | against the fewest | must be | holds |",
             "|---|---|---|---|---|---|---|---|"]
    broken = []
    for (work, who), steps in results.growth.items():
        verdicts = Verdicts()
        if who == OURS:
            for limit in limits.get(work, []):
                if is_growth(limit):
                    judge_growth(steps, limit, verdicts)
        must_be, holds = verdicts.cells()
        broken += [f"{work}: {text}" for text in verdicts.broken]
        first = next(iter(steps.values()))
        for (what, number), step in steps.items():
            is_last = step is next(reversed(steps.values()))
            lines.append("| {} | {} | {}: {:,} | {} | {} | {:.2f} | {} | {} |".format(
                work, who, what, number, show_time(step.each), show_rate(step.each), step.each / first.each,
                must_be if is_last else "", holds if is_last else ""))
    return lines, broken


def without_result(results, limits):
    grown = {work for work, who in results.growth if who == OURS}
    timed = {work for work, times in results.times.items() if OURS in times}
    def has_result(work, limit):
        return work in (grown if is_growth(limit) else timed if is_time(limit) else results.instructions)
    return [f"{work}: no result" for work, all_limits in limits.items()
            if not all(has_result(work, limit) for limit in all_limits)]


def report(results, limits):
    peers, broken = peer_table(results, limits)
    instructions, broken_instructions = instruction_table(results, limits)
    growth, broken_growth = growth_table(results, limits)
    tool, broken_tool = tool_table(results, limits)
    lines = [
        "# Performance", "",
        f"Written by `make bench`; do not edit. Each time is the median of {results.repetitions} repetitions of one run on "
        f"{platform.machine()} with {results.processors} processors, release build: processor time "
        "of one thread, or the time that passes where there are several threads or the tool runs.", "",
        "## Beside other libraries", "",
        "A ratio below 1 means that this library is the faster one. All works of a row do the same job on the same inputs.", "",
        *peers, "",
        "## Instructions of one call", "",
        "Counted by callgrind over the same inputs, with the present on simulated clocks. A build has the same count on every "
        "machine, so a change for the worse shows where times are noise; the limits lie a tenth above what GCC 12 makes for "
        "x86_64.", "",
        *instructions, "",
        "## How cost grows", "",
        "Each is the time for one call whichever thread makes it, for one listener of a signal, or for one observation of a run. "
        "Corrections and observations come from a simulated receiver.", "",
        *growth, "",
        "## The tool", "",
        "Each is one line of input; `convert` stands beside GNU `date -f` on the same values.", "",
        *tool, ""]
    return lines, broken + broken_instructions + broken_growth + broken_tool + without_result(results, limits)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("results", nargs="+")
    parser.add_argument("--limits", required=True)
    parser.add_argument("--out", required=True)
    parser.add_argument("--check", action="store_true")
    arguments = parser.parse_args()
    lines, broken = report(Results(arguments.results), read_limits(arguments.limits))
    with open(arguments.out, "w", encoding="utf-8") as file:
        file.write("\n".join(lines))
    print("\n".join(lines))
    for row in broken:
        print(f"does not hold: {row}", file=sys.stderr)
    return 1 if broken and arguments.check else 0


if __name__ == "__main__":
    sys.exit(main())
