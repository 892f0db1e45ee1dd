"""Random argument sets for the calculations with dates: mostly valid, on and beside the edges of the schedule.

Dates are drawn as calendar dates and handed over as host date values. rng is a random.Random.
"""

import math

from arguments import HOST_EPOCH_JULIAN_DAY, AbsentNumber, Number
from calendar_engine import (
    STEP_MONTHS, CalendarDate, CouponTerms, advance_date, compute_period, convert_date_to_julian, get_month_day_year,
    last_day)
from generators import basis, missing
from ieee import INF

ABSURD_DAYS = [-2.0**63, -2.0**63 - 2048, -2.0**63 + 1024, -2.0**62, -2.0**61, -1e17, -1e16, -2.0**53, -1e13, -7.9e11,
               -7.8e11, -1e10, -1e9, -4e6, 1e7, 1e9, 1e10, 7.8e11, 7.9e11, 1e13, 2.0**53 - 2, 2.0**53 - 1, 2.0**53,
               -2.0**63 - 4096, 2.0**53 + 2, 1e16, -1e300, INF, -INF]


# Dates, as whole host date values

def host_day(year, month, day):
    date = CalendarDate(day=day, month=month, year=year)
    convert_date_to_julian(date)
    return date.julian_day - HOST_EPOCH_JULIAN_DAY


def split(day):
    date = CalendarDate(julian_day=day + HOST_EPOCH_JULIAN_DAY)
    get_month_day_year(date)
    return date


def draw_year(rng):
    pick = rng.random()
    if pick < 0.80:
        return rng.randrange(1960, 2061)
    if pick < 0.90:
        return rng.choice([1600, 1700, 1899, 1900, 1901, 1904, 1959, 1960, 1999, 2000, 2001, 2096, 2100, 2104, 2400])
    if pick < 0.96:
        return rng.randrange(100, 10000)
    if pick < 0.99:
        return rng.randrange(-4799, 0)
    return rng.choice([-5, -4, -2, -1, 1, 2, 4, 5])


def draw_day(rng, year=None):
    """A day, often one at which the rules for month ends bite."""
    if year is None:
        year = draw_year(rng)
    pick = rng.random()
    if pick < 0.30:
        month = rng.randrange(1, 13)
        return host_day(year, month, last_day(year, month))
    if pick < 0.40:
        return host_day(year, rng.randrange(1, 13), 30 if rng.random() < 0.7 else 29)
    if pick < 0.48:
        return host_day(year, 2, rng.choice([28, 29]))        # 29 February of a common year is 1 March
    if pick < 0.55:
        return host_day(year, rng.randrange(1, 13), 1)
    if pick < 0.60:
        return host_day(year, rng.choice([1, 12]), 31)
    if pick < 0.65:
        return host_day(year, rng.choice([1, 2, 3, 12]), rng.randrange(1, 32))
    return host_day(year, rng.randrange(1, 13), rng.randrange(1, 29))


def moved(day, months):
    """The day moved by whole months, as a coupon date is."""
    one_month = CouponTerms(frequency=12, step_unit=STEP_MONTHS)
    compute_period(one_month)
    return advance_date(split(day), months, one_month).julian_day - HOST_EPOCH_JULIAN_DAY


def earlier_day(rng, day, most_years=30):
    """A day before (now and then at or after) the given one, often on its schedule or beside it."""
    pick = rng.random()
    months = rng.randrange(0, 12 * most_years + 1) if rng.random() < 0.6 else rng.choice([1, 2, 3, 4, 6, 9, 12, 13, 18, 24])
    if pick < 0.25:
        return moved(day, 0 - months)
    if pick < 0.40:
        return moved(day, 0 - months) + rng.choice([-1, 1, -2, 2, -1, 1])
    if pick < 0.47:
        return moved(day, 0 - rng.choice([1, 2, 3, 4, 6, 12]) * rng.randrange(1, 9))
    if pick < 0.80:
        return day - rng.randrange(1, 365 * most_years)
    if pick < 0.92:
        return day - rng.randrange(1, 400)
    if pick < 0.95:
        return draw_day(rng, split(day).year)
    if pick < 0.98:
        return day - rng.choice([1, 2, 28, 29, 30, 31, 59, 60, 90, 180, 181, 182, 183, 184, 364, 365, 366])
    return draw_day(rng)


def pair(rng, most_years=30):
    """(earlier, later), now and then equal, reversed or absurd."""
    later = draw_day(rng)
    earlier = earlier_day(rng, later, most_years)
    pick = rng.random()
    if pick < 0.02:
        return later, later
    if pick < 0.04:
        return later, earlier
    if pick < 0.06:
        day = rng.choice(ABSURD_DAYS)
        if abs(day) <= 2.0**63:
            return int(day) - rng.choice([0, 1, 30, 365, 1024, 4096, 100000]), day
        return day, later
    if pick < 0.07:
        return rng.choice(ABSURD_DAYS), rng.choice(ABSURD_DAYS)
    return earlier, later


# Other arguments

def draw_frequency(rng):
    pick = rng.random()
    if pick < 0.90:
        return float(rng.choice([1, 2, 2, 2, 4, 4, 6, 12]))
    if pick < 0.96:
        return float(rng.choice([3, 5, 7, 8, 9, 24, 52, 365, 2147483647]))
    if pick < 0.98:
        # only 32 bits are kept: 1, 2, 4, 12, 0, the smallest, -1
        return float(rng.choice([2**32 + 1, 2**32 + 2, 2**33 + 4, 2**52 + 12, 2**32, 2**53, 2**31, 2**32 - 1]))
    return rng.choice([2.0000000000001, 1.9999999999999, 4.00000000001, 0.0, -0.0, -2.0, 0.5, 2.5, 1e-13, 2.0**53 + 2, 1e16,
                       -1e16, -INF, INF])


def draw_rate(rng):
    """Greater than 0, but for a few."""
    pick = rng.random()
    if pick < 0.75:
        return round(rng.uniform(0.001, 0.2), 4)
    if pick < 0.88:
        return rng.uniform(0.0, 1.0)
    if pick < 0.98:
        return 10.0 ** rng.uniform(-20.0, 8.0)
    return rng.choice([5e-324, 1e-308, 1e300, INF, 0.0, -0.0, -0.05, 1.0])


def draw_yield(rng, frequency):
    """Any sign; close to minus the frequency, below which there is no discount factor."""
    pick = rng.random()
    if pick < 0.55:
        return round(rng.uniform(0.0, 0.2), 4)
    if pick < 0.72:
        return rng.uniform(-0.2, 0.5)
    if pick < 0.80:
        return rng.choice([-1.0, 1.0]) * 10.0 ** rng.uniform(-20.0, 0.0)
    if pick < 0.86:
        return rng.choice([0.0, -0.0, 1.0, -1.0, -0.5, 10.0])
    if pick < 0.92:
        return -frequency * rng.choice([1.0, 0.5, 0.9, 0.999999, 1.0 - 1e-8, 1.0 - 1.06e-8, 1.0 - 1.05e-8, 1.5, 0.99])
    if pick < 0.98:
        return 10.0 ** rng.uniform(0.0, 12.0)
    return rng.choice([1e300, -1e300, INF, -INF, 5e-324])


def draw_price(rng):
    """Per 100 of face value."""
    pick = rng.random()
    if pick < 0.60:
        return round(rng.uniform(70.0, 130.0), 2)
    if pick < 0.75:
        return rng.uniform(1.0, 1000.0)
    if pick < 0.85:
        return 100.0
    if pick < 0.97:
        return 10.0 ** rng.uniform(-12.0, 12.0)
    return rng.choice([1e300, 1e-300, 5e-324, INF, 0.0, -0.0, -95.0])


def with_basis(rng, arguments):
    """Numbers, followed by a basis three times out of four."""
    drawn = [Number(argument) for argument in arguments]
    if rng.random() < 0.75:
        drawn.append(basis(rng))
    return drawn


def spoil(rng, drawn, days=0):
    """One or two arguments of every sixth draw are spoiled; the first so many are dates."""
    if rng.random() < 0.84:
        return drawn
    for _ in range(1 if rng.random() < 0.6 else 2):
        at = rng.randrange(len(drawn))
        value = getattr(drawn[at], "value", None)
        kind = rng.random()
        if kind < 0.30:
            drawn[at] = missing(rng)
        elif kind < 0.50:
            drawn[at] = AbsentNumber()
        elif kind < 0.62:
            drawn[at] = Number(rng.choice([INF, -INF, 0.0, -0.0, -1.0, 1e16, -1e16, 5e-324, 1e300, -1e300]))
        elif at < days and kind < 0.75:
            drawn[at] = Number(rng.choice(ABSURD_DAYS))
        elif value is not None:
            drawn[at] = Number(rng.choice([value + 0.5, value + 0.25, -value, value * (1.0 + 9e-13), value * (1.0 - 9e-13),
                                           value * (1.0 + 2e-12), math.nextafter(value, INF), value * 1e10]))
    return drawn


# Whole argument sets

def year_fraction_arguments(rng):
    """start, end, basis"""
    start, end = pair(rng, rng.choice([1, 5, 30, 300]))
    return spoil(rng, with_basis(rng, [start, end]), 2)


def coupon_dates_arguments(rng):
    """settlement, maturity, frequency, basis"""
    settlement, maturity = pair(rng, rng.choice([1, 5, 30, 300]))
    return spoil(rng, with_basis(rng, [settlement, maturity, draw_frequency(rng)]), 2)


def discount_security_arguments(rng):
    """settlement, maturity, amount or rate, amount or rate, basis"""
    settlement, maturity = pair(rng, rng.choice([1, 1, 3, 30]))
    if rng.random() < 0.03:                                   # 30/360: the 31st to the 1st is no day at all
        year = draw_year(rng)
        settlement, maturity = host_day(year, 1, 31), host_day(year, 2, 1)
    first = draw_price(rng) if rng.random() < 0.6 else draw_rate(rng)
    second = draw_price(rng) if rng.random() < 0.6 else draw_rate(rng)
    if rng.random() < 0.05:
        second = first
    return spoil(rng, with_basis(rng, [settlement, maturity, first, second]), 2)


def accrint_arguments(rng):
    """issue, first interest date, settlement, rate, par, frequency, basis"""
    issue, settlement = pair(rng, rng.choice([1, 2, 10, 30]))
    anchor = settlement if abs(settlement) < 1e9 else draw_day(rng)
    pick = rng.random()
    if pick < 0.45:                                           # its schedule holds settlement, or nearly
        first_interest = moved(int(anchor), rng.randrange(-60, 61)) + rng.choice([0, 0, 0, 0, 1, -1])
    elif pick < 0.75 and abs(issue) < 1e9:                    # its schedule holds issue, or nearly
        first_interest = moved(int(issue), rng.choice([1, 2, 3, 6, 12, 18, 24])) + rng.choice([0, 0, 0, 0, 1, -1])
    elif pick < 0.98:
        first_interest = int(anchor) + rng.randrange(-4000, 4000)
    else:
        first_interest = rng.choice(ABSURD_DAYS)
    par = rng.choice([1000.0, 100.0, draw_price(rng)])
    return spoil(rng, with_basis(rng, [issue, first_interest, settlement, draw_rate(rng), par, draw_frequency(rng)]), 3)


def accrintm_arguments(rng):
    """issue, settlement, rate, par, basis"""
    issue, settlement = pair(rng, rng.choice([1, 5, 30, 300]))
    par = rng.choice([1000.0, 100.0, draw_price(rng)])
    return spoil(rng, with_basis(rng, [issue, settlement, draw_rate(rng), par]), 2)


def price_arguments(rng):
    """settlement, maturity, rate, yield, redemption, frequency, basis"""
    settlement, maturity = pair(rng, rng.choice([1, 2, 10, 30, 100]))
    frequency = draw_frequency(rng)
    redemption = rng.choice([100.0, draw_price(rng)])
    return spoil(rng, with_basis(rng, [settlement, maturity, draw_rate(rng), draw_yield(rng, frequency), redemption,
                                       frequency]), 2)


def yield_arguments(rng):
    """settlement, maturity, rate, price, redemption, frequency, basis"""
    settlement, maturity = pair(rng, rng.choice([1, 1, 2, 10, 30]))
    redemption = rng.choice([100.0, draw_price(rng)])
    return spoil(rng, with_basis(rng, [settlement, maturity, draw_rate(rng), draw_price(rng), redemption,
                                       draw_frequency(rng)]), 2)


def duration_arguments(rng):
    """settlement, maturity, coupon rate, yield, frequency, basis"""
    settlement, maturity = pair(rng, rng.choice([1, 2, 10, 30, 100]))
    frequency = draw_frequency(rng)
    return spoil(rng, with_basis(rng, [settlement, maturity, draw_rate(rng), draw_yield(rng, frequency), frequency]), 2)


def odd_first_dates(rng, frequency):
    """settlement, maturity, issue, first coupon date; the last is mostly a coupon date of the maturity's schedule."""
    maturity = draw_day(rng)
    per_period = {1.0: 12, 2.0: 6, 4.0: 3, 6.0: 2, 12.0: 1}.get(frequency, 1)
    most = 20 * 12 // per_period
    first_coupon = moved(maturity, 0 - per_period * rng.randrange(1, rng.choice([2, 4, 12, most]) + 1))
    pick = rng.random()
    if pick < 0.04:
        first_coupon = first_coupon + rng.choice([-1, 1, 15])
    elif pick < 0.06:
        first_coupon = maturity
    elif pick < 0.07:
        first_coupon = maturity + rng.choice([1, 30, 365])
    pick = rng.random()
    if pick < 0.20:                                           # settlement on the schedule
        settlement = moved(first_coupon, 0 - rng.randrange(1, 25))
    elif pick < 0.70:
        settlement = first_coupon - rng.randrange(1, 200)
    else:
        settlement = first_coupon - rng.randrange(0, 800)
    pick = rng.random()
    if pick < 0.30:                                           # issue on the schedule
        issue = moved(first_coupon, 0 - rng.randrange(1, 40))
    elif pick < 0.75:
        issue = settlement - rng.randrange(1, 250)
    else:
        issue = settlement - rng.randrange(0, 2500)
    if issue > settlement and rng.random() < 0.9:
        issue, settlement = settlement, issue
    if rng.random() < 0.03:
        settlement = maturity + rng.choice([0, 1, -1])
    if rng.random() < 0.01:
        far = rng.choice([-2 * 10**9, 10**8, 10**9, 7 * 10**11])
        return settlement + far, maturity + far, issue + far, first_coupon + far
    return settlement, maturity, issue, first_coupon


def oddfprice_arguments(rng):
    """settlement, maturity, issue, first coupon date, rate, yield, redemption, frequency, basis"""
    frequency = draw_frequency(rng)
    redemption = rng.choice([100.0, draw_price(rng)])
    return spoil(rng, with_basis(rng, [*odd_first_dates(rng, frequency), draw_rate(rng), draw_yield(rng, frequency),
                                       redemption, frequency]), 4)


def oddfyield_arguments(rng):
    """settlement, maturity, issue, first coupon date, rate, price, redemption, frequency, basis"""
    frequency = draw_frequency(rng)
    redemption = rng.choice([100.0, draw_price(rng)])
    price = draw_price(rng) if rng.random() < 0.95 else rng.choice([0.0, -0.0, -100.0, -1e-5])
    return spoil(rng, with_basis(rng, [*odd_first_dates(rng, frequency), draw_rate(rng), price, redemption, frequency]), 4)


def odd_last_dates(rng):
    """settlement, maturity, last interest date"""
    settlement, maturity = pair(rng, rng.choice([1, 1, 2, 5]))
    anchor = int(settlement) if abs(settlement) < 1e9 else draw_day(rng)
    last_interest = earlier_day(rng, anchor, rng.choice([1, 1, 2, 10]))
    pick = rng.random()
    if pick < 0.10 and abs(maturity) < 1e9:                   # maturity on the schedule of the last interest date
        last_interest = moved(int(maturity), 0 - rng.randrange(1, 60))
    elif pick < 0.12:
        last_interest = settlement
    elif pick < 0.14:
        last_interest = rng.choice(ABSURD_DAYS)
    elif pick < 0.15:
        far = rng.choice([-2 * 10**9, 10**8, 10**9, 7 * 10**11])
        return settlement + far, maturity + far, last_interest + far
    return settlement, maturity, last_interest


def oddlprice_arguments(rng):
    """settlement, maturity, last interest date, rate, yield, redemption, frequency, basis"""
    frequency = draw_frequency(rng)
    redemption = rng.choice([100.0, draw_price(rng)])
    return spoil(rng, with_basis(rng, [*odd_last_dates(rng), draw_rate(rng), draw_yield(rng, frequency), redemption,
                                       frequency]), 3)


def oddlyield_arguments(rng):
    """settlement, maturity, last interest date, rate, price, redemption, frequency, basis"""
    redemption = rng.choice([100.0, draw_price(rng)])
    price = draw_price(rng) if rng.random() < 0.95 else rng.choice([0.0, -0.0, -100.0])
    return spoil(rng, with_basis(rng, [*odd_last_dates(rng), draw_rate(rng), price, redemption, draw_frequency(rng)]), 3)


def maturity_dates(rng):
    """settlement, maturity, issue; issue before settlement, or between settlement and maturity"""
    settlement, maturity = pair(rng, rng.choice([1, 3, 10, 100]))
    pick = rng.random()
    near = int(settlement) if abs(settlement) < 1e9 else draw_day(rng)
    if pick < 0.60:
        issue = earlier_day(rng, near, rng.choice([1, 3, 10, 100]))
    elif pick < 0.85 and near < maturity < 1e9:
        issue = rng.randrange(near, int(maturity))
    elif pick < 0.90:
        issue = settlement
    elif pick < 0.94:
        issue = maturity
    elif pick < 0.97:
        issue = maturity + rng.choice([1, 31, 365])
    else:
        issue = rng.choice(ABSURD_DAYS)
    return settlement, maturity, issue


def pricemat_arguments(rng):
    """settlement, maturity, issue, rate, yield, basis"""
    return spoil(rng, with_basis(rng, [*maturity_dates(rng), draw_rate(rng), draw_yield(rng, 1.0)]), 3)


def yieldmat_arguments(rng):
    """settlement, maturity, issue, rate, price, basis"""
    return spoil(rng, with_basis(rng, [*maturity_dates(rng), draw_rate(rng), draw_price(rng)]), 3)


# Dated flows

def flow_days(rng, m):
    first = draw_day(rng)
    pick = rng.random()
    if pick < 0.05:
        return [first] * m
    if pick < 0.35:                                           # regular
        step = rng.choice([1, 7, 30, 91, 182, 365, 366])
        return [first + i * step for i in range(m)]
    if pick < 0.60:                                           # month by month
        months = rng.choice([1, 3, 6, 12])
        return [moved(first, i * months) for i in range(m)]
    reach = rng.choice([30, 400, 4000, 40000])
    days = [first] + [first + rng.randrange(0, reach) for _ in range(m - 1)]
    if pick < 0.80:
        days.sort()
    elif pick < 0.95:
        rng.shuffle(days)                                     # the first given is not the earliest; days may repeat
    else:
        days = [day - rng.randrange(0, 2 * reach) for day in days]
    return days


def draw_flow(rng):
    pick = rng.random()
    if pick < 0.60:
        return float(rng.randrange(-1000, 1001))
    if pick < 0.85:
        return rng.uniform(-1e5, 1e5)
    if pick < 0.98:
        return rng.choice([-1.0, 1.0]) * 10.0 ** rng.uniform(-12.0, 12.0)
    return rng.choice([0.0, -0.0, 1.053671212772351e-08, -1.05e-08, 5e-324, 1e300, -1e300, INF, -INF])


def draw_flows(rng, m):
    """m amounts; mostly an outlay and what comes back."""
    pick = rng.random()
    if pick < 0.45:
        outlay = rng.choice([100.0, 1000.0, 12345.67])
        back = outlay * rng.uniform(0.5, 2.5) / max(m - 1, 1)
        return [-outlay] + [round(back * rng.uniform(0.5, 1.5), 2) for _ in range(m - 1)]
    if pick < 0.55:
        return [100.0] + [round(-100.0 * rng.uniform(0.1, 3.0) / max(m - 1, 1), 3) for _ in range(m - 1)]
    if pick < 0.62:                                           # nearly all lost, or gained beyond measure
        scale = 10.0 ** rng.choice([-12, -8, -5, -3, 3, 8, 30, 200])
        return [-100.0] + [100.0 * scale * rng.uniform(0.5, 2.0) for _ in range(m - 1)]
    if pick < 0.67:                                           # too small to count
        return [rng.uniform(-1e-8, 1e-8) for _ in range(m)]
    if pick < 0.72:                                           # no change of sign
        return [rng.uniform(1.0, 100.0) for _ in range(m)]
    return [draw_flow(rng) for _ in range(m)]


def number_of_flows(rng):
    return rng.choice([1, 2, 2, 2, 3, 3, 4, 5, 6, 8, 12, 24, 60]) if rng.random() < 0.97 else rng.randrange(60, 150)


def xnpv_arguments(rng):
    """rate, amounts, dates"""
    m = number_of_flows(rng)
    rate = draw_rate(rng) if rng.random() < 0.7 else rng.choice([0.0, -0.0, -0.5, -0.999, -1.0, -2.0, -0.9999999, 1e9, 1e300,
                                                                 INF, -INF, 1e-17])
    flows, days = draw_flows(rng, m), flow_days(rng, m)
    if rng.random() < 0.03:
        days[rng.randrange(m)] = rng.choice(ABSURD_DAYS)
    drawn = [Number(argument) for argument in [rate, *flows, *days]]
    if rng.random() < 0.04:
        drawn.pop()                                           # an amount without its date
    return spoil(rng, drawn)


def xirr_arguments(rng):
    """amounts, dates, guess"""
    m = number_of_flows(rng)
    drawn = [Number(argument) for argument in [*draw_flows(rng, m), *flow_days(rng, m)]]
    if rng.random() < 0.4:
        guess = rng.choice([0.1, 0.05, 0.0, -0.0, -0.5, -0.9, 1.0, 10.0, 1e-9, -0.9999999, -1.0, -1.5, -3.0, 1e6, 1e300, INF,
                            -INF, rng.uniform(-0.5, 1.0), draw_yield(rng, 1.0)])
        drawn.append(Number(guess))
    return spoil(rng, drawn)
