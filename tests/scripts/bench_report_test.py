#!/usr/bin/env python3
"""Judges stored figures of benchmarks, by themselves and through make bench."""
import json
import shutil
import unittest

from script_runner import ROOT, TOOLS, ScriptTest

HOLDING = {
    ("call", "ns"): 40, ("call", "peer"): 2, ("call", "fastest"): 2, ("counted", "instructions"): 100,
    ("grown", "threads:1"): 1.5, ("grown", "counter:allocations"): 3}


def median(name, index, nanoseconds, **more):
    return {"run_name": name, "aggregate_name": "median", "family_index": index, "per_family_instance_index": 0,
            "repetitions": 7, "cpu_time": nanoseconds, "time_unit": "ns", **more}


FIGURES = {
    "context": {"num_cpus": 2},
    "instructions": {"counted": 100},
    "benchmarks": [
        median("BM_call/vortime", 0, 40), median("BM_call/peer", 1, 20),
        median("BM_grown/threads:1", 2, 10, items_per_second=1e8),
        median("BM_grown/threads:4", 3, 15, items_per_second=1e8 / 1.5, allocations=3)]}


def limits_text(limits):
    return "# work\tagainst\tat most\n" + "".join(f"{work}\t{against}\t{most}\n" for (work, against), most in limits.items())


class Report(ScriptTest):
    def report(self, limits, *options, figures=FIGURES):
        return self.run_script("python3", TOOLS / "bench_report.py", self.write("figures.json", json.dumps(figures)), "--limits",
                               self.write("limits.tsv", limits_text(limits)), "--out", self.folder / "report.md", *options)

    def test_figures_at_their_limits_hold(self):
        result = self.report(HOLDING, "--check")
        self.assertEqual((0, ""), (result.returncode, result.stderr))
        self.assertNotIn("| NO |", result.stdout)
        self.assertEqual(result.stdout, (self.folder / "report.md").read_text() + "\n")

    def test_each_kind_of_limit_can_be_broken(self):
        for key, most in HOLDING.items():
            for broken in (0, most * 0.99):
                with self.subTest(limit=key, broken=broken):
                    result = self.report({**HOLDING, key: broken}, "--check")
                    self.assertEqual(1, result.returncode)
                    self.assertEqual([f"does not hold: {key[0]}"],
                                     [line.partition(":")[0] + ":" + line.split(":")[1] for line in result.stderr.splitlines()])
                    self.assertIn("| NO |", result.stdout)

    def test_without_check_a_broken_limit_is_told_only(self):
        result = self.report({**HOLDING, ("call", "ns"): 0})
        self.assertEqual(0, result.returncode)
        self.assertIn("does not hold: call", result.stderr)

    def test_what_is_only_reported_holds(self):
        result = self.report({key: "report" for key in HOLDING}, "--check")
        self.assertEqual((0, ""), (result.returncode, result.stderr))

    def test_a_limit_without_a_figure_does_not_hold(self):
        for key in (("gone", "ns"), ("gone", "instructions"), ("gone", "threads:1"), ("call", "other"),
                    ("grown", "threads:2"), ("grown", "counter:none")):
            with self.subTest(limit=key):
                result = self.report({**HOLDING, key: 1}, "--check")
                self.assertEqual(1, result.returncode)
                self.assertIn(f"does not hold: {key[0]}", result.stderr)


class MakeBench(ScriptTest):
    """The whole way from make, with stand-ins for the builds and the programs that measure."""

    def setUp(self):
        super().setUp()
        shutil.copy(ROOT / "Makefile", self.folder)
        (self.folder / "tools").mkdir()
        for name in ("run_benchmarks.sh", "bench_report.py"):
            shutil.copy(TOOLS / name, self.folder / "tools")
        (self.folder / "docs").mkdir()
        self.write_program("cmake", "")
        self.write("tools/install_packages.sh", "#!/bin/sh\n", 0o755)
        self.write("tools/count_instructions.py", '#!/bin/sh\necho "{}" > "$3"\n', 0o755)
        self.write("benchmarks/tool_speed.sh", '#!/bin/sh\necho "{}" > "$2"\n', 0o755)
        self.write("figures.json", json.dumps(FIGURES))
        self.write("build/linux-release/benchmarks/all_benchmark",
                   '#!/bin/sh\nfor o; do case $o in --benchmark_out=*) cp figures.json "${o#*=}" ;; esac; done\n', 0o755)

    def bench(self, limits, *arguments):
        self.write("benchmarks/limits.tsv", limits_text(limits))
        return self.run_script("make", "bench", *arguments, MAKEFLAGS=None, MAKELEVEL=None)

    def test_a_limit_of_0_fails(self):
        self.assertEqual(0, self.bench(HOLDING, "CHECK=1").returncode)
        broken = {**HOLDING, ("call", "ns"): 0}
        result = self.bench(broken, "CHECK=1")
        self.assertNotEqual(0, result.returncode)
        self.assertIn("does not hold: call: 40 ns, at most 0 ns", result.stderr)
        self.assertIn("Error 1", result.stderr)
        for arguments in ((), ("CHECK=0",), ("CHECK=",)):
            self.assertEqual(0, self.bench(broken, *arguments).returncode)


if __name__ == "__main__":
    unittest.main()
