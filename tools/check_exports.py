#!/usr/bin/env python3
"""Checks the export table of a DLL against its .def file and against the frozen list of ordinals.

check_exports.py OBJDUMP DLL DEF [--frozen FILE] [--imports NAME:ordinal,ordinal,...]
                 [--same SYMBOL,SYMBOL]

A frozen list holds one "ordinal symbol" pair a line, for every ordinal that a release has shipped. The symbols after
--same must be one function under several ordinals.
"""
import argparse
import re
import subprocess
import sys
from pathlib import Path


def read_def(path):
    """Returns (ordinal, symbol, public name) of each line; the two names differ for an alias."""
    entries = []
    for number, line in enumerate(Path(path).read_text(encoding="ascii").splitlines(), 1):
        line = line.split(";")[0].strip()
        if not line or line.split()[0] in ("LIBRARY", "EXPORTS"):
            continue
        match = re.fullmatch(r"(\S+?)(?:\s*=\s*(\S+))?\s+@(\d+)\s+NONAME(\s+DATA)?", line)
        if not match:
            sys.exit(f"{path}:{number}: not 'symbol @ordinal NONAME [DATA]': {line}")
        entries.append((int(match[3]), match[2] or match[1], match[1]))
    return entries


def read_dll(objdump, path):
    """Returns the address of each exported ordinal, the exported names and the imports of each library."""
    text = subprocess.run([objdump, "-p", path], check=True, capture_output=True, text=True).stdout
    exports = text[text.find("The Export Tables"):text.find("The Function Table")]
    ordinals = {int(match[1]): match[2] for match in re.finditer(r"\[ *\d+\] \+base\[ *(\d+)\] ([0-9a-f]+)", exports)}
    names = re.findall(r"^\t\[ *\d+\] (\S+)$", exports[exports.find("[Ordinal/Name Pointer] Table"):], re.M)
    imports = {}
    for block in text.split("DLL Name: ")[1:]:
        library = block.split("\n")[0].strip()
        imports[library] = re.findall(r"^\t([0-9a-f]{8,16})\s+(\S+)\s+(\S+)", block.split("\n\n")[0], re.M)
    return ordinals, names, imports


def check_list(entries):
    """The linker takes the later of two lines with one name and drops the first without a word."""
    bad, by_ordinal, by_name = [], {}, {}
    for ordinal, symbol, name in entries:
        if ordinal in by_ordinal:
            bad.append(f"ordinal {ordinal} stands twice: {by_ordinal[ordinal]} and {symbol}")
        if name in by_name:
            bad.append(f"{name} stands twice: @{by_name[name]} and @{ordinal} (give the second an alias: name = {symbol})")
        by_ordinal[ordinal], by_name[name] = symbol, ordinal
    return bad


def check_exports(entries, ordinals, names, deffile):
    listed = {ordinal: symbol for ordinal, symbol, _ in entries}
    free = max(listed, default=0) + 1
    bad = []
    for offset, name in enumerate(names):
        data = " DATA" if name.startswith(("_ZTV", "_ZTI")) else ""
        bad.append(f"exported by name, no ordinal yet; add:  {name} @{free + offset} NONAME{data}")
    if not names:
        bad += [f"ordinal {ordinal} is exported but not in {deffile}" for ordinal in sorted(set(ordinals) - set(listed))]
    bad += [f"ordinal {ordinal} ({listed[ordinal]}) is not exported" for ordinal in sorted(set(listed) - set(ordinals))]
    return bad


def check_frozen(entries, path):
    listed = {ordinal: symbol for ordinal, symbol, _ in entries}
    bad = []
    for line in Path(path).read_text(encoding="ascii").splitlines():
        if line.strip() and not line.startswith("#"):
            ordinal, symbol = line.split()
            if listed.get(int(ordinal)) != symbol:
                bad.append(f"ordinal {ordinal} was {symbol} in a release and is now {listed.get(int(ordinal))}")
    return bad


def check_imports(imports, wanted):
    library, ordinals = wanted.split(":")
    found = imports.get(library, [])
    by_ordinal = sorted(int(entry[0], 16) & 0xFFFF for entry in found if int(entry[0], 16) >> 63)
    if len(by_ordinal) == len(found) and by_ordinal == sorted(map(int, ordinals.split(","))):
        return []
    return [f"imports from {library}: {found}"]


def check_same(entries, ordinals, symbols):
    wanted = symbols.split(",")
    addresses = [ordinals.get(ordinal) for ordinal, _, public in entries if public in wanted]
    if len(addresses) == len(wanted) and len(set(addresses)) == 1:
        return []
    return [f"{symbols} have the addresses {addresses}, wanted is one"]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("objdump")
    parser.add_argument("dll")
    parser.add_argument("deffile")
    parser.add_argument("--frozen")
    parser.add_argument("--imports")
    parser.add_argument("--same")
    arguments = parser.parse_args()
    entries = read_def(arguments.deffile)
    ordinals, names, imports = read_dll(arguments.objdump, arguments.dll)
    bad = check_list(entries) + check_exports(entries, ordinals, names, arguments.deffile)
    if arguments.frozen:
        bad += check_frozen(entries, arguments.frozen)
    if arguments.imports:
        bad += check_imports(imports, arguments.imports)
    if arguments.same:
        bad += check_same(entries, ordinals, arguments.same)
    print("\n".join(bad) or f"{len(entries)} exports in order")
    return 1 if bad else 0


sys.exit(main())
