#!/usr/bin/env python3
"""Calls of IRR, which the slow model cannot answer: lists of flows of all sizes and signs, with and without zeros,
missing values and absent ones. One a line: name, tab, arguments as in tests/model/draw.py.

    irr_calls.py COUNT
"""
import random
import struct
import sys


def encoded(value):
    if value is None:
        return "n:null"
    return "n:%016x" % struct.unpack("<Q", struct.pack("<d", value))[0]


def flow(rng, unit):
    size = round(unit * rng.uniform(1, 1000), 2)
    return size if rng.random() < 0.5 else 0 - size


def loan(rng, count):
    """An outlay, then level payments that return it at some rate, rounded to cents."""
    rate = rng.uniform(-0.02, 0.3)
    paid = round(rng.uniform(1, 2000), 2)
    worth = sum(paid / (1 + rate) ** k for k in range(1, count))
    return [0 - round(worth, 2)] + [paid] * (count - 1)


def project(rng, count):
    """An outlay, then uneven returns, some of them 0."""
    returns = [0.0 if rng.random() < 0.1 else round(rng.uniform(1, 500), 2) for _ in range(count - 1)]
    return [0 - round(sum(returns) / rng.uniform(0.6, 3) + 0.01, 2)] + returns


def free(rng, count):
    unit = 10.0 ** rng.choice([-300, -3, 0, 0, 0, 0, 3, 6, 12, 290])
    return [flow(rng, unit) for _ in range(count)]


def spoiled(rng, flows):
    """Now and then a value is missing, absent, or no amount at all."""
    odd = [float("nan"), None, float("inf"), 0.0, 1e308, 5e-324, 0 - 0.0]
    if rng.random() < 0.08:
        flows[rng.randrange(len(flows))] = rng.choice(odd)
    return flows


def main():
    rng = random.Random("IRR")
    for _ in range(int(sys.argv[1])):
        count = min(60, 2 + int(rng.expovariate(0.12)))
        flows = spoiled(rng, rng.choice([loan, project, free])(rng, count))
        print("IRR\t" + " ".join(encoded(value) for value in flows))


if __name__ == "__main__":
    main()
