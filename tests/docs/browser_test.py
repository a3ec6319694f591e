#!/usr/bin/env python3
"""Opens the interface reference in a browser without a window: the front page, and four others by the links that a reader
would follow."""
import html
import re
import shutil
import subprocess
import tempfile
import unittest
import urllib.parse

from reference import Reference

BROWSERS = ("chromium", "chromium-browser", "google-chrome")
OPTIONS = ("--headless", "--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-background-networking",
           "--virtual-time-budget=3000", "--enable-logging=stderr", "--dump-dom")


class Page:
    """A page as it stands in the browser after its scripts ran."""

    def __init__(self, browser, address):
        self.address = address
        with tempfile.TemporaryDirectory() as folder:
            result = subprocess.run([browser, *OPTIONS, f"--user-data-dir={folder}", address], encoding="utf-8", timeout=120,
                                    stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.status = result.returncode
        self.source = result.stdout
        self.messages = [line for line in result.stderr.splitlines() if "CONSOLE" in line]
        plain = re.sub(r"<(script|style).*?</\1>", "", self.source, flags=re.S)
        self.text = re.sub(r"\s+", " ", html.unescape(re.sub(r"<[^>]+>", " ", plain)))

    def link(self, text):
        """Where the first link with this text leads."""
        found = re.search(rf'<a\b[^>]*?href="([^"]+)"[^>]*>(?:<[^>]+>)*{re.escape(text)}(?:<[^>]+>)*</a>', self.source)
        if found is None:
            raise AssertionError(f"no link {text} in {self.address}")
        return urllib.parse.urljoin(self.address, html.unescape(found.group(1)))


class BrowserTest(unittest.TestCase):
    def setUp(self):
        self.browser = next(filter(None, map(shutil.which, BROWSERS)), None)
        self.assertIsNotNone(self.browser, "no browser: tools/install_packages.sh installs chromium")
        self.reference = Reference()
        self.addCleanup(self.reference.close)
        self.assertEqual(0, self.reference.result.returncode, self.reference.result.stdout)

    def open(self, address, title, *texts):
        page = Page(self.browser, address)
        self.assertEqual((0, []), (page.status, page.messages), address)
        self.assertIn(f"<title>VorTime: {title}</title>", page.source)
        # The menu is built by the page's script.
        self.assertEqual(self.reference.html.as_uri() + "/index.html", page.link("Main Page"))
        for text in texts:
            self.assertIn(text, page.text, address)
        return page

    def test_front_page_and_four_others(self):
        front = self.open(self.reference.html.as_uri() + "/index.html", "VorTime", "C++17 library", "make demo", "The tool vortime")
        self.open(front.link("LEAPSECONDS"), "Leap seconds", "The leap second file", "17,18,2017-01-01")
        self.open(front.link("examples/first_program.cpp"), "examples/first_program.cpp File Reference", "The first program")
        enumerations = self.open(front.link("Enumerations"), "Namespace Members", "ClockTypeE", "TimeBaseE")
        self.open(enumerations.link("KTX::TIM"), "KTX::TIM Namespace Reference", "TIMEBASE_UTC", "setUtcLeapSecond")


if __name__ == "__main__":
    unittest.main()
