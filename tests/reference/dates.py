"""Expected values of the calculations in tests/calendar, as rows of their tables.

Dates are the standard library's. Coupon dates are listed from the maturity backwards, month by month; year fractions
are exact fractions and are rounded once.
"""
from calendar import isleap, monthrange
from datetime import date
from fractions import Fraction

EPOCH = date(1960, 1, 1)


def last_day(y, m):
    return monthrange(y, m)[1]


def host(d):
    return (d - EPOCH).days


def us(a, b):
    """30/360 days; a start on a 31st waits for the next 1st unless the end is a 30th or 31st."""
    if a == b:
        return 0
    y1, m1, d1 = a.year, a.month, a.day
    if d1 == 31 and b.day < 30:
        y1, m1, d1 = (y1, m1 + 1, 1) if m1 < 12 else (y1 + 1, 1, 1)
    d2 = 30 if (b.month == 2 and b.day == last_day(b.year, 2)) else min(b.day, 30)
    return 360 * (b.year - y1) + 30 * (b.month - m1) + d2 - min(d1, 30)


def european(a, b):
    return 360 * (b.year - a.year) + 30 * (b.month - a.month) + min(b.day, 30) - min(a.day, 30)


def days(a, b, basis):
    return us(a, b) if basis == 0 else european(a, b) if basis == 4 else (b - a).days


# ---- Coupon dates

def coupon_dates(maturity, frequency):
    """Descending, a century of them."""
    ends_month = maturity.day == last_day(maturity.year, maturity.month)
    month = maturity.year * 12 + maturity.month - 1
    for _ in range(100 * frequency):
        y, m = divmod(month, 12)
        last = last_day(y, m + 1)
        yield date(y, m + 1, last if ends_month else min(last, maturity.day))
        month -= 12 // frequency


def coupon_answers(settlement, maturity, frequency, basis):
    after = []
    for coupon in coupon_dates(maturity, frequency):
        if coupon <= settlement:
            previous = coupon
            break
        after.append(coupon)
    following = after[-1]
    period = (following - previous).days if basis == 1 else Fraction(365 if basis == 3 else 360, frequency)
    return {
        "COUPDAYBS": days(previous, settlement, basis),
        "COUPDAYS": period,
        "COUPDAYSNC": days(settlement, following, basis),
        "COUPNCD": following,
        "COUPNUM": len(after),
        "COUPPCD": previous,
    }


# ---- Year fractions

def actual_year(a, b, every_leap_year):
    lengths = []
    for y in range(a.year, b.year + 1):
        counts = isleap(y)
        if counts and not every_leap_year and y in (a.year, b.year):
            starts_after = y != a.year or a.month >= 3
            ends_before = y != b.year or b.month <= 2
            counts = not (starts_after and ends_before)
        lengths.append(366 if counts else 365)
    return Fraction(sum(lengths), len(lengths))


def fraction(a, b, basis, day_31=True, every_leap_year=False):
    n = days(a, b, basis) + (1 if basis == 0 and day_31 and b.day == 31 else 0)
    year = actual_year(a, b, every_leap_year) if basis == 1 else 365 if basis == 3 else 360
    return Fraction(n) / year


def discount(name, a, b, x, y, basis):
    x, y = Fraction(x), Fraction(y)
    t = fraction(a, b, basis, day_31=name != "DISC", every_leap_year=name == "RECEIVED")
    return {
        "DISC": lambda: (y - x) / y / t,
        "INTRATE": lambda: (y - x) / x / t,
        "PRICEDISC": lambda: (1 - x * t) * y,
        "RECEIVED": lambda: x / (1 - y * t),
        "YIELDDISC": lambda: (y - x) / x / t,
    }[name]()


# ---- Rows

def spelled(value):
    if isinstance(value, date):
        return f"host_date({value.year}, {value.month}, {value.day})"
    return repr(float(value)) if isinstance(value, (Fraction, float)) else str(value)


def row(*fields):
    print("    {" + ", ".join(fields) + "},")


COUPON_CASES = [
    ("within a half-year", date(2008, 2, 15), date(2017, 11, 15), 2),
    ("from a 31st", date(2008, 1, 31), date(2017, 11, 15), 2),
    ("within a leap quarter at month ends", date(2008, 2, 10), date(2010, 3, 31), 4),
    ("annual, 29 February", date(2007, 6, 10), date(2008, 2, 29), 1),
    ("monthly, aiming for the 30th", date(2007, 3, 5), date(2010, 12, 30), 12),
    ("two-monthly over the turn of a century", date(1899, 12, 31), date(1903, 4, 30), 6),
    ("on a coupon date", date(2008, 5, 15), date(2010, 11, 15), 2),
    ("on an anniversary at a month end", date(2009, 3, 31), date(2010, 3, 31), 4),
    ("a day before a coupon date", date(2008, 5, 14), date(2010, 11, 15), 2),
]

FRACTION_CASES = [
    ("some months", date(2001, 3, 20), date(2001, 9, 5)),
    ("to a 31st", date(2001, 1, 15), date(2001, 1, 31)),
    ("31 to 31", date(2001, 1, 31), date(2001, 3, 31)),
    ("end of February to 31 March", date(2001, 2, 28), date(2001, 3, 31)),
    ("31 January to 15 February", date(2001, 1, 31), date(2001, 2, 15)),
    ("from March of a leap year", date(2000, 3, 1), date(2001, 3, 1)),
    ("a leap year", date(2000, 1, 1), date(2000, 12, 31)),
    ("to 29 February", date(1999, 7, 1), date(2000, 2, 29)),
    ("decades", date(1987, 5, 14), date(2023, 10, 31)),
    ("before 1960", date(1899, 12, 31), date(1904, 2, 28)),
]

DISCOUNT_CASES = [
    ("half a year", date(2007, 2, 15), date(2007, 8, 1)),
    ("to a 31st", date(2007, 1, 15), date(2007, 1, 31)),
    ("from March of a leap year", date(2000, 3, 1), date(2001, 3, 1)),
    ("years", date(1999, 5, 31), date(2004, 2, 10)),
]

AMOUNTS = {"DISC": (97.5, 100.0), "INTRATE": (1000000.0, 1014420.0), "PRICEDISC": (0.0525, 100.0),
           "RECEIVED": (1000000.0, 0.0575), "YIELDDISC": (99.795, 100.0)}

EVERY_BASIS = ("within a half-year", "from a 31st", "half a year")


def bases(text):
    return range(5) if text in EVERY_BASIS else (0, 1)


if __name__ == "__main__":
    print("// coupon_dates_test.cpp")
    for text, settlement, maturity, frequency in COUPON_CASES:
        for basis in bases(text):
            answers = coupon_answers(settlement, maturity, frequency, basis).values()
            row(f'"{text}"', spelled(settlement), spelled(maturity), str(frequency), str(basis), *map(spelled, answers))
    print("// year_fraction_test.cpp")
    for text, start, end in FRACTION_CASES:
        fractions = ", ".join(spelled(fraction(start, end, basis)) for basis in range(5))
        row(f'"{text}"', spelled(start), spelled(end), "{" + fractions + "}")
    print("// discount_securities_test.cpp")
    for text, start, end in DISCOUNT_CASES:
        for basis in bases(text):
            answers = (discount(name, start, end, x, y, basis) for name, (x, y) in AMOUNTS.items())
            row(f'"{text}"', spelled(start), spelled(end), str(basis), "{" + ", ".join(map(spelled, answers)) + "}")
