#!/usr/bin/env python3
"""Checks the export table of a DLL against its .def file and against the frozen list of ordinals.

check_exports.py OBJDUMP DLL DEF [--frozen FILE] [--imports NAME:ord,ord,...]

A frozen list holds one "ordinal symbol" pair a line, for every ordinal that a release has shipped.
"""
import argparse
import re
import subprocess
import sys


def read_def(path):
    entries = []
    for number, line in enumerate(open(path, encoding="ascii"), 1):
        line = line.split(";")[0].strip()
        if not line or line.split()[0] in ("LIBRARY", "EXPORTS"):
            continue
        m = re.fullmatch(r"(\S+?)(?:\s*=\s*(\S+))?\s+@(\d+)\s+NONAME(\s+DATA)?", line)
        if not m:
            sys.exit(f"{path}:{number}: not 'symbol @ordinal NONAME [DATA]': {line}")
        entries.append((int(m[3]), m[2] or m[1], m[1], bool(m[4])))
    return entries


def read_dll(objdump, path):
    text = subprocess.run([objdump, "-p", path], check=True, capture_output=True, text=True).stdout
    part = text[text.find("The Export Tables"):text.find("The Function Table")]
    ordinals = {int(m[1]) for m in re.finditer(r"\[ *\d+\] \+base\[ *(\d+)\] ", part)}
    names = re.findall(r"^\t\[ *\d+\] (\S+)$", part[part.find("[Ordinal/Name Pointer] Table"):], re.M)
    imports = {}
    for block in text.split("DLL Name: ")[1:]:
        name = block.split("\n")[0].strip()
        imports[name] = re.findall(r"^\t([0-9a-f]{8,16})\s+(\S+)\s+(\S+)", block.split("\n\n")[0], re.M)
    return ordinals, names, imports


def main():
    p = argparse.ArgumentParser()
    p.add_argument("objdump"), p.add_argument("dll"), p.add_argument("deffile")
    p.add_argument("--frozen"), p.add_argument("--imports")
    a = p.parse_args()
    bad = []
    entries = read_def(a.deffile)
    ordinals, names, imports = read_dll(a.objdump, a.dll)
    seen, public = {}, {}
    for o, symbol, shown, _ in entries:
        if o in seen:
            bad.append(f"ordinal {o} stands twice: {seen[o]} and {symbol}")
        if shown in public:
            bad.append(f"{shown} stands twice: @{public[shown]} and @{o} (give the second an alias: name = {symbol})")
        seen[o], public[shown] = symbol, o
    nextfree = max(seen, default=0) + 1
    for n in names:
        bad.append(f"exported by name, no ordinal yet; add:  {n} @{nextfree} NONAME" + (" DATA" if n.startswith(("_ZTV", "_ZTI")) else ""))
        nextfree += 1
    for o in sorted(ordinals - set(seen)):
        if not names:
            bad.append(f"ordinal {o} is exported but not in {a.deffile}")
    for o in sorted(set(seen) - ordinals):
        bad.append(f"ordinal {o} ({seen[o]}) is not exported")
    if a.frozen:
        for line in open(a.frozen, encoding="ascii"):
            if line.strip() and not line.startswith("#"):
                o, symbol = line.split()
                if seen.get(int(o)) != symbol:
                    bad.append(f"ordinal {o} was {symbol} in a release and is now {seen.get(int(o))}")
    if a.imports:
        lib, want = a.imports.split(":")
        got = imports.get(lib, [])
        ords = sorted(int(x[0], 16) & 0xffff for x in got if int(x[0], 16) >> 63)
        if len(ords) != len(got) or ords != sorted(map(int, want.split(","))):
            bad.append(f"imports from {lib}: {got}")
    print("\n".join(bad) or f"{len(entries)} exports in order")
    return 1 if bad else 0


sys.exit(main())
