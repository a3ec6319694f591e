#!/usr/bin/env python3
"""check_symbols.py NM LIBRARY DEF: a shared library offers the functions of the .def file and no other.

Beside them stand the type information of the class, which a caller's sanitizer and typeid refer to.
"""
import re
import subprocess
import sys

nm, library, def_file = sys.argv[1:]
with open(def_file, encoding="ascii") as lines:
    wanted = {m[1] for m in map(re.compile(r"\s*(\S+)\s+@\d+").match, lines) if m}
wanted |= {"_ZTIN3KTX3DBG11DbgLogFileCE", "_ZTSN3KTX3DBG11DbgLogFileCE"}
output = subprocess.run([nm, "-D", "--defined-only", library], check=True, capture_output=True, text=True).stdout
offered = {line.split()[-1] for line in output.splitlines()}
for symbol in sorted(wanted - offered):
    print(f"missing: {symbol}")
for symbol in sorted(offered - wanted):
    print(f"not in the list: {symbol}")
sys.exit(wanted != offered)
