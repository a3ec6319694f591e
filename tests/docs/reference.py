"""The interface reference, built once for the tests beside this file."""
import pathlib
import subprocess
import tempfile
import xml.etree.ElementTree as ElementTree

ROOT = pathlib.Path(__file__).resolve().parents[2]


def build(folder, root=ROOT):
    return subprocess.run([root / "tools/build_docs.sh", folder], encoding="utf-8", timeout=120, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)


class Reference:
    def __init__(self):
        self.folder = tempfile.TemporaryDirectory()
        self.html = pathlib.Path(self.folder.name) / "html"
        self.result = build(self.folder.name)

    def page(self, name):
        return (self.html / name).read_text(encoding="utf-8")

    def pages(self):
        return {path.name: path.read_text(encoding="utf-8") for path in sorted(self.html.glob("*.html"))}

    def members(self, kind):
        """Names of the members of this kind that have a place of their own in a page: (scope, name), one for each overload."""
        pages = self.pages()
        found = set()
        for compound in ElementTree.parse(f"{self.folder.name}/VorTime.tag").getroot().iter("compound"):
            scope = compound.findtext("name") if compound.get("kind") in ("namespace", "class", "struct") else ""
            for member in compound.findall("member"):
                page, anchor = member.findtext("anchorfile"), member.findtext("anchor")
                if member.get("kind") == kind and f'id="{anchor}"' in pages.get(page, ""):
                    found.add((scope, member.findtext("name"), anchor))
        # A file lists the members of the namespaces in it once more.
        scoped = {anchor for scope, _, anchor in found if scope}
        return sorted((scope, name) for scope, name, anchor in found if scope or anchor not in scoped)

    def close(self):
        self.folder.cleanup()
