"""Depreciation: SLN SYD DB DDB VDB, and prorated by accounting period AMORLINC AMORDEGRC. Amounts are in currency units."""
from arguments import limit_steps
from calendar_model import CalendarDate, CouponTerms, compute_the_annual_ratio, get_month_day_year
from ieee import div, floor, is_nan, log, low32, maximum, minimum, trunc32
from kernels import zexpm1

STEP_YEARS = 4


def half_away_from_zero(x):
    """x as a whole 32-bit number."""
    return trunc32(x + 0.5 if x > 0.0 else x - 0.5)


def SLN(call):
    cost = call.number(1)
    salvage = call.number(2)
    life = call.positive(3)
    call.result = div(cost - salvage, life)


def SYD(call):
    cost = call.number(1)
    salvage = call.number(2)
    life = call.count32(3)
    period = call.count32(4)                                  # beyond the life: a negative amount or 0
    remaining = float(low32(low32(life - period) + 1))
    call.result = div(div((cost - salvage) * remaining * 2.0, float(life)), 1.0 + float(life))


def DB(call):
    cost = call.number(1)
    salvage = call.number(2)
    life = call.whole(3)
    if life <= 0:
        call.refuse(3)
    period = call.whole(4)
    if period <= 0:
        call.refuse(4)
    months = call.count32(5) if call.given(5) else 12         # of the first year; no upper bound
    if period > life + 1:
        call.refuse(4)
    exact_rate = -zexpm1(div(log(div(salvage, cost)), float(life)))
    rate = float(half_away_from_zero(exact_rate * 1000.0)) / 1000.0      # three decimals
    first = cost * float(months) * rate / 12.0
    if period == 1:
        call.result = first
        return
    accumulated = first
    limit_steps(minimum(period, life))
    if period <= life:
        for i in range(2, period + 1):
            d = (cost - accumulated) * rate
            accumulated = accumulated + d
        call.result = d
        return
    for i in range(2, life + 1):
        accumulated = accumulated + (cost - accumulated) * rate
    call.result = float(12 - months) * rate * (cost - accumulated) / 12.0


def DDB(call):
    cost = call.number(1)
    salvage = call.number(2)
    life = call.positive(3)
    period = call.count32(4)
    if not float(period) <= life:
        call.refuse(4)
    factor = call.optional_number(5, 2.0)
    if factor <= 0.0:
        factor = 2.0
    if salvage > cost:
        call.result = 0.0
        return
    accumulated = 0.0
    limit_steps(period)
    for i in range(1, period + 1):
        remaining = cost - accumulated
        if salvage > remaining:
            d = 0.0
        else:
            d = minimum(div(remaining * factor, life), cost - salvage - accumulated)
        accumulated = accumulated + d
    call.result = d


def VDB(call):
    cost = call.number(1)
    salvage = call.number(2)
    life = call.positive(3)
    s = call.whole32(4)
    if s < 0 or not float(s) <= life:
        call.refuse(4)
    e = call.count32(5)
    if not float(e) <= life:
        call.refuse(5)
    factor = call.positive(6) if call.given(6) else 2.0
    flag = 1
    if not call.absent(7) and not is_nan(call.slots[7].value):
        flag = trunc32(call.slots[7].value)
        if float(flag) != call.slots[7].value or flag not in (0, 1):
            call.refuse(7)
    if life == float(e - s):
        call.result = cost - salvage
    elif flag == 1:
        call.result = declining_balance(cost, salvage, life, s, e, factor)
    else:
        call.result = declining_balance_then_straight_line(cost, salvage, life, s, e, factor)


def declining_balance(cost, salvage, life, s, e, factor):
    depreciable = cost - salvage
    accumulated = 0.0
    total = 0.0
    limit_steps(e)
    for i in range(0, e):
        d = div((cost - accumulated) * factor, life)
        if accumulated + d > depreciable:
            if i < s:
                return total
            return total + (depreciable - accumulated)
        if i >= s:
            total = total + d
        accumulated = accumulated + d
    return total


def declining_balance_then_straight_line(cost, salvage, life, s, e, factor):
    depreciable = cost - salvage
    accumulated = 0.0
    total = 0.0
    switched = False
    d = 0.0
    limit_steps(e)
    for i in range(0, e):
        if not switched:
            d = div((cost - accumulated) * factor, life)
            straight_line = div(depreciable - accumulated, life - float(i))
            if d < straight_line:
                d = straight_line                             # kept for all later periods
                switched = True
        if accumulated + d > depreciable:
            if i >= s:
                total = total + (depreciable - accumulated)
            d = 0.0
            switched = True
        else:
            accumulated = accumulated + d
            if i >= s:
                total = total + d
    return total


# Prorated: the first period (number 0) counts the year fraction from the purchase to the period's end.

class ProratedRecord:
    pass


def prorated_arguments(call, salvage_is_accepted):
    record = ProratedRecord()
    record.cost = call.positive(1)
    record.purchase = CalendarDate(julian_day=call.date(2))
    record.first_period_end = CalendarDate(julian_day=call.date(3))
    record.salvage = call.number(4)
    if not salvage_is_accepted(record.salvage, record.cost):
        call.refuse(4)
    period = call.whole(5)
    if period < 0:
        call.refuse(5)
    record.period = low32(period)
    record.rate = call.positive(6)
    basis = call.basis(7)
    if basis == 2:
        call.refuse(7)                                        # ACT/360 has no place here
    # The period length that the handler also works out is overwritten by the year fraction before anyone reads it.
    record.terms = CouponTerms(day_31_adjust=1, frequency=1, step_unit=STEP_YEARS, months_per_period=12, basis=basis)
    return record


def AMORLINC(call):
    record = prorated_arguments(call, lambda salvage, cost: 0.0 <= salvage <= cost)
    cost, salvage, rate, period, terms = record.cost, record.salvage, record.rate, record.period, record.terms
    life = div(1.0, rate)
    n = trunc32(life * 1.000000000001)
    if abs(float(n) - life) > float(n) * 1.053671212772351e-8:
        n = low32(n + 1)                                      # a fractional life gives one more period
    terms.start_year_length = 1
    terms.no_day_31_adjust = 1
    if n < period:
        call.result = 0.0
        return
    get_month_day_year(record.purchase)
    get_month_day_year(record.first_period_end)
    if record.purchase.julian_day == record.first_period_end.julian_day:
        period = low32(period + 1)
    A = cost * rate
    f = compute_the_annual_ratio(record.purchase, record.first_period_end, terms)
    if period == 0:
        call.result = f * A
        return
    left = cost - f * A - salvage - (float(period) - 1.0) * A
    call.result = maximum(0.0, minimum(left, A))


def AMORDEGRC(call):
    record = prorated_arguments(call, lambda salvage, cost: salvage >= 0.0)
    cost, salvage, rate, period, terms = record.cost, record.salvage, record.rate, record.period, record.terms
    life = div(1.0, rate)
    n = trunc32(floor(life))
    if n < 3:
        call.result = 0.0
        return
    if life <= 4.000000000004:
        c = 1.5
    elif life <= 6.0000000000060005:
        c = 2.0
    else:
        c = 2.5
    if n < period:
        call.result = 0.0
        return
    get_month_day_year(record.purchase)
    get_month_day_year(record.first_period_end)
    terms.start_year_length = 1
    d0 = cost * c * rate * compute_the_annual_ratio(record.purchase, record.first_period_end, terms)
    if salvage > cost - d0:
        d0 = cost - salvage
    d0 = float(half_away_from_zero(d0))                       # whole currency units
    if period < 1:
        call.result = d0
        return
    remaining = cost - d0
    r = c * rate
    limit_steps(period)
    for i in range(0, period):
        if i == n - 2:
            r = 0.5
        elif i == n - 1:
            r = 1.0
        d = 0.0 if salvage > remaining else remaining * r
        d = float(half_away_from_zero(d))
        remaining = remaining - d
    call.result = d


CALCULATIONS = {"SLN": SLN, "SYD": SYD, "DB": DB, "DDB": DDB, "VDB": VDB, "AMORLINC": AMORLINC, "AMORDEGRC": AMORDEGRC}
