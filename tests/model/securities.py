"""Coupon securities: accrued interest, price and yield, duration, odd first and last periods, interest at maturity.

Slow and literal, on top of calendar_engine. Prices and redemptions are per 100 of face value, rates and yields are
annual fractions, times are in coupon periods unless a line says otherwise.
"""

from calendar_engine import (
    BASIS_ACT_360, BASIS_ACT_365, BASIS_ACTUAL, DATE_AFTER, DATE_BEFORE, DATE_EQUAL, END_IS_COUPON_DATE,
    REQUEST_DAYS_IN_PERIOD, REQUEST_DAYS_SINCE_PREVIOUS, REQUEST_DAYS_TO_NEXT, START_IS_COUPON_DATE, STEP_YEARS,
    CouponInfo, CouponTerms, advance_date, compare_dates, compute_1_coupon_proportion, compute_coupon_proportions,
    compute_days_in_period, compute_from_settlement_to_next_coupon, compute_the_annual_ratio, count_the_coupon_days,
    count_the_coupons, count_whole_coupons, find_coupon_info, get_month_day_year, make_the_coupon_list, spend_step,
    take_coupon_terms, take_date)
from date_draws import (
    accrint_arguments, accrintm_arguments, duration_arguments, oddfprice_arguments, oddfyield_arguments,
    oddlprice_arguments, oddlyield_arguments, price_arguments, pricemat_arguments, yield_arguments, yieldmat_arguments)
from ieee import div, maximum, pow
from newton import NewtonProblem, call_special_newton

SMALLEST_GROWTH = 1.053671212772351e-8        # 2^-26.5: the least 1 + y/f that is accepted


class Bond:
    """What a calculation knows and works out; a field that nothing sets is 0."""

    def __init__(self):
        self.settlement = None
        self.maturity = None
        self.issue = None
        self.first_coupon = None
        self.last_interest = None
        self.terms = None
        self.rate = 0.0
        self.yield_ = 0.0
        self.redemption = 0.0
        self.price = 0.0
        self.accrued_fraction = 0.0
        self.remaining_fraction = 0.0
        self.first_period_length = 0.0
        self.days_to_next_coupon = 0.0
        self.days_in_period = 0.0
        self.days_accrued = 0.0
        self.coupon_count = 0.0
        self.whole_coupons = 0.0
        self.accrued_periods = 0.0
        self.last_period_length = 0.0
        self.remaining_periods = 0.0


def clamped_frequency(bond):
    return maximum(float(bond.terms.frequency), 1.0)


# ---------------------------------------------------------------------------------------------------------------
# ACCRINT(issue, first interest date, settlement, rate, par, frequency, basis)

def accrint(call):
    issue = take_date(call, 1)
    first_interest = take_date(call, 2)
    settlement = take_date(call, 3)
    if compare_dates(settlement, issue) == DATE_BEFORE:
        call.refuse(3)
    if compare_dates(settlement, issue) == DATE_EQUAL:
        call.result = 0.0
        return
    rate = call.positive(4)
    par = call.positive(5)
    terms = take_coupon_terms(call, 6, 7)

    terms.coupon_day_rule = 1
    get_month_day_year(issue)
    get_month_day_year(settlement)
    get_month_day_year(first_interest)
    periods = make_the_coupon_list(issue, settlement, first_interest, terms)
    first_period = periods.first_period
    current_period = periods.current_period
    if compare_dates(settlement, first_period.end) == DATE_BEFORE:
        fraction = div(count_the_coupon_days(issue, settlement, terms), current_period.days)
    else:
        n = float(periods.whole_periods)
        if periods.boundary_flags & END_IS_COUPON_DATE:
            n = n - 1.0
        if periods.boundary_flags & START_IS_COUPON_DATE:
            first = 0.0
        else:
            first = div(count_the_coupon_days(issue, first_period.end, terms), first_period.days)
        if periods.exact_end_period is not None:
            start = periods.exact_end_period.start
        else:
            start = current_period.start
        last = div(count_the_coupon_days(start, settlement, terms), current_period.days)
        fraction = maximum(n, 0.0) + first + last
    terms.coupon_day_rule = 0
    call.result = div(par * rate, float(terms.frequency)) * fraction


# ---------------------------------------------------------------------------------------------------------------
# ACCRINTM(issue, settlement, rate, par, basis)

def accrintm(call):
    issue = take_date(call, 1)
    settlement = take_date(call, 2)
    if compare_dates(settlement, issue) == DATE_BEFORE:
        call.refuse(2)
    if compare_dates(settlement, issue) == DATE_EQUAL:
        call.result = 0.0
        return
    rate = call.positive(3)
    par = call.positive(4)
    terms = CouponTerms()
    terms.frequency = 1
    terms.step_unit = STEP_YEARS
    terms.basis = call.basis(5)
    get_month_day_year(issue)
    get_month_day_year(settlement)
    year_fraction = compute_the_annual_ratio(issue, settlement, terms)
    if year_fraction < 0.0:
        call.fail()
    call.result = rate * year_fraction * par


# ---------------------------------------------------------------------------------------------------------------
# PRICE(settlement, maturity, rate, yield, redemption, frequency, basis)
# YIELD(settlement, maturity, rate, price, redemption, frequency, basis)

def coupon_quantities(bond):
    """N, and the coupon period that holds settlement (with its length E, and the days accrued A when settlement is
    not a coupon date)."""
    get_month_day_year(bond.settlement)
    get_month_day_year(bond.maturity)
    bond.coupon_count = count_the_coupons(bond.settlement, bond.maturity, bond.terms)
    info = CouponInfo(bond.settlement, bond.maturity, bond.terms,
                      REQUEST_DAYS_SINCE_PREVIOUS | REQUEST_DAYS_TO_NEXT | REQUEST_DAYS_IN_PERIOD)
    find_coupon_info(info)
    return info


def price_and_yield_quantities(bond):
    info = coupon_quantities(bond)
    a = info.days_since_previous
    e = info.days_in_period
    if div(e - a, e) <= 0.0 or info.coincident_coupon is not None:
        a = 0.0
        dsc = e
        bond.accrued_fraction = div(0.0, e)
        bond.remaining_fraction = div(e, e)
    else:
        dsc = e - a
        bond.accrued_fraction = div(a, e)
        bond.remaining_fraction = div(e - a, e)
    bond.days_in_period = e
    bond.days_to_next_coupon = dsc
    bond.days_accrued = a


def take_bond_with_equal_dates(call):
    """The first two arguments. None, with the result 0 stored, when the dates are equal."""
    bond = Bond()
    bond.settlement = take_date(call, 1)
    bond.maturity = take_date(call, 2)
    if compare_dates(bond.maturity, bond.settlement) == DATE_BEFORE:
        call.refuse(2)
    if compare_dates(bond.maturity, bond.settlement) == DATE_EQUAL:
        call.result = 0.0
        return None
    return bond


def price(call):
    bond = take_bond_with_equal_dates(call)
    if bond is None:
        return
    bond.rate = call.positive(3)
    bond.yield_ = call.number(4)
    bond.redemption = call.positive(5)
    bond.terms = take_coupon_terms(call, 6, 7)
    price_and_yield_quantities(bond)

    f = clamped_frequency(bond)
    y = bond.yield_
    r = bond.redemption
    n = bond.coupon_count
    d = bond.remaining_fraction
    a = bond.accrued_fraction
    if 1.0 + y / f < SMALLEST_GROWTH:
        call.fail()
    c = 100.0 * bond.rate / f
    v = div(1.0, 1.0 + y / f)
    if -(y / f) * v <= -1.0:
        call.fail()
    if n == 1.0:
        bond.price = div(r + c, 1.0 + (y / f) * d) - c * a
    elif n > 1.0:
        s = 0.0
        term = 1.0
        k = 0.0
        while n > k:
            spend_step()
            k = k + 1.0
            s = s + term
            term = term * v
        bond.price = pow(v, d) * (r * pow(v, n - 1.0) + c * s) - c * a
    else:
        bond.price = 0.0 * bond.price - c * a
    call.result = bond.price


def compute_f_yield(problem):
    bond = problem.user_data
    x = problem.x
    bond.yield_ = x
    f = clamped_frequency(bond)
    s = 1.0 + x / f
    if s < SMALLEST_GROWTH:
        return 2
    c = 100.0 * bond.rate / f
    v = div(1.0, s)
    n = bond.coupon_count
    e = bond.remaining_fraction
    t = pow(v, e)
    total = t
    g = t * v * (-e) / f
    total_derivative = g
    k = 1.0
    while n > k:
        spend_step()
        k = k + 1.0
        t = t * v
        e = e + 1.0
        total = total + t
        g = -(v * e) * t / f
        total_derivative = total_derivative + g
    problem.value = c * (total - bond.accrued_fraction) + (bond.redemption * t - bond.price)
    problem.derivative = c * total_derivative + bond.redemption * g
    return 0


def bond_yield(call):
    bond = take_bond_with_equal_dates(call)
    if bond is None:
        return
    bond.rate = call.positive(3)
    bond.price = call.positive(4)
    bond.redemption = call.positive(5)
    bond.terms = take_coupon_terms(call, 6, 7)
    price_and_yield_quantities(bond)

    if bond.coupon_count == 1.0:
        f0 = float(bond.terms.frequency)
        a = div(bond.days_accrued, bond.days_in_period)
        numerator = bond.redemption / 100.0 + div(bond.rate, f0)
        denominator = bond.price / 100.0 + div(a * bond.rate, f0)
        call.result = div((div(numerator, denominator) - 1.0) * f0 * bond.days_in_period, bond.days_to_next_coupon)
        return
    problem = NewtonProblem(tolerance=1e-12, max_iterations=100, objective=compute_f_yield, start=0.1,
                            residual_scale=0.0, user_data=bond)
    if call_special_newton(problem) != 0:
        call.fail()
    bond.yield_ = problem.x
    call.result = bond.yield_


# ---------------------------------------------------------------------------------------------------------------
# DURATION, MDURATION(settlement, maturity, coupon rate, yield, frequency, basis)

def compute_duration(call, bond):
    info = coupon_quantities(bond)
    a = info.days_since_previous
    if info.coincident_coupon is not None:
        a = 0.0
    e = info.days_in_period
    dsc = e - a
    d = div(dsc, e)
    f = clamped_frequency(bond)
    y = bond.yield_
    n = bond.coupon_count
    if 1.0 + y / f < SMALLEST_GROWTH:
        call.fail()
    v = div(1.0, 1.0 + y / f)
    c = 100.0 * bond.rate / f
    if -(y / f) * v <= -1.0:
        call.fail()
    if d == 0.0:
        t = 0.0
        w = 1.0
    else:
        t = d / f                                       # years
        w = d
    pv = c * w
    tw = t * c * w
    k = 1.0
    while n > k:
        spend_step()
        k = k + 1.0
        w = w * v
        t = t + 1.0 / f
        pv = pv + c * w
        tw = tw + c * w * t
    r = 100.0 * w
    return div(tw + r * t, pv + r)


def take_duration_bond(call):
    bond = take_bond_with_equal_dates(call)
    if bond is None:
        return None
    bond.rate = call.positive(3)
    bond.yield_ = call.number(4)
    bond.terms = take_coupon_terms(call, 5, 6)
    return bond


def duration(call):
    bond = take_duration_bond(call)
    if bond is None:
        return
    call.result = compute_duration(call, bond)


def mduration(call):
    bond = take_duration_bond(call)
    if bond is None:
        return
    s = div(bond.yield_, float(bond.terms.frequency)) + 1.0
    if s < SMALLEST_GROWTH:
        call.fail()
    call.result = div(compute_duration(call, bond), s)


# ---------------------------------------------------------------------------------------------------------------
# ODDFPRICE(settlement, maturity, issue, first coupon date, rate, yield, redemption, frequency, basis)
# ODDFYIELD(settlement, maturity, issue, first coupon date, rate, price, redemption, frequency, basis)

def accrual_walk(bond, target):
    """Coupon periods from issue to the target date."""
    terms = bond.terms
    periods = make_the_coupon_list(bond.issue, target, bond.maturity, terms)
    first_period = periods.first_period
    current_period = periods.current_period
    if compare_dates(target, first_period.end) != DATE_AFTER:
        return div(count_the_coupon_days(bond.issue, target, terms), current_period.days)
    n = float(periods.whole_periods)
    if periods.boundary_flags & END_IS_COUPON_DATE:
        n = n - 1.0
    if periods.boundary_flags & START_IS_COUPON_DATE:
        first = 0.0
    else:
        first = div(count_the_coupon_days(bond.issue, first_period.end, terms), first_period.days)
    s = periods.exact_end_period
    if s is None:
        s = current_period
    last = div(count_the_coupon_days(s.start, target, terms), s.days)
    return maximum(n, 0.0) + first + last


def take_odd_first_bond(call):
    """The arguments of both; argument 6 (yield or price) is stored in both places. None when the result is 0."""
    bond = Bond()
    bond.settlement = take_date(call, 1)
    bond.maturity = take_date(call, 2)
    bond.issue = take_date(call, 3)
    bond.first_coupon = take_date(call, 4)
    for earlier, later, slot in ((bond.issue, bond.settlement, 3),
                                 (bond.settlement, bond.first_coupon, 4),
                                 (bond.first_coupon, bond.maturity, 4)):
        if compare_dates(later, earlier) == DATE_BEFORE:
            call.refuse(slot)
        if compare_dates(later, earlier) == DATE_EQUAL:
            call.result = 0.0
            return None
    bond.rate = call.positive(5)
    bond.yield_ = bond.price = call.number(6)
    bond.redemption = call.positive(7)
    bond.terms = take_coupon_terms(call, 8, 9)
    return bond


def odd_first_quantities(call, bond):
    terms = bond.terms
    get_month_day_year(bond.settlement)
    get_month_day_year(bond.maturity)
    get_month_day_year(bond.issue)
    get_month_day_year(bond.first_coupon)
    info = CouponInfo(bond.first_coupon, bond.maturity, terms, 0)
    find_coupon_info(info)
    if info.coincident_coupon is None:                  # the first coupon date is not on the maturity's schedule
        call.refuse(4)
    bond.accrued_fraction = accrual_walk(bond, bond.settlement)
    accrual_walk(bond, bond.maturity)                   # its value is not used by any formula
    terms.proportion_floor = 0
    bond.first_period_length = accrual_walk(bond, bond.first_coupon)
    bond.whole_coupons = count_whole_coupons(bond.settlement, bond.first_coupon, terms)
    bond.remaining_fraction = compute_from_settlement_to_next_coupon(bond.settlement, bond.maturity, terms)
    bond.coupon_count = count_the_coupons(bond.first_coupon, bond.maturity, terms)


def oddfprice(call):
    bond = take_odd_first_bond(call)
    if bond is None:
        return
    odd_first_quantities(call, bond)
    y = bond.yield_
    n = bond.coupon_count
    f = clamped_frequency(bond)
    s = y / f + 1.0
    if s < SMALLEST_GROWTH:
        call.fail()
    v = div(1.0, s)
    c = 100.0 * bond.rate / f
    e = bond.whole_coupons + bond.remaining_fraction
    t = pow(v, e)
    first = c * t
    total = 0.0
    k = 1.0
    if n >= 1.0:
        while True:
            spend_step()
            k = k + 1.0
            t = t * v
            total = total + t
            if not k <= n:
                break
    call.result = (total - bond.accrued_fraction) * c + first * bond.first_period_length + t * bond.redemption


def compute_f_oddfyield(problem):
    bond = problem.user_data
    x = problem.x
    bond.yield_ = x
    f = clamped_frequency(bond)
    s = x / f + 1.0
    if s < SMALLEST_GROWTH:
        return 2
    v = div(1.0, s)
    c = 100.0 * bond.rate / f
    n = bond.coupon_count
    e = bond.whole_coupons + bond.remaining_fraction
    t0 = pow(v, e)
    g0 = -e * t0 * v / f
    t = t0
    g = g0
    total = 0.0
    total_derivative = 0.0
    k = 1.0
    if n >= 1.0:
        while True:
            spend_step()
            k = k + 1.0
            t = t * v
            total = total + t
            g = g * v - t * v / f
            total_derivative = total_derivative + g
            if not n >= k:
                break
    dfc = bond.first_period_length
    problem.value = c * (dfc * t0 + total - bond.accrued_fraction) + bond.redemption * t - bond.price
    problem.derivative = c * dfc * g0 + c * total_derivative + bond.redemption * g
    return 0


def oddfyield(call):
    bond = take_odd_first_bond(call)
    if bond is None:
        return
    odd_first_quantities(call, bond)
    problem = NewtonProblem(tolerance=1e-12, max_iterations=100, objective=compute_f_oddfyield, start=0.1,
                            residual_scale=0.0, user_data=bond)
    if call_special_newton(problem) != 0:
        call.fail()
    bond.yield_ = problem.x
    call.result = bond.yield_


# ---------------------------------------------------------------------------------------------------------------
# ODDLPRICE(settlement, maturity, last interest date, rate, yield, redemption, frequency, basis)
# ODDLYIELD(settlement, maturity, last interest date, rate, price, redemption, frequency, basis)

def take_odd_last_bond(call):
    """The arguments of both; argument 5 (yield or price) is stored in both places. None when the result is 0."""
    bond = Bond()
    bond.settlement = take_date(call, 1)
    bond.maturity = take_date(call, 2)
    bond.last_interest = take_date(call, 3)
    for earlier, later, slot in ((bond.settlement, bond.maturity, 2), (bond.last_interest, bond.settlement, 3)):
        if compare_dates(later, earlier) == DATE_BEFORE:
            call.refuse(slot)
        if compare_dates(later, earlier) == DATE_EQUAL:
            call.result = 0.0
            return None
    bond.rate = call.positive(4)
    bond.yield_ = bond.price = call.number(5)
    bond.redemption = call.positive(6)
    bond.terms = take_coupon_terms(call, 7, 8)
    return bond


def odd_last_quantities(bond):
    terms = bond.terms
    get_month_day_year(bond.settlement)
    get_month_day_year(bond.maturity)
    get_month_day_year(bond.last_interest)
    if terms.basis in (BASIS_ACT_360, BASIS_ACT_365):
        terms.basis = BASIS_ACTUAL

    total = 0.0
    earlier = bond.last_interest
    k = 1
    while True:
        spend_step()
        stepped = advance_date(bond.last_interest, k, terms)
        if compare_dates(stepped, bond.settlement) == DATE_AFTER:
            break
        total = total + compute_1_coupon_proportion(earlier, stepped, earlier, stepped, terms)
        earlier = stepped
        k = k + 1
    bond.accrued_periods = total + compute_1_coupon_proportion(earlier, bond.settlement, earlier, stepped, terms)

    bond.last_period_length = compute_coupon_proportions(bond.last_interest, bond.maturity, bond.maturity, terms)
    bond.remaining_periods = compute_coupon_proportions(bond.settlement, bond.maturity, bond.maturity, terms)


def oddlprice(call):
    bond = take_odd_last_bond(call)
    if bond is None:
        return
    odd_last_quantities(bond)
    f = clamped_frequency(bond)
    c = 100.0 * bond.rate / f
    den = 1.0 + (bond.yield_ / f) * bond.remaining_periods
    if den < SMALLEST_GROWTH:
        call.fail()
    call.result = div(bond.last_period_length * c + bond.redemption, den) - c * bond.accrued_periods


def oddlyield(call):
    bond = take_odd_last_bond(call)
    if bond is None:
        return
    odd_last_quantities(bond)
    f = clamped_frequency(bond)
    c = 100.0 * bond.rate / f
    den = bond.accrued_periods * c + bond.price
    if den == 0.0 or bond.remaining_periods == 0.0:
        call.fail()
    call.result = div(f, bond.remaining_periods) * (div(c * bond.last_period_length + bond.redemption, den) - 1.0)


# ---------------------------------------------------------------------------------------------------------------
# PRICEMAT(settlement, maturity, issue, rate, yield, basis)
# YIELDMAT(settlement, maturity, issue, rate, price, basis)

def take_maturity_terms(call):
    terms = CouponTerms()
    terms.frequency = 1
    terms.step_unit = STEP_YEARS
    terms.months_per_period = 12
    terms.basis = call.basis(6)
    compute_days_in_period(terms)
    return terms


def three_year_fractions(settlement, maturity, issue, terms):
    """Issue to maturity, settlement to maturity, issue to settlement."""
    get_month_day_year(settlement)
    get_month_day_year(maturity)
    get_month_day_year(issue)
    bim = compute_the_annual_ratio(issue, maturity, terms)
    bsm = compute_the_annual_ratio(settlement, maturity, terms)
    bis = compute_the_annual_ratio(issue, settlement, terms)
    return bim, bsm, bis


def pricemat(call):
    settlement = take_date(call, 1)
    maturity = take_date(call, 2)
    if compare_dates(maturity, settlement) != DATE_AFTER:
        call.refuse(2)
    issue = take_date(call, 3)
    if compare_dates(issue, maturity) == DATE_AFTER:
        call.refuse(3)
    if compare_dates(issue, maturity) == DATE_EQUAL:
        call.result = 0.0
        return
    rate = call.positive(4)
    y = call.number(5)
    terms = take_maturity_terms(call)
    bim, bsm, bis = three_year_fractions(settlement, maturity, issue, terms)
    den = bsm * y + 1.0
    if den == 0.0:
        call.fail()
    call.result = div(bim * rate * 100.0 + 100.0, den) - bis * rate * 100.0


def yieldmat(call):
    settlement = take_date(call, 1)
    maturity = take_date(call, 2)
    issue = take_date(call, 3)
    if compare_dates(maturity, settlement) == DATE_BEFORE:
        call.refuse(2)
    if compare_dates(maturity, settlement) == DATE_EQUAL:
        call.result = 0.0
        return
    if compare_dates(maturity, issue) == DATE_BEFORE:
        call.refuse(3)
    if compare_dates(maturity, issue) == DATE_EQUAL:
        call.result = 0.0
        return
    rate = call.positive(4)
    p = call.positive(5)
    terms = take_maturity_terms(call)
    bim, bsm, bis = three_year_fractions(settlement, maturity, issue, terms)
    r = rate / float(terms.frequency)
    den = bis * r * 100.0 + p
    if den == 0.0:
        call.fail()
    call.result = div(div(100.0 + r * bim * 100.0, den) - 1.0, bsm)


CALCULATIONS = {
    "ACCRINT": accrint,
    "ACCRINTM": accrintm,
    "PRICE": price,
    "YIELD": bond_yield,
    "DURATION": duration,
    "MDURATION": mduration,
    "ODDFPRICE": oddfprice,
    "ODDFYIELD": oddfyield,
    "ODDLPRICE": oddlprice,
    "ODDLYIELD": oddlyield,
    "PRICEMAT": pricemat,
    "YIELDMAT": yieldmat,
}

GENERATORS = {
    "ACCRINT": accrint_arguments,
    "ACCRINTM": accrintm_arguments,
    "PRICE": price_arguments,
    "YIELD": yield_arguments,
    "DURATION": duration_arguments,
    "MDURATION": duration_arguments,
    "ODDFPRICE": oddfprice_arguments,
    "ODDFYIELD": oddfyield_arguments,
    "ODDLPRICE": oddlprice_arguments,
    "ODDLYIELD": oddlyield_arguments,
    "PRICEMAT": pricemat_arguments,
    "YIELDMAT": yieldmat_arguments,
}
