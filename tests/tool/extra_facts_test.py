#!/usr/bin/env python3
"""The checks of facts_test.py for receiver data that the repository may not hold. VORTIME_SHARED_DATA names its folder."""
import sys
import unittest

import fact_checks
import tool_runner
from fact_checks import replay

DATA = tool_runner.extra_data_folder()
FACTS = fact_checks.FactSetC(DATA, DATA) if DATA else None


class Nmea(unittest.TestCase, fact_checks.NmeaChecks):
    def test_receiver_logs(self):
        names = FACTS.names_with_rows("nmea")
        self.assertGreater(len(names), 10)
        for name in names:
            self.check_sentences(FACTS, name)

    def test_logs_with_host_time(self):
        names = FACTS.names_with_rows("nmea-host")
        self.assertGreater(len(names), 2)
        for name in names:
            self.check_sentences(FACTS, name)


class Ubx(unittest.TestCase, fact_checks.UbxChecks):
    def test_receiver_logs(self):
        names = FACTS.names_with_rows("ubx")
        self.assertGreater(len(names), 10)
        pairs = 0
        for name in names:
            self.check_frames(FACTS, name)
            pairs += self.check_gps_against_utc(FACTS.path(name))
        self.assertGreater(pairs, 180)

    def test_broken_headers_give_no_time(self):
        objects = replay(DATA / "ubx" / "pygpsdata-badhdr.log")
        self.assertEqual(["summary"], [o["type"] for o in objects if o["type"] != "refusal"])
        self.check_ubx_totals(FACTS, "ubx/pygpsdata-badhdr.log", objects)

    def test_invalid_leap_counts_are_not_taken(self):
        objects = replay(DATA / "ubx" / "ublox-glo-cut.ubx")
        leaps = [o for o in objects if o.get("message") == "NAV-TIMELS"]
        self.assertEqual(["leap-not-valid"], [o["reason"] for o in leaps])
        signs = {sign for o in objects for sign in o.get("signs", []) if isinstance(o["signs"], list)}
        self.assertIn("leap-unknown", signs)
        self.assertIn("no-accuracy", signs)


class Gpsd(unittest.TestCase, fact_checks.GpsdChecks):
    def test_reports(self):
        names = FACTS.names("gpsd-json")
        self.assertGreater(len(names), 4)
        for name in names:
            self.check_reports(FACTS, name)


class Rinex(unittest.TestCase, fact_checks.RinexChecks):
    def test_leap_second_records(self):
        names = FACTS.names("rinex")
        self.assertGreater(len(names), 15)
        self.assertGreater(sum(self.check_leap_lines(FACTS, name) for name in names), 15)

    def test_announcements_are_taken_at_the_date_of_the_file(self):
        for name, week, day, count in (("galileo3.15n", 1851, 3, 16), ("wroc2510.16l", 1929, 7, 17)):
            with self.subTest(file=name):
                self.check_announcement(DATA / "rinex" / name, week, day, count)

    def test_wrong_announcements_are_named(self):
        for name, outcome, signs in (
                ("AMEL00NLD_R_20210010000_01D_MN.rnx", "leap-invalid", ["leap-week", "leap-day"]),
                ("GRAS00FRA_R_20242100000_01D_EN.rnx", "leap-invalid", ["leap-week", "leap-day"]),
                ("Example_Beidou_Rinex302.n", "leap-invalid", ["leap-count", "leap-day", "leap-system"]),
                ("demo_nav3.10n", "leap-invalid", ["leap-day"]),
                ("qzss_nav3.14n", "leap-incomplete", []),
                ("RinexNavExample.15n", "agrees", [])):
            with self.subTest(file=name):
                self.check_wrong_announcement(DATA / "rinex" / name, outcome, signs)


class LeapLists(unittest.TestCase, fact_checks.LeapListChecks):
    def test_published_lists(self):
        names = [name for name in FACTS.names("leap") if FACTS.facts[name]["entries"]]
        self.assertGreater(len(names), 4)
        for name in names:
            self.check_leap_list(FACTS, name)


class OtherData(unittest.TestCase, fact_checks.ReplayChecks):
    def test_formats_that_are_not_read_give_no_correction(self):
        for folder in ("binary", "clock", "leap"):
            for path in sorted((DATA / folder).iterdir()):
                if path.suffix != ".tsv" or path.name.count(".") < 2:
                    self.check_unread_format(path)


class BadData(unittest.TestCase, fact_checks.ReplayChecks):
    """No observation that shows a sign of a fault is used with --strict."""

    def test_week_rollover_against_the_host(self):
        path = DATA / "nmea-host" / "nbp1406-pcod-2014-08-01.txt"
        self.assertEqual(600, self.summary(path)["signs"]["week-rollover"])
        strict = self.summary(path, "--strict")
        self.assertEqual((0, 0, {"strict": 600}), (strict["used"], strict["corrections"], strict["refused"]))

    def test_missing_dates(self):
        summary = self.summary(DATA / "nmea" / "plaka.log")
        self.assertEqual((0, {"no-date": 120}), (summary["used"], summary["refused"]))

    def test_missing_checksums(self):
        path = DATA / "nmea" / "nmea_no_checksum.nmea"
        self.assertEqual(2, self.summary(path)["used"])
        self.assertEqual({"strict": 2}, self.summary(path, "--strict")["refused"])


if __name__ == "__main__":
    if FACTS is None:
        print("skipped: the folder with further receiver data is missing; VORTIME_SHARED_DATA names it")
        sys.exit(tool_runner.SKIPPED)
    tool_runner.main()
