"""Dates, day counts and the coupon schedule: slow and literal.

Nothing here is clever: a year average walks over every calendar year, a coupon count walks over every coupon.
Records are copied, never shared, so that a step can be read by itself.

Widths. Days, months, years and flags are 32-bit, Julian day numbers and all that is computed on the way to them
64-bit. A value that does not fit keeps its low bits (`low32`, `low64`). Integer divisions truncate toward zero.

Walks spend steps from a budget (`spend_step`), which `refill_steps` fills before each call; a call that would need
more raises `TooLong`, and its draw is thrown away.
"""

from copy import copy
from dataclasses import dataclass, field
from typing import Optional

from arguments import HOST_EPOCH_JULIAN_DAY, MOST_STEPS, TooLong
from ieee import LARGEST, div, low32, low64, minimum

DATE_BEFORE = 1
DATE_EQUAL = 2
DATE_AFTER = 3

STEP_MONTHS = 2
STEP_YEARS = 4

BASIS_30_360 = 0
BASIS_ACTUAL = 1
BASIS_ACT_360 = 2
BASIS_ACT_365 = 3
BASIS_EU_30_360 = 4

NO_MONTHS_PER_PERIOD = -2147483647    # what a frequency other than 1, 2, 4, 6, 12 gets

REQUEST_DAYS_SINCE_PREVIOUS = 1
REQUEST_DAYS_TO_NEXT = 2
REQUEST_DAYS_IN_PERIOD = 4

START_IS_COUPON_DATE = 1              # bits of CouponList.boundary_flags
END_IS_COUPON_DATE = 2


# ---------------------------------------------------------------------------------------------------------------
# The budget of steps

_steps_left = MOST_STEPS


def refill_steps():
    global _steps_left
    _steps_left = MOST_STEPS


def spend_step():
    global _steps_left
    _steps_left -= 1
    if _steps_left < 0:
        raise TooLong()


# ---------------------------------------------------------------------------------------------------------------
# Whole-number arithmetic

def quotient(a, b):
    """a / b truncated toward zero."""
    magnitude = abs(a) // abs(b)
    return magnitude if (a < 0) == (b < 0) else 0 - magnitude


def remainder(a, b):
    """What is left by the truncating division; it has the sign of a."""
    return a - b * quotient(a, b)


# ---------------------------------------------------------------------------------------------------------------
# Dates

@dataclass
class CalendarDate:
    day: int = 0
    month: int = 0
    year: int = 0                     # historical: the year before 1 is -1
    julian_day: int = 0
    anchor_day: int = 0               # the day of month that stepping aims for; below 1: day itself
    end_of_month: int = 0             # 1: stepping always lands on the last day of the month


@dataclass
class CouponTerms:
    day_31_adjust: int = 0
    proportion_floor: int = 0
    frequency: int = 0                # coupons per year
    step_unit: int = 0
    months_per_period: int = 0
    period_days: float = 0.0          # days per coupon period, then the year length of the last count
    basis: int = 0
    coupon_day_rule: int = 0
    day_count: float = 0.0
    capped_day_count: float = 0.0
    count_year_length: float = 0.0
    start_year_length: int = 0
    no_day_31_adjust: int = 0
    all_leap_years: int = 0


def convert_date_to_julian(date):
    """Writes julian_day from day, month and year. 32-bit fields: nothing here can overflow 64 bits."""
    d, m, y = date.day, date.month, date.year
    if y < 0:
        y = y + 1                                       # historical -1 is astronomical 0
    a = quotient(m - 14, 12)                            # -1 in January and February, else 0
    date.julian_day = (quotient(1461 * (y + 4800 + a), 4)
                       + quotient(367 * (m - 2 - 12 * a), 12)
                       - quotient(3 * quotient(y + 4900 + a, 100), 4)
                       + d - 32075)


def convert_julian_to_date(julian_day):
    """(year, month, day), each kept as 32 bits."""
    length = low64(julian_day + 68569)
    n = quotient(low64(4 * length), 146097)
    length = low64(length - quotient(low64(146097 * n + 3), 4))
    i = quotient(low64(4000 * (length + 1)), 1461001)
    length = low64(length - quotient(low64(1461 * i), 4) + 31)
    k = quotient(low64(80 * length), 2447)
    day = low64(length - quotient(low64(2447 * k), 80))
    length = quotient(k, 11)
    month = low64(k + 2 - 12 * length)
    year = low64(100 * (n - 49) + i + length)
    if year < 1:
        year = low64(year - 1)                         # astronomical 0 is historical -1
    return low32(year), low32(month), low32(day)


def is_leap_year(year):
    return remainder(year, 4) == 0 and (remainder(year, 400) == 0 or remainder(year, 100) != 0)


def last_day(year, month):
    if month in (4, 6, 9, 11):
        return 30
    if month != 2:
        return 31                                       # also a month number out of range
    return 29 if is_leap_year(year) else 28


def get_month_day_year(date):
    """Completes a date of which only julian_day is set."""
    date.year, date.month, date.day = convert_julian_to_date(date.julian_day)
    date.end_of_month = 1 if date.day == last_day(date.year, date.month) else 0
    date.anchor_day = date.day
    convert_date_to_julian(date)


def to_the_first_of_the_next_month(day, month, year):
    """(day, month, year)"""
    if month + 1 < 13:
        return 1, month + 1, year
    return 1, month - 11, low32(year + 1)


def advance_date(date, count, terms):
    """The date moved by count coupon periods. Only the stepping unit and the months per period are read."""
    k = low32(count * terms.months_per_period)
    target_day = date.anchor_day if date.anchor_day >= 1 else date.day
    result = CalendarDate()
    if terms.step_unit == STEP_MONTHS:
        t = date.month + k                              # in 64 bits
        q = quotient(t, 12)
        r = remainder(t, 12)
        if r < 1:
            q = q - 1
            r = r + 12
        result.month = r
        result.year = low32(date.year + q)
    else:
        assert terms.step_unit == STEP_YEARS
        result.month = date.month
        result.year = low32(date.year + k)
    last = last_day(result.year, result.month)
    if date.end_of_month == 0 and target_day <= last:
        result.day = target_day
    else:
        result.day = last
    result.anchor_day = date.anchor_day
    result.end_of_month = date.end_of_month
    convert_date_to_julian(result)
    return result


def compare_dates(a, b):
    if a.julian_day < b.julian_day:
        return DATE_BEFORE
    if a.julian_day == b.julian_day:
        return DATE_EQUAL
    return DATE_AFTER


def zmdy(month, day, year):
    """The host's service: host date value of a month, day and (historical) year."""
    date = CalendarDate(day=int(day), month=int(month), year=int(year))
    convert_date_to_julian(date)
    return float(date.julian_day - HOST_EPOCH_JULIAN_DAY)


def host_date(date):
    return zmdy(float(date.month), float(date.day), float(date.year))


# ---------------------------------------------------------------------------------------------------------------
# Day counts and year fractions

def compute_period(terms):
    """Months per coupon period; a frequency that does not divide the year into months has none."""
    months = {1: 12, 2: 6, 4: 3, 6: 2, 12: 1}
    terms.months_per_period = months.get(terms.frequency, NO_MONTHS_PER_PERIOD)


def compute_days_in_period(terms):
    if terms.basis in (BASIS_30_360, BASIS_ACT_360, BASIS_EU_30_360):
        terms.period_days = div(360.0, float(terms.frequency))
    elif terms.basis == BASIS_ACT_365:
        terms.period_days = div(365.0, float(terms.frequency))
    else:
        terms.period_days = LARGEST


def actual_days(start, end):
    return float(low64(end.julian_day - start.julian_day))


def zdays360(start, end, method):
    """30/360 days, US (method 0) or European (method 4); the count is formed in 32 bits."""
    d1, m1, y1 = start.day, start.month, start.year
    d2, m2, y2 = end.day, end.month, end.year
    if method == 0:
        if start.julian_day == end.julian_day:
            return 0
        if d1 == 31 and d2 < 30:
            d1, m1, y1 = to_the_first_of_the_next_month(d1, m1, y1)
        d1 = min(d1, 30)
        if m2 == 2 and d2 == last_day(y2, 2):
            d2 = 30
        else:
            d2 = min(d2, 30)
        return low32(360 * (y2 - y1) + 30 * (m2 - m1) - d1 + d2)
    if method == 4:
        return low32(360 * (y2 - y1) + 30 * (m2 - m1) - min(d1, 30) + min(d2, 30))
    return 9007199254740992


def days_by_basis(start, end, terms):
    """The day count alone, with the extra day for an end on day 31 (30/360 only)."""
    if terms.basis == BASIS_30_360:
        days = zdays360(start, end, 0)
        if terms.day_31_adjust and end.day == 31:
            days = days + 1
        return float(days)
    if terms.basis == BASIS_EU_30_360:
        return float(zdays360(start, end, 4))
    return actual_days(start, end)


def plain_average_year(start_year, end_year):
    """Average length of the calendar years touched, both ends included; 0/0 when they are reversed."""
    a = 0                                               # years of 365 days
    b = 0                                               # years of 366 days
    year = start_year
    while year <= end_year:
        spend_step()
        if is_leap_year(year):
            b = b + 1
        else:
            a = a + 1
        year = year + 1
    return div(float(365 * a + 366 * b), float(a + b))


def count_the_days(start, end, terms):
    """Days into day_count, year length into period_days."""
    if terms.basis < 0 or terms.basis > 4:
        return
    terms.day_count = days_by_basis(start, end, terms)
    if terms.basis == BASIS_ACTUAL:
        terms.period_days = plain_average_year(start.year, end.year)
    elif terms.basis == BASIS_ACT_365:
        terms.period_days = 365.0
    else:
        terms.period_days = 360.0


def annual_average_year(start, end, terms):
    """Average length of the calendar years touched. A leap year at either end whose part of the span lies wholly
    on the far side of February counts 365, unless all leap years are asked for."""
    a = 0
    b = 0
    year = start.year
    while year <= end.year:
        spend_step()
        if not is_leap_year(year):
            a = a + 1
        elif (terms.all_leap_years != 1
              and (year == start.year or year == end.year)
              and (year != start.year or start.month >= 3)
              and (year != end.year or end.month in (1, 2))):
            a = a + 1
        else:
            b = b + 1
        year = year + 1
    return div(float(365 * a + 366 * b), float(a + b))


def compute_the_annual_ratio(start, end, terms):
    """The year fraction; days into day_count, year length into period_days."""
    if terms.basis == BASIS_30_360:
        days = zdays360(start, end, 0)
        if terms.day_31_adjust and end.day == 31 and terms.no_day_31_adjust == 0:
            days = days + 1
        terms.day_count = float(days)
        terms.period_days = 360.0
    elif terms.basis == BASIS_ACTUAL:
        terms.day_count = actual_days(start, end)
        terms.period_days = annual_average_year(start, end, terms)
        if terms.start_year_length:
            terms.period_days = 366.0 if is_leap_year(start.year) else 365.0
    elif terms.basis == BASIS_ACT_360:
        terms.day_count = actual_days(start, end)
        terms.period_days = 360.0
    elif terms.basis == BASIS_ACT_365:
        terms.day_count = actual_days(start, end)
        terms.period_days = 365.0
    elif terms.basis == BASIS_EU_30_360:
        terms.day_count = float(zdays360(start, end, 4))
        terms.period_days = 360.0
    else:
        return LARGEST
    return div(terms.day_count, terms.period_days)


# ---------------------------------------------------------------------------------------------------------------
# The coupon schedule

@dataclass
class CouponInfo:
    settlement: Optional[CalendarDate] = None
    maturity: Optional[CalendarDate] = None
    terms: Optional[CouponTerms] = None
    requests: int = 0
    previous_coupon: CalendarDate = field(default_factory=CalendarDate)
    coincident_coupon: Optional[CalendarDate] = None
    next_coupon: CalendarDate = field(default_factory=CalendarDate)
    days_since_previous: float = 0.0
    days_to_next: float = 0.0
    days_in_period: float = 0.0


def find_coupon_info(info):
    """The coupon dates around settlement, and the day counts that are asked for."""
    info.coincident_coupon = None
    if info.maturity is None:
        return
    settlement, maturity, terms = info.settlement, info.maturity, info.terms

    # The maturity's day and month in the last year in which they are not after settlement's.
    anchor = copy(maturity)
    anchor.year = settlement.year
    if maturity.month > settlement.month or (maturity.month == settlement.month and maturity.day > settlement.day):
        anchor.year = low32(anchor.year - 1)
    anchor.day = maturity.day
    anchor.anchor_day = maturity.day
    last = last_day(anchor.year, anchor.month)
    if anchor.day > last or maturity.end_of_month:
        anchor.day = last
        anchor.end_of_month = 1
    convert_date_to_julian(anchor)

    order = compare_dates(anchor, settlement)
    coincidence = None                                  # k, when settlement is the anchor moved by k periods
    if order == DATE_EQUAL:
        info.previous_coupon = copy(anchor)
        info.coincident_coupon = copy(anchor)
        info.next_coupon = advance_date(anchor, 1, terms)
    elif order == DATE_BEFORE:
        info.next_coupon = copy(anchor)
        k = 1
        while k <= terms.frequency:
            spend_step()
            info.previous_coupon = info.next_coupon
            info.next_coupon = advance_date(anchor, k, terms)
            reached = compare_dates(info.next_coupon, settlement)
            if reached == DATE_AFTER:
                break
            if reached == DATE_EQUAL:
                coincidence = k
                break
            k = k + 1
    else:
        info.previous_coupon = copy(anchor)
        k = -1
        while k >= 0 - terms.frequency:
            spend_step()
            info.next_coupon = info.previous_coupon
            info.previous_coupon = advance_date(anchor, k, terms)
            reached = compare_dates(info.previous_coupon, settlement)
            if reached == DATE_BEFORE:
                break
            if reached == DATE_EQUAL:
                coincidence = k
                break
            k = k - 1
    if coincidence is not None:
        info.coincident_coupon = advance_date(anchor, coincidence, terms)
        if info.requests & REQUEST_DAYS_IN_PERIOD:
            info.previous_coupon = advance_date(anchor, coincidence - 1, terms)
        else:
            info.previous_coupon = copy(info.coincident_coupon)
        info.next_coupon = advance_date(anchor, coincidence + 1, terms)

    convert_date_to_julian(info.previous_coupon)
    convert_date_to_julian(info.next_coupon)
    if info.coincident_coupon is not None:
        convert_date_to_julian(info.coincident_coupon)

    # The year length of these two counts is thrown away (period_days is put back), so it is not formed.
    if info.requests & REQUEST_DAYS_SINCE_PREVIOUS:
        terms.day_count = days_by_basis(info.previous_coupon, settlement, terms)
        info.days_since_previous = terms.day_count
    if info.requests & REQUEST_DAYS_TO_NEXT:
        terms.day_count = days_by_basis(settlement, info.next_coupon, terms)
        info.days_to_next = terms.day_count
    if info.requests & REQUEST_DAYS_IN_PERIOD:
        if terms.basis == BASIS_ACTUAL:
            if info.coincident_coupon is not None:
                start = info.coincident_coupon
            else:
                start = info.previous_coupon
            info.days_in_period = count_the_coupon_days(start, info.next_coupon, terms)
        else:
            info.days_in_period = terms.period_days


def count_the_coupons(settlement, maturity, terms):
    """Coupon dates after settlement, up to and including maturity."""
    n = max(maturity.year - settlement.year, 0) * terms.frequency
    anchor = copy(maturity)
    anchor.year = settlement.year
    convert_date_to_julian(anchor)                      # 29 February of a common year compares as 1 March
    order = compare_dates(anchor, settlement)
    if order == DATE_BEFORE:
        k = 1
        while k <= terms.frequency:
            spend_step()
            stepped = advance_date(anchor, k, terms)
            reached = compare_dates(stepped, settlement)
            if reached == DATE_AFTER:
                break
            n = n - 1
            if reached == DATE_EQUAL:
                break
            k = k + 1
    elif order == DATE_AFTER:
        k = -1
        while k >= 0 - terms.frequency:
            spend_step()
            stepped = advance_date(anchor, k, terms)
            n = n + 1
            if compare_dates(stepped, settlement) != DATE_AFTER:
                break
            k = k - 1
    return float(n)


def count_whole_coupons(date, maturity, terms):
    """Whole periods from the first coupon date on or after date, to maturity."""
    n = max(maturity.year - date.year, 0) * terms.frequency
    anchor = copy(maturity)
    anchor.year = date.year
    convert_date_to_julian(anchor)
    order = compare_dates(anchor, date)
    if order == DATE_EQUAL:
        return float(n)
    if order == DATE_BEFORE:
        anchor.year = low32(date.year + 1)
        convert_date_to_julian(anchor)
        n = n - terms.frequency
    k = -1
    while k >= 0 - terms.frequency:
        spend_step()
        stepped = advance_date(anchor, k, terms)
        reached = compare_dates(stepped, date)
        if reached == DATE_BEFORE:
            break
        n = n + 1
        if reached == DATE_EQUAL:
            break
        k = k - 1
    return float(n)


def count_the_coupon_days(start, end, terms):
    """Days between two dates inside a coupon period. The return value is the uncapped count, but for 30/360 with
    its month-end rule, where only the capped one exists."""
    d1, m1, y1 = start.day, start.month, start.year
    d2, m2, y2 = end.day, end.month, end.year
    if terms.basis == BASIS_30_360 and terms.coupon_day_rule == 0:
        last1 = last_day(y1, m1)
        last2 = last_day(y2, m2)
        if d1 == last1 and m1 != 2:
            d1, m1, y1 = to_the_first_of_the_next_month(d1, m1, y1)
            if d2 == last2 or d2 == 30:
                d2, m2, y2 = to_the_first_of_the_next_month(d2, m2, y2)
        if m2 == 2 and d2 == last2:
            d2 = 30
        elif d2 == 31:
            d2 = 30
        days = float(360 * (y2 - y1) + 30 * (m2 - m1) + d2 - min(d1, 30))
        terms.capped_day_count = minimum(days, terms.period_days)
        terms.day_count = terms.capped_day_count
        terms.count_year_length = 360.0
    elif terms.basis == BASIS_30_360:
        terms.day_count = float(zdays360(start, end, 0))
    elif terms.basis == BASIS_ACTUAL:
        terms.day_count = actual_days(start, end)
        terms.capped_day_count = terms.day_count
        terms.count_year_length = 1.0
    elif terms.basis == BASIS_ACT_360:
        terms.day_count = actual_days(start, end)
        terms.capped_day_count = minimum(terms.day_count, terms.period_days)
        terms.count_year_length = 360.0
    elif terms.basis == BASIS_ACT_365:
        terms.day_count = actual_days(start, end)
        terms.capped_day_count = minimum(terms.day_count, terms.period_days)
        terms.count_year_length = 365.0
    elif terms.basis == BASIS_EU_30_360:
        terms.day_count = float(360 * (y2 - y1) + 30 * (m2 - m1) + min(d2, 30) - min(d1, 30))
        terms.capped_day_count = minimum(terms.day_count, terms.period_days)
        terms.count_year_length = 360.0
    return terms.day_count


@dataclass
class CouponPeriod:
    start: CalendarDate = field(default_factory=CalendarDate)
    end: CalendarDate = field(default_factory=CalendarDate)
    days: float = 0.0


@dataclass
class CouponList:
    start_date: CalendarDate
    end_date: CalendarDate
    maturity: CalendarDate
    terms: CouponTerms
    partial_periods: int = 0
    whole_periods: int = 0
    periods_stored: int = 0
    boundary_flags: int = 0
    first_period: CouponPeriod = field(default_factory=CouponPeriod)
    last_period: CouponPeriod = field(default_factory=CouponPeriod)
    exact_end_period: Optional[CouponPeriod] = None
    current_period: Optional[CouponPeriod] = None


def length_of_period(start, end, terms):
    if terms.basis == BASIS_ACTUAL:
        return count_the_coupon_days(start, end, terms)
    return terms.period_days


def make_the_coupon_list(start_date, end_date, maturity, terms):
    """The coupon periods that the stretch from start_date to end_date touches."""
    found = CouponList(start_date, end_date, maturity, terms)
    info = CouponInfo(settlement=start_date, maturity=maturity, terms=terms, requests=0)
    find_coupon_info(info)
    next_coupon = info.next_coupon

    # The period that holds the start.
    if info.coincident_coupon is not None:
        found.boundary_flags |= START_IS_COUPON_DATE
        found.whole_periods = 1
        period_start = info.coincident_coupon
    elif compare_dates(info.previous_coupon, start_date) != DATE_EQUAL:
        found.partial_periods = 1
        found.boundary_flags &= ~START_IS_COUPON_DATE
        period_start = info.previous_coupon
    else:
        found.whole_periods = 1
        found.boundary_flags |= START_IS_COUPON_DATE
        period_start = info.previous_coupon
    found.first_period = CouponPeriod(copy(period_start), copy(next_coupon),
                                      length_of_period(period_start, next_coupon, terms))
    found.periods_stored = 1
    found.current_period = found.first_period

    order = compare_dates(next_coupon, end_date)
    if order == DATE_EQUAL:
        found.boundary_flags |= END_IS_COUPON_DATE
        return found
    if order == DATE_AFTER:
        return found

    # The later periods, one by one up to the end.
    period_start = next_coupon
    k = 1
    while True:
        spend_step()
        stepped = advance_date(next_coupon, k, terms)
        found.last_period = CouponPeriod(copy(period_start), copy(stepped),
                                         length_of_period(period_start, stepped, terms))
        found.periods_stored = found.periods_stored + 1
        found.current_period = found.last_period
        order = compare_dates(stepped, end_date)
        if order == DATE_AFTER:
            if found.exact_end_period is None:
                found.partial_periods = found.partial_periods + 1
            found.boundary_flags &= ~END_IS_COUPON_DATE
            return found
        found.whole_periods = found.whole_periods + 1
        if order == DATE_EQUAL:
            found.boundary_flags |= END_IS_COUPON_DATE
            found.exact_end_period = found.last_period
            return found
        period_start = stepped
        k = k + 1


def compute_1_coupon_proportion(start, end, period_start, period_end, terms):
    """One stretch as a fraction of one coupon period."""
    days = count_the_coupon_days(start, end, terms)
    if terms.basis == BASIS_ACTUAL:
        proportion = div(days, count_the_coupon_days(period_start, period_end, terms))
    else:
        proportion = div(terms.day_count, terms.period_days)
    if terms.proportion_floor and proportion < 1.0:
        proportion = 1.0
    return proportion


def compute_coupon_proportions(start, end, maturity, terms):
    """A stretch over several periods as a sum of fractions of periods."""
    info = CouponInfo(settlement=start, maturity=maturity, terms=terms, requests=0)
    find_coupon_info(info)
    if compare_dates(info.next_coupon, end) == DATE_BEFORE:
        total = compute_1_coupon_proportion(start, info.next_coupon, info.previous_coupon, info.next_coupon, terms)
        earlier = info.next_coupon
        k = 1
        while True:
            spend_step()
            stepped = advance_date(info.next_coupon, k, terms)
            if compare_dates(stepped, end) in (DATE_EQUAL, DATE_AFTER):
                break
            total = total + compute_1_coupon_proportion(earlier, stepped, earlier, stepped, terms)
            earlier = stepped
            k = k + 1
        return total + compute_1_coupon_proportion(earlier, end, earlier, stepped, terms)
    if info.coincident_coupon is not None:
        return compute_1_coupon_proportion(start, end, info.previous_coupon, info.coincident_coupon, terms)
    return compute_1_coupon_proportion(start, end, info.previous_coupon, info.next_coupon, terms)


def compute_from_settlement_to_next_coupon(settlement, maturity, terms):
    """Fraction of the coupon period from settlement to the next coupon; 0 on a coupon date."""
    info = CouponInfo(settlement=settlement, maturity=maturity, terms=terms, requests=0)
    find_coupon_info(info)
    if info.coincident_coupon is not None:
        return 0.0
    days = count_the_coupon_days(settlement, info.next_coupon, terms)
    if terms.basis == BASIS_ACTUAL:
        return div(days, count_the_coupon_days(info.previous_coupon, info.next_coupon, terms))
    return div(days, terms.period_days)


# ---------------------------------------------------------------------------------------------------------------
# Arguments of the calculations that use dates

def take_date(call, i):
    """A date of which only the Julian day is known yet."""
    return CalendarDate(julian_day=call.date(i))


def take_coupon_terms(call, frequency_slot, basis_slot):
    terms = CouponTerms()
    terms.frequency = call.frequency(frequency_slot)
    terms.step_unit = STEP_MONTHS
    compute_period(terms)
    terms.basis = call.basis(basis_slot)
    compute_days_in_period(terms)
    return terms
