#!/usr/bin/env python3
"""Checks that a program imports every function that the DLL exports: what it never calls, it does not prove.

check_use.py OBJDUMP PROGRAM DEF
"""
import re
import subprocess
import sys
from pathlib import Path


# Members that only the library itself calls, by the names the classes give them.
PRIVATE = r"ZeroTag|readClock|19currentTimeZoneName|19emitTimeZoneChanged|8heldName|8holdName|14holdNameIfNone|12takeHeldName"
# The forms of a constructor or destructor that serve a derived class and delete through a vtable.
OTHER_FORMS = r"(C2E|D2E|D0E)"


def exported_functions(path):
    """Symbol by ordinal, for every function that a program can call by itself."""
    lines = re.findall(r"^\s+(\S+)\s+@(\d+)\s+NONAME$", Path(path).read_text(encoding="ascii"), re.M)
    return {int(ordinal): symbol for symbol, ordinal in lines if not re.search(f"{PRIVATE}|{OTHER_FORMS}", symbol)}


def main():
    objdump, program, deffile = sys.argv[1:4]
    text = subprocess.run([objdump, "-p", program], check=True, capture_output=True, text=True).stdout
    block = text.split("DLL Name: VorTime.dll", 1)[1].split("\n\n")[0]
    imported = {int(entry, 16) & 0xFFFF for entry in re.findall(r"^\t([0-9a-f]{16})\s", block, re.M) if int(entry, 16) >> 63}
    functions = exported_functions(deffile)
    unused = sorted(symbol for ordinal, symbol in functions.items() if ordinal not in imported)
    print("\n".join(f"not used: {symbol}" for symbol in unused) or f"{len(functions)} functions used from outside")
    return 1 if unused else 0


sys.exit(main())
