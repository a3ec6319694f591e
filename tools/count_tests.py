#!/usr/bin/env python3
"""Counts the tests of one ctest run and lists those that were skipped.

count_tests.py RESULTS.xml --accepted tests/accepted_skips.tsv [--title TEXT] [--skips FILE]

RESULTS.xml is what ctest writes with --output-junit. Prints "PASSED FAILED SKIPPED". A skipped test is named as ctest names
it; one that is skipped inside a program that ctest runs as a whole is <program>.<test>. With --skips each of them is appended
to FILE as a line "TITLE: TEST: REASON".

accepted_skips.tsv has the columns test and reason. With CI=true in the environment a skipped test that it does not name
counts as failed. The fixtures that start and stop wine are no tests.
"""
import argparse
import collections
import os
import re
import sys
import xml.etree.ElementTree as ElementTree

FIXTURES = {"wine_start", "wine_stop"}
SKIPPED = ("SKIP_RETURN_CODE", "SKIP_REGULAR_EXPRESSION_MATCHED", "Disabled")
# GoogleTest writes the reason on the lines before, tests/tool/tool_runner.py behind the name.
INNER = re.compile(r"(?:: Skipped\n(?P<before>.*?)\n+)?^\[  SKIPPED \] (?P<name>\S+\.\S+?)(?: \(\d+ ms\)|: (?P<behind>[^\n]*))$",
                   re.MULTILINE | re.DOTALL)

Skip = collections.namedtuple("Skip", "test reason")


def read_accepted(path):
    accepted = set()
    with open(path, encoding="utf-8") as file:
        for number, line in enumerate(file, 1):
            line = line.rstrip("\n")
            if not line or line.startswith("#"):
                continue
            fields = line.split("\t")
            if len(fields) != 2 or not all(fields):
                sys.exit(f"{path}:{number}: not 'test<TAB>reason': {line}")
            accepted.add(fields[0])
    return accepted


def is_skipped(case):
    reason = case.find("skipped")
    return case.get("status") == "disabled" or (
        reason is not None and any(word in reason.get("message", "") for word in SKIPPED))


def inner_skips(output):
    for match in INNER.finditer(output.replace("\r\n", "\n")):
        reason = (match["before"] or match["behind"] or "").strip().replace("\n", " ")
        yield Skip(match["name"], reason)


def first_line(text):
    return next((line.strip() for line in text.splitlines() if line.strip()), "")


def skips_of(case):
    """The skipped tests of one ctest entry, the entry itself or tests inside its program."""
    name = case.get("name")
    output = case.findtext("system-out") or ""
    inner = list(inner_skips(output))
    if is_skipped(case):
        return [Skip(name, inner[0].reason if inner else first_line(output))]
    return [Skip(f"{name}.{skip.test}", skip.reason) for skip in inner]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("results")
    parser.add_argument("--accepted", required=True)
    parser.add_argument("--title", default="")
    parser.add_argument("--skips")
    arguments = parser.parse_args()
    accepted = read_accepted(arguments.accepted)
    passed = failed = 0
    skips = []
    for case in ElementTree.parse(arguments.results).getroot().iter("testcase"):
        skips += skips_of(case)
        if case.get("status") == "run":
            passed += case.get("name") not in FIXTURES
        elif not is_skipped(case):
            failed += 1
    unknown = [skip for skip in skips if skip.test not in accepted]
    if os.environ.get("CI") == "true":
        failed += len(unknown)
    if arguments.skips:
        with open(arguments.skips, "a", encoding="utf-8") as file:
            for skip in skips:
                mark = " (not in the list of accepted skips)" if skip in unknown else ""
                file.write(f"{arguments.title}: {skip.test}: {skip.reason}{mark}\n")
    print(passed, failed, len(skips))


if __name__ == "__main__":
    main()
