#!/usr/bin/env python3
"""Checks which way includes go between the parts of the project."""
import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]

# A part, and the beginnings of all that it may include in quotes.
MAY_INCLUDE = {
    "include/KTX/DBG": ("KTX/DBG/",),
    "include/KTX/TIM": ("KTX/TIM/", "KTX/DBG/"),
    "include/KTX/RCV": ("KTX/TIM/", "KTX/RCV/"),
    "Source/Ktx_Tim/support": ("KTX/TIM/", "KTX/DBG/", "support/"),
    "Source/Ktx_Tim/values": ("KTX/TIM/", "KTX/DBG/", "support/", "values/"),
    "Source/Ktx_Rcv": ("KTX/TIM/", "KTX/RCV/", "messages/", "readers/", "evidence/", "session/"),
    "Source/Ktx_Rcv/readers": ("KTX/RCV/", "readers/"),
    "Source/Ktx_Rcv/evidence": ("KTX/TIM/", "KTX/RCV/", "evidence/"),
    "Source/Tools/vortime": ("KTX/TIM/", "KTX/RCV/", "commands/", "output/", "replay/", "system/"),
}


def quoted_includes(text):
    return re.findall(r'^\s*#\s*include\s+"([^"]+)"', text, re.M)


def wrong_includes(part, allowed):
    wrong = []
    for path in sorted((ROOT / part).rglob("*")):
        if path.suffix in (".h", ".cpp", ".inc"):
            wrong += [f"{path.relative_to(ROOT)}: {name}" for name in quoted_includes(path.read_text(encoding="utf-8"))
                      if not name.startswith(allowed)]
    return wrong


class IncludesTest(unittest.TestCase):
    def test_go_one_way(self):
        for part, allowed in MAY_INCLUDE.items():
            with self.subTest(part):
                self.assertEqual([], wrong_includes(part, allowed))

    def test_finds_includes_in_every_part(self):
        for part in MAY_INCLUDE:
            with self.subTest(part):
                self.assertNotEqual([], wrong_includes(part, ("no such folder/",)))

    def test_reads_every_form_of_an_include(self):
        self.assertEqual(["a/b.h", "c.h"], quoted_includes('#include "a/b.h"\n# include  "c.h"\n#include <d.h>\n// "e.h"\n'))


if __name__ == "__main__":
    unittest.main()
