"""What the tool reads in receiver data, compared with what independent decoders read there: the checks for a set of files."""
import collections
import csv
import datetime
import json
import pathlib
import re

import tool_runner

TIME_SENTENCES = ("RMC", "ZDA", "GGA", "GLL")
DATED = ("RMC", "ZDA")
HEX_FIELDS = ("valid", "fl", "fl2")


class FactSetC:
    """Files of receiver data and the facts about them.

    FACTS.tsv has the columns file, fact and value. Its column kind tells what a file holds; without it, the folder does. The
    tables of a file stand beside FACTS.tsv, under the path or the bare name of the file.
    """

    def __init__(self, data, facts):
        self.data, self.tables = data, facts
        self.kinds = {}
        self.facts = collections.defaultdict(lambda: collections.defaultdict(list))
        for row in read_table(facts / "FACTS.tsv"):
            self.kinds[row["file"]] = row.get("kind") or row["file"].split("/")[0]
            self.facts[row["file"]][row["fact"]].append(row["value"])

    def names(self, kind):
        return [name for name, is_kind in self.kinds.items() if is_kind == kind]

    def names_with_rows(self, kind):
        return [name for name in self.names(kind) if self.table(name, ".facts.tsv").exists()]

    def path(self, name):
        return self.data / name

    def table(self, name, suffix):
        beside = self.tables / (name + suffix)
        return beside if beside.exists() else self.tables / (pathlib.Path(name).name + suffix)

    def rows(self, name, suffix):
        return read_table(self.table(name, suffix))


def read_table(path):
    with open(path, encoding="utf-8") as file:
        return list(csv.DictReader(file, delimiter="\t", quoting=csv.QUOTE_NONE))


def replay(path):
    result = tool_runner.run("replay", "--json", path)
    assert result.returncode in (0, 1), result
    return tool_runner.json_lines(result.stdout)


def instant(text):
    return datetime.datetime.strptime(text, "%Y-%m-%dT%H:%M:%S.%fZ")


def milliseconds(delta):
    return delta // datetime.timedelta(milliseconds=1)


class NmeaChecks:
    def check_sentences(self, facts, name):
        objects = replay(facts.path(name))
        read = collections.defaultdict(list)
        for o in objects:
            if o.get("format") == "nmea" and o["message"][2:] in TIME_SENTENCES:
                read[o["line"], o["message"]].append(o)
        for row in facts.rows(name, ".facts.tsv"):
            with self.subTest(file=name, line=row["line"], sentence=row["sentence"]):
                self.check_sentence(row, read.pop((int(row["line"]), row["sentence"]), []))
        self.assertEqual({}, dict(read), "messages that the facts do not have")
        self.check_nmea_totals(facts, name, objects)

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

    def check_nmea_totals(self, facts, name, objects):
        stated = facts.facts[name]
        dated = [o for o in objects if "utc" in o and o.get("format") == "nmea"]
        for fact_name, index in (("first_dated", 0), ("last_dated", -1)):
            for fact in stated[fact_name]:
                o = dated[index]
                self.assertEqual(fact, f"{o['message']} {o['utc']} week {o['week']} ms {o['ms']}")
        for fact in stated["steps_over_2s_or_back"]:
            steps = []
            for before, after in zip(dated, dated[1:]):
                step = milliseconds(instant(after["utc"]) - instant(before["utc"]))
                if step > 2000 or step < 0:
                    steps.append(f"line {after['line']}: {step:+d} ms")
            self.assertEqual(fact, "; ".join(steps[:fact.count(";") + 1]) or "none")
        for fact in stated["gpsdecode_against_receiver_date"]:
            self.check_independent_decoder(facts, name, fact, dated)

    def check_independent_decoder(self, facts, name, fact, dated):
        """gpsdecode moves dates that it finds too old on by 1024 weeks."""
        rollover = datetime.timedelta(weeks=1024)
        times = {instant(o["utc"]) for o in dated}
        counts = collections.Counter()
        for row in facts.rows(name, ".gpsdecode.tsv"):
            if row["time"] != "-":
                time = instant(row["time"])
                counts["equal" if time in times else "moved" if time - rollover in times else "other"] += 1
        self.assertEqual(fact, f"{counts['equal']} times equal, {counts['moved']} times moved by +1024 weeks, "
                               f"{counts['other']} other, of {sum(counts.values())}")


class UbxChecks:
    def raw_of(self, row):
        fields = {}
        for field in row["fields"].split(";"):
            name, _, value = field.partition("=")
            if value:
                fields[name] = int(value, 16 if name in HEX_FIELDS else 10)
        return fields

    def check_frames(self, facts, name):
        objects = replay(facts.path(name))
        read = {o["offset"]: o for o in objects if o.get("format") == "ubx" and "raw" in o}
        for row in facts.rows(name, ".facts.tsv"):
            if not row["message"].startswith("NAV-"):
                continue
            with self.subTest(file=name, offset=row["offset"]):
                o = read.pop(int(row["offset"]))
                self.assertEqual(row["message"], o["message"])
                self.assertEqual(self.raw_of(row), o["raw"])
                calendar = re.search(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d", row["fields"])
                if calendar:
                    stated = datetime.datetime.fromisoformat(calendar[0])
                    stated += datetime.timedelta(milliseconds=round(o["raw"]["nano"] / 1e6))
                    self.assertEqual(stated, instant(o["utc"]))
        self.assertEqual({}, read, "frames that the facts do not have")
        self.check_ubx_totals(facts, name, objects)

    def check_ubx_totals(self, facts, name, objects):
        stated = facts.facts[name]
        whole = objects[-1]["messages"]
        frames = sum(n for message, n in whole.items() if message.startswith(("NAV-", "UBX-")))
        self.assertEqual(stated["valid_frames"], [str(frames)])
        for fact, values in stated.items():
            if fact.endswith("_count") and fact.startswith("NAV-"):
                self.assertEqual(values, [str(whole[fact[:-len("_count")]])])
        for value in stated.get("gpsdecode_leapseconds", []):
            self.assertEqual(int(value), objects[-1]["leap_seconds"])

    def check_gps_against_utc(self, path):
        """Times of one epoch agree, whether the receiver states GPS time or UTC. Returns the number of pairs."""
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


class GpsdChecks:
    def check_reports(self, facts, name):
        with self.subTest(file=name):
            stated = facts.facts[name]
            objects = replay(facts.path(name))
            reports = [o for o in objects if o.get("format") == "gpsd" and o["type"] != "leap_statement"]
            classes = dict(re.findall(r"(TPV|SKY)=(\d+)", stated["classes"][0]))
            self.assertEqual(int(classes["TPV"]), len(reports))
            self.assertEqual(sum(map(int, classes.values())), objects[-1]["reports"])
            times = [o["utc"] for o in reports if "utc" in o]
            self.assertEqual(stated["tpv_first_last_time"], [f"{times[0]} {times[-1]}"])
            counts = sorted({o["raw"]["leapseconds"] for o in reports if "raw" in o})
            self.assertEqual(stated.get("leapseconds", ["[]"]), [str(counts)])


class RinexChecks:
    def check_leap_lines(self, facts, name):
        """Returns how many leap second records were compared."""
        checked = 0
        leaps = {o["line"]: o for o in replay(facts.path(name)) if o.get("message") == "LEAP SECONDS"}
        for fact, values in facts.facts[name].items():
            if fact.startswith("leap_line_"):
                with self.subTest(file=name, fact=fact):
                    o = leaps.pop(int(fact[len("leap_line_"):]))
                    fields = dict(re.findall(r"(\w+)=(\d+)", values[0]))
                    self.assertEqual({k: int(v) for k, v in fields.items()}, o["raw"])
                    checked += 1
        self.assertEqual({}, leaps, name)
        return checked

    def outcome(self, path):
        """What became of the leap second record of a file: the outcome, its warnings, and the summary."""
        objects = replay(path)
        o = [o for o in objects if o.get("message") == "LEAP SECONDS"][0]
        return o.get("outcome") or o["reason"], o.get("signs", []), objects[-1]

    def check_announcement(self, path, week, day, count):
        outcome, signs, summary = self.outcome(path)
        self.assertEqual(("accepted", []), (outcome, signs))
        self.assertEqual({"source": "GPS", "current": count, "future": count + 1, "week": week, "day": day,
                          "known": True}, summary["leap_record"])
        self.assertEqual(count, summary["leap_seconds"])

    def check_wrong_announcement(self, path, outcome, signs):
        found, found_signs, summary = self.outcome(path)
        self.assertEqual((outcome, signs), (found, found_signs))
        self.assertEqual(0, summary["leap_changes"])


class LeapListChecks:
    def check_leap_list(self, facts, name):
        with self.subTest(file=name):
            shown = json.loads(tool_runner.run("leap", "check", "--json", facts.path(name)).stdout)
            stated = facts.facts[name]
            self.assertEqual(stated["entries"], [str(len(shown["entries"]))])
            for fact in stated["entry"]:
                utc, gps, week, day = re.search(r"utc=(\S+) .*GPS-UTC=(\d+) effectivity_week=(\d+) day=(\d+)", fact).groups()
                self.assertIn({"utc": utc, "gps_minus_utc": int(gps), "week": int(week), "day": int(day)}, shown["entries"])
            for fact in ("updated", "expires"):
                for value in stated[fact]:
                    if re.match(r"\d+ ", value):
                        self.assertEqual(value.split()[1], shown[fact])


class ReplayChecks:
    def summary(self, path, *options):
        result = tool_runner.run("replay", "--json", "--quiet", *options, path)
        return tool_runner.json_lines(result.stdout)[-1]

    def check_unread_format(self, path):
        with self.subTest(file=path.name):
            summary = replay(path)[-1]
            self.assertEqual("summary", summary["type"])
            self.assertEqual(0, summary["corrections"])
