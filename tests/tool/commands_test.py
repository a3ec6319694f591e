#!/usr/bin/env python3
"""The short commands: now, convert, leap, zone; and how the command line itself answers."""
import datetime
import os
import pathlib
import re
import subprocess
import tempfile
import time
import unittest

import tool_runner
from tool_runner import SAMPLES, json_lines, run


class CommandLine(unittest.TestCase):
    def test_help_of_every_command(self):
        for command in ("", "replay", "watch", "now", "convert", "leap", "leap check", "leap load", "leap show",
                        "zone", "zone list", "zone current", "zone show", "zone map", "zone resolve"):
            with self.subTest(command=command):
                result = run(*command.split(), "--help")
                self.assertEqual((0, ""), (result.returncode, result.stderr))
                self.assertIn("Usage: vortime", result.stdout)

    def test_version(self):
        self.assertRegex(run("--version").stdout, r"^vortime \d+\.\d+\.\d+\s*$")

    def test_wrong_usage_ends_with_2_and_one_clear_text(self):
        for arguments in ((), ("bogus",), ("replay",), ("replay", "--noise", "x", "a.log"), ("zone",),
                          ("replay", "--jitter", "-1", "a.log"), ("convert", "--to", "bogus", "1"),
                          ("replay", "--date", "2024-13-01", "a.log"), ("leap", "check"), ("now", "--bogus")):
            with self.subTest(arguments=arguments):
                result = run(*arguments)
                self.assertEqual((2, ""), (result.returncode, result.stdout))
                self.assertNotEqual("", result.stderr)

    def test_missing_input_ends_with_3(self):
        for arguments in (("replay", "no-such.log"), ("watch", "no-such-device"), ("leap", "check", "no-such"),
                          ("leap", "load", "no-such"), ("replay", "--leap-file", "no-such", SAMPLES / "isync.log"),
                          ("replay", str(SAMPLES))):
            with self.subTest(arguments=arguments):
                result = run(*arguments)
                self.assertEqual((3, ""), (result.returncode, result.stdout))
                self.assertTrue(result.stderr.startswith("vortime: "), result.stderr)


class EndOfAWatch(unittest.TestCase):
    def test_a_source_that_ends(self):
        """Also one that is a device, as what has no standard input reads from."""
        log = SAMPLES / "isync.log"
        for source, rest in ((log, ""), ("-", "; nothing usable came from -")):
            with self.subTest(source=source):
                result = run("watch", "-q", source, stdin=subprocess.DEVNULL)
                self.assertEqual((1, f"vortime: the source has ended: {source}{rest}\n"), (result.returncode, result.stderr))
                self.assertIn("Summary\n", result.stdout)


class Log(unittest.TestCase):
    """The library's log gets into the tool's messages only where KTX_LOG asks for it."""

    def load_what_the_library_refuses(self, **environment):
        with tempfile.TemporaryDirectory(dir=os.getcwd()) as folder:
            file = pathlib.Path(folder, "leap.txt")
            file.write_text("18,18,1929,8\n")
            kept = {name: value for name, value in os.environ.items() if name != "KTX_LOG"}
            result = run("leap", "load", file.relative_to(os.getcwd()), env=dict(kept, **environment))
        self.assertEqual(1, result.returncode)
        self.assertIn("invalid record", result.stdout)
        return result.stderr

    def test_no_line_without_a_setting(self):
        self.assertEqual("", self.load_what_the_library_refuses())
        self.assertEqual("", self.load_what_the_library_refuses(KTX_LOG=""))

    def test_lines_with_a_setting(self):
        self.assertIn(" Time 6 New leap second invalid!", self.load_what_the_library_refuses(KTX_LOG="*=6"))

    def test_a_line_names_its_thread_as_the_id_in_front_does(self):
        with tempfile.TemporaryDirectory(dir=os.getcwd()) as folder:
            file = pathlib.Path(folder, "leap.txt")
            file.write_text("17,17,1929,7\n")
            result = run("leap", "load", file.relative_to(os.getcwd()), env=dict(os.environ, KTX_LOG="Time=0"))
        for text in ("setGpsUTCParameters", "GpsC makeToCurrentTime"):
            self.assertRegex(result.stderr, rf"(?m)^\S+Z ([0-9a-f]+) Time [3-] \1 - {text} call to ")


class Suggestions(unittest.TestCase):
    def test_what_a_mistyped_word_was_meant_to_be(self):
        for line, text in (("repaly a.log", "unknown command repaly; did you mean replay?"),
                           ("zone reslove X", "unknown command reslove; did you mean resolve?"),
                           ("leap laod --json x", "unknown command laod; did you mean load?"),
                           ("replay --trcae x a.log", "unknown option --trcae; did you mean --trace?"),
                           ("replay --trcae=x a.log", "unknown option --trcae; did you mean --trace?"),
                           ("watch --set-clok -", "unknown option --set-clok; did you mean --set-clock?"),
                           ("leap show --jsno", "unknown option --jsno; did you mean --json?"),
                           ("--verison", "unknown option --verison; did you mean --version?"),
                           ("--json now", "the option --json must stand behind its command"),
                           ("bogus", "unknown command bogus"),
                           ("now --bogus", "unknown option --bogus"),
                           ("now -x", "unknown option -x"),
                           ("now today", "unexpected argument today"),
                           ("", "A subcommand is required")):
            with self.subTest(line=line):
                result = run(*line.split())
                self.assertEqual((2, "", f"vortime: {text}\nRun with --help for more information.\n"),
                                 (result.returncode, result.stdout, result.stderr))


CONTROLS = re.compile("[\x00-\x09\x0b-\x1f\x7f-\x9f]")


class ControlCharacters(unittest.TestCase):
    """Names and values from outside get into no output as control characters, which a terminal would obey."""
    EVIL = "x\x1b[2J\x07\x7f\x9b0m\ny"
    SHOWN = r"x\u001b[2J\u0007\u007f\u009b0m\u000ay"

    def test_arguments(self):
        for arguments in ((self.EVIL,), ("now", self.EVIL), ("now", "--" + self.EVIL), ("replay", self.EVIL),
                          ("replay", "--noise", self.EVIL, "x"), ("replay", "--date", self.EVIL, "x"),
                          ("replay", "--leap-file", self.EVIL, SAMPLES / "isync.log"), ("watch", self.EVIL),
                          ("watch", "gpsd://" + self.EVIL), ("convert", self.EVIL), ("convert", "--to", self.EVIL, "1"),
                          ("leap", "check", self.EVIL), ("leap", "load", self.EVIL), ("leap", self.EVIL),
                          ("zone", "show", self.EVIL), ("zone", "map", self.EVIL), ("zone", "resolve", self.EVIL)):
            with self.subTest(arguments=arguments):
                result = run(*arguments)
                self.assertNotEqual(0, result.returncode)
                self.assertIn(self.SHOWN, result.stderr)
                self.assertNotRegex(result.stdout + result.stderr, CONTROLS)


class Documents(unittest.TestCase):
    FOLDER = tool_runner.ROOT / "Source" / "Tools" / "vortime"

    def test_completion_and_manual_know_every_option(self):
        completion = (self.FOLDER / "vortime.bash").read_text()
        manual = (self.FOLDER / "vortime.1").read_text().replace("\\-", "-")
        for command in ("replay", "watch", "now", "convert", "leap", "zone", "zone resolve"):
            for option in set(re.findall(r"--[a-z][a-z-]*", run(*command.split(), "--help").stdout)):
                with self.subTest(command=command, option=option):
                    self.assertIn(option, completion)
                    self.assertIn(option, manual)


class Convert(unittest.TestCase):
    def convert(self, *arguments, **options):
        return run("convert", *arguments, **options).stdout.strip()

    def test_forms_and_bases(self):
        for value, to, expected in (
                ("1930:18000", "iso", "2017-01-01T00:00:00.000Z"),
                ("1930:17999", "iso", "2016-12-31T23:59:59.999Z"),
                ("1930:18000", "iso:gps", "2017-01-01T00:00:18.000"),
                ("2017-01-01T00:00:00Z", "week", "1930:18000"),
                ("2017-01-01T00:00:00", "gps", "1930:18000"),
                ("2017-01-01T00:00:00.0005Z", "week", "1930:18001"),
                ("57754", "week", "1930:18000"),
                ("57754.5", "unix", "1483272000"),
                ("1483228800", "mjd", "57754"),
                ("1483228800.25", "unix", "1483228800.250"),
                ("1483228800", "mjd:gps", "57754.000208333331"),
                ("0:0", "iso:gps", "1980-01-06T00:00:00.000"),
                ("65535:604799999", "week", "65535:604799999")):
            with self.subTest(value=value, to=to):
                shown = self.convert("--to", to, value)
                if to.startswith("mjd"):
                    self.assertEqual(float(expected), float(shown))
                else:
                    self.assertEqual(expected, shown)

    def test_fat_is_local_time(self):
        environment = dict(os.environ, TZ="UTC")
        self.assertEqual("0x4A21:0x6000", self.convert("--to", "fat", "2017-01-01T12:00:00Z", env=environment))
        self.assertEqual("2017-01-01T12:00:00.000Z",
                         self.convert("--to", "iso", "--from", "fat", "0x4A21:0x6000", env=environment))

    def test_form_of_the_input_can_be_forced(self):
        self.assertEqual("1980-01-06T00:00:00.000", self.convert("--from", "mjd:gps", "--to", "iso:gps", "44244"))
        self.assertEqual("1981-11-17T13:46:40.000Z", self.convert("--from", "unix", "--to", "iso", "374852800"))
        self.assertEqual("1930:0", self.convert("--from", "iso:gps", "--to", "week", "2017-01-01T00:00:00"))

    BEFORE = "it lies before 1980-01-06T00:00:00, where week 0 begins"
    BEYOND = "it lies after the end of week 65535, the last one"

    def refused(self, reasons, *options, **run_options):
        """Values that are refused in one run, each with its reason."""
        result = run("convert", *options, "--", *reasons, **run_options)
        self.assertEqual([f"vortime: cannot convert {value}: {reason}" for value, reason in reasons.items()],
                         result.stderr.splitlines())
        self.assertEqual((1, "invalid\n" * len(reasons)), (result.returncode, result.stdout))

    def test_what_is_no_time_is_refused_with_the_reason(self):
        self.refused(dict((
                ("", "not a time"), ("x", "not a time"), ("nan", "not a time"), ("1930:18000.5", "not a time"),
                ("1930:", "not a time"), (":5", "not a time"), ("2017-01-01T00:00:00Zx", "not a time"),
                ("1483228800.x", "not a time"), ("1:2:3", "a time of day needs its date in front"),
                ("23:59:60Z", "a time of day needs its date in front"),
                ("2017-01-01", "a date needs its time of day behind it"),
                ("2016-12-31T23:59:60Z", "second 60, a leap second, cannot be converted"),
                ("2016-12-31T23:59:61Z", "no such time of day"), ("2016-12-31T23:60:00Z", "no such time of day"),
                ("2016-12-31T24:00:00Z", "no such time of day"), ("2017-02-29T00:00:00Z", "no such date"),
                ("2017-13-01T00:00:00Z", "no such date"), ("2017-00-01T00:00:00Z", "no such date"),
                ("2017-01-01T00:00:00+01:00", "offsets from UTC are not read, only Z is"),
                ("10000-01-01T00:00:00Z", "a year has four digits"), ("99999-1", "a year has four digits"),
                ("65536:0", "weeks are 0 to 65535"), ("99999999999999999999:0", "weeks are 0 to 65535"),
                ("-1:0", "weeks are 0 to 65535"), ("--1:0", "not a time"), ("1:-", "not a time"),
                ("1:604800000", "milliseconds of a week are 0 to 604799999"),
                ("1:-1", "milliseconds of a week are 0 to 604799999"),
                ("1979-12-31T23:59:59Z", self.BEFORE), ("1980-01-05T23:59:59.999Z", self.BEFORE),
                ("0000-01-01T00:00:00Z", self.BEFORE), ("315964799.999", self.BEFORE), ("-315964800", self.BEFORE),
                ("44243", self.BEFORE), ("-5", self.BEFORE), ("-1e999", self.BEFORE),
                ("3236-01-13T00:00:00Z", self.BEYOND), ("9999-12-31T23:59:59Z", self.BEYOND), ("999999", self.BEYOND),
                ("99999999999999999999", self.BEYOND), ("1e999", self.BEYOND),
                ("0x0:0x0", "no such date"), ("0x4A21:0xC000", "no such time of day"),
                ("0x14A21:0", "not two numbers of 16 bits with a colon between"))), "--to", "iso:gps")

    def test_z_goes_with_utc_alone(self):
        for base in ("gps", "local"):
            with self.subTest(base=base):
                self.refused({"2017-01-01T00:00:00Z": "Z marks UTC, and another time base was asked for"},
                             "--from", "iso:" + base)

    def test_both_ends_of_the_weeks(self):
        """The first 18 s of GPS time lie before week 0 in UTC, the last 18 s of UTC after week 65535 in GPS time."""
        for value, to, expected in (("0:0", "iso:gps", "1980-01-06T00:00:00.000"), ("0:17999", "week", "0:17999"),
                                    ("0:18000", "iso", "1980-01-06T00:00:00.000Z"),
                                    ("0:18001", "week:utc", "0:1"), ("1980-01-06T00:00:00Z", "gps", "0:18000"),
                                    ("65535:604799999", "iso", "3236-01-12T23:59:41.999Z"),
                                    ("3236-01-12T23:59:41.999Z", "gps", "65535:604799999"),
                                    ("3236-01-12T23:59:59.999Z", "iso", "3236-01-12T23:59:59.999Z")):
            with self.subTest(value=value, to=to):
                self.assertEqual(expected, self.convert("--to", to, value))
        for to in ((), ("--to", "iso"), ("--to", "week:utc"), ("--to", "mjd"), ("--to", "unix")):
            with self.subTest(to=to):
                self.refused(dict.fromkeys(("0:0", "0:1", "0:17999"), "in UTC " + self.BEFORE), *to)
        for to in ((), ("--to", "gps"), ("--to", "iso:gps")):
            with self.subTest(to=to):
                self.refused(dict.fromkeys(("3236-01-12T23:59:42.000Z", "3236-01-12T23:59:59.999Z"),
                                           "in GPS time " + self.BEYOND), *to)
        self.assertEqual([{"input": "0:17999", "error": "in UTC " + self.BEFORE}],
                         json_lines(run("convert", "--json", "0:17999").stdout))

    def test_fat_ends_with_2107(self):
        utc = dict(os.environ, TZ="UTC")
        self.assertEqual("0xFF9F:0xBF7D", self.convert("--to", "fat", "2107-12-31T23:59:59.999Z", env=utc))
        for value in ("2108-01-01T00:00:00Z", "3000-01-01T00:00:00Z", "65535:604799999"):
            with self.subTest(value=value):
                self.refused({value: "FAT ends with the year 2107"}, "--to", "fat", env=utc)
                result = run("convert", value, env=utc)
                self.assertEqual((0, ""), (result.returncode, result.stderr))
                self.assertIn("\nFAT (local)  none: FAT ends with the year 2107\nleap seconds 18\n", result.stdout)
                self.assertIsNone(json_lines(run("convert", "--json", value, env=utc).stdout)[0]["fat"])

    def test_day_numbers_are_written_out(self):
        for value in ("100000", "200000", "60000"):
            self.assertEqual(value, self.convert("--from", "mjd", "--to", "mjd", value))

    def test_a_line_without_an_end_is_refused_once(self):
        """And the lines behind it are read. 4096 bytes are the longest line."""
        too_long = "the line has more than 4096 bytes"
        for length, reason in ((4095, "not a time"), (4096, "not a time"), (4097, too_long), (300_000, too_long),
                               (1_000_000, too_long)):
            for end in ("", "\n"):
                with self.subTest(length=length, end=end):
                    result = run("convert", input="1930:18000\n" + "x" * length + end + ("1930:18001\n" if end else ""))
                    self.assertEqual((1, f"vortime: cannot convert {'x' * 80}{'...' if reason != too_long else ''}: {reason}\n"),
                                     (result.returncode, result.stderr))
                    self.assertEqual(["2017-01-01T00:00:00.000Z", "invalid"] + ["2017-01-01T00:00:00.001Z"] * bool(end),
                                     result.stdout.splitlines())

    def test_a_file_of_values(self):
        values = "".join(f"{1900 + i}:{i * 1000}\r\n" for i in range(3000))
        result = run("convert", "--from", "week", "--to", "unix", input=values)
        epoch = datetime.datetime(1980, 1, 6)
        for i, line in enumerate(result.stdout.splitlines()):
            seconds = (1900 + i) * 604800 + i - 18 + (epoch - datetime.datetime(1970, 1, 1)).total_seconds()
            self.assertEqual(int(seconds), int(line))
        self.assertEqual(2999, i)

    def test_standard_input_gives_iso_by_itself(self):
        self.assertEqual("2017-01-01T00:00:00.000Z\ninvalid\n2017-01-02T00:00:00.000Z\n",
                         run("convert", input="1930:18000\nbad\n\n57755").stdout)

    def test_json(self):
        values = json_lines(run("convert", "--json", "1930:18000", "bad").stdout)
        self.assertEqual((1930, 18000, "2017-01-01T00:00:00.000Z", 57754, 1483228800, 18),
                         tuple(values[0][k] for k in ("week", "ms", "utc", "mjd", "unix", "leap_seconds")))
        self.assertEqual({"input": "bad", "error": "not a time"}, values[1])

    def test_numbers_are_numbers_in_json(self):
        for to, number in (("unix", 1483228800), ("mjd", 57754), ("mjd:gps", 57754.00020833333), ("week", "1930:18000"),
                           ("iso", "2017-01-01T00:00:00.000Z")):
            with self.subTest(to=to):
                self.assertEqual([{"input": "1930:18000", "output": number}],
                                 json_lines(run("convert", "--json", "--to", to, "1930:18000").stdout))
        self.assertIn('"output":1483228800.250}', run("convert", "--json", "--to", "unix", "1483228800.25").stdout)

    def test_a_date_with_another_leap_second_is_noted(self):
        self.assertIn("another leap second count", run("convert", "2014-08-01T00:00:00Z").stderr)
        self.assertEqual("", run("convert", "2017-08-01T00:00:00Z").stderr)


class Now(unittest.TestCase):
    def test_present_is_that_of_the_machine(self):
        before = datetime.datetime.utcnow()
        now = json_lines(run("now", "--json").stdout)[0]
        after = datetime.datetime.utcnow()
        shown = datetime.datetime.strptime(now["utc"], "%Y-%m-%dT%H:%M:%S.%fZ")
        second = datetime.timedelta(seconds=1)
        self.assertTrue(before - second <= shown <= after + second)
        gps = datetime.datetime(1980, 1, 6) + datetime.timedelta(weeks=now["week"], milliseconds=now["ms"])
        self.assertEqual(18, round((gps - shown).total_seconds()))
        self.assertIn("leap second", run("now").stdout)


class Leap(unittest.TestCase):
    def file(self, text):
        handle, name = tempfile.mkstemp(dir=os.getcwd(), suffix=".txt")
        self.addCleanup(os.remove, name)
        with os.fdopen(handle, "w") as file:
            file.write(text)
        return pathlib.Path(name).name

    def test_show(self):
        shown = json_lines(run("leap", "show", "--json").stdout)[0]
        self.assertEqual(18, shown["leap_seconds"])
        self.assertEqual({"source": "Default", "current": 18, "future": 18, "week": 1929, "day": 7, "known": True},
                         shown["in_force"])
        self.assertEqual(run("leap").stdout, run("leap", "show").stdout)

    def test_load_and_check_a_leap_second_file(self):
        for command in ("load", "check"):
            for text, code, count in (("; comment\n17,18,1929,7\n", 0, 18), ("19,19,2017-01-01\n", 0, None),
                                      ("20,20,1929,7\n", 0, 20), ("18,18,1929,8\n", 33554434, None),
                                      ("18;18\n", 33554458, None), ("", 33554458, None)):
                with self.subTest(command=command, text=text):
                    result = run("leap", command, "--json", self.file(text))
                    shown = json_lines(result.stdout)[0]
                    self.assertEqual(code, shown["code"])
                    self.assertEqual(0 if code == 0 else 1, result.returncode)
                    self.assertEqual("Forced" if code == 0 else "Default", shown["after"]["source"])
                    if count:
                        self.assertEqual(count, shown["after"]["current"])

    def test_check_a_published_list(self):
        shown = json_lines(run("leap", "check", "--json", SAMPLES / "leapseconds-tzdata-2026b").stdout)[0]
        self.assertEqual(("list", 27, True), (shown["kind"], len(shown["entries"]), shown["is_library_default"]))
        self.assertEqual({"utc": "2017-01-01T00:00:00.000Z", "gps_minus_utc": 18, "week": 1929, "day": 7},
                         shown["entries"][-1])

    def test_an_expired_list_is_reported(self):
        now = int(time.time())
        for form, epoch in (("#@ {}\n2272060800 10\n", 2208988800), ("Leap 2016 Dec 31 23:59:60 + S\n#expires {}\n", 0)):
            for expiry, word in ((now - 60, "expired"), (now + 3600, "expires")):
                with self.subTest(form=form, word=word):
                    list_file = self.file(form.format(expiry + epoch))
                    shown = datetime.datetime.utcfromtimestamp(expiry).strftime("%Y-%m-%dT%H:%M:%S.000Z")
                    self.assertIn(f"\n{word} {shown}\n", run("leap", "check", list_file).stdout)
                    whole = json_lines(run("leap", "check", "--json", list_file).stdout)[0]
                    self.assertEqual((shown, word == "expired"), (whole["expires"], whole["expired"]))

    def test_a_file_that_may_be_cut_is_loaded_by_force_alone(self):
        lines = "; comment\n18,19,2036,1"
        for text in (lines, "18,19,2036,1\n; cut", "x" * 2_000_000):
            with self.subTest(text=text[:30]):
                name = self.file(text)
                result = run("leap", "load", name)
                self.assertEqual((1, ""), (result.returncode, result.stdout))
                self.assertEqual(f"vortime: the last line of {name} has no line end; the file may have been cut, and only "
                                 "--force takes it\n", result.stderr)
                self.assertIn("leap load refuses it", run("leap", "check", name).stderr)
        self.assertEqual((0, 19), self.load(self.file(lines), "--force"))
        for whole in (lines + "\n", lines + "\r\n", lines + "\n" + "; more\n" * 200_000):
            with self.subTest(whole=whole[:60]):
                name = self.file(whole)
                self.assertEqual("", run("leap", "check", name).stderr)
                self.assertEqual(run("leap", "load", name, "--force").stdout, run("leap", "load", name).stdout)
        self.assertEqual(self.load(self.file(lines + "\n")), self.load(self.file(lines + "\n" + "; more\n" * 200_000)))

    def test_what_is_no_regular_file_is_not_loaded(self):
        device = "NUL" if tool_runner.is_windows() else os.devnull
        for options in ((), ("--force",)):
            with self.subTest(options=options):
                result = run("leap", "load", device, *options)
                self.assertEqual((3, "", f"vortime: cannot read {device}: not a regular file\n"),
                                 (result.returncode, result.stdout, result.stderr))

    def load(self, name, *options):
        result = run("leap", "load", "--json", name, *options)
        return result.returncode, json_lines(result.stdout)[0]["after"]["future"]

    def test_a_forced_leap_second_in_a_replay(self):
        summary = json_lines(run("replay", "-q", "--json", "--leap-file", self.file("20,20,1929,7\n"),
                                 SAMPLES / "isync.log").stdout)[-1]
        self.assertEqual((20, "Forced"), (summary["leap_seconds"], summary["leap_record"]["source"]))


class Zone(unittest.TestCase):
    def test_list(self):
        zones = json_lines(run("zone", "list", "--json").stdout)
        self.assertGreater(len(zones), 130)
        self.assertEqual(sorted(z["display"] for z in zones), [z["display"] for z in zones])
        self.assertEqual("Asia/Tokyo", {z["name"]: z["iana"] for z in zones}["Tokyo Standard Time"])
        self.assertEqual(len(zones), len(run("zone", "list").stdout.splitlines()))

    def test_show_map_and_resolve(self):
        self.assertEqual(-540, json_lines(run("zone", "show", "--json", "Tokyo Standard Time").stdout)[0]["bias_minutes"])
        self.assertEqual("W. Europe Standard Time\n", run("zone", "map", "Europe/Berlin").stdout)
        self.assertEqual("Europe/Berlin\n", run("zone", "map", "W. Europe Standard Time").stdout)
        self.assertEqual("W. Europe Standard Time\n", run("zone", "resolve", "Europe/Berlin").stdout)
        self.assertEqual("W. Europe Standard Time\n", run("zone", "resolve", "W. Europe Standard Time").stdout)
        self.assertEqual([{"name": "Europe/Berlin", "resolved": "W. Europe Standard Time", "by": "name"}],
                         json_lines(run("zone", "resolve", "--json", "Europe/Berlin").stdout))

    def test_resolve_falls_back_on_a_bias_that_is_given_and_says_so(self):
        for bias in ("-540", "0", "-60"):
            with self.subTest(bias=bias):
                answer = json_lines(run("zone", "resolve", "Nowhere", "--bias", bias, "--json").stdout)[0]
                self.assertEqual(("Nowhere", "bias"), (answer["name"], answer["by"]))
                zone = json_lines(run("zone", "show", "--json", answer["resolved"]).stdout)[0]
                self.assertEqual(int(bias), zone["bias_minutes"])
                result = run("zone", "resolve", "Nowhere", "--bias", bias)
                self.assertEqual((0, f"{answer['resolved']} (by the bias {bias} min; the name Nowhere is unknown)\n"),
                                 (result.returncode, result.stdout))
        # A name that is known needs no bias.
        self.assertEqual("W. Europe Standard Time\n", run("zone", "resolve", "Europe/Berlin", "--bias", "-540").stdout)

    def test_unknown_names_end_with_1(self):
        unknown = "neither a Windows nor an IANA zone name of the table: "
        for arguments, text in ((("show", "Nowhere"), "no zone of the system has the key name Nowhere"),
                                (("map", "Nowhere"), unknown + "Nowhere"),
                                (("resolve", "Nowhere"), "no zone has the name Nowhere"),
                                (("resolve", "europe/berlin"), "no zone has the name europe/berlin"),
                                (("resolve", "Factory"), "no zone has the name Factory"),
                                (("resolve", "Tokyo Standard Time\\"), "no zone has the name Tokyo Standard Time\\"),
                                (("resolve", "Nowhere", "--bias", "7"), "no zone has the name Nowhere or the bias 7 min"),
                                (("show", ""), "a zone name must not be empty"), (("map", ""), "a zone name must not be empty"),
                                (("resolve", ""), "a zone name must not be empty"),
                                (("resolve", "", "--bias", "0"), "a zone name must not be empty")):
            for json in ((), ("--json",)):
                with self.subTest(arguments=arguments, json=json):
                    result = run("zone", *arguments, *json)
                    self.assertEqual((1, "", f"vortime: {text}\n"), (result.returncode, result.stdout, result.stderr))

    def test_resolve_answers_what_it_knows_alone(self):
        """Key names by themselves, IANA names of the table by their key name, and none of their neighbours."""
        for zone in json_lines(run("zone", "list", "--json").stdout)[::50]:
            with self.subTest(zone=zone["name"]):
                for name in filter(None, (zone["name"], zone["iana"])):
                    answer = json_lines(run("zone", "resolve", "--json", name).stdout)[0]
                    self.assertEqual("name", answer["by"])
                    self.assertEqual(zone["iana"], json_lines(run("zone", "show", "--json", answer["resolved"]).stdout)[0]["iana"])
                for name in (zone["name"] + "x", zone["name"][1:], zone["iana"] + "x", zone["iana"][:-1] + " "):
                    result = run("zone", "resolve", name)
                    self.assertEqual((1, ""), (result.returncode, result.stdout))

    def test_current(self):
        shown = json_lines(run("zone", "current", "--json", env=dict(os.environ, TZ="Asia/Tokyo")).stdout)[0]
        self.assertEqual((540, "Tokyo Standard Time"), (shown["utc_offset_minutes"], shown["name"]))


if __name__ == "__main__":
    tool_runner.main()
