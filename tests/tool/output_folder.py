"""A folder with a log, for tests of what the tool writes beside it."""
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

from tool_runner import COMMAND, SAMPLES, TIMEOUT, is_windows, run

LOG = SAMPLES / "isync.log"
OBSERVATIONS = 23


class InFolder(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(dir=os.getcwd())
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        shutil.copy(LOG, self.folder / "a.log")

    def replay(self, *options, log="a.log", **others):
        return run("replay", "-q", *options, log, cwd=self.folder, **others)

    def run_redirected(self, line):
        """Runs a line of the system's own shell: under Wine that one opens its files as Windows does."""
        if is_windows():
            command = COMMAND[:-1] + ["cmd", "/c", "Z:" + COMMAND[-1].replace("/", "\\") + " " + line]
        else:
            command = ["sh", "-c", '"$0" "$@" ' + line, *COMMAND]
        return subprocess.run(command, cwd=self.folder, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, encoding="utf-8", timeout=TIMEOUT)

    def files(self):
        return {path.name: path.read_bytes() for path in self.folder.iterdir()}

    def expect_refused(self, problem, *options, **others):
        """The run ends with 4 and the message, and no file has changed, come or gone."""
        before = self.files()
        result = self.replay(*options, **others)
        self.assertEqual((4, f"vortime: cannot write {problem}\n"), (result.returncode, result.stderr))
        self.assertEqual(before, self.files())

    def expect_written(self, *options, code=0):
        result = self.replay(*options)
        self.assertEqual(code, result.returncode, result.stderr)
        return self.files()
