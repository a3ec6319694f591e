#!/usr/bin/env python3
"""Configures the demo's build: it needs neither libgps nor GoogleTest."""
import json
import unittest

from script_runner import ROOT, ScriptTest


class DemoPreset(ScriptTest):
    def configure(self, *options):
        return self.run_script("cmake", "-S", ROOT, "--preset", "demo", "-B", self.folder / "build", *options)

    def sources(self):
        commands = json.loads((self.folder / "build" / "compile_commands.json").read_text())
        return {command["file"].rpartition("/")[2] for command in commands}

    def test_builds_without_gpsd_tests_and_examples(self):
        result = self.configure("-DVORTIME_GTEST_SOURCE=/nowhere", "-DVORTIME_LIBGPS=VORTIME_LIBGPS-NOTFOUND")
        self.assertEqual(0, result.returncode, result.stderr)
        self.assertIn("GpsdInputNone.cpp", self.sources())
        self.assertFalse(self.sources() & {"GpsdInput.cpp", "first_program.cpp", "gtest-all.cc"})

    def test_libgps_is_wanted_where_gpsd_is(self):
        result = self.configure("-DVORTIME_GPSD=ON", "-DCMAKE_LIBRARY_PATH=", "-DCMAKE_FIND_ROOT_PATH=/nowhere",
                                "-DCMAKE_FIND_ROOT_PATH_MODE_LIBRARY=ONLY")
        self.assertNotEqual(0, result.returncode)
        self.assertIn("install libgps-dev, or build without it by -DVORTIME_GPSD=OFF", " ".join(result.stderr.split()))


if __name__ == "__main__":
    unittest.main()
