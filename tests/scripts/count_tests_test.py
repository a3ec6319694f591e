#!/usr/bin/env python3
"""Counts made-up results of ctest."""
import unittest

from script_runner import TOOLS, ScriptTest

WHOLE_PROGRAM = """[ RUN      ] Clock.Runs
[       OK ] Clock.Runs (0 ms)
[ RUN      ] Clock.Stops
/tests/Clock.cpp:12: Skipped
no battery
[  SKIPPED ] Clock.Stops (0 ms)
[  PASSED  ] 1 test.
[  SKIPPED ] 1 test, listed below:
[  SKIPPED ] Clock.Stops
"""
ONE_TEST = """[ RUN      ] Clock.Stops
/tests/Clock.cpp:12: Skipped
no battery
[  SKIPPED ] Clock.Stops (0 ms)
"""


def case(name, status="run", inside="", output=""):
    return f'<testcase name="{name}" status="{status}">{inside}<system-out>{output}</system-out></testcase>'


class CountTests(ScriptTest):
    def count(self, *cases, accepted="", ci=None):
        results = self.write("ctest.xml", "<testsuite>" + "".join(cases) + "</testsuite>")
        (self.folder / "skips").unlink(missing_ok=True)
        result = self.run_script(TOOLS / "count_tests.py", results, "--accepted", self.write("accepted.tsv", accepted),
                                 "--title", "debug", "--skips", self.folder / "skips", CI=ci)
        self.assertEqual((0, ""), (result.returncode, result.stderr))
        return result.stdout.strip(), (self.folder / "skips").read_text().splitlines()

    def test_passed_and_failed(self):
        self.assertEqual(("2 1 0", []), self.count(case("a"), case("b"), case("c", "fail", '<failure message=""/>')))

    def test_what_was_not_run_has_failed(self):
        self.assertEqual(("0 1 0", []), self.count(case("a", "notrun", '<skipped message="Unable to find executable"/>')))

    def test_fixtures_do_not_count(self):
        self.assertEqual(("1 0 0", []), self.count(case("wine_start"), case("a"), case("wine_stop")))

    def test_a_program_that_skips_itself(self):
        skip = case("a", "notrun", '<skipped message="SKIP_RETURN_CODE=77"/>', "\nskipped: no data\nmore\n")
        self.assertEqual(("1 0 1", ["debug: a: skipped: no data (not in the list of accepted skips)"]),
                         self.count(skip, case("b")))

    def test_a_discovered_test(self):
        skip = case("p.Clock.Stops", "notrun", '<skipped message="SKIP_REGULAR_EXPRESSION_MATCHED"/>', ONE_TEST)
        self.assertEqual(("0 0 1", ["debug: p.Clock.Stops: no battery (not in the list of accepted skips)"]),
                         self.count(skip))

    def test_a_test_inside_a_program(self):
        for output in (WHOLE_PROGRAM, WHOLE_PROGRAM.replace("\n", "\r\n"), "..s\n[  SKIPPED ] Clock.Stops: no battery\n"):
            with self.subTest(output=output):
                self.assertEqual(("1 0 1", ["debug: p.Clock.Stops: no battery (not in the list of accepted skips)"]),
                                 self.count(case("p", output=output)))

    def test_two_tests_of_a_script(self):
        output = "ss\n[  SKIPPED ] Clock.Stops: no battery\n[  SKIPPED ] Clock.Starts: no key\n"
        skips = self.count(case("p", output=output))[1]
        self.assertEqual(["debug: p.Clock.Stops: no battery", "debug: p.Clock.Starts: no key"],
                         [line.partition(" (not")[0] for line in skips])

    def test_continuous_integration_takes_listed_skips_only(self):
        cases = (case("a", "notrun", '<skipped message="SKIP_RETURN_CODE=77"/>', "no data"), case("p", output=WHOLE_PROGRAM))
        accepted = "# test\treason\na\tits data are elsewhere\n"
        self.assertEqual("1 0 2", self.count(*cases, accepted=accepted)[0])
        self.assertEqual("1 1 2", self.count(*cases, accepted=accepted, ci="true")[0])
        self.assertEqual("1 0 2", self.count(*cases, accepted=accepted + "p.Clock.Stops\tno battery\n", ci="true")[0])
        self.assertEqual("1 2 2", self.count(*cases, ci="true")[0])

    def test_a_list_without_reasons_is_refused(self):
        results = self.write("ctest.xml", "<testsuite/>")
        for line in ("a", "a\t", "a\tb\tc"):
            with self.subTest(line=line):
                result = self.run_script(TOOLS / "count_tests.py", results, "--accepted", self.write("list", line + "\n"))
                self.assertEqual(1, result.returncode)
                self.assertIn(":1: not 'test<TAB>reason'", result.stderr)


if __name__ == "__main__":
    unittest.main()
