#!/usr/bin/env python3
"""Random calls with the model's verdict.

    python3 draw.py --seed S --count N [--only NAME,...] [--far] [--thrown]

With --far the dates lie far out, and there are draws of calculations with dates alone (far_draws.py). With --thrown the
error stream has a line for each calculation: its name, and how many draws its literal loops would have taken too long for.

One call a line, tab separated:
    NAME    arguments    handler status    flagged slots    result
Arguments (without the name), joined by blanks: n:<16 hex digits of the double's bits>, n:null (null value pointer, type
numeric), c:<hex of the bytes, perhaps none>, c:null (type character with a null text pointer).
Status as the handler returns it: 0, 120833, 120836. Flagged slots comma separated, "-" for none.
Result: 16 hex digits of its bits, or "untouched".
The same seed gives the same calls for a calculation, whatever else is drawn beside it.
"""
import argparse
import importlib
import os
import random
import re
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

import arguments
import far_draws
from ieee import bits

ROW = re.compile(r"ROW\((\w+), (\d+), (\d+)\)")


def counts():
    """By name: smallest and largest number of arguments, the name included, 0 for no upper bound, from the module's list."""
    path = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "module", "financial_list.hpp")
    with open(path, encoding="ascii") as header:
        return {name: (int(smallest), int(largest)) for name, smallest, largest in ROW.findall(header.read())}


COUNTS = counts()
MODULES = ["calendar_model", "securities", "datedflows", "irr", "annuities", "rates", "depreciation", "bills", "generators"]
MOST_REDRAWS = 1000


def load():
    """(calculations, generators, what starts a call's budget of steps, the exceptions that throw a draw away)"""
    calculations, generators, refills, too_long = {}, {}, [], {arguments.TooLong}
    for name in MODULES:
        module = importlib.import_module(name)
        calculations.update(getattr(module, "CALCULATIONS", {}))
        generators.update(getattr(module, "GENERATORS", {}))
        if hasattr(module, "refill_steps"):
            refills.append(module.refill_steps)
        if hasattr(module, "TooLong"):
            too_long.add(module.TooLong)
    return calculations, generators, refills, tuple(too_long)


def draw(name, rng, calculation, generator, refills, too_long):
    """One line, and how often it was drawn again: a draw that a literal loop would take too long for is."""
    smallest, largest = COUNTS[name]
    for thrown in range(MOST_REDRAWS):
        drawn = generator(rng)
        call = arguments.Call(drawn, name.encode())
        assert smallest <= call.count and (largest == 0 or call.count <= largest), (name, call.count)
        for refill in refills:
            refill()
        try:
            status, flagged, result = arguments.run(calculation, call)
        except too_long:
            continue
        return thrown, "\t".join([name, " ".join(argument.encoded() for argument in drawn), str(status),
                                  ",".join(str(slot) for slot in flagged) or "-",
                                  "untouched" if result is None else "%016x" % bits(result)])
    raise RuntimeError("%s: nothing but endless draws" % name)


def far_generator(name, generator):
    return lambda rng: far_draws.far(rng, name, generator(rng))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--seed", required=True)
    parser.add_argument("--count", type=int, required=True)
    parser.add_argument("--only", default="")
    parser.add_argument("--far", action="store_true")
    parser.add_argument("--thrown", action="store_true")
    options = parser.parse_args()
    calculations, generators, refills, too_long = load()
    names = options.only.split(",") if options.only else sorted(set(calculations) & set(generators))
    if options.far:
        names = [name for name in names if name in far_draws.DATES]
    for name in names:
        rng = random.Random("%s %s" % (options.seed, name))
        generator = generators[name]
        if options.far:
            generator = far_generator(name, generator)
        all_thrown = 0
        for _ in range(options.count):
            thrown, line = draw(name, rng, calculations[name], generator, refills, too_long)
            all_thrown += thrown
            print(line)
        if options.thrown:
            print(name, all_thrown, file=sys.stderr)


if __name__ == "__main__":
    main()
