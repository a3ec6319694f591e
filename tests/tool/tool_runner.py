"""Runs the tool for the tests beside this file. The command that starts it is the script's arguments."""
import json
import os
import pathlib
import shutil
import subprocess
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SAMPLES = ROOT / "samples"
SKIPPED = 77
COMMAND = []
TIMEOUT = 120


def extra_data_folder():
    """The folder of receiver data that the repository may not hold; None where it is missing."""
    folder = pathlib.Path(os.environ.get("VORTIME_SHARED_DATA", ROOT.parent / "shared" / "data"))
    return folder if (folder / "FACTS.tsv").is_file() else None


def is_windows():
    return COMMAND[-1].endswith(".exe")


def run(*arguments, **options):
    """Runs the tool to its end and returns the finished process, with its output as text."""
    options.setdefault("timeout", TIMEOUT)
    options.setdefault("encoding", "utf-8")
    options.setdefault("stdin", subprocess.DEVNULL if "input" not in options else None)
    if options["stdin"] is None:
        del options["stdin"]
    return subprocess.run(COMMAND + [str(a) for a in arguments], stdout=subprocess.PIPE, stderr=subprocess.PIPE, **options)


def json_lines(text):
    return [json.loads(line) for line in text.splitlines()]


def sentence(body):
    """An NMEA sentence with its checksum and line end."""
    checksum = 0
    for c in body:
        checksum ^= ord(c)
    return f"${body}*{checksum:02X}\r\n"


def main():
    # By full path: some tests run it with another PATH.
    COMMAND[:] = [os.path.abspath(a) if os.path.exists(a) else shutil.which(a) or a for a in sys.argv[1:]]
    if not COMMAND:
        sys.exit("usage: " + sys.argv[0] + " COMMAND...")
    program = unittest.main(argv=sys.argv[:1], verbosity=1, exit=False)
    for test, reason in program.result.skipped:
        # Read by tools/count_tests.py.
        print(f"[  SKIPPED ] {type(test).__name__}.{test._testMethodName}: {reason}")
    sys.exit(not program.result.wasSuccessful())
