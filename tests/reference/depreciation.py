"""Depreciation in exact fractions, for the expected values of tests/depreciation, schedules and prorated.

Run it to print the rows. Inputs are the exact doubles that the tests hand over, a walk rounds nothing, and only the
finished amount becomes a double. Rates that are roots are found at 60 digits. Year fractions are days of the standard
library's calendar over a year of the basis.
"""
from datetime import date
from decimal import Decimal, getcontext
from fractions import Fraction

getcontext().prec = 60


def F(x):
    return Fraction(x)  # the double itself, not its decimal spelling


def SLN(cost, salvage, life):
    return (F(cost) - F(salvage)) / F(life)


def SYD(cost, salvage, life, period):
    digits = sum(range(1, life + 1))
    return (F(cost) - F(salvage)) * (life - period + 1) / digits


def half_away(x):
    whole = int(abs(x) + Fraction(1, 2))
    return whole if x > 0 else -whole


def DB(cost, salvage, life, period, months=12):
    ratio = Decimal(cost and salvage) / Decimal(cost)
    exact = 1 - (ratio.ln() / life).exp() if ratio else Decimal(1)
    rate = Fraction(half_away(Fraction(exact) * 1000), 1000)
    taken = [F(cost) * rate * months / 12]
    for _ in range(2, life + 1):
        taken.append((F(cost) - sum(taken)) * rate)
    taken.append((F(cost) - sum(taken)) * rate * (12 - months) / 12)
    return taken[period - 1]


def DDB(cost, salvage, life, period, factor=2):
    left = F(cost)
    for _ in range(period):
        d = min(left * F(factor) / F(life), left - F(salvage)) if left >= F(salvage) else 0
        left -= d
    return d


def VDB(cost, salvage, life, s, e, factor=2, no_switch=1):
    left, amounts, fixed = F(cost), [], None
    for i in range(e):
        d = left * F(factor) / F(life)
        straight = (left - F(salvage)) / (F(life) - i)
        if not no_switch and fixed is None and d < straight:
            fixed = straight
        d = min(d if fixed is None else fixed, left - F(salvage))
        amounts.append(d)
        left -= d
    return sum(amounts[s:])


def days_360(s, e, day_31):
    """From a day below 31; an end on a 31st counts as one on the 30th, or as one day more."""
    assert s.day < 31 and not (e.month == 2 and e.day > 27)
    return 360 * (e.year - s.year) + 30 * (e.month - s.month) + min(e.day, 30) - s.day + (day_31 and e.day == 31)


def year_fraction(s, e, basis, day_31):
    if basis in (0, 4):
        return Fraction(days_360(s, e, day_31 and basis == 0), 360)
    leap = s.year % 4 == 0 and basis == 1
    return Fraction((e - s).days, 366 if leap else 365)


def AMORLINC(cost, s, e, salvage, period, rate, basis):
    full = F(cost) * F(rate)
    first = full * year_fraction(s, e, basis, False)
    if period == 0:
        return first
    return max(min(F(cost) - F(salvage) - first - (period - 1) * full, full), 0)


def AMORDEGRC(cost, s, e, salvage, period, rate, basis):
    life = 1 / F(rate)
    n = int(life)
    assert n >= 3
    faster = F(1.5) if life <= F(4.000000000004) else 2 if life <= F(6.0000000000060005) else F(2.5)
    first = F(cost) * faster * F(rate) * year_fraction(s, e, basis, True)
    d = half_away(min(first, F(cost) - F(salvage)))
    left = F(cost) - d
    for i in range(period):
        share = {n - 2: Fraction(1, 2), n - 1: Fraction(1)}.get(i, faster * F(rate))
        d = half_away(left * share) if left >= F(salvage) else 0
        left -= d
    return d


ROWS = [
    (SLN, (30000, 7500, 10)), (SLN, (1000.1, 99.9, 7.3)), (SLN, (-50, 20, 0.3)),
    (SYD, (30000, 7500, 10, 1)), (SYD, (30000, 7500, 10, 10)), (SYD, (1234.5, 67.8, 7, 3)), (SYD, (-100, 10, 6, 2)),
    (SYD, (30000, 7500, 10, 11)), (SYD, (30000, 7500, 10, 12)),
    *[(DB, (1000000, 100000, 6, p, 7)) for p in range(1, 8)],
    *[(DB, (1000, 100, 5, p)) for p in (1, 2, 5, 6)],
    (DB, (1000, 100, 5, 1, 13)), (DB, (1000, 100, 5, 6, 13)), (DB, (500, 0, 4, 1, 6)), (DB, (500, 0, 4, 2, 6)),
    (DB, (500, 0, 4, 5, 6)), (DB, (100, 300, 3, 2)), (DB, (1234.5, 67.8, 1, 2, 3)),
    (DDB, (2400, 300, 3650, 1)), (DDB, (2400, 300, 120, 1)), (DDB, (2400, 300, 10, 1)), (DDB, (2400, 300, 10, 2, 1.5)),
    (DDB, (2400, 300, 10, 10)), (DDB, (2400, 300, 7.5, 7)), (DDB, (1000, 0, 5, 5, 3.7)), (DDB, (1000, -50, 5, 5)),
    (DDB, (-100, -300, 5, 3)), (DDB, (1000, 999, 4, 1)), (DDB, (1000, 999, 4, 2)),
    (VDB, (2400, 300, 10, 0, 1)), (VDB, (2400, 300, 120, 6, 18)), (VDB, (2400, 300, 120, 6, 18, 1.5)),
    (VDB, (2400, 300, 10, 0, 1, 1.5)), (VDB, (1000, 50, 5, 2, 5)), (VDB, (1000, 50, 5, 2, 5, 2, 0)),
    (VDB, (1000, 50, 5, 3, 4, 2, 1)), (VDB, (1000, 50, 5, 3, 4, 2, 0)), (VDB, (1000, 300, 5, 2, 5, 2, 1)),
    (VDB, (1000, 300, 5, 2, 5, 2, 0)), (VDB, (1000, 0, 7.5, 1, 7, 1.2, 1)), (VDB, (1000, 0, 7.5, 1, 7, 1.2, 0)),
    (VDB, (1000, 100, 10, 0, 9, 0.5, 0)), (VDB, (1000, 100, 10, 0, 9, 0.5, 1)),
]

PURCHASE, END = date(2008, 8, 19), date(2008, 12, 31)
PRORATED = [
    *[(AMORLINC, (2400, PURCHASE, END, 300, p, 0.15, 1)) for p in (0, 1, 5, 6, 7)],
    (AMORLINC, (2400, PURCHASE, END, 300, 0, 0.15, 0)), (AMORLINC, (2400, PURCHASE, END, 300, 0, 0.15, 3)),
    (AMORLINC, (2400, PURCHASE, END, 300, 0, 0.15, 4)), (AMORLINC, (1000, END, PURCHASE, 10, 0, 0.15, 3)),
    (AMORLINC, (1000, END, PURCHASE, 10, 7, 0.15, 3)),
    *[(AMORDEGRC, (2400, PURCHASE, END, 300, p, 0.15, 1)) for p in range(0, 7)],
    (AMORDEGRC, (2400, PURCHASE, END, 300, 0, 0.15, 0)), (AMORDEGRC, (2500, PURCHASE, END, 300, 0, 0.15, 4)),
    *[(AMORDEGRC, (1000, PURCHASE, END, 0, p, 0.25, 3)) for p in range(0, 5)],
    *[(AMORDEGRC, (1000, PURCHASE, END, 0, 0, r, 3)) for r in (0.3, 1 / 4.5, 1 / 6.0, 1 / 6.5)],
    (AMORDEGRC, (1000, END, PURCHASE, 0, 0, 0.25, 3)), (AMORDEGRC, (1000, END, PURCHASE, 0, 1, 0.25, 3)),
]


def spelled(x):
    return f"host_date({x.year}, {x.month}, {x.day})" if isinstance(x, date) else repr(x)


def main():
    for compute, arguments in ROWS + PRORATED:
        print(f"{compute.__name__} {{{', '.join(map(spelled, arguments))}}}: {float(compute(*arguments))!r}")


if __name__ == "__main__":
    main()
