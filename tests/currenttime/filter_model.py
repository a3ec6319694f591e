#!/usr/bin/env python3
"""A second implementation of the estimator and the offset filter, which makes the table of traces.

filter_model.py [--check] FILE: writes the table, or fails when FILE is not what it would write.
"""
import argparse
import math
import random
import sys
from datetime import datetime, timedelta

DAY_MS = 8.64e7


def trunc(value):
    return int(value)


def day_number(unix_ms):
    t = datetime(1970, 1, 1) + timedelta(milliseconds=unix_ms)
    year, month = (t.year - 1, t.month + 12) if t.month < 3 else (t.year, t.month)
    century = year // 100
    return (math.trunc(365.25 * year) + math.trunc(30.6001 * (month + 1)) - 679006 + century // 4 - century + 2 + t.day
            + t.hour / 24 + t.minute / 1440 + t.second / 86400 + (t.microsecond // 1000) / 86400000)


def offset_difference(a, b):
    return trunc(float(b[1] - a[1]) + a[0] * DAY_MS - b[0] * DAY_MS)


class Filter:
    def __init__(self, unix_ms, steady_ms):
        mjd = day_number(unix_ms)
        sigma = 5000.0 / DAY_MS
        self.x, self.p = mjd, sigma * sigma
        self.floor = (20.0 / DAY_MS) * (20.0 / DAY_MS)
        self.steady = steady_ms
        self.current = (mjd, steady_ms)

    def predict(self, steady_ms):
        dt = float(steady_ms - self.steady) / DAY_MS
        s = 5000.0 * dt / DAY_MS
        self.x += dt
        self.p += s * s
        self.steady = steady_ms

    def step(self, steady_ms, mjd, noise_ms):
        sigma = float(noise_ms) / DAY_MS
        self.predict(steady_ms)
        residual = offset_difference((mjd, steady_ms), (self.x, steady_ms))
        is_outlier = abs(float(residual)) > sigma * 300.0 * DAY_MS
        if is_outlier:
            sigma = 0.0
        self.predict(steady_ms)
        gain = 1.0 / (self.p * 1.0 + sigma * sigma) * self.p
        self.x = self.x + (mjd - 1.0 * self.x) * gain
        self.p = max(self.floor, self.p - gain * 1.0 * self.p)
        estimate = (self.x, steady_ms)
        difference = offset_difference(estimate, self.current)
        is_released = (abs(float(difference)) / DAY_MS * DAY_MS > 51.0 and
                       not math.sqrt(self.p) * DAY_MS > 55.0)
        if is_released:
            self.current = estimate
        return is_outlier, self.x, math.sqrt(self.p), difference, is_released, self.current


def day_of(year, month, day, ms=0):
    return round((datetime(year, month, day) - datetime(1970, 1, 1)).total_seconds()) * 1000 + ms


SEEDS = [
    # seed of the calendar clock, seed of the steady clock, usual noise, usual interval, drift in ppm
    (day_of(2024, 3, 7, 29345000), 1000000, 10, 1000, 0),
    (day_of(1999, 12, 31, 86399999), 4294967290, 56, 1000, 50),
    (day_of(2038, 1, 19, 11647000), -5000, 100, 10000, -20),
    (day_of(2024, 2, 29, 43200007), 123456789012, 300, 1000, 5),
    (day_of(1980, 1, 6, 1), 1, 1000, 60000, -50),
    (day_of(2199, 7, 1, 77777777), 77777777, 55, 600000, 20),
]
ODD_NOISES = [0, 1, 2, 3, 13, 19, 20, 21, 31, 38, 42, 47, 62, 71, 500, 5000, -10]


def make_trace(rng, seed):
    unix_ms, steady, noise, interval, ppm = seed
    model = Filter(unix_ms, steady)
    true_start, steady_start = unix_ms + rng.randrange(-4000, 4000), steady
    jump = 0
    for number in range(150):
        steady += interval if rng.random() < 0.9 else rng.choice([0, 1, -interval, 86400000, 86400001, 7 * interval])
        if rng.random() < 0.02:
            jump += rng.choice([-1000, 1000, 52, -52, 3600000])
        stated = noise if rng.random() < 0.85 else rng.choice(ODD_NOISES)
        elapsed = steady - steady_start
        true_ms = true_start + elapsed + round(elapsed * ppm * 1e-6) + jump
        mjd = day_number(true_ms + round(rng.gauss(0, max(noise, 1))))
        outlier, x, sigma, difference, released, current = model.step(steady, mjd, stated)
        yield (steady, mjd, stated, outlier, x, sigma, difference, released, current)


def table():
    rng = random.Random(20240307)
    lines = ["// Made by filter_model.py; not to be edited.", ""]
    for number, seed in enumerate(SEEDS):
        lines.append(f"// {number}")
        for steady, mjd, noise, outlier, x, sigma, difference, released, current in make_trace(rng, seed):
            words = [str(number), f"{seed[0]}LL", f"{seed[1]}LL", f"{steady}LL", mjd.hex(), str(noise), str(outlier).lower(), x.hex(), sigma.hex(),
                     str(difference), str(released).lower(), current[0].hex(), f"{current[1]}LL"]
            lines.append("{" + ", ".join(words) + "},")
    return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--check", action="store_true")
    parser.add_argument("file")
    arguments = parser.parse_args()
    text = table()
    if not arguments.check:
        open(arguments.file, "w", encoding="ascii").write(text)
        return 0
    if open(arguments.file, encoding="ascii").read() == text:
        return 0
    print(f"{arguments.file} is not what this script makes")
    return 1


if __name__ == "__main__":
    sys.exit(main())
