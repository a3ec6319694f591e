#!/usr/bin/env python3
"""count_tests.py JUNIT_FILE: prints "PASSED FAILED" of one ctest run. Fixtures and skipped tests do not count."""
import sys
import xml.etree.ElementTree as ElementTree

FIXTURES = {"wine_start", "wine_stop"}
SKIPPED = {"SKIP_RETURN_CODE", "SKIP_REGULAR_EXPRESSION_MATCHED", "Disabled"}


def is_skipped(case):
    reason = case.find("skipped")
    return case.get("status") == "disabled" or (
        reason is not None and any(word in reason.get("message", "") for word in SKIPPED))


def main():
    passed = failed = 0
    for case in ElementTree.parse(sys.argv[1]).getroot().iter("testcase"):
        if case.get("status") == "run":
            passed += case.get("name") not in FIXTURES
        elif not is_skipped(case):
            failed += 1
    print(passed, failed)


main()
