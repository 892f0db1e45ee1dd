"""Coupon securities at 60 digits, for the expected values of tests/securities.

Run it to print tests/securities/reference_values.inc, the table of tests/securities/reference_test.cpp; with that file
as its argument it says where the file is not what is printed. Inputs are the exact doubles that the tests hand over;
schedules are lists of coupon dates, day counts come from the calendar of the standard library, and yields are found by
bisection.
"""
import sys
from bisect import bisect_right
from calendar import isleap, monthrange
from datetime import date
from decimal import Decimal, getcontext
from pathlib import Path

from dates import days

getcontext().prec = 60
BASES = (0, 1, 2, 3, 4)


def D(x):
    return Decimal(float(x))  # the double itself, not its decimal spelling


def last_day(d):
    return monthrange(d.year, d.month)[1]


def stepped(anchor, months):
    """anchor moved by whole months; a month's end stays one, a day that the month does not have becomes its last."""
    m = anchor.year * 12 + anchor.month - 1 + months
    first = date(m // 12, m % 12 + 1, 1)
    end = last_day(first)
    return first.replace(day=end if anchor.day == last_day(anchor) else min(anchor.day, end))


# ---- Day counts

def month_end_360(s, e):
    """30/360 inside a coupon period, before the cap."""
    def next_first(d):
        return (1, d.month + 1, d.year) if d.month < 12 else (1, 1, d.year + 1)
    d1, m1, y1 = s.day, s.month, s.year
    d2, m2, y2 = e.day, e.month, e.year
    if s.day == last_day(s) and s.month != 2:
        d1, m1, y1 = next_first(s)
        if e.day == last_day(e) or e.day == 30:
            d2, m2, y2 = next_first(e)
    if (m2 == 2 and d2 == last_day(e)) or d2 == 31:
        d2 = 30
    return 360 * (y2 - y1) + 30 * (m2 - m1) + d2 - min(d1, 30)


class Schedule:
    """All coupon dates around an anchor, and the day counts between them."""

    def __init__(self, anchor, f, basis, plain_360=False):
        self.f, self.basis, self.plain = f, basis, plain_360
        self.dates = [stepped(anchor, 12 // f * k) for k in range(-60 * f, 60 * f)]

    def period(self, d):
        """The period that holds d; one that ends on d comes before the one that begins there."""
        i = bisect_right(self.dates, d)
        return self.dates[i - 1], self.dates[i]

    def on_coupon(self, d):
        return self.period(d)[0] == d

    def length(self, s, e):
        if self.basis == 1:
            return Decimal((e - s).days)
        return Decimal(365 if self.basis == 3 else 360) / self.f

    def count(self, s, e):
        if self.basis == 0 and not self.plain:
            return min(Decimal(month_end_360(s, e)), self.length(s, e))
        return Decimal(days(s, e, self.basis))

    def after(self, s, e):
        """Coupons after s, up to and with e."""
        return sum(1 for d in self.dates if s < d <= e)


# ---- Regular periods

def quantities(s, m, f, basis):
    schedule = Schedule(m, f, basis)
    begin, end = schedule.period(s)
    E = schedule.length(begin, end)
    return schedule.after(s, m), Decimal(days(begin, s, basis)), E


def price(s, m, rate, y, R, f, basis):
    N, A, E = quantities(s, m, f, basis)
    if (E - A) <= 0:
        A = Decimal(0)
    a, d, c, growth = A / E, (E - A) / E, 100 * D(rate) / f, 1 + y / f
    if N == 1:
        return (D(R) + c) / (1 + y / f * d) - c * a
    v = 1 / growth
    return v ** d * (D(R) * v ** (N - 1) + c * sum(v ** k for k in range(N))) - c * a


def duration(s, m, rate, y, f, basis):
    N, A, E = quantities(s, m, f, basis)
    d, c, v = (E - A) / E, 100 * D(rate) / f, 1 / (1 + D(y) / f)
    flows = [((d + k) / f, c * v ** k) for k in range(N)]
    flows.append((flows[-1][0], 100 * v ** (N - 1)))
    return sum(t * w for t, w in flows) / sum(w for _, w in flows)


def root(price_of, target):
    """The yield between -0.9 and 9 at which the falling price meets the target."""
    low, high = Decimal("-0.9"), Decimal(9)
    for _ in range(120):
        middle = (low + high) / 2
        low, high = (middle, high) if price_of(middle) > target else (low, middle)
    return (low + high) / 2


# ---- Accrued interest and odd periods

def accrued(schedule, s, e, accrint):
    """Periods from s to e: part of the first, the whole ones, part of the last."""
    begin, end = schedule.period(s)
    if e < end or (e == end and not accrint):
        return schedule.count(s, e) / schedule.length(begin, end)
    total = Decimal(0) if s == begin else schedule.count(s, end) / schedule.length(begin, end)
    whole = 1 if s == begin else 0
    if e == end:  # counts as a last part, whole
        return total + schedule.count(begin, e) / schedule.length(begin, end)
    while True:
        begin, end = schedule.period(end)
        if end >= e:
            return total + whole + schedule.count(begin, e) / schedule.length(begin, end)
        whole += 1


def accrint(issue, first, s, rate, par, f, basis):
    return D(par) * D(rate) / f * accrued(Schedule(first, f, basis, True), issue, s, True)


def oddfprice(s, m, issue, first, rate, y, R, f, basis):
    schedule = Schedule(m, f, basis)
    assert schedule.on_coupon(first)
    A1, DFC = accrued(schedule, issue, s, False), accrued(schedule, issue, first, False)
    W = sum(1 for d in schedule.dates if s <= d < first)  # whole periods before the first coupon
    begin, end = schedule.period(s)
    part = Decimal(0) if begin == s else schedule.count(s, end) / schedule.length(begin, end)
    N, c, v, e = schedule.after(first, m), 100 * D(rate) / f, 1 / (1 + y / f), W + part
    return (sum(v ** (e + j) for j in range(1, N + 1)) - A1) * c + c * v ** e * DFC + v ** (e + N) * D(R)


def proportions(schedule, s, e, any_span=True):
    """Parts of periods from s to e; unless any span will do, one whole period on actual days is none of them."""
    begin, end = schedule.period(s)
    if not any_span and schedule.basis == 1 and begin == s and e <= end:
        raise ZeroDivisionError("one period from a coupon date")
    total = schedule.count(s, min(e, end)) / schedule.length(begin, end)
    while end < e:
        begin, end = schedule.period(end)
        total += schedule.count(begin, min(e, end)) / schedule.length(begin, end)
    return total


def odd_last(s, m, last, f, basis):
    basis = 1 if basis in (2, 3) else basis
    A = proportions(Schedule(last, f, basis), last, s)
    schedule = Schedule(m, f, basis)
    return A, proportions(schedule, last, m, False), proportions(schedule, s, m, False)


def oddlprice(s, m, last, rate, y, R, f, basis):
    A, DC, DSC = odd_last(s, m, last, f, basis)
    c = 100 * D(rate) / f
    return (DC * c + D(R)) / (1 + D(y) / f * DSC) - c * A


def oddlyield(s, m, last, rate, P, R, f, basis):
    A, DC, DSC = odd_last(s, m, last, f, basis)
    c = 100 * D(rate) / f
    return f / DSC * ((c * DC + D(R)) / (A * c + D(P)) - 1)


# ---- Interest at maturity

def year_fraction(s, e, basis):
    n = Decimal(days(s, e, basis))
    if basis != 1:
        return n / (365 if basis == 3 else 360)
    lengths = []
    for y in range(s.year, e.year + 1):
        ends = y in (s.year, e.year)
        cut = ends and (y != s.year or s.month >= 3) and (y != e.year or e.month <= 2)
        lengths.append(366 if isleap(y) and not cut else 365)
    return n * len(lengths) / sum(lengths)


def pricemat(s, m, issue, rate, y, basis):
    im, sm, i_s = (year_fraction(a, b, basis) for a, b in ((issue, m), (s, m), (issue, s)))
    return (im * D(rate) * 100 + 100) / (sm * D(y) + 1) - i_s * D(rate) * 100


def yieldmat(s, m, issue, rate, P, basis):
    im, sm, i_s = (year_fraction(a, b, basis) for a, b in ((issue, m), (s, m), (issue, s)))
    return ((100 + im * D(rate) * 100) / (i_s * D(rate) * 100 + D(P)) - 1) / sm


# ---- Rows

rows = []


def literal(x):
    return f"{x:%Y'%m'%d}_day" if isinstance(x, date) else repr(x)


def row(what, name, arguments, value, ulps):
    call = ", ".join(literal(a) for a in arguments)
    rows.append(f'{{"{name}/{what}", "{name}", {{{call}}}, {float(value)!r}, digits_60, {ulps}}},\n')


# The ulps allowed: prices lose some to the powers of v, yields to the flatness of the price around the root.
def regular_rows():
    bonds = [("ten years", date(2008, 2, 15), date(2017, 11, 15), 0.0575, 0.065, 100, 2),
             ("month ends", date(1999, 7, 12), date(2012, 2, 29), 0.04, 0.0325, 102.5, 4),
             ("one coupon left", date(2023, 5, 3), date(2023, 8, 31), 0.03, 0.045, 100, 1),
             ("monthly", date(2010, 1, 30), date(2040, 8, 7), 0.12, -0.02, 99, 12),
             ("every two months", date(2003, 12, 31), date(2005, 3, 30), 0.08, 0.3, 100, 6)]
    for what, s, m, rate, y, R, f in bonds:
        for b in BASES:
            label = f"{what}, basis {b}"
            P = price(s, m, rate, D(y), R, f, b)
            row(label, "PRICE", (s, m, rate, y, R, f, b), P, 64)
            row(label, "YIELD", (s, m, rate, 95.25, R, f, b),
                root(lambda x: price(s, m, rate, x, R, f, b), D(95.25)), 512)
            T = duration(s, m, rate, y, f, b)
            row(label, "DURATION", (s, m, rate, y, f, b), T, 64)
            row(label, "MDURATION", (s, m, rate, y, f, b), T / (1 + D(y) / f), 64)


def odd_rows():
    firsts = [("long first", date(2009, 1, 20), date(2021, 3, 1), date(2008, 10, 15), date(2009, 9, 1), 2),
              ("short first, quarters", date(2011, 7, 20), date(2014, 5, 31), date(2011, 7, 2), date(2011, 8, 31), 4),
              ("many periods first", date(2012, 3, 8), date(2019, 6, 17), date(2010, 1, 5), date(2013, 6, 17), 1)]
    for what, s, m, issue, first, f in firsts:
        for b in BASES:
            label = f"{what}, basis {b}"
            row(label, "ODDFPRICE", (s, m, issue, first, 0.0785, 0.0625, 100, f, b),
                oddfprice(s, m, issue, first, 0.0785, D(0.0625), 100, f, b), 64)
            row(label, "ODDFYIELD", (s, m, issue, first, 0.0575, 84.5, 100, f, b),
                root(lambda x: oddfprice(s, m, issue, first, 0.0575, x, 100, f, b), D(84.5)), 512)
    lasts = [("short last", date(2008, 2, 7), date(2008, 6, 15), date(2007, 10, 15), 2),
             ("long last", date(2001, 1, 15), date(2003, 2, 28), date(1999, 8, 31), 4)]
    for what, s, m, last, f in lasts:
        for b in BASES:
            label = f"{what}, basis {b}"
            row(label, "ODDLPRICE", (s, m, last, 0.0375, 0.0405, 100, f, b),
                oddlprice(s, m, last, 0.0375, 0.0405, 100, f, b), 64)
            row(label, "ODDLYIELD", (s, m, last, 0.0375, 99.875, 100, f, b),
                oddlyield(s, m, last, 0.0375, 99.875, 100, f, b), 512)


def accrual_rows():
    bonds = [("within one period", date(2008, 3, 1), date(2008, 8, 31), date(2008, 5, 1), 2),
             ("over years", date(2005, 11, 10), date(2006, 2, 20), date(2009, 4, 3), 4),
             ("first interest before issue", date(2010, 5, 31), date(2007, 1, 31), date(2011, 3, 15), 1),
             ("settlement on a coupon date", date(2010, 1, 9), date(2010, 7, 15), date(2012, 7, 15), 2)]
    for what, issue, first, s, f in bonds:
        for b in BASES:
            row(f"{what}, basis {b}", "ACCRINT", (issue, first, s, 0.1, 1000, f, b),
                accrint(issue, first, s, 0.1, 1000, f, b), 16)
    spans = [("within a year", date(2008, 4, 1), date(2008, 6, 15), date(2007, 11, 30)),
             ("over leap years", date(2003, 3, 31), date(2008, 2, 29), date(1999, 12, 31))]
    for what, s, m, issue in spans:
        for b in BASES:
            label = f"{what}, basis {b}"
            row(label, "ACCRINTM", (issue, m, 0.1, 1000, b), D(0.1) * 1000 * year_fraction(issue, m, b), 4)
            row(label, "PRICEMAT", (s, m, issue, 0.061, 0.0625, b), pricemat(s, m, issue, 0.061, 0.0625, b), 16)
            row(label, "YIELDMAT", (s, m, issue, 0.061, 99.75, b), yieldmat(s, m, issue, 0.061, 99.75, b), 512)


def table():
    regular_rows()
    odd_rows()
    accrual_rows()
    heading = "// Printed by tests/reference/securities.py: id, calculation, arguments, value, source, ulps.\n"
    return heading + "".join(rows)


if __name__ == "__main__":
    if len(sys.argv) == 1:
        sys.stdout.write(table())
    elif Path(sys.argv[1]).read_bytes() != table().encode():
        sys.exit(f"out of date: {sys.argv[1]}; refresh with: python3 tests/reference/securities.py > {sys.argv[1]}")
