#!/usr/bin/env python3
"""Uses the tool at a terminal and with outputs that fail."""
import ctypes
import datetime
import errno
import fcntl
import os
import pathlib
import pty
import re
import select
import shutil
import signal
import socket
import struct
import subprocess
import tempfile
import termios
import threading
import time
import tty
import unittest

import tool_runner
from tool_runner import COMMAND, SAMPLES, json_lines, run, sentence

CAP_SYS_TIME = 25
PR_CAPBSET_DROP = 24
NO_NEW_TIME = 60  # seconds that a terminal test waits for a text at most


def give_up_the_clock():
    """The machine's clock is safe: neither this process nor a program it starts may set it."""
    ctypes.CDLL(None).prctl(PR_CAPBSET_DROP, CAP_SYS_TIME, 0, 0, 0)


class TerminalC:
    """A program whose standard error, and standard output too unless it is given, are a terminal."""

    def __init__(self, *arguments, stdout=None, stdin=subprocess.DEVNULL):
        self.master, slave = pty.openpty()
        self.process = subprocess.Popen(COMMAND + [str(a) for a in arguments], stdin=stdin, stderr=slave,
                                        stdout=slave if stdout is None else stdout, preexec_fn=give_up_the_clock)
        os.close(slave)
        self.text = ""

    def read(self, until=None):
        """Reads to the end, or until the text has come."""
        deadline = time.monotonic() + NO_NEW_TIME
        while until is None or until not in self.text:
            if not select.select([self.master], [], [], max(0, deadline - time.monotonic()))[0]:
                raise AssertionError(f"no {until!r} in {self.text!r}")
            try:
                data = os.read(self.master, 65536)
            except OSError as error:
                if error.errno != errno.EIO:
                    raise
                data = b""
            if not data:
                break
            self.text += data.decode()
        return self.text

    def read_for(self, seconds):
        """Reads what comes within that time."""
        deadline = time.monotonic() + seconds
        while select.select([self.master], [], [], max(0, deadline - time.monotonic()))[0]:
            self.text += os.read(self.master, 65536).decode()

    def finish(self):
        self.read()
        os.close(self.master)
        return self.process.wait(NO_NEW_TIME)


class ReceiverC:
    """A receiver on a serial line of its own that the tool watches."""

    def __init__(self, *arguments):
        self.master, self.slave = pty.openpty()
        tty.setraw(self.slave)
        self.terminal = TerminalC(*arguments, os.ttyname(self.slave))

    def send_time(self):
        now = datetime.datetime.now(datetime.timezone.utc)
        body = f"GPZDA,{now:%H%M%S}.{now.microsecond // 10000:02},{now:%d,%m,%Y},00,00"
        os.write(self.master, sentence(body).encode())

    def interrupt(self):
        """Ends the tool with Ctrl-C; its exit status."""
        self.terminal.process.send_signal(signal.SIGINT)
        status = self.terminal.finish()
        os.close(self.master)
        os.close(self.slave)
        return status


class Progress(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(dir=os.getcwd())
        cls.log = pathlib.Path(cls.folder.name, "long.log")
        sentences = (SAMPLES / "nl2008u.log").read_bytes()
        cls.log.write_bytes(sentences * (6_000_000 // len(sentences)))

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def test_bar_for_a_long_log_at_a_terminal(self):
        terminal = TerminalC("replay", "--json", self.log, stdout=subprocess.DEVNULL)
        self.assertEqual(0, terminal.finish())
        self.assertIn("[####", terminal.text)
        self.assertIn("100% ", terminal.text)
        self.assertTrue(terminal.text.endswith(" \r"), repr(terminal.text[-60:]))

    def test_no_bar_for_a_short_log_or_without_a_terminal(self):
        terminal = TerminalC("replay", "--json", SAMPLES / "isync.log", stdout=subprocess.DEVNULL)
        self.assertEqual((0, ""), (terminal.finish(), terminal.text))
        self.assertEqual("", run("replay", "-q", self.log).stderr)

    def test_bar_can_be_asked_for_and_forbidden(self):
        terminal = TerminalC("replay", "--json", "--no-progress", self.log, stdout=subprocess.DEVNULL)
        self.assertEqual((0, ""), (terminal.finish(), terminal.text))
        self.assertIn("100%", run("replay", "-q", "--progress", SAMPLES / "isync.log").stderr)

    def test_a_pipe_that_closes_ends_the_run_without_a_word(self):
        with subprocess.Popen(COMMAND + ["replay", str(self.log)], stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            process.stdout.read(100)
            process.stdout.close()
            self.assertEqual(4, process.wait(NO_NEW_TIME))
            self.assertEqual(b"", process.stderr.read())


class Interrupted(unittest.TestCase):
    def test_replay_ends_with_its_summary(self):
        reader, writer = os.pipe()
        terminal = TerminalC("replay", "-", stdin=reader)
        os.close(reader)
        os.write(writer, (SAMPLES / "isync.log").read_bytes())
        wait_until_read(writer)
        terminal.process.send_signal(signal.SIGINT)
        self.assertEqual(130, terminal.finish())
        os.close(writer)
        self.assertIn("Summary (interrupted)", terminal.text)
        self.assertIn("observations   23 used", terminal.text)

    def test_watch_ends_with_its_summary(self):
        for number in (signal.SIGINT, signal.SIGTERM):
            with self.subTest(number=number):
                master, slave = pty.openpty()
                terminal = TerminalC("watch", os.ttyname(slave))
                terminal.read(until="change/ms")
                os.write(master, b"$GPZDA,131519.00,03,02,2016,00,00*6C\r\n")
                terminal.read(until="2016-02-03T13:15:19.000Z")
                terminal.process.send_signal(number)
                self.assertEqual(0, terminal.finish())
                self.assertIn("Summary (interrupted)", terminal.text)
                self.assertIn("observations   1 used", terminal.text)
                os.close(master)
                os.close(slave)


    def test_watch_that_nothing_came_to(self):
        master, slave = pty.openpty()
        terminal = TerminalC("watch", os.ttyname(slave))
        terminal.read(until="change/ms")
        terminal.process.send_signal(signal.SIGINT)
        self.assertEqual(1, terminal.finish())
        self.assertIn("Summary (interrupted)", terminal.text)
        self.assertIn(f"vortime: nothing usable came from {os.ttyname(slave)}", terminal.text)
        self.assertNotIn("has ended", terminal.text)
        os.close(master)
        os.close(slave)

    def test_watch_of_a_source_that_ends(self):
        for log, text in (("isync.log", "the source has ended: -"),
                          (None, "the source has ended: -; nothing usable came from -")):
            with self.subTest(log=log):
                result = run("watch", "-q", "-", input=(SAMPLES / log).read_text() if log else "")
                self.assertEqual((1, f"vortime: {text}\n"), (result.returncode, result.stderr))
                self.assertIn("Summary\n", result.stdout)

    def test_watch_of_a_device_that_is_pulled_out(self):
        master, slave = pty.openpty()
        name = os.ttyname(slave)
        terminal = TerminalC("watch", name)
        terminal.read(until="change/ms")
        os.write(master, b"$GPZDA,131519.00,03,02,2016,00,00*6C\r\n")
        terminal.read(until="2016-02-03T13:15:19.000Z")
        os.close(slave)
        os.close(master)
        self.assertEqual(1, terminal.finish())
        self.assertIn(f"vortime: the source has ended: {name}", terminal.text)


def wait_until_read(writer):
    """Waits until nothing is left in the pipe."""
    deadline = time.monotonic() + NO_NEW_TIME
    while struct.unpack("i", fcntl.ioctl(writer, termios.FIONREAD, b"\0" * 4))[0]:
        if time.monotonic() > deadline:
            raise AssertionError("the pipe is not read")
        time.sleep(0.01)


class Failures(unittest.TestCase):
    def test_full_disk_for_the_trace(self):
        result = run("replay", "-q", "--trace", "/dev/full", SAMPLES / "isync.log")
        self.assertEqual(4, result.returncode)
        self.assertIn("Summary", result.stdout)
        self.assertEqual("vortime: cannot write /dev/full: No space left on device\n", result.stderr)

    # Every command; none of them fails for another reason than its output.
    COMMANDS = (("replay", SAMPLES / "isync.log"), ("watch", SAMPLES / "isync.log"), ("now",), ("convert", "1930:18000"),
                ("leap",), ("leap", "show"), ("leap", "check", SAMPLES / "leapseconds-tzdata-2026b"),
                ("leap", "check", SAMPLES / "isync.log"), ("leap", "load", SAMPLES / "isync.log"),
                ("zone", "list"), ("zone", "current"), ("zone", "show", "UTC"), ("zone", "map", "UTC"),
                ("zone", "resolve", "UTC"), ("--help",), ("--version",), ("zone", "list", "--help"))

    def end_of(self, arguments, stdout, **options):
        """Exit code and standard error of a run that writes to stdout."""
        result = subprocess.run(COMMAND + [str(a) for a in arguments], stdin=subprocess.DEVNULL, stdout=stdout,
                                stderr=subprocess.PIPE, text=True, timeout=tool_runner.TIMEOUT, **options)
        return result.returncode, result.stderr

    def test_full_disk_for_the_results(self):
        for arguments in self.COMMANDS:
            with self.subTest(arguments=arguments), open("/dev/full", "wb") as full:
                self.assertEqual((4, "vortime: cannot write the results: No space left on device\n"),
                                 self.end_of(arguments, full))

    def test_closed_standard_output(self):
        for arguments in self.COMMANDS:
            with self.subTest(arguments=arguments):
                self.assertEqual((4, "vortime: cannot write the results: standard output is closed\n"),
                                 self.end_of(arguments, None, preexec_fn=lambda: os.close(1)))

    def test_closed_standard_output_hides_no_wrong_usage(self):
        code, error = self.end_of(("bogus",), None, preexec_fn=lambda: os.close(1))
        self.assertEqual(2, code)
        self.assertNotIn("standard output", error)

    def test_a_reader_that_has_gone(self):
        for arguments in self.COMMANDS:
            with self.subTest(arguments=arguments):
                reader, writer = os.pipe()
                os.close(reader)
                self.assertEqual((4, ""), self.end_of(arguments, writer))
                os.close(writer)

    def test_closed_standard_error(self):
        """What would be said there gets into no file that the run opens, and into no result."""
        with tempfile.TemporaryDirectory(dir=os.getcwd()) as folder:
            trace = pathlib.Path(folder, "trace")
            result = subprocess.run(COMMAND + ["replay", "--json", "--trace", str(trace), str(SAMPLES / "isync.log"), "no-such"],
                                    stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True,
                                    preexec_fn=lambda: os.close(2))
            self.assertEqual(3, result.returncode)
            self.assertEqual("summary", json_lines(result.stdout)[-1]["type"])
            self.assertEqual(23, trace.read_text().count("STT-D:"))
            self.assertNotIn("vortime:", trace.read_text())

    def test_an_endless_line_takes_no_memory(self):
        with subprocess.Popen(COMMAND + ["convert"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE) as process:
            chunk = b"1" * (1 << 20)
            for _ in range(256):
                process.stdin.write(chunk)
            process.stdin.write(b"\n1930:18000\n")
            process.stdin.close()
            self.assertEqual(b"invalid\n2017-01-01T00:00:00.000Z\n", process.stdout.read())
            self.assertIn(b"the line has more than 4096 bytes", process.stderr.read())
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
        self.assertEqual(1, process.returncode)
        self.assertLess(usage.ru_maxrss, 200 * 1024)

    def test_a_time_beyond_the_weeks_in_local_time(self):
        for zone, value in (("America/New_York", "0:18000"), ("Asia/Tokyo", "65535:604799999")):
            with self.subTest(zone=zone):
                environment = dict(os.environ, TZ=zone)
                edge = "before 1980" if value[0] == "0" else "after the end of week 65535"
                shown = run("convert", value, env=environment).stdout
                self.assertRegex(shown, f"local        none: in local time it lies {edge}")
                self.assertRegex(shown, f"FAT .local.  none: in local time it lies {edge}")
                whole = json_lines(run("convert", "--json", value, env=environment).stdout)[0]
                self.assertEqual((None, None), (whole["local"], whole["fat"]))
                result = run("convert", "--to", "local", value, env=environment)
                self.assertEqual((1, "invalid\n"), (result.returncode, result.stdout))
                self.assertIn(f"in local time it lies {edge}", result.stderr)

    def test_closed_standard_input(self):
        for command in ("replay", "convert"):
            with self.subTest(command=command):
                arguments = (command, "-") if command == "replay" else (command,)
                result = subprocess.run(COMMAND + list(arguments), stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                        preexec_fn=lambda: os.close(0))
                self.assertEqual(3, result.returncode)
                self.assertRegex(result.stderr, r"\Avortime: cannot read [^:]+: Bad file descriptor\n\Z")

    def test_a_log_that_fails_while_it_is_read(self):
        result = run("replay", "/proc/self/mem", SAMPLES / "isync.log")
        self.assertEqual((3, "vortime: cannot read /proc/self/mem: Input/output error\n"), (result.returncode, result.stderr))
        self.assertIn("observations   23 used", result.stdout)

    def test_a_fifo_that_nobody_writes_to_is_not_loaded(self):
        with tempfile.TemporaryDirectory(dir=os.getcwd()) as folder:
            os.mkfifo(pathlib.Path(folder, "fifo"))
            result = run("leap", "load", "fifo", cwd=folder, timeout=NO_NEW_TIME)
            self.assertEqual((3, "vortime: cannot read fifo: not a regular file\n"), (result.returncode, result.stderr))

    def test_no_permission(self):
        with tempfile.TemporaryDirectory(dir=os.getcwd()) as folder:
            log = pathlib.Path(folder, "secret.log")
            log.write_bytes(b"$GPZDA\n")
            log.chmod(0)
            shutil.copy(SAMPLES / "isync.log", pathlib.Path(folder, "open.log"))
            pathlib.Path(folder, "open.log").chmod(0o644)
            os.chmod(folder, 0o555)

            def become_nobody():
                if os.getuid() == 0:
                    os.setgid(65534)
                    os.setuid(65534)
            try:
                result = run("replay", log, preexec_fn=become_nobody, cwd="/")
                if "error while loading" in result.stderr or result.returncode in (126, 127):
                    self.skipTest("another user cannot start the tool here")
                self.assertEqual(3, result.returncode)
                self.assertIn("Permission denied", result.stderr)
                trace = pathlib.Path(folder, "trace")
                result = run("replay", "-q", "--trace", trace, pathlib.Path(folder, "open.log"),
                             preexec_fn=become_nobody, cwd="/")
                self.assertEqual((4, f"vortime: cannot write {trace}: Permission denied\n"), (result.returncode, result.stderr))
            except PermissionError:
                self.skipTest("another user cannot start the tool here")
            finally:
                os.chmod(folder, 0o755)

    def test_gnuplot_missing(self):
        with tempfile.TemporaryDirectory(dir=os.getcwd()) as folder:
            os.symlink("/bin/sh", pathlib.Path(folder, "sh"))
            result = run("replay", "-q", "--plot", pathlib.Path(folder, "p"), SAMPLES / "isync.log",
                         env=dict(os.environ, PATH=folder))
            self.assertEqual(5, result.returncode)
            self.assertIn("is it installed?", result.stderr)
            self.assertTrue(pathlib.Path(folder, "p.tsv").is_file())


class Suggestions(unittest.TestCase):
    def test_every_command_and_option(self):
        """Two letters that changed places, in each name that is long enough to be told."""
        commands = ("replay", "watch", "now", "convert", "leap", "leap check", "leap load", "zone", "zone current",
                    "zone show", "zone map", "zone resolve")
        for command in commands:
            *outer, name = command.split()
            swapped = name[:-2] + name[-1] + name[-2]
            with self.subTest(command=command):
                self.assertIn(f"did you mean {name}?", run(*outer, swapped).stderr)
            for option in sorted(set(re.findall(r"--([a-z][a-z-]+)", run(*command.split(), "--help").stdout))):
                with self.subTest(command=command, option=option):
                    swapped = option[:-2] + option[-1] + option[-2]
                    if option[-1] != option[-2]:
                        self.assertIn(f"did you mean --{option}?", run(*command.split(), "--" + swapped).stderr)


class ControlCharacters(unittest.TestCase):
    def test_the_name_of_a_file_gets_into_no_output_as_such(self):
        evil = "x\x1b[2J\x07\x7f\x9b0m\ny"
        with tempfile.TemporaryDirectory(dir=os.getcwd()) as folder:
            shutil.copy(SAMPLES / "isync.log", pathlib.Path(folder, evil))
            for arguments in (("replay",), ("replay", "--json"), ("watch",), ("leap", "check"), ("leap", "load"),
                              ("replay", "-q", "--plot", evil + ".png")):
                with self.subTest(arguments=arguments):
                    result = run(*arguments, evil, cwd=folder)
                    if "--json" in arguments:
                        self.assertEqual(evil, json_lines(result.stdout)[0]["input"])
                    else:
                        self.assertIn(r"x\u001b[2J\u0007\u007f\u009b0m\u000ay", result.stdout)
                    self.assertNotRegex(result.stdout + result.stderr, "[\x00-\x09\x0b-\x1f\x7f-\x9f]")


class SetClock(unittest.TestCase):
    def test_a_refusal_is_told(self):
        """Receivers of the true time, on the real clocks, until the tool has tried to set the PC's."""
        runs = [ReceiverC("watch", "--set-clock", "-q"), ReceiverC("watch", "--set-clock", "-q", "--json")]
        deadline = time.monotonic() + 3 * NO_NEW_TIME
        while not all("clock" in run.terminal.text for run in runs):
            self.assertLess(time.monotonic(), deadline, [run.terminal.text for run in runs])
            for run in runs:
                run.send_time()
                run.terminal.read_for(0.1)
        for run in runs:
            self.assertEqual(0, run.interrupt())
        self.assertIn("clock kept   2", runs[0].terminal.text)
        self.assertIn("the right to set the time", runs[0].terminal.text)
        clocks = [o for o in json_lines(runs[1].terminal.text) if o["type"] == "clock"]
        self.assertEqual((False, "refused", True), tuple(clocks[0][name] for name in ("clock_set", "reason", "first")))

    def watch(self, *options):
        log = "".join(f"$GPZDA,1200{second:02}.00,01,02,2024,00,00\n" for second in range(2))
        result = run("watch", "-q", "--json", *options, "-", input=log, preexec_fn=give_up_the_clock)
        return json_lines(result.stdout)[-1]

    def test_warning_signs_count_unless_trusted(self):
        for options, used in (((), 2), (("--strict",), 0), (("--set-clock",), 0), (("--set-clock", "--strict"), 0),
                              (("--set-clock", "--trust"), 2)):
            with self.subTest(options=options):
                self.assertEqual(used, self.watch(*options)["used"])

    def test_wrong_usage(self):
        for options in (("--trust",), ("--max-step", "5"), ("--set-clock", "--trust", "--strict"),
                        ("--set-clock", "--max-step", "0"), ("--set-clock", "--max-step", "1000000001"),
                        ("--step-limit", "-1")):
            with self.subTest(options=options):
                result = run("watch", *options, "-")
                self.assertEqual((2, ""), (result.returncode, result.stdout))

    def test_without_the_option_the_clock_is_left_alone(self):
        result = run("watch", "-q", "-", input=(SAMPLES / "isync.log").read_text(), preexec_fn=give_up_the_clock)
        self.assertIn("correction", result.stdout)
        self.assertNotIn("clock", result.stdout)


class Plot(unittest.TestCase):
    def test_no_warning_of_gnuplot_in_any_locale(self):
        for locale in ("C", "POSIX", "xx_YY.UTF-8", ""):
            with self.subTest(locale=locale), tempfile.TemporaryDirectory(dir=os.getcwd()) as folder:
                result = run("replay", "-q", "--plot", pathlib.Path(folder, "p"), SAMPLES / "isync.log",
                             env={"PATH": os.environ["PATH"], "LC_ALL": locale})
                self.assertEqual((0, ""), (result.returncode, result.stderr))

    def test_pictures_and_table(self):
        with tempfile.TemporaryDirectory(dir=os.getcwd()) as folder:
            base = pathlib.Path(folder, "it's a plot")
            result = run("replay", "-q", "--plot", base, "--pc-offset", "300", SAMPLES / "telit-he910.log")
            self.assertEqual((0, ""), (result.returncode, result.stderr))
            self.assertIn(f"plot             {base}.png", result.stdout)
            self.assertEqual(b"\x89PNG", pathlib.Path(f"{base}.png").read_bytes()[:4])
            self.assertIn("<svg", pathlib.Path(f"{base}.svg").read_text())
            rows = pathlib.Path(f"{base}.tsv").read_text().splitlines()
            self.assertEqual(188, len(rows))
            self.assertEqual(6, len(rows[1].split("\t")))

    def test_one_picture_by_its_ending(self):
        with tempfile.TemporaryDirectory(dir=os.getcwd()) as folder:
            run("replay", "-q", "--plot", pathlib.Path(folder, "a.svg"), SAMPLES / "isync.log")
            self.assertEqual(["a.svg", "a.tsv"], sorted(os.listdir(folder)))


class Gpsd(unittest.TestCase):
    """A real gpsd on loopback, fed with a log by gpsfake."""

    def test_watch_a_daemon(self):
        with socket_port() as port, open(os.devnull, "wb") as null:
            daemon = subprocess.Popen(["gpsfake", "-1", "-q", "-u", "-c", "0.05", "-P", str(port),
                                       str(SAMPLES / "ublox-zed-f9p-hp.log")], stdout=null, stderr=null,
                                      start_new_session=True)
            try:
                objects = self.watch(port)
            finally:
                os.killpg(daemon.pid, signal.SIGKILL)
                daemon.wait()
        times = [o["utc"] for o in objects if o["type"] == "observation"]
        self.assertTrue(all("2019-04-22T21:19:20.000Z" <= t <= "2019-04-22T21:19:48.000Z" for t in times), times)
        self.assertEqual((18, True), (objects[-1]["leap_seconds"], objects[-1]["interrupted"]))

    def watch(self, port):
        """What the tool says until the fifth observation and then Ctrl-C."""
        deadline = time.monotonic() + NO_NEW_TIME
        while time.monotonic() < deadline:
            process = subprocess.Popen(COMMAND + ["watch", "--json", f"gpsd://localhost:{port}"], text=True,
                                       stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, preexec_fn=give_up_the_clock)
            timer = threading.Timer(NO_NEW_TIME, process.kill)
            timer.start()
            lines = []
            observations = 0
            for line in process.stdout:
                lines.append(line)
                observations += '"observation"' in line
                # Once: a second Ctrl-C ends the tool at once, without its summary.
                if observations == 5 and '"observation"' in line:
                    process.send_signal(signal.SIGINT)
            process.stdout.close()
            timer.cancel()
            if process.wait() == 0:
                return json_lines("".join(lines))
            time.sleep(0.1)
        self.fail("the daemon does not come up")

    def test_nobody_there(self):
        with socket_port() as port:
            result = run("watch", f"gpsd://localhost:{port}")
            self.assertEqual((3, f"vortime: cannot read gpsd://localhost:{port}: can't connect to host/port pair\n"),
                             (result.returncode, result.stderr))
        result = run("watch", "gpsd://localhost:no-such-port")
        self.assertEqual((3, "vortime: cannot read gpsd://localhost:no-such-port: can't get service entry\n"),
                         (result.returncode, result.stderr))

    def serve(self, reports, is_reset=False):
        """Watches a daemon that sends these reports and closes the connection."""
        with socket.create_server(("127.0.0.1", 0)) as server:
            source = f"gpsd://127.0.0.1:{server.getsockname()[1]}"
            process = subprocess.Popen(COMMAND + ["watch", "--json", source], text=True, stdout=subprocess.PIPE,
                                       stderr=subprocess.PIPE, preexec_fn=give_up_the_clock)
            server.settimeout(NO_NEW_TIME)
            connection, _ = server.accept()
            connection.settimeout(NO_NEW_TIME)
            connection.recv(4096)
            connection.sendall(reports.encode())
            lines = [process.stdout.readline() for _ in range(2)] if is_reset else []
            if is_reset:
                connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
            connection.close()
            out, err = process.communicate(timeout=NO_NEW_TIME)
            return source, process.returncode, json_lines("".join(lines) + out), err

    TPV = '{"class":"TPV","mode":3,"time":"2024-01-01T00:00:00.000Z"}\n'

    def test_daemon_that_ends(self):
        source, code, objects, error = self.serve(self.TPV)
        self.assertEqual((1, f"vortime: the source has ended: {source}\n"), (code, error))
        self.assertEqual((1, False), (objects[-1]["used"], objects[-1]["interrupted"]))

    def test_daemon_that_ends_without_a_time(self):
        source, code, _, error = self.serve('{"class":"VERSION","release":"3.22"}\n')
        self.assertEqual((1, f"vortime: the source has ended: {source}; nothing usable came from {source}\n"),
                         (code, error))

    def test_connection_that_breaks(self):
        source, code, objects, error = self.serve(self.TPV, is_reset=True)
        self.assertEqual((3, f"vortime: cannot read {source}: Connection reset by peer\n"), (code, error))
        self.assertEqual(1, objects[-1]["used"])


class socket_port:
    """A port of this machine that nobody listens on."""

    def __enter__(self):
        with socket.socket() as probe:
            probe.bind(("127.0.0.1", 0))
            return probe.getsockname()[1]

    def __exit__(self, *_):
        return False


if __name__ == "__main__":
    tool_runner.main()
