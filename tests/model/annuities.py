"""Level payments and loans: FV PV PMT IPMT PPMT CUMIPMT CUMPRINC ISPMT, RATE, NPER.

r is the rate of one period, n the number of periods, P the present value, F the future value, a or pmt the level payment.
type 1 pays at the start of each period, every other type at its end.
(1 + r)^n is e^(n ln(1 + r)), never a power; an exponent of 709.782712893384 or more fails the calculation.
Money received is positive, money paid is negative.
"""
from arguments import limit_steps
from ieee import div, is_nan, log, low32, maximum
from kernels import zexpm1, zln1px
from newton import NewtonProblem, call_special_newton

LARGEST_EXPONENT = 709.782712893384


class Overflow(Exception):
    """The growth exponent is too large."""


def growth_less_one(n, r):
    """(1 + r)^n - 1; n a float, perhaps negative."""
    x = n * zln1px(r)
    if x >= LARGEST_EXPONENT:
        raise Overflow()
    if n == 0.0:
        return 0.0
    return zexpm1(x)


# The formulas

def future_value(r, n, pmt, P, type):
    e = growth_less_one(float(n), r)
    if type == 1:
        q = div(e * pmt * (1.0 + r), r)
    else:
        q = div(e * pmt, r)
    return (0.0 - (1.0 + e) * P) - q


def present_value(r, n, pmt, F, type):
    e = growth_less_one(-float(n), r)
    if type == 1:
        q = div(e * pmt * (1.0 + r), r)
    else:
        q = div(e * pmt, r)
    return (0.0 - F) * (1.0 + e) + q


def payment(r, n, P, F, type):
    e = growth_less_one(float(n), r)
    pmt = div((0.0 - r) * ((1.0 + e) * P + F), e)
    if type == 1:
        pmt = div(pmt, 1.0 + r)
    return pmt


def interest_in_first_period(r, P, type):
    return 0.0 if type == 1 else 0.0 - P * r


def interest_in_later_period(r, k, P, type, pmt):
    e = growth_less_one(float(k - 1), r)
    g = 1.0 + e
    a = (0.0 - P * r) * g
    if type == 1:
        a = div(a, 1.0 + r)
    return a - e * pmt


def interest_part(r, k, n, P, F, type):
    if k == 1:
        return interest_in_first_period(r, P, type)          # without the payment: this cannot fail
    pmt = payment(r, n, P, F, type)
    return interest_in_later_period(r, k, P, type, pmt)


def principal_part(r, k, n, P, F, type):
    pmt = payment(r, n, P, F, type)                           # first, also for period 1: its failure counts
    if k == 1:
        interest = interest_in_first_period(r, P, type)
    else:
        interest = interest_in_later_period(r, k, P, type, pmt)
    return pmt - interest


def cumulative_interest(r, n, P, start_period, end_period, type):
    pmt = payment(r, n, P, 0.0, type)
    balance = P
    last = end_period
    first = start_period
    total = 0.0
    if type == 1:
        if end_period == 1:
            return 0.0
        last = end_period - 1
        first = start_period - 1
        balance = P + pmt
    if last < 1:
        return total
    limit_steps(last)
    for j in range(1, last + 1):
        interest = r * balance
        balance = balance + pmt + interest
        if first <= j <= last:
            total = total - interest
    return total


def cumulative_principal(r, n, P, start_period, end_period, type):
    pmt = payment(r, n, P, 0.0, type)
    balance = P
    last = end_period
    first = start_period
    total = 0.0
    if type == 1:
        if end_period == 1:
            return pmt
        last = end_period - 1
        first = start_period - 1
        balance = P + pmt
        total = pmt if start_period == 1 else 0.0             # what is paid at time 0 is all principal
    if last < 1:
        return total
    limit_steps(last)
    for j in range(1, last + 1):
        principal = r * balance + pmt
        balance = balance + principal
        if first <= j <= last:
            total = total + principal
    return total


# The calls

def guarded(call, formula, *values):
    """Stores the formula's result; an overflow of the growth factor fails without flagging an argument."""
    try:
        call.result = formula(*values)
    except Overflow:
        call.fail()


def rate_above_minus_one(call, i):
    r = call.number(i)
    if not r > -1.0:
        call.refuse(i)
    return r


def FV(call):
    r = call.positive(1)
    n = call.count32(2)
    pmt = call.number_or_missing(3)
    payment_is_missing = is_nan(pmt)
    if payment_is_missing:
        pmt = 0.0
    P = 0.0
    if not call.absent(4):
        P = call.slots[4].value
        if is_nan(P):
            if payment_is_missing:
                call.refuse(4)
            P = 0.0
    type = call.payment_type(5)
    guarded(call, future_value, r, n, pmt, P, type)


def PV(call):
    r = rate_above_minus_one(call, 1)
    n = call.count32(2)
    pmt = call.number(3)
    F = call.optional_number(4)
    type = call.payment_type(5)
    guarded(call, present_value, r, n, pmt, F, type)


def PMT(call):
    r = call.positive(1)
    n = call.count32(2)
    P = call.number(3)
    F = call.optional_number(4)
    type = call.payment_type(5)
    guarded(call, payment, r, n, P, F, type)


def interest_or_principal(call, formula):
    r = call.positive(1)
    k = call.count32(2)
    n = call.count32(3)
    if n < k:
        call.refuse(2)                                        # the period is at fault, not the number of periods
    P = call.number(4)
    F = call.optional_number(5)
    type = call.payment_type(6)
    guarded(call, formula, r, k, n, P, F, type)


def IPMT(call):
    interest_or_principal(call, interest_part)


def PPMT(call):
    interest_or_principal(call, principal_part)


def CUMIPMT(call):
    r = call.positive(1)
    n = call.whole32(2)
    P = call.positive(3)
    start_period = call.whole32(4)
    end_period = call.whole32(5)
    type = call.payment_type(6)
    guarded(call, cumulative_interest, r, n, P, start_period, end_period, type)


def CUMPRINC(call):
    r = call.positive(1)
    n = call.whole32(2)
    P = call.number(3)
    start_period = call.count32(4)
    end_period_64 = call.whole(5)
    if end_period_64 <= 0:
        call.refuse(5)
    end_period = low32(end_period_64)
    type = call.payment_type(6, upper_bound=False)
    if start_period > n:
        call.refuse(4)
    if end_period > n:
        call.refuse(5)
    if start_period > end_period:
        call.refuse(4)
    if type >= 2:
        call.refuse(6)
    guarded(call, cumulative_principal, r, n, P, start_period, end_period, type)


def ISPMT(call):
    r = call.positive(1)
    k = call.count32(2)
    n = call.count32(3)
    P = call.number(4)
    call.result = div((0.0 - P * r) * (float(n) - float(k)), float(n))


# RATE: P + a A(x) (1 + x)^t + F (1 + x)^-n = 0, with the annuity factor A(x) = (1 - (1 + x)^-n) / x,
# solved as a difference of two logarithms.

class RateRecord:
    def __init__(self, n, type, c, d):
        self.n = n                # float
        self.type = type
        self.c = c                # F / a
        self.d = d                # -P / a


def annuity_factor(x, n):
    """A(x) and its derivative by x."""
    if abs(x * n) < 0.0001:
        # A is the sum over k = 0..5 of (-1)^k n(n+1)...(n+k) / (k+1)! x^k, from the left; A' term by term likewise.
        x2 = x * x
        x3 = x * x * x
        x4 = x * x * x * x
        x5 = x * x * x * x * x
        n2 = n * (n + 1.0)
        n3 = n * (n + 1.0) * (n + 2.0)
        n4 = n * (n + 1.0) * (n + 2.0) * (n + 3.0)
        n5 = n * (n + 1.0) * (n + 2.0) * (n + 3.0) * (n + 4.0)
        n6 = n * (n + 1.0) * (n + 2.0) * (n + 3.0) * (n + 4.0) * (n + 5.0)
        A = (n - n2 / 2.0 * x + n3 / 6.0 * x2 - n4 / 24.0 * x3 + n5 / 120.0 * x4 - n6 / 720.0 * x5)
        derivative = (0.0 - n2 / 2.0 + n3 / 3.0 * x - n4 / 8.0 * x2 + n5 / 30.0 * x3 - n6 / 144.0 * x4)
        return A, derivative
    w = zexpm1((0.0 - zln1px(x)) * n)                         # (1 + x)^-n - 1
    A = div(0.0 - w, x)
    derivative = div(n, x + 1.0) * (div(1.0, x) - A) - div(A, x)
    return A, derivative


def rate_objective(problem):
    record = problem.user_data
    x = problem.x
    if x <= -1.0:
        return 1
    A, A_derivative = annuity_factor(x, record.n)
    D = (x * A - 1.0) * record.c + record.d
    if D <= 2.225073858507202e-308:                          # the smallest normal double
        return 1
    derivative = div(record.c * (x * A_derivative + A), D) - div(A_derivative, A)
    value = log(D) - log(A)
    if record.type == 1:
        derivative = derivative - div(1.0, x + 1.0)
        value = value - zln1px(x)
    problem.derivative = derivative
    problem.value = value
    return 0


def RATE(call):
    n = call.count32(1)
    a = call.number(2)
    P = call.number(3)
    F = call.optional_number(4)
    type = call.payment_type(5)
    if abs(a) <= 0.0:
        # Without payments P and F of the same sign: (F / P)^(1/n) - 1.
        if F == 0.0:
            call.fail()
        q = div(P, F)
        if q <= 0.0:
            call.fail()
        call.result = zexpm1(div(0.0 - log(q), float(n)))
        return
    problem = NewtonProblem(tolerance=1e-12, max_iterations=100, objective=rate_objective, start=div(0.0 - a, P),
                            residual_scale=maximum(abs(a), abs(P)),
                            user_data=RateRecord(float(n), type, div(F, a), div(0.0 - P, a)))
    if call_special_newton(problem) != 0:
        call.fail()
    call.result = problem.x


def NPER(call):
    r = call.positive(1)
    a = call.number(2)
    P = call.number(3)
    F = call.number(4) if call.given(4) else 0.0
    type = call.payment_type(5, upper_bound=False)            # 2 and above act as 0
    if type == 1:
        a = a * (1.0 + r)
    den = a - F * r
    if den == 0.0:
        call.fail()
    q = div(P * r + a, den)
    if not q > 0.0:
        call.fail()
    call.result = div(0.0 - log(q), zln1px(r))


CALCULATIONS = {"FV": FV, "PV": PV, "PMT": PMT, "IPMT": IPMT, "PPMT": PPMT, "CUMIPMT": CUMIPMT, "CUMPRINC": CUMPRINC,
                "ISPMT": ISPMT, "RATE": RATE, "NPER": NPER}
