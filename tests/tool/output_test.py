#!/usr/bin/env python3
"""What the tool writes to files, and what it leaves alone."""
import os
import shutil

import tool_runner
from output_folder import LOG, OBSERVATIONS, InFolder
from tool_runner import is_windows, run

TABLE_HEAD = "# seconds\tobservation_ms\testimate_ms\tsigma_ms\tpresent_ms\tcorrection_ms\n"


def drawn():
    """How a run with a plot ends: under Wine no gnuplot is found, so the table is written and no picture."""
    return 5 if is_windows() else 0


class Inputs(InFolder):
    def test_no_name_of_an_input_is_written(self):
        os.symlink("a.log", self.folder / "link")
        os.link(self.folder / "a.log", self.folder / "other name")
        names = ["a.log", "./a.log", f"../{self.folder.name}/a.log", "link", "other name"]
        names += ["A.LOG", ".\\a.log"] if is_windows() else [self.folder / "a.log"]
        for name in names:
            for force in ((), ("--force",)):
                with self.subTest(name=name, force=force):
                    before = (self.folder / "a.log").read_bytes()
                    result = self.replay("--trace", name, *force)
                    self.assertEqual(4, result.returncode)
                    self.assertIn("this run reads it as a.log", result.stderr)
                    self.assertEqual(before, (self.folder / "a.log").read_bytes())

    def test_nor_that_of_any_other_input(self):
        shutil.copy(LOG, self.folder / "b.log")
        self.expect_refused("b.log: this run reads it as b.log", "--trace", "b.log", "--force", "b.log")

    def test_nor_the_file_behind_standard_input(self):
        result = self.run_redirected("replay --trace a.log --force - < a.log")
        self.assertEqual(4, result.returncode)
        self.assertIn("cannot write a.log: this run reads it as -", result.stderr)
        self.assertEqual(LOG.read_bytes(), (self.folder / "a.log").read_bytes())

    def test_nor_the_leap_second_file(self):
        (self.folder / "leap.txt").write_text("18,18,1929,7\n")
        self.expect_refused("leap.txt: this run reads it as leap.txt", "--trace", "leap.txt", "--force", "--leap-file", "leap.txt")

    def test_nor_by_a_plot(self):
        for ending in ("tsv", "png", "svg"):
            with self.subTest(ending=ending):
                log = f"b.{ending}"
                shutil.copy(LOG, self.folder / log)
                self.expect_refused(f"{log}: this run reads it as {log}", "--plot", "b", "--force", log=log)
                os.remove(self.folder / log)

    def test_nor_the_source_of_a_watch(self):
        result = run("watch", "-q", "--trace", "a.log", "--force", "a.log", cwd=self.folder)
        self.assertEqual(4, result.returncode)
        self.assertEqual(LOG.read_bytes(), (self.folder / "a.log").read_bytes())


class OneFileForTwo(InFolder):
    def test_trace_and_table(self):
        for trace in ("x.tsv", "./x.tsv"):
            with self.subTest(trace=trace):
                self.expect_refused(f"x.tsv: this run writes it as {trace}", "--trace", trace, "--plot", "x.svg")

    def test_trace_and_picture(self):
        self.expect_refused("x.png: this run writes it as x.png", "--trace", "x.png", "--plot", "x.png", "--force")

    def test_two_links_to_one_file(self):
        (self.folder / "y").write_bytes(b"")
        os.link(self.folder / "y", self.folder / "x.tsv")
        self.expect_refused("x.tsv: this run writes it as y", "--trace", "y", "--plot", "x.png", "--force")

    def test_trace_and_standard_output(self):
        result = self.run_redirected("replay --trace out a.log > out")
        self.assertEqual(4, result.returncode)
        self.assertIn("cannot write out: standard output goes there", result.stderr)


class FilesOfOthers(InFolder):
    """Only what a run of the tool wrote is replaced without a word."""

    def test_a_table_that_no_run_wrote(self):
        for content in (b"my day\n", b"#", TABLE_HEAD[:-2].encode(), b"x" + TABLE_HEAD.encode()):
            with self.subTest(content=content):
                (self.folder / "day.tsv").write_bytes(content)
                self.expect_refused("day.tsv: no run of vortime wrote what is there; --force replaces it", "--plot", "day.png")

    def test_a_trace_that_no_run_wrote(self):
        for content in (b"x", b"STT-D:", b"STT-D:\t", b"STT-D:\t1", b"\nSTT-D:\t\t\n", b"STT-D:\t1\t\nmore\n"):
            with self.subTest(content=content):
                (self.folder / "t").write_bytes(content)
                self.expect_refused("t: no run of vortime wrote what is there; --force replaces it", "--trace", "t")

    def test_pictures_that_no_run_wrote(self):
        for name, content in (("p.png", b"\x89PNG\r\n\x1a\n photo \0\0\0\0IEND\xaeB`\x82"), ("p.svg", b"<?xml version='1.0'?><svg></svg>\n")):
            with self.subTest(name=name):
                (self.folder / name).write_bytes(content)
                self.expect_refused(f"{name}: no run of vortime wrote what is there; --force replaces it", "--plot", name)
                os.remove(self.folder / name)

    def test_force_replaces_them(self):
        for name in ("t", "p.png", "p.svg", "p.tsv"):
            (self.folder / name).write_text("x")
        files = self.expect_written("--force", "--trace", "t", "--plot", "p", code=drawn())
        self.assertTrue(files["t"].startswith(b"STT-D:\t"))
        self.assertTrue(files["p.tsv"].startswith(TABLE_HEAD.encode()))
        if not is_windows():
            self.assertTrue(files["p.png"].startswith(b"\x89PNG"))
            self.assertTrue(files["p.svg"].startswith(b"<?xml"))

    def test_what_a_run_wrote_is_replaced(self):
        first = self.expect_written("--trace", "t", "--plot", "p", code=drawn())
        self.assertEqual(first.keys(), self.expect_written("--trace", "t", "--plot", "p", code=drawn()).keys())
        second = self.expect_written("--trace", "t", "--plot", "p", "--pc-offset", "700", code=drawn())
        for name in first.keys() - {"a.log"}:
            self.assertNotEqual(first[name], second[name], name)

    def test_an_empty_file_is_replaced(self):
        (self.folder / "t").write_bytes(b"")
        self.assertTrue(self.expect_written("--trace", "t")["t"].startswith(b"STT-D:\t"))

    def test_a_run_without_observations_leaves_what_the_next_may_replace(self):
        (self.folder / "none.log").write_text("nothing\n")
        result = self.replay("--trace", "t", "--plot", "p.svg", log="none.log")
        self.assertEqual(b"", self.files()["t"])
        self.assertEqual(TABLE_HEAD.encode(), self.files()["p.tsv"])
        self.assertIn(result.returncode, (1, 5))
        self.assertEqual(OBSERVATIONS, self.expect_written("--trace", "t")["t"].count(b"\n"))


class Places(InFolder):
    def test_names_that_cannot_be_written(self):
        (self.folder / "folder").mkdir()
        for name, reason in (("folder", "directory"), ("no-such/t", "No such file or directory")):
            with self.subTest(name=name):
                result = self.replay("--trace", name)
                self.assertEqual(4, result.returncode)
                self.assertRegex(result.stderr, rf"^vortime: cannot write {name}: .*{reason}")
        self.assertEqual(["a.log", "folder"], sorted(os.listdir(self.folder)))

    def test_unfinished_files_of_others_are_left_alone(self):
        (self.folder / "t.part").write_text("of another run")
        files = self.expect_written("--trace", "t")
        self.assertEqual(["a.log", "t", "t.part"], sorted(files))
        self.assertEqual(b"of another run", files["t.part"])


class StandardOutput(InFolder):
    def test_trace(self):
        self.replay("--trace", "t")
        expected = (self.folder / "t").read_text().splitlines()
        for options in ((), ("--json",)):
            with self.subTest(options=options):
                result = self.replay("--trace", "-", *options)
                self.assertEqual((0, ""), (result.returncode, result.stderr))
                lines = result.stdout.splitlines()
                self.assertEqual(expected, [line for line in lines if line.startswith("STT-D:")])
                others = "".join(line + "\n" for line in lines if not line.startswith("STT-D:"))
                self.assertEqual(self.replay(*options).stdout, others)
        self.assertEqual(["a.log", "t"], sorted(os.listdir(self.folder)))

    def test_trace_of_a_watch(self):
        result = run("watch", "-q", "--trace", "-", "a.log", cwd=self.folder)
        self.assertEqual(OBSERVATIONS, sum(line.startswith("STT-D:\t") for line in result.stdout.splitlines()), result.stderr)


class PlotNames(InFolder):
    def test_endings(self):
        for name, ending in (("x.pdf", ".pdf"), ("x.PDF", ".pdf"), ("x.png.tsv", ".tsv"), ("x.", "."), ("day.2024-02-01", ".2024-02-01"),
                             ("x.png ", ".png ")):
            with self.subTest(name=name):
                result = self.replay("--plot", name)
                self.assertEqual((2, ""), (result.returncode, result.stdout))
                self.assertIn(f"--plot: cannot draw a file that ends in {ending}; name FILE.png, FILE.svg", result.stderr)
        for name in ("-", "sub/", ""):
            with self.subTest(name=name):
                result = self.replay("--plot", name)
                self.assertEqual(2, result.returncode)
                self.assertIn("--plot: a plot needs the name of a file", result.stderr)
        self.assertEqual(["a.log"], os.listdir(self.folder))

    def test_endings_of_either_case(self):
        self.assertEqual({"a.log", "x.tsv"} | (set() if is_windows() else {"x.PNG"}),
                         set(self.expect_written("--plot", "x.PNG", code=drawn())))


if __name__ == "__main__":
    tool_runner.main()
