#!/usr/bin/env python3
"""Compares what the tool reads in real receiver data with what independent decoders read there."""
import collections
import csv
import datetime
import json
import re
import sys
import unittest

import tool_runner

DATA = tool_runner.data_folder()
TIME_SENTENCES = ("RMC", "ZDA", "GGA", "GLL")
DATED = ("RMC", "ZDA")
HEX_FIELDS = ("valid", "fl", "fl2")


def read_facts():
    facts = collections.defaultdict(lambda: collections.defaultdict(list))
    with open(DATA / "FACTS.tsv", encoding="utf-8") as file:
        for row in csv.DictReader(file, delimiter="\t", quoting=csv.QUOTE_NONE):
            facts[row["file"]][row["fact"]].append(row["value"])
    return facts


FACTS = read_facts() if DATA else {}


def rows(path, suffix):
    with open(str(path) + suffix, encoding="utf-8") as file:
        return list(csv.DictReader(file, delimiter="\t", quoting=csv.QUOTE_NONE))


def files(folder, suffix):
    return sorted(p for p in (DATA / folder).iterdir() if (DATA / folder / (p.name + suffix)).exists())


def replay(path):
    result = tool_runner.run("replay", "--json", path)
    assert result.returncode in (0, 1), result
    return tool_runner.json_lines(result.stdout)


def instant(text):
    return datetime.datetime.strptime(text, "%Y-%m-%dT%H:%M:%S.%fZ")


def milliseconds(delta):
    return delta // datetime.timedelta(milliseconds=1)


class NmeaFacts(unittest.TestCase):
    def check_sentences(self, path):
        objects = replay(path)
        read = collections.defaultdict(list)
        for o in objects:
            if o.get("format") == "nmea" and o["message"][2:] in TIME_SENTENCES:
                read[o["line"], o["message"]].append(o)
        facts = rows(path, ".facts.tsv")
        for row in facts:
            with self.subTest(file=path.name, line=row["line"], sentence=row["sentence"]):
                self.check_sentence(row, read.pop((int(row["line"]), row["sentence"]), []))
        self.assertEqual({}, dict(read), "messages that the facts do not have")
        self.check_totals(path, objects)

    def check_sentence(self, row, found):
        is_dated = row["sentence"][2:] in DATED
        if row["checksum"] == "bad":
            self.assertEqual(["bad-checksum"], [o.get("reason") for o in found])
        elif not is_dated:
            self.assertEqual([], found)
        if not is_dated:
            return
        self.assertEqual(1, len(found))
        read = found[0]
        if row["checksum"] == "none" and read.get("reason") != "cut":
            self.assertIn("no-checksum", read["signs"])
        self.assertEqual(None if row["utc"] == "-" else row["utc"], read.get("utc"))
        if row["utc"] == "-":
            self.assertEqual("refusal", read["type"])
        if row["gps_week"] != "-":
            self.assertEqual((int(row["gps_week"]), int(row["gps_ms"])), (read["week"], read["ms"]))
        if row["status"] == "V" and row["checksum"] == "ok":
            self.assertEqual("void", read["reason"])
        if "host_utc" in row:
            self.assertEqual(row["host_utc"], read["host"])
            if row["host_minus_utc_ms"] != "-":
                self.assertEqual(int(row["host_minus_utc_ms"]),
                                 milliseconds(instant(read["host"]) - instant(read["utc"])))

    def check_totals(self, path, objects):
        facts = FACTS[str(path.relative_to(DATA))]
        dated = [o for o in objects if "utc" in o and o.get("format") == "nmea"]
        for name, index in (("first_dated", 0), ("last_dated", -1)):
            for fact in facts[name]:
                o = dated[index]
                self.assertEqual(fact, f"{o['message']} {o['utc']} week {o['week']} ms {o['ms']}")
        for fact in facts["steps_over_2s_or_back"]:
            steps = []
            for before, after in zip(dated, dated[1:]):
                step = milliseconds(instant(after["utc"]) - instant(before["utc"]))
                if step > 2000 or step < 0:
                    steps.append(f"line {after['line']}: {step:+d} ms")
            self.assertEqual(fact, "; ".join(steps[:fact.count(";") + 1]) or "none")
        for fact in facts["gpsdecode_against_receiver_date"]:
            self.check_independent_decoder(path, fact, dated)

    def check_independent_decoder(self, path, fact, dated):
        rollover = datetime.timedelta(weeks=1024)
        times = {instant(o["utc"]) for o in dated}
        counts = collections.Counter()
        for row in rows(path, ".gpsdecode.tsv"):
            if row["time"] != "-":
                time = instant(row["time"])
                counts["equal" if time in times else "moved" if time - rollover in times else "other"] += 1
        self.assertEqual(fact, f"{counts['equal']} times equal, {counts['moved']} times moved by +1024 weeks, "
                               f"{counts['other']} other, of {sum(counts.values())}")

    def test_receiver_logs(self):
        paths = files("nmea", ".facts.tsv")
        self.assertGreater(len(paths), 10)
        for path in paths:
            self.check_sentences(path)

    def test_logs_with_host_time(self):
        paths = files("nmea-host", ".facts.tsv")
        self.assertGreater(len(paths), 2)
        for path in paths:
            self.check_sentences(path)


class UbxFacts(unittest.TestCase):
    def raw_of(self, row):
        fields = {}
        for field in row["fields"].split(";"):
            name, _, value = field.partition("=")
            if value:
                fields[name] = int(value, 16 if name in HEX_FIELDS else 10)
        return fields

    def check_frames(self, path):
        objects = replay(path)
        read = {o["offset"]: o for o in objects if o.get("format") == "ubx" and "raw" in o}
        for row in rows(path, ".facts.tsv"):
            if not row["message"].startswith("NAV-"):
                continue
            with self.subTest(file=path.name, offset=row["offset"]):
                o = read.pop(int(row["offset"]))
                self.assertEqual(row["message"], o["message"])
                self.assertEqual(self.raw_of(row), o["raw"])
                calendar = re.search(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d", row["fields"])
                if calendar:
                    stated = datetime.datetime.fromisoformat(calendar[0])
                    stated += datetime.timedelta(milliseconds=round(o["raw"]["nano"] / 1e6))
                    self.assertEqual(stated, instant(o["utc"]))
        self.assertEqual({}, read, "frames that the facts do not have")
        self.check_totals(path, objects)

    def check_totals(self, path, objects):
        facts = FACTS[str(path.relative_to(DATA))]
        whole = objects[-1]["messages"]
        frames = sum(n for name, n in whole.items() if name.startswith(("NAV-", "UBX-")))
        self.assertEqual(facts["valid_frames"], [str(frames)])
        for fact, values in facts.items():
            if fact.endswith("_count") and fact.startswith("NAV-"):
                self.assertEqual(values, [str(whole[fact[:-len("_count")]])])
        for value in facts.get("gpsdecode_leapseconds", []):
            self.assertEqual(int(value), objects[-1]["leap_seconds"])

    def check_gps_against_utc(self, path):
        """Times of one epoch agree, whether the receiver states GPS time or UTC."""
        by_epoch = collections.defaultdict(dict)
        for o in replay(path):
            if o["type"] == "observation" and o["format"] == "ubx":
                by_epoch[o["raw"]["itow"]][o["message"]] = o
        pairs = 0
        for messages in by_epoch.values():
            if "NAV-TIMEGPS" in messages and "NAV-TIMEUTC" in messages:
                gps, utc = messages["NAV-TIMEGPS"], messages["NAV-TIMEUTC"]
                self.assertLessEqual(abs(milliseconds(instant(gps["utc"]) - instant(utc["utc"]))), 1)
                self.assertEqual(gps["week"], utc["week"])
                pairs += 1
        return pairs

    def test_receiver_logs(self):
        paths = files("ubx", ".facts.tsv")
        self.assertGreater(len(paths), 10)
        pairs = 0
        for path in paths:
            self.check_frames(path)
            pairs += self.check_gps_against_utc(path)
        self.assertGreater(pairs, 180)

    def test_broken_headers_give_no_time(self):
        objects = replay(DATA / "ubx" / "pygpsdata-badhdr.log")
        self.assertEqual(["summary"], [o["type"] for o in objects if o["type"] != "refusal"])
        frames = sum(n for name, n in objects[-1]["messages"].items() if name.startswith("UBX-"))
        self.assertEqual(FACTS["ubx/pygpsdata-badhdr.log"]["valid_frames"], [str(frames)])

    def test_invalid_leap_counts_are_not_taken(self):
        objects = replay(DATA / "ubx" / "ublox-glo-cut.ubx")
        leaps = [o for o in objects if o.get("message") == "NAV-TIMELS"]
        self.assertEqual(["leap-not-valid"], [o["reason"] for o in leaps])
        signs = {sign for o in objects for sign in o.get("signs", []) if isinstance(o["signs"], list)}
        self.assertIn("leap-unknown", signs)
        self.assertIn("no-accuracy", signs)


class GpsdFacts(unittest.TestCase):
    def test_reports(self):
        names = [n for n in FACTS if n.startswith("gpsd-json/")]
        self.assertGreater(len(names), 4)
        for name in names:
            with self.subTest(file=name):
                facts = FACTS[name]
                objects = replay(DATA / name)
                reports = [o for o in objects if o.get("format") == "gpsd" and o["type"] != "leap_statement"]
                classes = dict(re.findall(r"(TPV|SKY)=(\d+)", facts["classes"][0]))
                self.assertEqual(int(classes["TPV"]), len(reports))
                self.assertEqual(sum(map(int, classes.values())), objects[-1]["reports"])
                times = [o["utc"] for o in reports if "utc" in o]
                self.assertEqual(facts["tpv_first_last_time"], [f"{times[0]} {times[-1]}"])
                counts = sorted({o["raw"]["leapseconds"] for o in reports if "raw" in o})
                self.assertEqual(facts.get("leapseconds", ["[]"]), [str(counts)])


class RinexFacts(unittest.TestCase):
    def test_leap_second_records(self):
        names = [n for n in FACTS if n.startswith("rinex/")]
        self.assertGreater(len(names), 15)
        checked = 0
        for name in names:
            leaps = {o["line"]: o for o in replay(DATA / name) if o.get("message") == "LEAP SECONDS"}
            for fact, values in FACTS[name].items():
                if not fact.startswith("leap_line_"):
                    continue
                with self.subTest(file=name, fact=fact):
                    o = leaps.pop(int(fact[len("leap_line_"):]))
                    fields = dict(re.findall(r"(\w+)=(\d+)", values[0]))
                    self.assertEqual({k: int(v) for k, v in fields.items()}, o["raw"])
                    checked += 1
            self.assertEqual({}, leaps, name)
        self.assertGreater(checked, 15)

    def outcome(self, name):
        objects = replay(DATA / "rinex" / name)
        o = [o for o in objects if o.get("message") == "LEAP SECONDS"][0]
        return o.get("outcome") or o["reason"], o.get("signs", []), objects[-1]

    def test_announcements_are_taken_at_the_date_of_the_file(self):
        for name, week, day, count in (("galileo3.15n", 1851, 3, 16), ("wroc2510.16l", 1929, 7, 17)):
            with self.subTest(file=name):
                outcome, signs, summary = self.outcome(name)
                self.assertEqual(("accepted", []), (outcome, signs))
                self.assertEqual({"source": "GPS", "current": count, "future": count + 1, "week": week, "day": day,
                                  "known": True}, summary["leap_record"])
                self.assertEqual(count, summary["leap_seconds"])

    def test_wrong_announcements_are_named(self):
        for name, outcome, signs in (
                ("AMEL00NLD_R_20210010000_01D_MN.rnx", "leap-invalid", ["leap-week", "leap-day"]),
                ("GRAS00FRA_R_20242100000_01D_EN.rnx", "leap-invalid", ["leap-week", "leap-day"]),
                ("Example_Beidou_Rinex302.n", "leap-invalid", ["leap-count", "leap-day", "leap-system"]),
                ("demo_nav3.10n", "leap-invalid", ["leap-day"]),
                ("qzss_nav3.14n", "leap-incomplete", []),
                ("RinexNavExample.15n", "agrees", [])):
            with self.subTest(file=name):
                found, found_signs, summary = self.outcome(name)
                self.assertEqual((outcome, signs), (found, found_signs))
                self.assertEqual(0, summary["leap_changes"])


class LeapFacts(unittest.TestCase):
    def test_published_lists(self):
        names = [n for n in FACTS if n.startswith("leap/") and FACTS[n]["entries"]]
        self.assertGreater(len(names), 4)
        for name in names:
            with self.subTest(file=name):
                shown = json.loads(tool_runner.run("leap", "check", "--json", DATA / name).stdout)
                facts = FACTS[name]
                self.assertEqual(facts["entries"], [str(len(shown["entries"]))])
                for fact in facts["entry"]:
                    utc, gps, week, day = re.search(r"utc=(\S+) .*GPS-UTC=(\d+) effectivity_week=(\d+) day=(\d+)",
                                                    fact).groups()
                    self.assertIn({"utc": utc, "gps_minus_utc": int(gps), "week": int(week), "day": int(day)},
                                  shown["entries"])
                for fact in ("updated", "expires"):
                    for value in facts[fact]:
                        if re.match(r"\d+ ", value):
                            self.assertEqual(value.split()[1], shown[fact])


class OtherData(unittest.TestCase):
    def test_formats_that_are_not_read_give_no_correction(self):
        for folder in ("binary", "clock", "leap"):
            for path in sorted((DATA / folder).iterdir()):
                if path.suffix == ".tsv" and path.name.count(".") > 1:
                    continue
                with self.subTest(file=path.name):
                    summary = replay(path)[-1]
                    self.assertEqual("summary", summary["type"])
                    self.assertEqual(0, summary["corrections"])


class BadData(unittest.TestCase):
    """No observation that shows a sign of a fault is used with --strict."""

    def summary(self, name, *options):
        result = tool_runner.run("replay", "--json", "--quiet", *options, DATA / name)
        return tool_runner.json_lines(result.stdout)[-1]

    def test_week_rollover_against_the_host(self):
        name = "nmea-host/nbp1406-pcod-2014-08-01.txt"
        self.assertEqual(600, self.summary(name)["signs"]["week-rollover"])
        strict = self.summary(name, "--strict")
        self.assertEqual((0, 0, {"strict": 600}), (strict["used"], strict["corrections"], strict["refused"]))

    def test_week_rollover_within_a_log(self):
        name = "nmea/gp-320fw-2019-04-07-coldboot.log"
        self.assertEqual(1, self.summary(name)["signs"]["week-rollover"])
        strict = self.summary(name, "--strict")
        self.assertEqual((1, 0), (strict["used"], strict["corrections"]))

    def test_week_rollover_against_a_date_given_by_hand(self):
        name = "nmea/april6_2019.log"
        self.assertEqual({}, self.summary(name)["signs"])
        strict = self.summary(name, "--strict", "--date", "2019-03-14")
        self.assertEqual({"void": 1, "bad-date": 1, "strict": 1}, strict["refused"])

    def test_time_step_of_minutes(self):
        self.assertEqual(1, self.summary("nmea/bt451.log")["signs"]["time-step"])
        self.assertEqual(1, self.summary("nmea/bt451.log")["corrections"])
        self.assertEqual(0, self.summary("nmea/bt451.log", "--strict")["corrections"])

    def test_gaps_are_no_steps(self):
        summary = self.summary("nmea/nl2008u.log")
        self.assertEqual((18, 0, {}), (summary["used"], summary["corrections"], summary["signs"]))

    def test_missing_dates(self):
        summary = self.summary("nmea/plaka.log")
        self.assertEqual((0, {"no-date": 120}), (summary["used"], summary["refused"]))

    def test_missing_checksums(self):
        name = "nmea/nmea_no_checksum.nmea"
        self.assertEqual(2, self.summary(name)["used"])
        self.assertEqual({"strict": 2}, self.summary(name, "--strict")["refused"])

    def test_cut_and_interleaved_sentences(self):
        self.assertEqual({"cut": 1}, self.summary("nmea/isync.log")["refused"])


if __name__ == "__main__":
    if DATA is None:
        print("skipped: the folder of receiver data is missing (set VORTIME_SHARED_DATA)")
        sys.exit(tool_runner.SKIPPED)
    tool_runner.main()
