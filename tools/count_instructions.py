#!/usr/bin/env python3
"""Counts the instructions of each work of benchmarks/KTX_TIM_Instructions.cpp with callgrind.

count_instructions.py PROGRAM --out RESULT.json [WORK...]

A work runs for two numbers of calls; the difference, divided by that of the calls, is what one call costs, without the
start of the program. The numbers are multiples of those of the inputs, so that every input counts alike.
"""
import argparse
import concurrent.futures
import json
import os
import re
import subprocess
import sys

CALLS = (1024, 5120)


def count(program, work, calls):
    """All instructions of a run."""
    environment = {name: value for name, value in os.environ.items() if name != "KTX_LOG"}
    command = ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", program, work, str(calls)]
    run = subprocess.run(command, capture_output=True, text=True, env=environment, check=False)
    total = re.search(r"Collected : (\d+)", run.stderr)
    if run.returncode != 0 or not total:
        sys.exit(f"count_instructions: {work} failed:\n{run.stderr}")
    return int(total.group(1))


def count_call(program, work):
    few, many = (count(program, work, calls) for calls in CALLS)
    return (many - few) / (CALLS[1] - CALLS[0])


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("program")
    parser.add_argument("--out", required=True)
    parser.add_argument("works", nargs="*")
    arguments = parser.parse_args()
    listed = subprocess.run([arguments.program], capture_output=True, text=True, check=True).stdout.split()
    works = arguments.works or listed
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        counts = list(pool.map(lambda work: count_call(arguments.program, work), works))
    with open(arguments.out, "w", encoding="utf-8") as file:
        json.dump({"instructions": dict(zip(works, counts))}, file, indent=1)
    for work, instructions in zip(works, counts):
        print(f"{work}: {instructions:.1f} instructions")


if __name__ == "__main__":
    main()
