#!/usr/bin/env python3
"""Builds the interface reference and looks whether all of the interface is in it."""
import collections
import html
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

from reference import ROOT, Reference, build

HEADERS = sorted((ROOT / "include").rglob("*.h"))
PAGES = [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md"))]


def page_of(source):
    return "index.html" if source.name == "README.md" else f"md_docs_{source.stem}.html"


def exported_functions():
    """Name and number of overloads of every exported function outside classes."""
    listed = (ROOT / "Source/Ktx_Tim/VorTime.def").read_text(encoding="ascii")
    symbols = sorted(set(re.findall(r"^\s+(\S+)\s+@\d+\s+NONAME$", listed, re.M)))
    text = subprocess.run(["c++filt", "--no-strip-underscore"], input="\n".join(symbols), check=True, encoding="ascii",
                          stdout=subprocess.PIPE).stdout
    counts = collections.Counter()
    for line in text.splitlines():
        name = line.partition("(")[0].replace("[abi:cxx11]", "")
        while "operator" not in name and "<" in name:
            name = re.sub(r"<[^<>]*>", "", name)
        # The instance of a template has its result type in front of its name.
        scope, _, last = name.split()[-1].rpartition("::")
        if scope in ("", "KTX::TIM"):
            counts[scope, last] += 1
    for header in HEADERS:
        # The time library is checked by its list of exports.
        if namespace_of(header) != "KTX::TIM":
            for name in re.findall(r"^KTX_\w+_API (?!class )[^;({]*?(\w+|operator\W+)\(", code(header), re.M):
                counts[namespace_of(header), name] += 1
    return counts


def code(header):
    """The header without its comments."""
    return re.sub(r"//.*", "", header.read_text(encoding="utf-8"))


def namespace_of(header):
    return f"KTX::{header.parent.name}"


class ReferenceTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.reference = Reference()
        cls.addClassCleanup(cls.reference.close)

    def test_builds_without_a_warning(self):
        self.assertEqual((0, f"{self.reference.folder.name}/html/index.html\n"),
                         (self.reference.result.returncode, self.reference.result.stdout))

    def test_has_every_free_function(self):
        expected = exported_functions()
        self.assertLess(40, sum(expected.values()))
        expected["KTX::TIM", "createClock"] += 1  # the template, beside its two instances
        found = collections.Counter((scope, re.sub("<.*", "", name).rstrip() if "operator" not in name else name)
                                    for scope, name in self.reference.members("function")
                                    if scope in ("", *map(namespace_of, HEADERS)))
        self.assertEqual(expected, found)

    def test_has_every_enumeration_with_its_values(self):
        enumerations = set(self.reference.members("enumeration"))
        count = 0
        for header in HEADERS:
            for name, values in re.findall(r"\benum (\w+)[^{;]*\{(.*?)\}", code(header), re.S):
                count += 1
                self.assertIn((namespace_of(header), name), enumerations)
                for value in re.findall(r"(?:^|,)\s*(\w+)", values):
                    # Doxygen does not tell of a value without a comment.
                    self.assertRegex(self.reference.page(f"namespaceKTX_1_1{header.parent.name}.html"),
                                     rf'<td class="fieldname">.*{value}\b.*</td><td class="fielddoc"><p ?>[^<]')
        self.assertEqual(len(enumerations), count)

    def test_has_every_class(self):
        for header in HEADERS:
            for macro, name in re.findall(r"^(?:class|struct) (\w+_API )?(?:KTX_\w+(?:\(.*?\))? )*(\w+)[^;]*\{",
                                          code(header), re.M):
                pages = list(self.reference.html.glob(f"*_1_1{name}.html")) + list(self.reference.html.glob(f"struct{name}.html"))
                self.assertEqual(1, len(pages), name)

    def test_shows_no_macro_where_it_stands_for_nothing(self):
        for name, text in self.reference.pages().items():
            if name.startswith(("class", "struct", "namespace")):
                self.assertNotRegex(text, r"KTX_(TIM|DBG)_(API|PRINTF|ACQUIRE|RELEASE|REQUIRES|GUARDED_BY|\w*CAPABILITY)\b", name)

    def test_every_link_leads_somewhere(self):
        pages = self.reference.pages()
        places = {name: set(re.findall(r'(?:id|name)="([^"]+)"', text)) for name, text in pages.items()}
        count = 0
        for name, text in pages.items():
            for link in set(re.findall(r'(?:href|src)="([^"]+)"', text)):
                if re.match(r"https?:|javascript:", link):
                    continue
                count += 1
                target, _, place = html.unescape(link).partition("#")
                self.assertTrue((self.reference.html / target).is_file() if target else True, f"{name}: {link}")
                if place:
                    self.assertIn(place, places[target or name], f"{name}: {link}")
        self.assertLess(1000, count)

    def test_headings_are_those_of_the_sources(self):
        for source in PAGES:
            text = re.sub(r"^```.*?^```", "", source.read_text(encoding="utf-8"), flags=re.M | re.S)
            expected = re.findall(r"^##+ (.*)$", text, re.M)
            found = re.findall(r"<h[1-6][^>]*>(.*?)</h[1-6]>", self.reference.page(page_of(source)), re.S)
            found = [html.unescape(re.sub(r"<[^>]+>", "", heading)).strip() for heading in found]
            self.assertEqual(expected, found, source.name)

    def test_every_page_for_the_user_is_there(self):
        for source in PAGES:
            title = re.match(r"# (.*)", source.read_text(encoding="utf-8")).group(1)
            self.assertIn(f'<div class="title">{title} </div>', self.reference.page(page_of(source)))


class UndocumentedTest(unittest.TestCase):
    """What is added to the interface without a comment fails the build."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        for part in ("include", "docs", "tools/build_docs.sh", "README.md", "examples/first_program.cpp"):
            (self.root / part).parent.mkdir(exist_ok=True)
            (shutil.copytree if (ROOT / part).is_dir() else shutil.copy)(ROOT / part, self.root / part)

    def build_with(self, declaration):
        header = self.root / "include/KTX/TIM/KTX_TIM_Added.h"
        header.write_text(f"namespace KTX::TIM {{\n{declaration}\n}}\n", encoding="utf-8")
        result = build(self.root / "out", self.root)
        return result.returncode != 0, result.stdout

    def test_is_reported(self):
        cases = {"KTX_TIM_API void addedFunction();": "addedFunction",
                 "enum AddedE { ADDED_VALUE = 1 };": "AddedE",
                 "struct AddedC { int field; };": "AddedC",
                 "/// Documented.\nstruct AddedC { int addedField; };": "addedField",
                 "/// Documented.\nclass KTX_TIM_API AddedC {\n public:\n  int addedMember() const;\n};": "addedMember"}
        for declaration, name in cases.items():
            with self.subTest(declaration):
                fails, output = self.build_with(declaration)
                self.assertTrue(fails, output)
                self.assertIn(name, output)

    def test_what_has_a_comment_is_not(self):
        self.assertEqual((False, f"{self.root}/out/html/index.html\n"), self.build_with("/// Documented.\nKTX_TIM_API void added();"))


if __name__ == "__main__":
    unittest.main()
