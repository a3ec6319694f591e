#!/usr/bin/env python3
"""Checks that clang's thread safety analysis warns of the marked lines of a source file and of no other.

check_annotations.py CLANG SOURCE INCLUDE_DIRECTORY
"""
import re
import subprocess
import sys

clang, source, include = sys.argv[1:]
command = [clang, "-std=c++17", "-fsyntax-only", "-Wthread-safety", "-I", include, source]
done = subprocess.run(command, capture_output=True, text=True)
warned = {int(line) for line in re.findall(r"^\S*LockMistakes\.cpp:(\d+):\d+: warning: ", done.stderr, re.M)}
with open(source, encoding="utf-8") as lines:
    marked = {number for number, line in enumerate(lines, 1) if line.rstrip().endswith("// mistake")}
if done.returncode != 0 or not marked or warned != marked:
    print(done.stderr)
    print(f"marked {sorted(marked)}, warned of {sorted(warned)}")
    sys.exit(1)
