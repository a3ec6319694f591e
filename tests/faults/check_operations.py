#!/usr/bin/env python3
"""Checks that the tables of operations, which the sweeps run with every fault, refer to every exported function.

check_operations.py NM DEF OBJECT...

What is exempt stands below with its reason; an exemption that no export needs any more is an error too.
"""
import re
import subprocess
import sys
from pathlib import Path

EXEMPT = {
    # Only the library itself calls these; the public operations above them are swept.
    "KTX::TIM::StopWatchC::readClock() const": "called by start(), stop() and elapsed()",
    "KTX::TIM::TimeZoneWindowsC::currentTimeZoneName[abi:cxx11]()": "called by getTimeZone()",
    "KTX::TIM::TimeZoneWindowsC::emitTimeZoneChanged()": "called by setTimeZone()",
    "KTX::TIM::TimeZoneWindowsC::heldName[abi:cxx11]() const": "called by getTimeZone()",
    "KTX::TIM::TimeZoneWindowsC::holdName(std::__cxx11::basic_string<wchar_t, std::char_traits<wchar_t>, "
    "std::allocator<wchar_t> > const&)": "called by setTimeZone()",
    "KTX::TIM::TimeZoneWindowsC::holdNameIfNone(std::__cxx11::basic_string<wchar_t, std::char_traits<wchar_t>, "
    "std::allocator<wchar_t> > const&)": "called by getTimeZone()",
    "KTX::TIM::TimeZoneWindowsC::takeHeldName[abi:cxx11]()": "called by setTimeZone()",
    "KTX::TIM::YmdhmsC::YmdhmsC(KTX::TIM::YmdhmsC::ZeroTag, KTX::TIM::TimeBaseE, unsigned int)": "called by zero()",
}


def output(command, text=None):
    return subprocess.run(command, check=True, capture_output=True, text=True, input=text).stdout


def plain(name):
    """One spelling for both systems, whose 64-bit integer has another name on each."""
    name = name.replace("long long", "long").replace("_SYSTEMTIME", "SYSTEMTIME")
    return re.sub(r"(\d)ll\b", r"\1l", name)


def exported_functions(nm, path):
    """The names of the functions; the several forms of a constructor or destructor have one."""
    symbols = re.findall(r"^\s+(\S+)\s+@\d+\s+NONAME$", Path(path).read_text(encoding="ascii"), re.M)
    filt = re.sub(r"nm(-\d+)?$", "c++filt", nm)
    return {plain(name) for name in output([filt, "--no-strip-underscore", "--no-verbose"], "\n".join(symbols)).splitlines()}


def used_functions(nm, objects):
    undefined = output([nm, "-C", "-u", *objects])
    return {plain(match) for match in re.findall(r"^\s+U (.+)$", undefined, re.M)}


def main():
    nm, deffile, *objects = sys.argv[1:]
    exported, used = exported_functions(nm, deffile), used_functions(nm, objects)
    bad = [f"in no sweep: {name}" for name in sorted(exported - used - EXEMPT.keys())]
    bad += [f"exempt without need: {name}" for name in sorted(EXEMPT.keys() - exported | EXEMPT.keys() & used)]
    print("\n".join(bad) or f"{len(exported & used)} functions swept, {len(EXEMPT)} exempt")
    return 1 if bad else 0


sys.exit(main())
