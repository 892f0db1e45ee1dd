"""Net present value and internal rate of return of flows on arbitrary dates.

Times are counted in years of 365 days from the first flow given, which need not be the earliest.
"""

from arguments import Refused
from date_draws import xirr_arguments, xnpv_arguments
from ieee import MISSING_VALUE, div, log, low64, maximum, pow
from kernels import zexpm1
from newton import NewtonProblem, call_special_newton

SMALLEST_FLOW = 1.053671212772351e-08         # a smaller amount does not count for the two-point estimate
LARGEST_EXP_ARGUMENT = 709.782712893384
FAR_DAY = 9007199254740992

SOLVED = 0
NO_CONVERGENCE = 1
NO_USABLE_FLOWS = 2


class Flows:
    def __init__(self, values, dates):
        self.values = values                  # in argument order
        self.dates = dates                    # Julian day numbers
        self.guess = None                     # None: not given
        self.rate = 0.0

    def years(self, i):
        return float(low64(self.dates[i] - self.dates[0])) / 365.0


def take_flows(call, first_slot, m):
    """m amounts from first_slot on, then m dates."""
    values = []
    for i in range(m):
        values.append(call.number(first_slot + i))
    dates = []
    for i in range(m):
        dates.append(call.date(first_slot + m + i))
    return Flows(values, dates)


# ---------------------------------------------------------------------------------------------------------------
# XNPV(rate, amounts..., dates...)

def xnpv(call):
    if call.count % 2 != 0:
        raise Refused(1)                  # before anything is read: nothing is written, nothing marked
    m = (call.count - 2) // 2
    rate = call.number(1)
    flows = take_flows(call, 2, m)
    q = div(1.0, 1.0 + rate)
    total = flows.values[0]
    for i in range(1, m):
        total = total + flows.values[i] * pow(q, flows.years(i))
    call.result = total


# ---------------------------------------------------------------------------------------------------------------
# XIRR(amounts..., dates..., guess)

def compute_f_xirr(problem):
    flows = problem.user_data
    q = div(1.0, problem.x + 1.0)
    value = flows.values[0]
    derivative = 0.0
    residual_scale = abs(flows.values[0])
    for i in range(1, len(flows.values)):
        t = flows.years(i)
        p = pow(q, t) * flows.values[i]
        derivative = derivative + (0.0 - t * q) * p
        value = value + p
        residual_scale = maximum(abs(p), residual_scale)
    problem.value = value
    problem.derivative = derivative
    problem.residual_scale = residual_scale
    return 0


def solve_from(flows, start):
    """True with the root in flows.rate, or False."""
    problem = NewtonProblem(tolerance=1e-12, max_iterations=100, objective=compute_f_xirr, start=start,
                            residual_scale=0.0, user_data=flows)
    if call_special_newton(problem) != 0:
        return False
    flows.rate = problem.x
    return True


def compute_xirr(flows):
    if solve_from(flows, 0.0 if flows.guess is None else flows.guess):
        return SOLVED
    if solve_from(flows, -0.9):
        return SOLVED
    earliest = FAR_DAY
    latest = 0 - FAR_DAY
    value_earliest = 0.0
    value_latest = 0.0
    qualified = 0
    for value, day in zip(flows.values, flows.dates):
        if abs(value) >= SMALLEST_FLOW:
            qualified = qualified + 1
            if day < earliest:
                earliest = day
                value_earliest = value
            if day > latest:
                latest = day
                value_latest = value
    if qualified == 0 or earliest == latest:
        return NO_USABLE_FLOWS
    s = div(365.0 * log(abs(div(value_latest, value_earliest))), float(low64(latest - earliest)))
    if s > LARGEST_EXP_ARGUMENT:
        return NO_CONVERGENCE
    if solve_from(flows, zexpm1(s)):
        return SOLVED
    return NO_CONVERGENCE


def xirr(call):
    m = (call.count - 1) // 2
    flows = take_flows(call, 1, m)
    if call.count % 2 == 0:
        flows.guess = call.number(call.count - 1)
    if compute_xirr(flows) == SOLVED:
        call.result = flows.rate
    else:
        call.result = MISSING_VALUE           # a rate that cannot be found is a missing result, not an error


CALCULATIONS = {
    "XNPV": xnpv,
    "XIRR": xirr,
}

GENERATORS = {
    "XNPV": xnpv_arguments,
    "XIRR": xirr_arguments,
}
