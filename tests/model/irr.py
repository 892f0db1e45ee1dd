"""Internal rate of return of periodic flows: the root finder, literally.

p(z) = c_0 + c_1 z + .. + c_d z^d is the worth of the flows at the discount factor z = 1/(1 + rate).

Three things are open in the rules and formulated here as the module does, so that bits can be compared: how EvalPol gets
p and its derivatives out of the reversed polynomial, what the two scales of its flag are, and where zeros between the two
blocks of the one-change search belong. Everything else is the rules' own arithmetic, in their order.
"""
from arguments import MISSING, Refused
from ieee import LARGEST, MISSING_VALUE, div, exp, is_nan, log, pow, sqrt, trunc32
from irr_draws import irr_arguments
from kernels import zpower, zvamx, zvasum

MOST_STEPS = 40
MOST_FLOWS = 32767
UNDERFLOW_LIMIT = 2.2737367544323216e-13      # 2^-42
STARTING_PLACES = [0.3629244535057, 0.7451947130008, 0.8310586730163, 0.2762771729735, 0.1838237541652, 0.7288826889027,
                   0.0778925298145, 0.734318205963, 0.7072535379358, 0.7640795124527]

# Codes
SOLVED = 0
NO_ROOT = 1
NOT_SETTLED = -993
NO_FLOWS = -994
NO_SPLIT = -995
NO_RATE = -997
BAD_REQUEST = -999


class NoRoot(Exception):
    def __init__(self, code):
        super().__init__(code)
        self.code = code


class Polynomial:
    """True values are the stored ones times e^k."""

    def __init__(self, coefficients, leading_scale=0.0, trailing_scale=0.0):
        self.d = len(coefficients) - 1
        self.c = coefficients
        self.p = self.p1 = self.p2 = 0.0
        self.k = 0
        self.underflow = False
        self.leading_scale = leading_scale
        self.trailing_scale = trailing_scale


def horner(coefficients, z):
    """Value, first derivative and half of the second; the coefficient of the highest power comes first."""
    p, p1, half_p2 = coefficients[0], 0.0, 0.0
    for c in coefficients[1:]:
        half_p2 = half_p2 * z + p1
        p1 = p1 * z + p
        p = p * z + c
    return p, p1, half_p2


def eval_pol(z, polynomial):
    d = float(polynomial.d)
    if abs(z) >= 1.0:
        # q is the reversed polynomial, w = 1/z, p = z^d q(w). The formulas of the derivatives and their grouping are ours:
        #   p'  = z^d w (d q - w q')        p'' = z^d w^2 (d (d-1) q - 2 (d-1) w q' + w^2 q'')
        w = div(1.0, z)
        q, q1, half_q2 = horner(polynomial.c, w)
        power = d * log(abs(z))
        polynomial.k = trunc32(power)
        scale = exp(power - float(polynomial.k))
        if z < 0.0 and polynomial.d % 2 != 0:
            scale = 0.0 - scale
        polynomial.p = scale * q
        polynomial.p1 = scale * w * (d * q - w * q1)
        polynomial.p2 = scale * w * w * (d * (d - 1.0) * q - 2.0 * (d - 1.0) * w * q1 + w * w * 2.0 * half_q2)
        polynomial.underflow = (pow(abs(w), d) * polynomial.leading_scale
                                < polynomial.trailing_scale * UNDERFLOW_LIMIT)
    else:
        p, p1, half_p2 = horner(polynomial.c[::-1], z)
        polynomial.p, polynomial.p1, polynomial.p2 = p, p1, 2.0 * half_p2
        polynomial.k = 0
        polynomial.underflow = False


# ---------------------------------------------------------------------------------------------------------------
# The flows

def without_zeros_at_the_ends(coefficients):
    first, last = 0, len(coefficients)
    while first < last and coefficients[first] == 0.0:
        first = first + 1
    while last > first and coefficients[last - 1] == 0.0:
        last = last - 1
    return coefficients[first:last]


def sign_changes(coefficients):
    changes, positive = 0, coefficients[0] > 0.0
    for c in coefficients:
        if c != 0.0 and (c > 0.0) != positive:
            positive = not positive
            changes = changes + 1
    return changes


def largest_of_first_run(coefficients):
    """The largest absolute coefficient before the first change of sign."""
    largest = 0.0
    for c in coefficients:
        if c != 0.0 and (c > 0.0) != (coefficients[0] > 0.0):
            break
        largest = max(largest, abs(c))
    return largest


# ---------------------------------------------------------------------------------------------------------------
# The searches; each gives the root or raises NoRoot

def root_of_one_change(coefficients):
    s = 0
    while s < len(coefficients) and (coefficients[s] == 0.0 or (coefficients[s] > 0.0) == (coefficients[0] > 0.0)):
        s = s + 1
    if s == len(coefficients):
        raise NoRoot(NO_SPLIT)
    block_b = without_zeros_at_the_ends(coefficients[:s])     # begins with its period 0: s need not be adjusted
    block_a = without_zeros_at_the_ends(coefficients[s:])     # begins with the flow of period s
    if not block_b or not block_a:
        raise NoRoot(NO_FLOWS)
    B, A = Polynomial(block_b), Polynomial(block_a)
    t = log(1.0)
    for _ in range(MOST_STEPS):
        e_t = exp(t)
        eval_pol(e_t, B)
        eval_pol(e_t, A)
        ln_b = log(abs(B.p)) + float(B.k)
        ln_a = log(abs(A.p)) + float(A.k)
        g = ln_b - ln_a - float(s) * t
        g1 = div(e_t * B.p1, B.p) - div(e_t * A.p1, A.p) - float(s)
        step = div(g, g1)
        t = t - step
        if abs(step) <= 1e-10:
            return exp(t)
    raise NoRoot(NOT_SETTLED)


def newton_on_side(polynomial, largest, z, replaced):
    """The root, or None. replaced(z, new z) gives what is taken in place of a new z that leaves the side."""
    for _ in range(MOST_STEPS):
        eval_pol(z, polynomial)
        step = div(polynomial.p, polynomial.p1)
        new_z = z - step
        if abs(polynomial.p) < 1e-10 * largest or abs(step) < 1e-10:
            return None if polynomial.underflow else new_z    # a stop is a stop, wherever it leads
        z = replaced(z, new_z)
    return None


def below_one(z, new_z):
    return z / 2.0 if new_z <= 0.0 or new_z > 1.0 else new_z


def above_one(z, new_z):
    return z + 1.0 if new_z <= 1.0 else new_z


def laguerre(polynomial, largest):
    """The root, or None."""
    d = float(polynomial.d)
    z = 0.99
    starts = 1
    count = 0
    while count <= MOST_STEPS - 1:
        eval_pol(z, polynomial)
        p, p1, p2 = polynomial.p, polynomial.p1, polynomial.p2
        sgn = -1.0 if p < 0.0 else 1.0                        # of 0: it makes no difference to 0/den
        a = abs(p)
        if a < 1e-12 * largest:
            return z
        disc = (p1 * p1 * (1.0 - 1.0 / d) - p * p2) * (1.0 - 1.0 / d)
        if disc < 0.0:
            if starts == 5:
                return None
            z = STARTING_PLACES[starts - 1]
            starts = starts + 1
        else:
            root = sqrt(disc)
            den = sgn * p1 / d
            den = den - root if den < 0.0 else den + root     # the sign that enlarges it
            z = z - div(a, den)
            if abs(div(a, den)) <= 1e-12 * abs(z):
                return z
        count = count + 1
    return None


def root_of_several_changes(coefficients):
    largest = zvamx(coefficients)
    if zvasum(coefficients) < 1e-10 * (1e-10 * largest):
        return 1.0
    polynomial = Polynomial(coefficients, largest_of_first_run(coefficients), largest_of_first_run(coefficients[::-1]))
    z = newton_on_side(polynomial, largest, 0.999999999999, below_one)
    if z is None:
        z = newton_on_side(polynomial, largest, 1.000000000001, above_one)
    if z is None:
        z = laguerre(polynomial, largest)
    if z is None:
        raise NoRoot(NO_ROOT)
    return z


# ---------------------------------------------------------------------------------------------------------------
# The request

def rate_of_root(z, x0):
    if x0 == 0.0:
        if not z > 0.0:
            raise NoRoot(NO_RATE)
        return 0.0 - log(z)
    status, power = zpower(z, x0)
    if status != 0 or power == 0.0:
        raise NoRoot(NO_RATE)
    return div(1.0, power) - 1.0


def zirr_s(flows, x0):
    """The rate; raises NoRoot with the code."""
    if x0 < 0.0 or len(flows) < 2 or len(flows) > MOST_FLOWS:
        raise NoRoot(BAD_REQUEST)
    coefficients = without_zeros_at_the_ends([0.0 if is_nan(flow) else flow for flow in flows])
    if not coefficients:
        raise NoRoot(NO_FLOWS)
    changes = sign_changes(coefficients)
    if changes == 0:
        raise NoRoot(NO_ROOT)
    z = root_of_one_change(coefficients) if changes == 1 else root_of_several_changes(coefficients)
    return rate_of_root(z, x0)


def irr(call):
    flows = [call.number_or_missing(i) for i in range(1, call.count)]
    if any(is_nan(flow) for flow in flows):
        call.result = MISSING_VALUE
        raise Refused(MISSING)
    try:
        rate = zirr_s(flows, 1.0)
    except NoRoot:
        call.fail()
    if is_nan(rate) or rate == LARGEST:
        call.fail()
    call.result = rate


CALCULATIONS = {"IRR": irr}

GENERATORS = {"IRR": irr_arguments}
