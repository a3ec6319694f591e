#!/usr/bin/env python3
"""Compares what the tool reads in samples/ with what independent decoders read there, and in data made here with how it
was made."""
import datetime
import os
import pathlib
import re
import struct
import tempfile
import unittest

import fact_checks
import tool_runner
from fact_checks import instant, milliseconds, replay
from tool_runner import SAMPLES

FACTS = fact_checks.FactSetC(SAMPLES, pathlib.Path(__file__).parent / "facts")
ROLLOVER = datetime.timedelta(weeks=1024)


class MadeData(unittest.TestCase):
    """A folder for files that a test writes."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory(dir=os.getcwd())
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def write(self, name, content):
        path = self.folder / name
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return path


def sentence(body):
    checksum = 0
    for c in body.encode():
        checksum ^= c
    return f"${body}*{checksum:02X}"


def zda(time):
    return sentence(f"GPZDA,{time:%H%M%S}.{time.microsecond // 10000:02},{time:%d,%m,%Y},00,00")


def rmc(time):
    return sentence(f"GPRMC,{time:%H%M%S}.{time.microsecond // 10000:02},A,2200.11,S,01756.36,W,9.1,215.1,{time:%d%m%y},,,A")


class Nmea(unittest.TestCase, fact_checks.NmeaChecks):
    def test_receiver_logs(self):
        names = FACTS.names_with_rows("nmea")
        self.assertEqual(9, len(names))
        for name in names:
            self.check_sentences(FACTS, name)


class HostTime(MadeData, fact_checks.ReplayChecks):
    START = datetime.datetime(2014, 8, 1)

    def log(self, shown_minus_true=datetime.timedelta()):
        """300 s of ZDA and RMC, which arrive 115 and 362 ms after their times."""
        lines = []
        for second in range(300):
            time = self.START + datetime.timedelta(seconds=second)
            for write, delay in ((zda, 115), (rmc, 362)):
                host = time + datetime.timedelta(milliseconds=delay)
                lines.append(f"{host:%Y-%m-%dT%H:%M:%S.%f}Z {write(time + shown_minus_true)}\n")
        return self.write("host.txt", "".join(lines))

    def check_delays(self, path, delay_of):
        observations = [o for o in replay(path) if o["type"] == "observation"]
        for o in observations:
            self.assertEqual(delay_of[o["message"]], milliseconds(instant(o["host"]) - instant(o["utc"])))
        return observations

    def test_calendar_time_before_each_line(self):
        self.assertEqual(600, len(self.check_delays(self.log(), {"GPZDA": 115, "GPRMC": 362})))

    def test_milliseconds_since_1970_behind_each_line(self):
        lines = []
        for number in range(40):
            time = datetime.datetime(2023, 11, 7, 23, 42, 57) + datetime.timedelta(seconds=12 * number)
            host = milliseconds(time - datetime.datetime(1970, 1, 1)) + 566
            lines.append(f"NMEA,{rmc(time)},{host}\r\n")
        self.assertEqual(40, len(self.check_delays(self.write("phone.txt", "".join(lines)), {"GPRMC": 566})))

    def test_week_rollover_against_the_host(self):
        path = self.log(-ROLLOVER)
        self.assertEqual(600, self.summary(path)["signs"]["week-rollover"])
        strict = self.summary(path, "--strict")
        self.assertEqual((0, 0, {"strict": 600}), (strict["used"], strict["corrections"], strict["refused"]))
        self.assertEqual({}, self.summary(self.log())["signs"])


class Ubx(unittest.TestCase, fact_checks.UbxChecks):
    def test_receiver_logs(self):
        names = FACTS.names_with_rows("ubx")
        self.assertEqual(3, len(names))
        pairs = 0
        for name in names:
            self.check_frames(FACTS, name)
            pairs += self.check_gps_against_utc(FACTS.path(name))
        self.assertEqual(31, pairs)

    def test_times_of_a_log_that_an_independent_decoder_read(self):
        name = "ublox-neo-m8t.log"
        read = {o["utc"] for o in replay(FACTS.path(name)) if o["type"] == "observation"}
        self.assertEqual({row["time"] for row in FACTS.rows(name, ".gpsdecode.tsv")}, read)


def ubx_frame(message_class, message_id, payload):
    body = bytes([message_class, message_id]) + struct.pack("<H", len(payload)) + payload
    a = b = 0
    for byte in body:
        a = (a + byte) & 0xFF
        b = (b + a) & 0xFF
    return b"\xb5\x62" + body + bytes([a, b])


def time_gps(itow, week, leap, valid, accuracy):
    return ubx_frame(0x01, 0x20, struct.pack("<IihbBI", itow, 0, week, leap, valid, accuracy))


def time_ls(itow, source, count, valid):
    return ubx_frame(0x01, 0x26, struct.pack("<IB3xBbBbiHH3xB", itow, 0, source, count, 2, 0, -1000, 1929, 7, valid))


class MadeUbx(MadeData):
    def test_whole_and_valid_frames_are_read(self):
        path = self.write("good.ubx", time_gps(1000, 2300, 18, 7, 20) + time_ls(1000, 2, 18, 3))
        objects = replay(path)
        self.assertEqual({"itow": 1000, "ftow": 0, "week": 2300, "leap": 18, "valid": 7, "tacc": 20}, objects[0]["raw"])
        self.assertEqual(("observation", 2300, 1000), tuple(objects[0][k] for k in ("type", "week", "ms")))
        self.assertEqual(["NAV-TIMELS"], [o["message"] for o in objects if o["type"] == "leap_statement"])

    def test_broken_headers_give_no_time(self):
        good = time_gps(1000, 2300, 18, 7, 20)
        broken = (b"\xb5\x63" + good[2:], b"\x62\xb5" + good[2:], good[1:], good[:4] + b"\xff\xff" + good[6:], good[:-1])
        for data in broken:
            with self.subTest(data=data):
                objects = replay(self.write("broken.ubx", data))
                self.assertEqual(["summary"], [o["type"] for o in objects if o["type"] != "refusal"])
                self.assertEqual({}, objects[-1]["messages"])

    def test_invalid_leap_counts_are_not_taken(self):
        path = self.write("glonass.ubx", time_gps(1000, 2300, 18, 3, 0xFFFFFFFF) + time_ls(1000, 6, 18, 2))
        objects = replay(path)
        self.assertEqual(["leap-not-valid"], [o["reason"] for o in objects if o.get("message") == "NAV-TIMELS"])
        signs = {sign for o in objects for sign in o.get("signs", []) if isinstance(o["signs"], list)}
        self.assertEqual({"leap-unknown", "no-accuracy"}, signs)


class Gpsd(unittest.TestCase, fact_checks.GpsdChecks):
    def test_reports(self):
        names = FACTS.names("gpsd")
        self.assertEqual(4, len(names))
        for name in names:
            self.check_reports(FACTS, name)


def rinex_line(content, label):
    return f"{content:<60}{label}\n"


class MadeRinex(MadeData, fact_checks.RinexChecks):
    """Leap second records as receivers and services have written them."""

    def navigation_file(self, leap_line, system, epoch):
        return self.write("made.rnx", rinex_line("     3.04           N: GNSS NAV DATA    " + system, "RINEX VERSION / TYPE") +
                          rinex_line(leap_line, "LEAP SECONDS") + rinex_line("", "END OF HEADER") + epoch + "\n")

    def test_announcements_are_taken_at_the_date_of_the_file(self):
        for line, epoch, week, day, count in (("    16    17  1851     3", "E12 2015 06 19 02 10 00 -.138D-02", 1851, 3, 16),
                                              ("    17    18  1929     7", "E08 2016 09 10 23 50 00 3.381D-04", 1929, 7, 17)):
            with self.subTest(line=line):
                self.check_announcement(self.navigation_file(line, "E: GALILEO", epoch), week, day, count)

    def test_wrong_announcements_are_named(self):
        new_year = "G01 2021 01 01 00 00 00 1.0D-04"
        for line, system, epoch, outcome, signs in (
                ("    18    18  2185     7GPS", "M: MIXED", new_year, "leap-invalid", ["leap-week", "leap-day"]),
                ("    18    18   137     7", "E: GALILEO", "E05 2024 07 27 23 40 00 0.4D-02", "leap-invalid",
                 ["leap-week", "leap-day"]),
                ("     4     4   573     6", "C: BEIDOU", "C01 2021 01 01 00 00 00 1.0D-04", "leap-invalid",
                 ["leap-count", "leap-day", "leap-system"]),
                ("    15    15  1573    64", "G: GPS", "G03 2010 03 12 00 00 00 1.0D-04", "leap-invalid", ["leap-day"]),
                ("    16        1694     7", "J: QZSS", "J01 2014 03 12 00 00 00 1.0D-04", "leap-incomplete", []),
                ("    16     0     0     0", "G: GPS", "G01 2015 03 12 00 00 00 1.0D-04", "agrees", [])):
            with self.subTest(line=line):
                self.check_wrong_announcement(self.navigation_file(line, system, epoch), outcome, signs)


class LeapLists(MadeData, fact_checks.LeapListChecks):
    NTP_TO_UNIX = 2208988800

    def test_the_list_of_the_tz_database(self):
        self.assertEqual(1, len(FACTS.names("leap")))
        for name in FACTS.names("leap"):
            self.check_leap_list(FACTS, name)

    def test_the_other_form_gives_the_same_entries(self):
        shown = self.check("leapseconds-tzdata-2026b", SAMPLES)
        ntp = [(milliseconds(instant(e["utc"]) - datetime.datetime(1970, 1, 1)) // 1000 + self.NTP_TO_UNIX,
                e["gps_minus_utc"] + 19) for e in shown["entries"]]
        expiry = milliseconds(instant(shown["expires"]) - datetime.datetime(1970, 1, 1)) // 1000 + self.NTP_TO_UNIX
        self.write("made.list", f"#$\t3676924800\n#@\t{expiry}\n2272060800\t10\t# 1 Jan 1972\n" +
                   "".join(f"{seconds}\t{count}\t# made\n" for seconds, count in ntp))
        made = self.check("made.list", self.folder)
        self.assertEqual("2016-07-08T00:00:00.000Z", made["updated"])
        self.assertEqual(shown["expires"], made["expires"])
        # This form begins with the count of 1972-01-01, which no leap second made.
        self.assertEqual(shown["entries"], made["entries"][1:])

    def check(self, name, folder):
        result = tool_runner.run("leap", "check", "--json", folder / name)
        self.assertEqual(0, result.returncode, result.stderr)
        return tool_runner.json_lines(result.stdout)[0]


class OtherData(unittest.TestCase, fact_checks.ReplayChecks):
    def test_formats_that_are_not_read_give_no_correction(self):
        paths = sorted((SAMPLES / "other-formats").iterdir())
        self.assertEqual(10, len(paths))
        for path in paths:
            self.check_unread_format(path)


class BadData(MadeData, fact_checks.ReplayChecks):
    """No observation that shows a sign of a fault is used with --strict."""

    def test_week_rollover_within_a_log(self):
        path = SAMPLES / "gp-320fw-2019-04-07-coldboot.log"
        # All that follow the first observation.
        self.assertEqual((8, 7), (self.summary(path)["used"], self.summary(path)["signs"]["week-rollover"]))
        strict = self.summary(path, "--strict")
        self.assertEqual((1, 0), (strict["used"], strict["corrections"]))

    def test_week_rollover_against_a_date_given_by_hand(self):
        path = SAMPLES / "april6_2019.log"
        self.assertEqual({}, self.summary(path)["signs"])
        strict = self.summary(path, "--strict", "--date", "2019-03-14")
        self.assertEqual({"void": 1, "bad-date": 1, "strict": 1}, strict["refused"])

    def test_time_step_of_minutes(self):
        path = SAMPLES / "bt451.log"
        self.assertEqual(1, self.summary(path)["signs"]["time-step"])
        self.assertEqual(1, self.summary(path)["corrections"])
        self.assertEqual(0, self.summary(path, "--strict")["corrections"])

    def test_gaps_are_no_steps(self):
        summary = self.summary(SAMPLES / "nl2008u.log")
        self.assertEqual((18, 0, {}), (summary["used"], summary["corrections"], summary["signs"]))

    def test_missing_dates(self):
        path = self.write("dateless.log", "".join(sentence(f"GPZDA,1201{s:02},,,,,") + "\r\n" for s in range(0, 60, 2)))
        summary = self.summary(path)
        self.assertEqual((0, {"no-date": 30}), (summary["used"], summary["refused"]))

    def test_missing_checksums(self):
        start = datetime.datetime(2021, 5, 4, 3, 2, 1)
        whole = [rmc(start), zda(start)]
        path = self.write("bare.nmea", "".join(re.sub(r"\*..$", "", s) + "\r\n" for s in whole))
        self.assertEqual(2, self.summary(path)["used"])
        self.assertEqual({"strict": 2}, self.summary(path, "--strict")["refused"])
        self.assertEqual({}, self.summary(self.write("whole.nmea", "\r\n".join(whole) + "\r\n"), "--strict")["refused"])

    def test_wrong_checksums(self):
        start = datetime.datetime(2021, 5, 4, 3, 2, 1)
        path = self.write("wrong.nmea", rmc(start)[:-2] + "ZZ\r\n" + zda(start).replace(",2021,", ",2022,") + "\r\n")
        summary = self.summary(path)
        self.assertEqual((0, 2), (summary["used"], summary["bad_checksums"]))

    def test_cut_and_interleaved_sentences(self):
        self.assertEqual({"cut": 1}, self.summary(SAMPLES / "isync.log")["refused"])


if __name__ == "__main__":
    tool_runner.main()
