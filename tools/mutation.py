#!/usr/bin/env python3
"""Changes the library's sources in small ways and checks that the unit tests notice each change.

mutation.py --plan tests/mutation/plan.tsv --accepted tests/mutation/accepted.tsv [--mutants 320] [--seed 1] [--jobs 2]
mutation.py --recheck --accepted tests/mutation/accepted.tsv [--jobs 2]

plan.tsv names, for each source file, the test programs that must notice (tab-separated; a program may be followed by
":" and a gtest filter). accepted.tsv lists survivors that change nothing a test could see, with the reason and the
area of the program mutation_probe that shows it. Works on copies of the tree under build/mutation; the tree itself is
never touched. Exit code 1 when fewer than --at-least percent of the mutants are noticed.

--recheck makes each accepted change and compares the area's digest with that of the unchanged sources. Another digest
proves the reason wrong. Where another small change of the same line leaves the digest alone too, whatever it is, the probe
does not reach the line. Either gives exit code 1.
"""
import argparse
import collections
import concurrent.futures
import contextlib
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutation"

# (pattern, replacement): each match in code is one possible mutant.
RULES = [
    (r"(?<![<>=!\-])<(?![<=])(?= )", "<="), (r" <= ", " < "), (r"(?<![<>=!\-])>(?![>=])(?= )", ">="), (r" >= ", " > "),
    (r" == ", " != "), (r" != ", " == "), (r" && ", " || "), (r" \|\| ", " && "),
    (r"(?<=[\w)\]]) \+ (?=[\w(])", " - "), (r"(?<=[\w)\]]) - (?=[\w(])", " + "),
    (r"(?<=[\w)\]]) \* (?=[\w(])", " / "), (r"(?<=[\w)\]]) / (?=[\w(])", " * "), (r"(?<=[\w)\]]) % (?=[\w(])", " / "),
    (r" \+= ", " -= "), (r" -= ", " += "), (r"\+\+", "--"), (r"(?<![\w.'])(\d+)(?![\w.'])", "@next"),
    (r"\btrue\b", "false"), (r"\bfalse\b", "true"), (r"(?<=[( ])!(?=[\w(])", ""), (r"^(\s+)(return;)$", "@drop"),
    (r"^\s+[\w.>:\-]+\([^;{}]*\);$", "@drop"), (r"^\s+[\w.>\-]+ [+\-]?= [^;{}]*;$", "@drop"),
]
NOT_CODE = re.compile(r"^\s*(//|#|namespace|using|static_assert|template|extern|\}|class|struct)|KTX_TIM_API")


class Mutant:
    def __init__(self, path, number, label, before, after):
        self.path, self.number, self.label, self.before, self.after = path, number, label, before, after

    def name(self):
        return f"{self.path}\t{self.label}\t{self.after.strip() or '(dropped)'}"

    def place(self):
        return f"{self.path}:{self.number}: {self.before.strip()}  ->  {self.after.strip() or '(dropped)'}"


def without_texts(line):
    """The line with comments and the insides of texts blanked, so that columns stay."""
    line = re.sub(r'"(?:[^"\\]|\\.)*"', lambda m: '"' + "_" * (len(m[0]) - 2) + '"', line)
    line = re.sub(r"'(?:[^'\\]|\\.)'", lambda m: "'" + "_" * (len(m[0]) - 2) + "'", line)
    return re.sub(r"//.*", lambda m: "_" * len(m[0]), line)


def changed(line, match, replacement):
    if replacement == "@drop":
        return ""
    if replacement == "@next":
        replacement = str(int(match[0]) + 1)
    return line[:match.start()] + replacement + line[match.end():]


def labelled_lines(path):
    """Number, line, and the line as accepted.tsv names it: with [n] behind it where the file holds it more than once."""
    lines = (ROOT / path).read_text(encoding="utf-8").split("\n")
    counts = collections.Counter(line.strip() for line in lines)
    seen = collections.Counter()
    for number, line in enumerate(lines, 1):
        label = line.strip()
        seen[label] += 1
        yield number, line, f"{label} [{seen[label]}]" if counts[label] > 1 else label


def mutants_of(path):
    found = []
    for number, line, label in labelled_lines(path):
        if NOT_CODE.match(line):
            continue
        plain = without_texts(line)
        for pattern, replacement in RULES:
            for match in re.finditer(pattern, plain):
                found.append(Mutant(path, number, label, line, changed(line, match, replacement)))
    return found


def read_plan(path):
    plan = {}
    for line in pathlib.Path(path).read_text(encoding="utf-8").splitlines():
        if line and not line.startswith("#"):
            source, *programs = line.split("\t")
            plan[source] = programs
    return plan


def read_accepted(path):
    """The rows: source file, line, changed line, reason, area of the probe."""
    lines = pathlib.Path(path).read_text(encoding="utf-8").splitlines()
    return [line.split("\t") for line in lines if line and not line.startswith("#")]


def accepted_mutant(row):
    """The change of a row; None where its line is no longer there."""
    path, wanted, after = row[:3]
    for number, line, label in labelled_lines(path):
        if label == wanted:
            return Mutant(path, number, label, line, "" if after == "(dropped)" else line.replace(line.strip(), after))
    return None


def run(command, folder, timeout):
    # With paths taken relative to the copy, each finds in a compiler cache what the other has compiled.
    environment = dict(os.environ, LC_ALL="C.UTF-8", CCACHE_BASEDIR=str(folder), CCACHE_NOHASHDIR="1")
    try:
        return subprocess.run(command, cwd=folder, timeout=timeout, env=environment, stdin=subprocess.DEVNULL,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0
    except subprocess.TimeoutExpired:
        return False


class Tree:
    """A copy of the sources with a build of its own."""

    def __init__(self, index, programs):
        self.source = WORK / f"tree{index}"
        self.build = self.source / "build"
        tracked = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, check=True, capture_output=True).stdout
        shutil.rmtree(self.source, ignore_errors=True)
        for name in tracked.decode().split("\0"):
            if name and (ROOT / name).is_file():
                (self.source / name).parent.mkdir(parents=True, exist_ok=True)
                shutil.copy2(ROOT / name, self.source / name)
        if not run(["cmake", "-G", "Ninja", "-S", self.source, "-B", self.build, "-DCMAKE_BUILD_TYPE=Debug",
                    "-DCMAKE_CXX_FLAGS_DEBUG=-O0", "-DVORTIME_WERROR=OFF"], self.source, 300):
            sys.exit("mutation: the copy does not configure")
        if not run(["cmake", "--build", self.build, "--target", *programs], self.source, 3600):
            sys.exit("mutation: the copy does not build")

    def seconds(self, program):
        """What the program takes on the unchanged sources."""
        start = time.monotonic()
        if not self.passes(program, 600):
            sys.exit(f"mutation: {program} fails without any change")
        return time.monotonic() - start

    def passes(self, program, timeout):
        name, _, tests = program.partition(":")
        command = [self.build / "bin" / name, "--gtest_brief=1", "--gtest_fail_fast=1"]
        return run(command + ([f"--gtest_filter={tests}"] if tests else []), self.build, timeout)

    def digest(self, area):
        """What the probe prints of an area; None where it does not build, 'failed' where it does not end well."""
        if not run(["cmake", "--build", self.build, "--target", "mutation_probe"], self.source, 900):
            return None
        try:
            return subprocess.run([self.build / "bin" / "mutation_probe", area], cwd=self.build, timeout=300, check=True,
                                  capture_output=True).stdout
        except (subprocess.CalledProcessError, subprocess.TimeoutExpired):
            return "failed"

    @contextlib.contextmanager
    def changed(self, mutant):
        path = self.source / mutant.path
        original = path.read_text(encoding="utf-8")
        lines = original.split("\n")
        lines[mutant.number - 1] = mutant.after
        path.write_text("\n".join(lines), encoding="utf-8")
        try:
            yield
        finally:
            path.write_text(original, encoding="utf-8")

    def judge(self, mutant, programs, timeouts):
        """'noticed' (a test fails or does not end), 'survived' or 'not a program' (does not compile)."""
        with self.changed(mutant):
            for program in programs:
                build = ["cmake", "--build", self.build, "--target", program.split(":")[0]]
                if not run(build, self.source, 600):
                    return "not a program"
                if not self.passes(program, timeouts[program]):
                    return "noticed"
            return "survived"


class Recheck:
    """Makes the accepted changes and asks the probe about each."""

    def __init__(self, rows, jobs):
        self.rows = rows
        self.names = {"\t".join(row[:3]) for row in rows}
        self.trees = [Tree(index, ["mutation_probe"]) for index in range(jobs)]
        self.expected = {area: self.trees[0].digest(area) for area in sorted({row[4] for row in rows})}
        self.reached = {}
        self.faults = 0

    def fault(self, text):
        self.faults += 1
        print(text, flush=True)

    def differs(self, tree, mutant, area):
        with tree.changed(mutant):
            digest = tree.digest(area)
            return digest is not None and digest != self.expected[area]

    def is_reached(self, tree, mutant, area):
        """Whether some other change of the line shows; True where there is none to make."""
        place = (mutant.path, mutant.number, area)
        if place not in self.reached:
            others = [other for other in mutants_of(mutant.path)
                      if other.number == mutant.number and other.name() not in self.names]
            self.reached[place] = not others or any(self.differs(tree, other, area) for other in others)
        return self.reached[place]

    def check(self, tree, row):
        mutant = accepted_mutant(row)
        if mutant is None:
            self.fault(f"the line has gone: {row[0]}: {row[1]}")
        elif self.differs(tree, mutant, row[4]):
            self.fault(f"the reason is wrong ({row[3]}): {mutant.place()}")
        elif not self.is_reached(tree, mutant, row[4]):
            self.fault(f"the probe \"{row[4]}\" does not reach: {mutant.place()}")

    def run(self):
        waiting = iter(self.rows)

        def worker(tree):
            for row in waiting:
                self.check(tree, row)

        with concurrent.futures.ThreadPoolExecutor(len(self.trees)) as pool:
            for result in [pool.submit(worker, tree) for tree in self.trees]:
                result.result()
        print(f"{len(self.rows)} accepted changes made, {self.faults} faults")
        return 1 if self.faults else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--plan")
    parser.add_argument("--recheck", action="store_true")
    parser.add_argument("--accepted", required=True)
    parser.add_argument("--mutants", type=int, default=320)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--at-least", type=float, default=95.0)
    arguments = parser.parse_args()
    rows = read_accepted(arguments.accepted)
    if arguments.recheck:
        return Recheck(rows, arguments.jobs).run()
    plan = read_plan(arguments.plan)
    accepted = {"\t".join(row[:3]) for row in rows}
    candidates = [mutant for path in plan for mutant in mutants_of(path)]
    random.Random(arguments.seed).shuffle(candidates)
    candidates = [mutant for mutant in candidates if mutant.name() not in accepted]
    print(f"{len(candidates)} possible mutants in {len(plan)} files, seed {arguments.seed}", flush=True)

    programs = sorted({program for row in plan.values() for program in row})
    targets = sorted({program.split(":")[0] for program in programs})
    trees = [Tree(index, targets) for index in range(arguments.jobs)]
    timeouts = {program: 10 + 10 * trees[0].seconds(program) for program in programs}
    counts = {"noticed": 0, "survived": 0, "not a program": 0}
    waiting = iter(candidates)

    def worker(tree):
        for mutant in waiting_for(tree):
            verdict = tree.judge(mutant, plan[mutant.path], timeouts)
            counts[verdict] += 1
            if verdict == "survived":
                print(f"survived: {mutant.place()}", flush=True)
            if sum(counts.values()) % 50 == 0:
                print(f"{counts['noticed']} noticed, {counts['survived']} survived", flush=True)

    def waiting_for(_tree):
        while counts["noticed"] + counts["survived"] < arguments.mutants:
            mutant = next(waiting, None)
            if mutant is None:
                return
            yield mutant

    with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
        for result in [pool.submit(worker, tree) for tree in trees]:
            result.result()
    judged = counts["noticed"] + counts["survived"]
    percent = 100.0 * counts["noticed"] / judged if judged else 0.0
    print(f"{judged} mutants, {counts['noticed']} noticed, {counts['survived']} survived ({percent:.1f} % noticed), "
          f"{counts['not a program']} did not compile, {len(accepted)} accepted beforehand")
    return 0 if percent >= arguments.at_least else 1


if __name__ == "__main__":
    sys.exit(main())
