"""Runs the scripts of tools/ for the tests beside this file."""
import os
import pathlib
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
TOOLS = ROOT / "tools"


class ScriptTest(unittest.TestCase):
    """Each test has an empty folder, and the programs that it writes come first in PATH."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.programs = self.folder / "programs"
        self.programs.mkdir()

    def write(self, name, text, mode=0o644):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        path.chmod(mode)
        return path

    def write_program(self, name, text):
        return self.write(self.programs / name, "#!/bin/sh\n" + text, 0o755)

    def run_script(self, *arguments, **environment):
        """An environment variable that is None is unset."""
        variables = {**os.environ, "PATH": f"{self.programs}:{os.environ['PATH']}", **environment}
        variables = {name: value for name, value in variables.items() if value is not None}
        return subprocess.run([str(a) for a in arguments], env=variables, encoding="utf-8", timeout=60, cwd=self.folder,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
