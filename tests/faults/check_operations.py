#!/usr/bin/env python3
"""Checks that the tables of operations, which the sweeps run with every fault, refer to every exported function.

check_operations.py NM CXXFILT DEF OBJECT...

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


def names(cxxfilt, symbols):
    """As people write them: one name for the several forms of a constructor or destructor, and one spelling for both
    systems, whose 64-bit integer has another name on each."""
    text = output([cxxfilt, "--no-strip-underscore", "--no-verbose"], "\n".join(symbols))
    text = text.replace("long long", "long").replace("_SYSTEMTIME", "SYSTEMTIME")
    return set(re.sub(r"(\d)ll\b", r"\1l", text).splitlines())


def main():
    nm, cxxfilt, deffile, *objects = sys.argv[1:]
    listed = re.findall(r"^\s+(\S+)\s+@\d+\s+NONAME$", Path(deffile).read_text(encoding="ascii"), re.M)
    exported = names(cxxfilt, listed)
    used = names(cxxfilt, re.findall(r"^\s+U (\S+)$", output([nm, "-u", *objects]), re.M))
    bad = [f"in no sweep: {name}" for name in sorted(exported - used - EXEMPT.keys())]
    bad += [f"exempt without need: {name}" for name in sorted(EXEMPT.keys() - exported | EXEMPT.keys() & used)]
    print("\n".join(bad) or f"{len(exported & used)} functions swept, {len(EXEMPT)} exempt")
    return 1 if bad else 0


sys.exit(main())
