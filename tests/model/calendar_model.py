"""Year fractions, coupon dates and discount securities: the calculations that rest directly on the calendar.

Other modules find CalendarDate, TooLong and refill_steps here too.
"""

from calendar_engine import (
    BASIS_30_360, BASIS_ACT_360, BASIS_ACT_365, BASIS_EU_30_360, DATE_AFTER, DATE_BEFORE, DATE_EQUAL,
    REQUEST_DAYS_IN_PERIOD, REQUEST_DAYS_SINCE_PREVIOUS, REQUEST_DAYS_TO_NEXT, STEP_YEARS, CalendarDate, CouponInfo,
    CouponTerms, TooLong, compare_dates, compute_days_in_period, compute_the_annual_ratio, count_the_coupons,
    find_coupon_info, get_month_day_year, host_date, refill_steps, take_coupon_terms, take_date)
from date_draws import coupon_dates_arguments, discount_security_arguments, year_fraction_arguments
from ieee import LARGEST, div


# What the calculations without coupons use: one period of one year.
def take_one_year_terms(call, basis_slot):
    terms = CouponTerms()
    terms.day_31_adjust = 1
    terms.frequency = 1
    terms.step_unit = STEP_YEARS
    terms.months_per_period = 12
    terms.basis = call.basis(basis_slot)
    compute_days_in_period(terms)
    return terms


# ---------------------------------------------------------------------------------------------------------------
# YEARFRAC(start, end, basis)

def yearfrac(call):
    start = take_date(call, 1)
    end = take_date(call, 2)
    if compare_dates(start, end) == DATE_AFTER:
        call.refuse(2)
    if compare_dates(start, end) == DATE_EQUAL:
        call.result = 0.0
        return
    terms = take_one_year_terms(call, 3)
    get_month_day_year(start)
    get_month_day_year(end)
    fraction = compute_the_annual_ratio(start, end, terms)
    if fraction < 0.0:
        call.fail()
    call.result = fraction


# ---------------------------------------------------------------------------------------------------------------
# COUP...(settlement, maturity, frequency, basis)

def coupdaybs(call):
    settlement = take_date(call, 1)
    maturity = take_date(call, 2)
    if compare_dates(settlement, maturity) != DATE_BEFORE:
        call.refuse(3)                                  # the frequency is marked, not a date
    terms = take_coupon_terms(call, 3, 4)
    get_month_day_year(settlement)
    get_month_day_year(maturity)
    info = CouponInfo(settlement, maturity, terms, REQUEST_DAYS_SINCE_PREVIOUS)
    find_coupon_info(info)
    call.result = info.days_since_previous


def coupdays(call):
    settlement = take_date(call, 1)
    maturity = take_date(call, 2)
    if compare_dates(settlement, maturity) == DATE_AFTER:
        call.refuse(2)
    terms = take_coupon_terms(call, 3, 4)
    if terms.basis in (BASIS_30_360, BASIS_ACT_360, BASIS_EU_30_360):
        call.result = div(360.0, float(terms.frequency))
    elif terms.basis == BASIS_ACT_365:
        call.result = div(365.0, float(terms.frequency))
    else:
        get_month_day_year(settlement)
        get_month_day_year(maturity)
        info = CouponInfo(settlement, maturity, terms, REQUEST_DAYS_IN_PERIOD)
        find_coupon_info(info)
        call.result = info.days_in_period


def coupdaysnc(call):
    settlement = take_date(call, 1)
    maturity = take_date(call, 2)
    if compare_dates(settlement, maturity) == DATE_AFTER:
        call.refuse(2)
    terms = take_coupon_terms(call, 3, 4)
    get_month_day_year(settlement)
    get_month_day_year(maturity)
    info = CouponInfo(settlement, maturity, terms, REQUEST_DAYS_TO_NEXT)
    find_coupon_info(info)
    call.result = info.days_to_next


def coupncd(call):
    settlement = take_date(call, 1)
    maturity = take_date(call, 2)
    if compare_dates(settlement, maturity) != DATE_BEFORE:
        call.refuse(2)
    terms = take_coupon_terms(call, 3, 4)
    get_month_day_year(settlement)
    get_month_day_year(maturity)
    info = CouponInfo(settlement, maturity, terms, 0)
    find_coupon_info(info)
    call.result = host_date(info.next_coupon)


def coupnum(call):
    settlement = take_date(call, 1)
    maturity = take_date(call, 2)
    if compare_dates(settlement, maturity) == DATE_AFTER:
        call.refuse(2)
    terms = take_coupon_terms(call, 3, 4)
    get_month_day_year(settlement)
    get_month_day_year(maturity)
    call.result = count_the_coupons(settlement, maturity, terms)


def couppcd(call):
    settlement = take_date(call, 1)
    maturity = take_date(call, 2)
    if compare_dates(settlement, maturity) != DATE_BEFORE:
        call.refuse(2)
    terms = take_coupon_terms(call, 3, 4)
    get_month_day_year(settlement)
    get_month_day_year(maturity)
    info = CouponInfo(settlement, maturity, terms, 0)
    find_coupon_info(info)
    call.result = host_date(info.previous_coupon)


# ---------------------------------------------------------------------------------------------------------------
# Discount securities(settlement, maturity, first amount, second amount, basis)

def discount_security(formula, no_day_31_adjust=0, all_leap_years=0):
    """formula(call, first amount, second amount, t); t is the year fraction from settlement to maturity."""
    def calculation(call):
        settlement = take_date(call, 1)
        maturity = take_date(call, 2)
        if compare_dates(settlement, maturity) == DATE_AFTER:
            call.refuse(2)
        if compare_dates(settlement, maturity) == DATE_EQUAL:
            call.result = 0.0
            return
        first = call.positive(3)
        second = call.positive(4)
        terms = take_one_year_terms(call, 5)
        terms.no_day_31_adjust = no_day_31_adjust
        terms.all_leap_years = all_leap_years
        get_month_day_year(settlement)
        get_month_day_year(maturity)
        t = compute_the_annual_ratio(settlement, maturity, terms)
        call.result = formula(call, first, second, t)
    return calculation


def disc(call, p, r, t):
    if t <= 0.0 or r == 0.0:
        call.fail()
    return div(div(r - p, r), t)


def intrate(call, i, r, t):
    if t < 0.0:
        call.fail()
    return div(div(r - i, i), t)


def pricedisc(call, d, r, t):
    return (1.0 - d * t) * r


def received(call, i, d, t):
    q = d * t
    if abs(1.0 - q) < 1.0 and i > abs(1.0 - q) * LARGEST:
        call.fail()
    return div(i, 1.0 - d * t)


def yielddisc(call, p, r, t):
    return div(div(r - p, p), t)


CALCULATIONS = {
    "YEARFRAC": yearfrac,
    "COUPDAYBS": coupdaybs,
    "COUPDAYS": coupdays,
    "COUPDAYSNC": coupdaysnc,
    "COUPNCD": coupncd,
    "COUPNUM": coupnum,
    "COUPPCD": couppcd,
    "DISC": discount_security(disc, no_day_31_adjust=1),
    "INTRATE": discount_security(intrate),
    "PRICEDISC": discount_security(pricedisc),
    "RECEIVED": discount_security(received, all_leap_years=1),
    "YIELDDISC": discount_security(yielddisc),
}

GENERATORS = {
    "YEARFRAC": year_fraction_arguments,
    "COUPDAYBS": coupon_dates_arguments,
    "COUPDAYS": coupon_dates_arguments,
    "COUPDAYSNC": coupon_dates_arguments,
    "COUPNCD": coupon_dates_arguments,
    "COUPNUM": coupon_dates_arguments,
    "COUPPCD": coupon_dates_arguments,
    "DISC": discount_security_arguments,
    "INTRATE": discount_security_arguments,
    "PRICEDISC": discount_security_arguments,
    "RECEIVED": discount_security_arguments,
    "YIELDDISC": discount_security_arguments,
}
