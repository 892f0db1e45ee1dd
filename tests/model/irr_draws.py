"""Random flows for IRR: loans, projects, lists with several rates, all sizes and lengths, some spoiled on purpose.

rng is a random.Random.
"""
import math

from arguments import AbsentNumber, Number
from generators import missing
from ieee import INF, LARGEST

# Searches that end in different ways: at a double root, at no root, far out, beyond infinity, at no number, with logarithms
# that have lost their digits, or not at all.
KNOWN = [[-100.0, 490.0, -760.0, 360.0], [1.0, -4.3, 6.92, -4.94, 1.32], [-2.0, 72.0, 5.0, 76.0, 28.0, 73.0, -1e12],
         [-1e302, 1.1e302], [-100.0, 110.0], [-100.0, 230.0, -132.0], [15.0, -4.0, 18.0, -1.0], [18.0, 19.0, -8.0, 1.0],
         [-4.0, 4.0, 9.0, -18.0, 8.0], [15.0, -2.0, 4.0, -11.0, 5.0, 14.0, -4.0], [1.0, -3.0, 3.0, -1.0],
         [-2.0, 3.0, -3.0, 1.0], [1.0, -1.0, 1.0], [-1e300, 1e-300], [-1e-300, 1e300], [-1e-9, 1e300],
         [-3.0, 6.0, 0.0, -6.0, 3.0], [2.0, -5.0, 3.0, 1.0, -1.0], [-2.0, 7.0, -9.0, 5.0, -1.0]]


def length(rng, fewest):
    """Short lists as often as long ones, up to 360."""
    return max(fewest, int(math.exp(rng.uniform(math.log(2.0), math.log(361.0)))))


def sign(rng):
    return rng.choice([1.0, -1.0])


def cents(x):
    return round(x, 2)


# One change of sign

def loan(rng):
    """An outlay, then level payments that return it at some rate."""
    n = length(rng, 2)
    rate = rng.choice([rng.uniform(-0.02, 0.3), rng.uniform(-0.3, 2.0), rng.uniform(0.0, 0.02)])
    paid = cents(rng.uniform(1.0, 2000.0))
    worth = sum(paid * (1.0 + rate) ** -k for k in range(1, n))
    return [0.0 - cents(worth)] + [paid] * (n - 1)


def project(rng):
    """Outlays of some periods, then uneven returns."""
    n = length(rng, 2)
    outlays = rng.choice([1, 1, 1, 2, 3, n // 2])
    returns = [cents(rng.uniform(1.0, 500.0)) for _ in range(max(1, n - outlays))]
    paid = (sum(returns) / rng.uniform(0.3, 3.0) + 0.01) / max(1, outlays)
    return [0.0 - cents(paid * rng.uniform(0.5, 1.5)) for _ in range(max(1, outlays))] + returns


def one_change_of_any_size(rng):
    """Some flows of one sign, some of the other, anywhere in up to 360 periods."""
    reach = rng.choice([3.0, 12.0, 100.0, 308.0])
    n = length(rng, 2)
    change = rng.randrange(1, n)
    flows = [0.0] * n
    for _ in range(rng.randrange(1, 6)):
        flows[rng.randrange(change)] = 0.0 - 10.0 ** rng.uniform(-reach, reach)
        flows[rng.randrange(change, n)] = 10.0 ** rng.uniform(-reach, reach)
    return flows


# Several

def small_whole_flows(rng):
    return [float(rng.randrange(-20, 21)) for _ in range(rng.randrange(3, 13))]


def closing_cost(rng):
    """An outlay, returns, and costs at the end."""
    flows = project(rng)
    scale = sum(abs(flow) for flow in flows) * 10.0 ** rng.uniform(-3.0, 1.0)
    return flows + [0.0 - cents(scale * rng.uniform(0.5, 1.5)) for _ in range(rng.choice([1, 1, 1, 2, 5]))]


def with_roots(rng):
    """Multiplied out of factors 1 - (1 + rate) z; rates may repeat, and be 0."""
    rates = [rng.choice([0.0, 0.05, 0.1, 0.2, 1.0, -0.5, -0.9, 3.0, round(rng.uniform(-0.9, 3.0), 2), rng.uniform(-0.99, 10.0)])
             for _ in range(rng.randrange(2, 6))]
    if rng.random() < 0.3:
        rates[1] = rates[0]
    flows = [rng.choice([1.0, 100.0, 1000.0])]
    for rate in rates:
        raised = [0.0] + [flow * (1.0 + rate) for flow in flows]
        flows = [flow - more for flow, more in zip(flows + [0.0], raised)]
    return [round(flow, 6) for flow in flows] if rng.random() < 0.7 else flows


def free(rng):
    """Any signs; sizes over a few powers of ten or over many."""
    reach = rng.choice([0.0, 1.0, 3.0, 6.0, 6.0, 30.0])
    return [sign(rng) * float("%.3g" % 10.0 ** rng.uniform(-reach, reach)) for _ in range(length(rng, 2))]


def balanced(rng):
    """Any signs, and a rate that solves the list but for rounding; growth makes up for discounting."""
    rate = rng.choice([rng.uniform(-0.5, 1.0), rng.uniform(-0.1, 0.3), rng.uniform(-0.99, 0.0), rng.uniform(1.0, 10.0)])
    n = min(length(rng, 3), int(300.0 / abs(math.log1p(rate))))   # powers are in range, and squares of them
    if rng.random() < 0.3:
        n = min(n, 12)
    growth = rng.choice([0.0, 0.0, rate, rng.uniform(0.0, 0.1)])
    flows = [sign(rng) * rng.uniform(1.0, 100.0) * (1.0 + growth) ** k for k in range(n)]
    worth = sum(flow * (1.0 + rate) ** -k for k, flow in enumerate(flows))
    flows[0] = flows[0] - worth
    return [float("%.9g" % flow) for flow in flows]


# In other units

def huge(rng):
    unit = 10.0 ** rng.uniform(285.0, 308.0)
    flows = rng.choice([small_whole_flows, with_roots, closing_cost])(rng)
    return [min(LARGEST, max(0.0 - LARGEST, unit * flow)) for flow in flows]


def tiny(rng):
    unit = rng.choice([5e-324, 1e-322, 1e-315, 1e-310, 1e-305, 1e-295])
    return [unit * round(flow) if abs(flow) < 1e15 else flow
            for flow in rng.choice([small_whole_flows, closing_cost, project, free])(rng)]


def any_double(rng):
    return [sign(rng) * 10.0 ** rng.uniform(-323.0, 308.0) for _ in range(rng.randrange(2, 9))]


def one_sign(rng):
    turned = sign(rng)
    return [turned * abs(flow) for flow in rng.choice([small_whole_flows, project])(rng)]


def thousands(rng):
    """Few different amounts, over and over."""
    n = rng.choice([rng.randrange(1000, 6000), rng.randrange(1000, 6000), 32767, 32768])
    paid = cents(rng.uniform(1.0, 100.0))
    flows = [0.0 - cents(paid * rng.uniform(5.0, 5000.0))] + [paid] * (n - 1)
    for _ in range(rng.choice([0, 0, 1, 5])):
        flows[rng.randrange(n)] = 0.0 - paid * rng.randrange(1, 1000)
    return flows


KINDS = [(loan, 14), (project, 14), (one_change_of_any_size, 8), (small_whole_flows, 16), (closing_cost, 10), (with_roots, 10),
         (free, 8), (balanced, 8), (huge, 4), (tiny, 4), (any_double, 2), (one_sign, 2)]


# Spoiling

def with_zeros(rng, flows):
    """At the ends, or between."""
    zero = rng.choice([0.0, 0.0, -0.0])
    pick = rng.random()
    if pick < 0.08:
        flows = [zero] * rng.randrange(0, 4) + flows + [zero] * rng.randrange(0, 4)
    elif pick < 0.20:
        flows = [zero if rng.random() < 0.3 else flow for flow in flows]
    return flows


def odd_argument(rng):
    pick = rng.random()
    if pick < 0.25:
        return missing(rng)
    if pick < 0.45:
        return AbsentNumber()
    return Number(rng.choice([INF, -INF, 1e308, -1e308, 5e-324, -5e-324, LARGEST, 1e16, -1e-16, 0.0]))


def irr_arguments(rng):
    pick = rng.random()
    if pick < 0.003:
        flows = thousands(rng)
    elif pick < 0.02:
        flows = list(rng.choice(KNOWN))
    elif pick < 0.025:
        flows = [rng.choice([-100.0, 0.0, 5e-324])]           # too few
    else:
        kinds, weights = zip(*KINDS)
        flows = with_zeros(rng, rng.choices(kinds, weights)[0](rng))
    if rng.random() < 0.2:
        flows = [0.0 - flow for flow in flows]
    drawn = [Number(flow) for flow in flows]
    if rng.random() < 0.08:
        drawn[rng.randrange(len(drawn))] = odd_argument(rng)
    return drawn
