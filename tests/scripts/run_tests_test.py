#!/usr/bin/env python3
"""Runs tools/run_tests.sh with stand-ins for the build, the tests and the fuzz targets."""
import shutil
import unittest

from script_runner import TOOLS, ScriptTest

PASSED = '<testcase name="a" status="run"/>'
FAILED = '<testcase name="b" status="fail"/>'
SKIPPED = '<testcase name="c" status="notrun"><skipped message="SKIP_RETURN_CODE=77"/><system-out>no data</system-out></testcase>'


class RunTests(ScriptTest):
    def setUp(self):
        super().setUp()
        for name in ("run_tests.sh", "count_tests.py"):
            (self.folder / "tools").mkdir(exist_ok=True)
            shutil.copy(TOOLS / name, self.folder / "tools" / name)
        for name in ("install_packages.sh", "check_format.sh", "run_fuzz.sh"):
            self.write(f"tools/{name}", f'#!/bin/sh\necho "{name} $*"\n', 0o755)
        self.write("tests/accepted_skips.tsv", "listed\tfor a reason\n")
        self.write_program("cmake", 'echo "cmake $*"\n')

    def run_tests(self, *presets, cases, exit_code=0, **environment):
        self.write("results.xml", f"<testsuite>{cases}</testsuite>")
        self.write_program("ctest", 'while [ "$1" != --output-junit ]; do shift; done\nmkdir -p "$(dirname "$2")"\n'
                                    f'cp results.xml "$2"\nexit {exit_code}\n')
        environment.setdefault("CI", None)
        return self.run_script("tools/run_tests.sh", *presets, VORTIME_TEST_SUMMARY=None, **environment)

    def steps(self):
        return [line.split("\t")[1] for line in (self.folder / "build" / "test-times.tsv").read_text().splitlines()]

    def test_all_presets_add_up(self):
        result = self.run_tests(cases=PASSED + PASSED)
        self.assertEqual(0, result.returncode, result.stderr)
        self.assertEqual("10 passed, 0 failed, 0 skipped", result.stdout.splitlines()[-1])
        self.assertNotIn("== skipped tests", result.stdout)
        self.assertEqual(["packages", "format", "linux-debug: configure"], self.steps()[:3])
        self.assertEqual(["windows: tests", "fuzz: configure", "fuzz: build", "fuzz: 10 s a target"], self.steps()[-4:])
        self.assertIn("== seconds of each step\n     0  packages\n", result.stdout)

    def test_skipped_tests_stand_before_the_last_line(self):
        result = self.run_tests("tsan", "windows", cases=PASSED + SKIPPED)
        self.assertEqual(0, result.returncode, result.stderr)
        self.assertEqual(["== skipped tests", "tsan: c: no data (not in the list of accepted skips)",
                          "windows: c: no data (not in the list of accepted skips)", "2 passed, 0 failed, 2 skipped"],
                         result.stdout.splitlines()[-4:])

    def test_an_unlisted_skip_fails_in_continuous_integration(self):
        result = self.run_tests("tsan", "windows", cases=PASSED + SKIPPED, CI="true")
        self.assertEqual(1, result.returncode)
        self.assertEqual("1 passed, 1 failed, 1 skipped", result.stdout.splitlines()[-1])
        listed = self.run_tests("tsan", "windows", cases=PASSED + SKIPPED.replace('"c"', '"listed"'), CI="true")
        self.assertEqual((0, "2 passed, 0 failed, 2 skipped"), (listed.returncode, listed.stdout.splitlines()[-1]))

    def test_a_failed_test_ends_the_run(self):
        result = self.run_tests("tsan", "windows", cases=PASSED + FAILED, exit_code=8)
        self.assertEqual((1, "1 passed, 1 failed, 0 skipped"), (result.returncode, result.stdout.splitlines()[-1]))
        self.assertEqual("tsan: tests", self.steps()[-1])

    def test_a_run_without_results_is_a_failure(self):
        self.write_program("ctest", "exit 1\n")
        result = self.run_script("tools/run_tests.sh", "tsan", VORTIME_TEST_SUMMARY=None)
        self.assertEqual((1, "0 passed, 1 failed, 0 skipped"), (result.returncode, result.stdout.splitlines()[-1]))

    def test_a_build_that_fails_ends_the_run(self):
        self.write_program("cmake", '[ "$1" != --build ]\n')
        result = self.run_tests("tsan", cases=PASSED)
        self.assertEqual((1, "0 passed, 1 failed, 0 skipped"), (result.returncode, result.stdout.splitlines()[-1]))
        self.assertEqual("tsan: build", self.steps()[-1])

    def test_the_summary_goes_to_a_file_where_one_is_named(self):
        self.write("results.xml", f"<testsuite>{PASSED}</testsuite>")
        self.write_program("ctest", 'while [ "$1" != --output-junit ]; do shift; done\nmkdir -p "$(dirname "$2")"\ncp results.xml "$2"\n')
        result = self.run_script("tools/run_tests.sh", "tsan", VORTIME_TEST_SUMMARY=str(self.folder / "summary"))
        self.assertEqual(0, result.returncode, result.stderr)
        self.assertEqual("1 passed, 0 failed, 0 skipped\n", (self.folder / "summary").read_text())
        self.assertNotIn("1 passed", result.stdout)


if __name__ == "__main__":
    unittest.main()
