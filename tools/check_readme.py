#!/usr/bin/env python3
"""Checks that the program that README.md prints is the example that the tests build and run.

check_readme.py README EXAMPLE
"""
import re
import sys
from pathlib import Path

readme, example = (Path(name).read_text(encoding="utf-8") for name in sys.argv[1:3])
printed = re.search(r"^```cpp\n(.*?)^```$", readme, re.M | re.S)
if not printed or printed[1] != example:
    sys.exit(f"{sys.argv[1]} does not print {sys.argv[2]}")
print("the printed program is the example")
