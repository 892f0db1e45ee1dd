#!/usr/bin/env python3
"""Random calls with the model's verdict.

    python3 draw.py --seed S --count N [--only NAME,...]

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
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

import arguments
from ieee import bits

# Smallest and largest number of arguments, the name included; 0: no upper bound.
COUNTS = {
    "ACCRINT": (7, 8), "ACCRINTM": (5, 6), "AMORDEGRC": (7, 8), "AMORLINC": (7, 8), "COUPDAYBS": (4, 5), "COUPDAYS": (4, 5),
    "COUPDAYSNC": (4, 5), "COUPNCD": (4, 5), "COUPNUM": (4, 5), "COUPPCD": (4, 5), "CUMIPMT": (6, 7), "CUMPRINC": (6, 7),
    "DB": (5, 6), "DDB": (5, 6), "DISC": (5, 6), "DOLLARDE": (3, 3), "DOLLARFR": (3, 3), "DURATION": (6, 7), "EFFECT": (3, 3),
    "FV": (4, 6), "FVSCHEDULE": (2, 0), "INTRATE": (5, 6), "IPMT": (5, 7), "IRR": (2, 0), "ISPMT": (5, 5), "MDURATION": (6, 7),
    "MIRR": (2, 0), "NOMINAL": (3, 3), "NPER": (4, 6), "NPV": (2, 0), "ODDFPRICE": (9, 10), "ODDFYIELD": (9, 10),
    "ODDLPRICE": (8, 9), "ODDLYIELD": (8, 9), "PMT": (4, 6), "PPMT": (5, 7), "PRICE": (7, 8), "PRICEDISC": (5, 6),
    "PRICEMAT": (6, 7), "PV": (4, 6), "RATE": (4, 6), "RECEIVED": (5, 6), "SLN": (4, 4), "SYD": (5, 5), "TBILLEQ": (4, 4),
    "TBILLPRICE": (4, 4), "TBILLYIELD": (4, 4), "VDB": (6, 8), "XIRR": (2, 0), "XNPV": (2, 0), "YEARFRAC": (3, 4),
    "YIELD": (7, 8), "YIELDDISC": (5, 6), "YIELDMAT": (6, 7)}

MODULES = ["calendar_model", "securities", "datedflows", "irr", "annuities", "rates", "depreciation", "bills", "generators"]
MOST_REDRAWS = 1000


def load():
    """(calculations, generators, what starts a call's budget of steps, the exceptions that throw a draw away)"""
    calculations, generators, refills, too_long = {}, {}, [], {arguments.TooLong}
    for name in MODULES:
        try:
            module = importlib.import_module(name)
        except ModuleNotFoundError as absent:
            if absent.name not in MODULES:
                raise
            print("no module %s yet" % absent.name, file=sys.stderr)
            continue
        calculations.update(getattr(module, "CALCULATIONS", {}))
        generators.update(getattr(module, "GENERATORS", {}))
        if hasattr(module, "refill_steps"):
            refills.append(module.refill_steps)
        if hasattr(module, "TooLong"):
            too_long.add(module.TooLong)
    return calculations, generators, refills, tuple(too_long)


def draw(name, rng, calculation, generator, refills, too_long):
    """One line. A draw that a literal loop would take too long for is drawn again."""
    smallest, largest = COUNTS[name]
    for _ in range(MOST_REDRAWS):
        drawn = generator(rng)
        call = arguments.Call(drawn, name.encode())
        assert smallest <= call.count and (largest == 0 or call.count <= largest), (name, call.count)
        for refill in refills:
            refill()
        try:
            status, flagged, result = arguments.run(calculation, call)
        except too_long:
            continue
        return "\t".join([name, " ".join(argument.encoded() for argument in drawn), str(status),
                          ",".join(str(slot) for slot in flagged) or "-",
                          "untouched" if result is None else "%016x" % bits(result)])
    raise RuntimeError("%s: nothing but endless draws" % name)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--seed", required=True)
    parser.add_argument("--count", type=int, required=True)
    parser.add_argument("--only", default="")
    options = parser.parse_args()
    calculations, generators, refills, too_long = load()
    names = options.only.split(",") if options.only else sorted(set(calculations) & set(generators))
    for name in names:
        rng = random.Random("%s %s" % (options.seed, name))
        for _ in range(options.count):
            print(draw(name, rng, calculations[name], generators[name], refills, too_long))


if __name__ == "__main__":
    main()
