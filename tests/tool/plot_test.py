#!/usr/bin/env python3
"""What the tool writes with the help of gnuplot, and to places that only Linux has."""
import os
import shutil
import struct
import zlib

import tool_runner
from output_folder import OBSERVATIONS, InFolder


class Places(InFolder):
    def test_a_link_stays_and_its_file_keeps_its_mode(self):
        self.replay("--trace", "t")
        (self.folder / "t").chmod(0o640)
        os.symlink("t", self.folder / "link")
        self.replay("--trace", "link", "--pc-offset", "700")
        self.assertTrue((self.folder / "link").is_symlink())
        self.assertEqual(0o640, (self.folder / "t").stat().st_mode & 0o777)
        os.symlink("nowhere", self.folder / "dangling")
        result = self.replay("--trace", "dangling")
        self.assertEqual((4, "vortime: cannot write dangling: the link leads nowhere\n"), (result.returncode, result.stderr))

    def test_a_trace_that_ends_early_leaves_the_one_before(self):
        self.replay("--trace", "t", "--plot", "p.svg")
        before = self.files()

        def limit_files():
            import resource
            import signal
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (100, 100))
        result = self.replay("--trace", "t", "--pc-offset", "700", preexec_fn=limit_files)
        self.assertEqual((4, "vortime: cannot write t: File too large\n"), (result.returncode, result.stderr))
        result = self.replay("--plot", "p.svg", "--pc-offset", "700", preexec_fn=limit_files)
        self.assertEqual((4, "vortime: cannot write p.tsv: File too large\n"), (result.returncode, result.stderr))
        self.assertEqual(before, self.files())

    def test_a_device_is_written_directly(self):
        self.assertEqual(0, self.replay("--trace", "/dev/null").returncode)
        self.assertEqual(["a.log"], os.listdir(self.folder))


class Pictures(InFolder):
    def test_png_names_its_maker(self):
        picture = self.expect_written("--plot", "p.png")["p.png"]
        at, chunks = 8, []
        while at < len(picture):
            length, = struct.unpack_from(">I", picture, at)
            kind, data = picture[at + 4:at + 8], picture[at + 8:at + 8 + length]
            self.assertEqual(zlib.crc32(kind + data), struct.unpack_from(">I", picture, at + 8 + length)[0], kind)
            chunks.append((kind, data))
            at += 12 + length
        self.assertEqual([(b"tEXt", b"Software\0vortime"), (b"IEND", b"")], chunks[-2:])

    def test_svg_names_its_maker(self):
        import xml.dom.minidom
        picture = self.expect_written("--plot", "p.svg")["p.svg"]
        self.assertTrue(picture.endswith(b"<!-- Software: vortime -->\n"))
        self.assertEqual("svg", xml.dom.minidom.parseString(picture).documentElement.tagName)

    def test_a_gnuplot_that_draws_nothing(self):
        for script in ("cat > /dev/null", "cat > /dev/null; exit 3", "cat > /dev/null; printf '<?xml' > p.svg.part"):
            with self.subTest(script=script):
                tools = self.folder / "tools"
                tools.mkdir()
                (tools / "gnuplot").write_text(f"#!/bin/sh\n{script}\n")
                (tools / "gnuplot").chmod(0o755)
                result = self.replay("--plot", "p.svg", env=dict(os.environ, PATH=f"{tools}:{os.environ['PATH']}"))
                shutil.rmtree(tools)
                self.assertEqual(5, result.returncode)
                self.assertIn("gnuplot could not draw p.svg", result.stderr)
                self.assertEqual(["a.log", "p.tsv"], sorted(os.listdir(self.folder)))

    def test_no_name_runs_a_command_or_breaks_the_script(self):
        names = ["|touch pwned", "< touch pwned; cat x", "<touch pwned", "x\nsystem('touch pwned')", "x'\nsystem('touch pwned')\n'",
                 "`touch pwned`", "$(touch pwned)", "x\"; system('touch pwned'); \"", "x' . system('touch pwned') . '", "back\\slash",
                 "\\nline", "@x", "%s", "#x", "x;y", "-e", "+", "++", "~", "ä €", "tab\there", "\x01"]
        for name in names:
            with self.subTest(name=name):
                result = self.replay(f"--plot={name}.svg")
                self.assertEqual((0, ""), (result.returncode, result.stderr))
                files = self.files()
                self.assertEqual({"a.log", f"{name}.svg", f"{name}.tsv"}, set(files))
                self.assertIn(b"</svg>", files[f"{name}.svg"])
                self.assertEqual(OBSERVATIONS + 1, files[f"{name}.tsv"].count(b"\n"))
                os.remove(self.folder / f"{name}.svg")
                os.remove(self.folder / f"{name}.tsv")


if __name__ == "__main__":
    tool_runner.main()
