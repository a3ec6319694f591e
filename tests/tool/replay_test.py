#!/usr/bin/env python3
"""Runs `vortime replay` on the checked-in logs as a person would."""
import datetime
import os
import pathlib
import re
import tempfile
import unittest

import tool_runner
from tool_runner import SAMPLES, json_lines, run, sentence

LOGS = sorted(p for p in SAMPLES.iterdir() if p.suffix in (".log", ".json"))


class Trace(unittest.TestCase):
    """The estimator's data lines are those that the library itself writes to its log."""

    def check(self, log, *options):
        with tempfile.TemporaryDirectory(dir=os.getcwd()) as folder:
            trace, library = pathlib.Path(folder, "trace"), pathlib.Path(folder, "library.log")
            environment = dict(os.environ, KTX_LOG=f"*=off,TimeEstimatorData=0;file={library.name}")
            result = run("replay", "--quiet", "--trace", trace.name, *options, log, env=environment, cwd=folder)
            self.assertEqual(0, result.returncode, result.stderr)
            own = trace.read_text().splitlines()
            logged = [re.sub(r"^\S+ \S+ TimeEstimatorData \S+ ", "", line) for line in library.read_text().splitlines()]
            self.assertEqual(logged, own)
            return own

    def test_lines_are_those_of_the_library(self):
        self.assertGreater(len(LOGS), 8)
        for log in LOGS:
            with self.subTest(log=log.name):
                self.assertGreater(len(self.check(log)), 0)

    def test_lines_are_those_of_the_library_with_a_wrong_pc(self):
        lines = self.check(SAMPLES / "telit-he910.log", "--pc-offset", "-700", "--pc-drift", "300", "--jitter", "20")
        self.assertEqual(187, len(lines))
        lines = self.check(SAMPLES / "telit-he910.log", "--noise", "0", "--pc-offset", "86400000")
        self.assertEqual(187, len(lines))

    def test_lines_are_those_of_the_library_with_a_changed_leap_second(self):
        """The change makes the library observe its own present: a line that no message stands for."""
        reports = "".join(f'{{"class":"TPV","mode":3,"time":"2024-02-01T00:00:0{i}.000Z","leapseconds":{count}}}\n'
                          for i, count in enumerate((18, 17, 17)))
        with tempfile.TemporaryDirectory(dir=os.getcwd()) as folder:
            log = pathlib.Path(folder, "reports.json")
            log.write_text(reports)
            self.assertEqual(4, len(self.check(log)))


class MissingLogs(unittest.TestCase):
    """A log that cannot be read is told and leaves the others as they are; the run ends with 3."""

    def test_the_others_are_read(self):
        good = SAMPLES / "isync.log"
        alone = run("replay", good)
        self.assertEqual(0, alone.returncode)
        for logs in (("no-such.log", good), (good, "no-such.log"), (SAMPLES, good)):
            with self.subTest(logs=logs):
                result = run("replay", *logs)
                self.assertEqual((3, alone.stdout), (result.returncode, result.stdout))
                self.assertRegex(result.stderr, r"\Avortime: cannot read [^\n]+\n\Z")

    def test_each_is_named(self):
        result = run("replay", "no-such-1", SAMPLES / "isync.log", "no-such-2", SAMPLES / "isync.log")
        self.assertEqual(3, result.returncode)
        self.assertIn("read           2 inputs", result.stdout)
        self.assertEqual(["vortime: cannot read no-such-1: ", "vortime: cannot read no-such-2: "],
                         [line[:32] for line in result.stderr.splitlines()])

    def test_none_can_be_read(self):
        result = run("replay", "no-such-1", "no-such-2")
        self.assertEqual((3, "", 2), (result.returncode, result.stdout, len(result.stderr.splitlines())))


class Rounding(unittest.TestCase):
    def test_the_difference_is_the_nearest_millisecond(self):
        """The first observation, with a noise of 10 ms, moves the estimate by all but a few millionths of the offset."""
        for offset in ("-300", "300", "-1", "1"):
            with self.subTest(offset=offset):
                objects = json_lines(run("replay", "--json", "--pc-offset", offset, SAMPLES / "telit-he910.log").stdout)
                first = next(o for o in objects if o["type"] == "observation")
                self.assertEqual(-int(offset), first["difference_ms"])

    def test_second_60_is_shown_as_such(self):
        log = "".join(sentence(f"GPZDA,{time},31,12,2016,00,00") for time in ("235959.00", "235960.00", "235960.50"))
        result = run("replay", "-", input=log)
        self.assertIn("       2  GPZDA        2016-12-31T23:59:60.000Z   ", result.stdout)
        self.assertEqual(["2016-12-31T23:59:59.000Z", "2016-12-31T23:59:60.000Z", "2016-12-31T23:59:60.500Z"],
                         [o["utc"] for o in json_lines(run("replay", "--json", "-", input=log).stdout) if "line" in o])


class FirstSlice(unittest.TestCase):
    def test_dated_sentences_show_week_milliseconds_utc_and_day_number(self):
        lines = run("replay", SAMPLES / "isync.log").stdout.splitlines()
        self.assertIn("      12  GPRMC        2016-02-03T13:15:19.000Z   1882   306936000  57421.552303241          0",
                      lines)
        self.assertIn("  bad checksums  0", lines)
        self.assertIn("  observations   23 used", lines)
        self.assertIn("  refused        1: cut 1", lines)

    def test_same_log_same_result(self):
        options = ("replay", "--json", "--jitter", "15", "--pc-drift", "50", SAMPLES / "telit-he910.log")
        self.assertEqual(run(*options).stdout, run(*options).stdout)
        self.assertNotEqual(run(*options).stdout, run(*options, "--seed", "2").stdout)


class StepLimit(unittest.TestCase):
    """Two kinds of sentences that contradict each other by less than 2 s."""

    LOG = "".join(f"2024-02-01T12:00:{second:02}.000Z " + line for second in range(1, 31)
                  for line in (sentence(f"GPZDA,1200{second:02}.00,01,02,2024,00,00"),
                               sentence(f"GPRMC,1200{second - 1:02}.40,A,,,,,,,010224,,,A")))

    def replay(self, *options):
        result = run("replay", "--json", "-q", *options, "-", input=self.LOG)
        return json_lines(result.stdout)[-1]

    def test_half_a_second_by_default(self):
        self.assertEqual({"time-step": 59}, self.replay()["signs"])
        self.assertEqual({"time-step": 59}, self.replay("--step-limit", "599")["signs"])

    def test_limit_can_be_set(self):
        for limit in (600, 601, 2000):
            self.assertEqual({}, self.replay("--step-limit", limit)["signs"])

    def test_strict_keeps_to_one_of_them(self):
        summary = self.replay("--strict")
        self.assertEqual((30, {"strict": 30}), (summary["used"], summary["refused"]))


class LeapCount(unittest.TestCase):
    """A count of leap seconds that no receiver can have."""

    def replay(self, *counts):
        log = "".join(f'{{"class":"TPV","mode":3,"time":"2024-02-01T00:00:{i:02}.000Z","leapseconds":{count}}}\n'
                      for i, count in enumerate(counts))
        return json_lines(run("replay", "--json", "-", input=log).stdout)

    def test_outside_0_to_40_is_refused(self):
        for count in (-1, 41, 255):
            with self.subTest(count=count):
                objects = self.replay(18, count)
                refusal = [o for o in objects if o["type"] == "refusal"]
                self.assertEqual(["leap-out-of-range"], [o["reason"] for o in refusal])
                self.assertNotIn("record", refusal[0])
                self.assertEqual(({"leap-out-of-range": 1}, 18, 2),
                                 (objects[-1]["refused"], objects[-1]["leap_seconds"], objects[-1]["used"]))

    def test_within_is_handed_to_the_library(self):
        for count in (0, 40):
            with self.subTest(count=count):
                offered = [o for o in self.replay(18, count) if "record" in o]
                self.assertEqual([count], [o["record"]["current"] for o in offered])


class OldMapping(unittest.TestCase):
    """More than a day without a correction: the library would print a line for each observation."""

    def replay(self, *options, seconds=(0, 86400, 172800, 259200)):
        times = (datetime.datetime(2024, 2, 1) + datetime.timedelta(seconds=s) for s in seconds)
        log = "".join(sentence(f"GPZDA,{time:%H%M%S},{time:%d,%m,%Y},00,00") for time in times)
        result = run("replay", *options, "-", input=log)
        self.assertEqual((0, ""), (result.returncode, result.stderr))
        return result.stdout

    def test_is_reported_once_in_the_results(self):
        objects = json_lines(self.replay("--json"))
        self.assertEqual(["observation"] * 3 + ["old_mapping", "observation", "summary"], [o["type"] for o in objects])
        self.assertEqual(172800000, objects[3]["age_ms"])
        self.assertEqual(1, self.replay().count("no correction for 48 hours"))
        self.assertEqual(1, self.replay("--quiet").count("no correction for 48 hours"))

    def test_begins_above_one_day(self):
        for last, types in ((86400, ["summary"]), (86401, ["old_mapping", "summary"])):
            with self.subTest(last=last):
                objects = json_lines(self.replay("--json", "-q", seconds=(0, 43200, last)))
                self.assertEqual(types, [o["type"] for o in objects])

    def test_a_correction_renews_the_mapping(self):
        """From the first message the PC is 1 s off: its correction comes 12 hours later, and counts from there."""
        objects = json_lines(self.replay("--json", "-q", "--pc-drift", "1.5", seconds=(0, 43200, 86400, 129600)))
        self.assertEqual(["correction"] * 3 + ["summary"], [o["type"] for o in objects])


def zda(date, clock="000000"):
    return sentence(f"GPZDA,{clock},{date:%d,%m,%Y},00,00").strip()


class Extremes(unittest.TestCase):
    """Times that do not fit into 64 bits somewhere on their way."""
    DAY = datetime.date(2024, 2, 1)

    def replay(self, log, *options):
        result = run("replay", "--json", *options, "-", input=log)
        self.assertNotIn("runtime error", result.stderr)
        return result, json_lines(result.stdout)

    def test_host_times_beyond_2262(self):
        for host in ("1900-01-01T00:00:00.000Z", "2262-04-11T23:47:16.854Z", "2262-04-11T23:47:16.855Z",
                     "2263-01-01T00:00:00.000Z", "9999-12-31T23:59:59.999Z"):
            with self.subTest(host=host):
                result, lines = self.replay(f"{host} {zda(self.DAY)}\n", "--trace", "/dev/null" if os.name == "posix" else "NUL")
                self.assertEqual((0, ""), (result.returncode, result.stderr))
                self.assertEqual(host, lines[0]["host"])
                self.assertEqual("2024-02-01T00:00:00.000Z", lines[0]["utc"])

    def test_host_times_that_alternate_between_the_ends(self):
        pairs = 50000
        log = "".join(f"NMEA,{zda(self.DAY)},{unix_ms}\n" for unix_ms in (0, 253402300799999)) * pairs
        result, lines = self.replay(log, "-q")
        # The steady clock counts the first way up and none of the others.
        self.assertEqual({"out-of-range": pairs - 1}, lines[-1]["refused"])
        self.assertEqual(pairs + 1, lines[-1]["used"])
        self.assertEqual(0, result.returncode)

    def test_a_date_beyond_2262(self):
        date = datetime.date(2263, 1, 1)
        for weeks, signs in ((0, []), (1024, ["week-rollover"])):
            log = zda(date - datetime.timedelta(weeks=weeks)) + "\n"
            for option in (("--date", date.isoformat()), ("--date=" + date.isoformat(),)):
                with self.subTest(weeks=weeks, option=option):
                    result, lines = self.replay(log, *option)
                    self.assertEqual(0, result.returncode)
                    self.assertEqual(signs, lines[0].get("signs", []))

    def test_dates_that_are_none(self):
        for date in ("0000-01-01", "1899-12-31", "10000-01-01", "2024-02-30"):
            with self.subTest(date=date):
                result, _ = self.replay("", "--date", date)
                self.assertEqual((2, ""), (result.returncode, result.stdout))
                self.assertIn("not a date: " + date, result.stderr)

    def test_year_zero_in_a_log(self):
        result, lines = self.replay(sentence("GPZDA,000000,01,01,0000,00,00"))
        self.assertEqual((1, "bad-date"), (result.returncode, lines[0]["reason"]))

    def test_offsets_of_the_pc(self):
        log = zda(self.DAY) + "\n"
        stated = 1706745600000
        first, last = -2208988800000, 253402300799999
        for offset, code in ((first - stated, 0), (last - stated, 0), (first - stated - 1, 1), (last - stated + 1, 1),
                             (first - last, 1), (last - first, 1), (first - last - 1, 2), (last - first + 1, 2),
                             (-2 ** 63, 2), (2 ** 63 - 1, 2), (2 ** 63, 2), (-2 ** 63 - 1, 2)):
            with self.subTest(offset=offset):
                result, lines = self.replay(log, f"--pc-offset={offset}")
                self.assertEqual(code, result.returncode)
                if code == 1:
                    self.assertEqual("out-of-range", lines[0]["reason"])
                if code == 2:
                    self.assertIn(f"--pc-offset: Value {offset} not in range", result.stderr)

    def test_a_drift_that_is_no_number(self):
        result, _ = self.replay("", "--pc-drift", "nan")
        self.assertEqual(2, result.returncode)
        self.assertIn("--pc-drift: not a number: nan", result.stderr)


if __name__ == "__main__":
    tool_runner.main()
