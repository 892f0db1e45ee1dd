"""Random argument sets: mostly valid, realistic and extreme, some spoiled on purpose. rng is a random.Random.

GENERATORS covers annuities, rates, depreciation, bills. `with_faults` may be used by other generators."""
import math

from arguments import AbsentNumber, NullText, Number, Text
from ieee import INF, MISSING_VALUE, from_bits

NANS = [MISSING_VALUE, MISSING_VALUE, from_bits(0xFFFFFD0000000000), from_bits(0x7FF8000000000000),
        from_bits(0xFFF8000000000000), from_bits(0x7FF0000000000001), from_bits(0xFFFFFFFFFFFFFFFF)]

SPECIAL_NUMBERS = [0.0, -0.0, 5e-324, -5e-324, 2.2250738585072014e-308, 1e-300, -1e-300, 1e-16, 0.5, -0.5, 1.0, -1.0,
                   math.nextafter(1.0, 0.0), math.nextafter(-1.0, 0.0), math.nextafter(-1.0, -2.0), 2.0, 1e16, -1e16,
                   2.0**31 - 1, 2.0**31, -2.0**31, -2.0**31 - 1, 2.0**32, 2.0**32 + 3, -2.0**32 + 5, 2.0**53, 2.0**53 + 2,
                   -2.0**53 - 2, -2.0**63, -2.0**63 - 2048, 2.0**63, 1e300, -1e300, 1.7976931348623157e308,
                   -1.7976931348623157e308, INF, -INF]


# Numbers

def missing(rng):
    return Number(rng.choice(NANS))


def neighbour(rng, x):
    """x or one of the next few doubles."""
    for _ in range(rng.randrange(4)):
        x = math.nextafter(x, rng.choice([INF, -INF]))
    return x


def power_of_ten(rng, low, high):
    return 10.0 ** rng.uniform(low, high)


def rate(rng):
    """A positive rate, mostly that of a month, quarter or year."""
    pick = rng.random()
    if pick < 0.35:
        return round(rng.uniform(0.001, 0.3), 4) / rng.choice([1, 2, 4, 12])
    if pick < 0.55:
        return rng.uniform(1e-5, 0.6)
    if pick < 0.70:
        return power_of_ten(rng, -17, -2)
    if pick < 0.80:
        return neighbour(rng, rng.choice([0.03125, 0.01, 1.0, 0.0001, 1e-8, 1e-16, 0.1]))
    if pick < 0.88:
        return power_of_ten(rng, 0, 6)
    if pick < 0.92:
        return power_of_ten(rng, 6, 300)
    if pick < 0.96:
        return rng.choice([5e-324, 1e-310, 2.2250738585072014e-308, 1e-300])
    return rng.choice([INF, 0.0, -0.0, -0.05, -5e-324, 1.7976931348623157e308])


def growth_at_its_limit(rng, n):
    """A rate for which n ln(1 + r) comes to about 709.78."""
    return neighbour(rng, math.expm1(709.782712893384 / n)) * (1.0 + rng.choice([0.0, 0.0, 1e-15, -1e-15, 1e-3, -1e-3]))


def amount(rng):
    """Money of either sign."""
    pick = rng.random()
    if pick < 0.45:
        return float(rng.choice([1, -1]) * rng.choice([1, 10, 100, 1000, 10000]) * rng.randrange(1, 100))
    if pick < 0.75:
        return rng.uniform(-100000.0, 100000.0)
    if pick < 0.85:
        return rng.choice([1.0, -1.0]) * power_of_ten(rng, -20, 20)
    if pick < 0.90:
        return rng.choice([1.0, -1.0]) * power_of_ten(rng, -308, 308)
    if pick < 0.97:
        return rng.choice([0.0, 0.0, -0.0, 1.0, -1.0, 5e-324, -5e-324])
    return rng.choice(SPECIAL_NUMBERS)


def positive_amount(rng):
    x = abs(amount(rng))
    return x if x > 0.0 else 1000.0


def nearly_whole(rng, k):
    """k, or k off by a relative error on either side of the tolerance of whole numbers, or k plus whole turns of 32 bits."""
    pick = rng.random()
    if pick < 0.90:
        return float(k)
    if pick < 0.95:
        return k * (1.0 + rng.choice([1e-13, -1e-13, 9e-13, -9e-13, 1e-12, -1e-12, 1.1e-12, -3e-12]))
    if pick < 0.965:
        return k + rng.choice([0.5, 1e-9, -1e-9, 0.1])
    if pick < 0.99:
        return k + rng.choice([1.0, -1.0, 2.0, 1024.0]) * 2.0**32
    return float(-k)


def periods(rng, most=20000):
    """How many periods there are; at least 1."""
    pick = rng.random()
    if pick < 0.15:
        return rng.randrange(1, 4)
    if pick < 0.75:
        return rng.randrange(1, min(61, most + 1))
    if pick < 0.95:
        return rng.randrange(1, min(601, most + 1))
    return rng.randrange(1, most + 1)


def any_count(rng):
    return rng.choice([0.0, -0.0, -1.0, -5.0, 2.0**31 - 1, 2.0**31, 2.0**32, 2.0**32 + 3, -2.0**31, -2.0**32 + 5, -2.0**63, 2.0**53,
                       2.0**53 + 2, 1e300, -1e300, INF, -INF, 0.5, 1e-13, -1e16, 5e-324])


# Arguments

def payment_type(rng):
    if rng.random() < 0.75:
        return Number(rng.choice([0.0, 1.0]))
    return Number(rng.choice([-0.0, -1.0, -7.0, -2.0**31, 2.0, 0.5, 1.0000000000000002, 2.0**31, -2.0**31 - 1]))


BASIS_TEXTS = [b"30/360", b"ACTUAL", b"ACT/360", b"ACT/365", b"EU30/360"]


def basis(rng):
    pick = rng.random()
    if pick < 0.45:
        return Number(float(rng.randrange(5)))
    if pick < 0.55:
        return Number(rng.choice([2.9, 0.9, 4.7, -0.5, -0.99, -1.0, 5.0, 5.9, 6.0, 2.0**31, 1e300, -INF, INF, 1e-300, 2.0**32]))
    if pick < 0.63:
        return rng.choice([missing(rng), AbsentNumber()])
    if pick < 0.93:
        text = rng.choice(BASIS_TEXTS)
        text = b"".join(rng.choice([c.upper(), c.lower()]) for c in [text[i:i + 1] for i in range(len(text))])
        for _ in range(rng.randrange(4)):
            at = rng.randrange(len(text) + 1)
            text = text[:at] + b" " * rng.randrange(1, 4) + text[at:]
        if rng.random() < 0.1:
            text = text.ljust(rng.choice([255, 256, 254]))
        return Text(text)
    return rng.choice([Text(b""), Text(b" "), Text(b"   "), NullText(), Text(b"ACT/36"), Text(b"ACT/3600"), Text(b"ACT"),
                       Text(b"1"), Text(b"30/360\t"), Text(b"ACTUAL."), Text(b" " * 255), Text(b" " * 256)])


def numbers(*values):
    return [Number(value) for value in values]


def with_optionals(rng, required, *makers):
    """Adds a random number of the optional arguments, from the left; the odd one is missing or null."""
    arguments = list(required)
    for maker in makers[:rng.randrange(len(makers) + 1)]:
        pick = rng.random()
        if pick < 0.06:
            arguments.append(missing(rng))
        elif pick < 0.12:
            arguments.append(AbsentNumber())
        else:
            arguments.append(maker(rng))
    return arguments


def with_faults(generator):
    """The generator's arguments, in a quarter of the draws with one or two of them spoiled."""
    def spoiled(rng):
        arguments = generator(rng)
        pick = rng.random()
        spoils = 0 if pick < 0.76 else 1 if pick < 0.94 else 2
        for _ in range(spoils):
            at = rng.randrange(len(arguments))
            kind = rng.random()
            if kind < 0.30:
                arguments[at] = missing(rng)
            elif kind < 0.50:
                arguments[at] = AbsentNumber()
            elif kind < 0.75:
                arguments[at] = Number(rng.choice(SPECIAL_NUMBERS))
            elif kind < 0.85:
                arguments[at] = Number(any_count(rng))
            elif arguments[at].type == 1 and arguments[at].value is not None:
                arguments[at] = Number(rng.choice([-arguments[at].value, arguments[at].value + 0.5,
                                                   arguments[at].value * 1e10]))
        return arguments
    return spoiled


def money(rng):
    return Number(amount(rng))


# Annuities

def _rate_and_periods(rng, most=20000):
    n = periods(rng, most)
    if rng.random() < 0.06:
        return growth_at_its_limit(rng, n), n
    r = rate(rng)
    if r > 0.0 and n * math.log1p(r) > 709.0 and rng.random() < 0.8:
        r = math.expm1(rng.uniform(0.0, 709.0) / n)   # otherwise long lives would mostly overflow
    return r, n


def _level(rng):
    """rate, number of periods, amount, then an amount and the type."""
    r, n = _rate_and_periods(rng, 2147483647 if rng.random() < 0.2 else 20000)
    return with_optionals(rng, numbers(r, nearly_whole(rng, n), amount(rng)), money, payment_type)


def fv(rng):
    arguments = _level(rng)
    if rng.random() < 0.15:
        arguments[2] = rng.choice([missing(rng), AbsentNumber()])
        if len(arguments) > 3 and rng.random() < 0.4:
            arguments[3] = rng.choice([missing(rng), AbsentNumber()])
    return arguments


def pv(rng):
    arguments = _level(rng)
    pick = rng.random()
    if pick < 0.2:
        arguments[0] = Number(-rng.random())
    elif pick < 0.3:
        arguments[0] = Number(rng.choice([0.0, -0.0, -1.0, math.nextafter(-1.0, 0.0), -0.999, -1e-17, -0.03125, -0.01]))
    return arguments


def _one_period(rng):
    r, n = _rate_and_periods(rng, 2147483647 if rng.random() < 0.2 else 20000)
    k = rng.choice([1, 2, n, max(1, n - 1), rng.randrange(1, n + 1), rng.randrange(1, n + 1), n + 1])
    return with_optionals(rng, numbers(r, nearly_whole(rng, k), nearly_whole(rng, n), amount(rng)), money, payment_type)


def _range_of_periods(rng):
    r, n = _rate_and_periods(rng)
    last = rng.choice([1, n, n, n, min(2, n)] + [rng.randrange(1, n + 1) for _ in range(4)] + [n + 3])
    first = rng.choice([1, 1, 2, last] + [rng.randrange(1, last + 1) for _ in range(5)] + [last + 1])
    P = positive_amount(rng) if rng.random() < 0.9 else amount(rng)
    nper, start, end = nearly_whole(rng, n), nearly_whole(rng, first), nearly_whole(rng, last)
    if rng.random() < 0.08:
        nper = any_count(rng)
    return with_optionals(rng, numbers(r, nper, P, start, end), payment_type)


def ispmt(rng):
    r, n = _rate_and_periods(rng, 2147483647)
    k = rng.choice([1, n, rng.randrange(1, n + 1), rng.randrange(1, 2147483648)])
    return numbers(r, nearly_whole(rng, k), nearly_whole(rng, n), amount(rng))


def rate_search(rng):
    n = periods(rng, 2147483647 if rng.random() < 0.1 else 20000)
    pick = rng.random()
    F = 0.0
    if pick < 0.45:                                   # a loan that some rate repays
        r = rng.choice([rng.uniform(0.0001, 0.3), power_of_ten(rng, -12, 1), -rng.uniform(0.0001, 0.5)])
        P = positive_amount(rng)
        growth = n * math.log1p(r)
        a = -P / n if abs(growth) > 700.0 or growth == 0.0 else P * r / math.expm1(-growth)
        if rng.random() < 0.4:
            F = rng.choice([-1.0, 1.0]) * P * rng.random()
    elif pick < 0.60:                                 # the rate is about 0
        P = rng.choice([1.0, -1.0]) * positive_amount(rng)
        a = -P / n * (1.0 + rng.choice([0.0, 0.0, 1e-15, 1e-12, -1e-10, 1e-7, 1e-4]))
    elif pick < 0.75:                                 # no payments
        a = rng.choice([0.0, -0.0])
        P = amount(rng)
        F = P * rng.choice([rng.uniform(0.1, 10.0), 1.0, -1.1, power_of_ten(rng, -3, 30)])
    else:
        P, a, F = amount(rng), amount(rng), amount(rng)
    return with_optionals(rng, numbers(nearly_whole(rng, n), a, P), lambda _: Number(F), payment_type)


def nper(rng):
    r = rate(rng)
    P = amount(rng)
    a = -abs(P) * rng.choice([rng.uniform(0.01, 1.0), r * rng.uniform(1.0001, 3.0)]) * math.copysign(1.0, P)
    if rng.random() < 0.2:
        a = amount(rng)
    F = amount(rng)
    if rng.random() < 0.1:
        a = F * r                                     # the denominator vanishes
    return with_optionals(rng, numbers(r, a, P), lambda _: Number(F), payment_type)


# Rates

def conversion(rng):
    m = rng.choice([1, 2, 4, 12, 52, 365, 365, periods(rng, 2147483647)])
    r = rate(rng)
    pick = rng.random()
    if pick < 0.2:
        r = rng.choice([-rng.random(), -rng.uniform(1.0, 20.0), -float(m), -1.0, 0.0, -0.0])
    if pick > 0.9:
        r = amount(rng)
    count = any_count(rng) if rng.random() < 0.06 else nearly_whole(rng, m)
    return numbers(r, count)


def fvschedule(rng):
    arguments = numbers(amount(rng))
    for _ in range(rng.randrange(9)):
        arguments.append(Number(rate(rng) if rng.random() < 0.7 else rng.choice([-rate(rng), amount(rng), -1.0])))
    return arguments


def npv(rng):
    return numbers(rate(rng)) + [money(rng) for _ in range(rng.randrange(12))]


def mirr(rng):
    flows = [money(rng) for _ in range(rng.randrange(9))]
    if flows and rng.random() < 0.7:
        flows[0] = Number(-positive_amount(rng))
    return flows + numbers(rate(rng), rate(rng))


def mirr_or_lone_rate(rng):
    if rng.random() < 0.02:                           # the name is no finance rate: only a faulty lone rate is drawn
        return [rng.choice([missing(rng), AbsentNumber(), Number(0.0), Number(-0.1), Number(-INF)])]
    return with_faults(mirr)(rng)


# Depreciation

def _cost_and_salvage(rng):
    pick = rng.random()
    if pick < 0.85:
        cost = float(rng.randrange(100, 1000000)) if rng.random() < 0.6 else positive_amount(rng)
        salvage = cost * rng.choice([0.0, 0.1, 0.5, 1.0, rng.random(), rng.random(), 1e-3, 1.5])
        salvage = cost if salvage != salvage else salvage
        return cost, salvage
    return amount(rng), amount(rng)


def sln(rng):
    cost, salvage = _cost_and_salvage(rng)
    return numbers(cost, salvage, rng.choice([float(rng.randrange(1, 50)), rng.uniform(0.1, 60.0), positive_amount(rng)]))


def syd(rng):
    cost, salvage = _cost_and_salvage(rng)
    life = periods(rng, 2147483647)
    period = rng.choice([1, life, rng.randrange(1, life + 1), rng.randrange(1, life + 1), life + 1, rng.randrange(1, 2147483648)])
    return numbers(cost, salvage, nearly_whole(rng, life), nearly_whole(rng, period))


def db(rng):
    cost, salvage = _cost_and_salvage(rng)
    life = periods(rng, 2000)
    period = rng.choice([1, 2, life, life, life + 1, life + 1, life + 2, rng.randrange(1, life + 1), rng.randrange(1, life + 1)])
    if rng.random() < 0.04:
        life = rng.choice([2**31 - 1, 2**31, 2**32, 2**32 + 1, 2**53 - 1, 2**53])
    return with_optionals(rng, numbers(cost, salvage, nearly_whole(rng, life), nearly_whole(rng, period)),
                          lambda rng: Number(nearly_whole(rng, rng.choice([rng.randrange(1, 13), 12, 13, 2147483647]))))


def _life(rng):
    pick = rng.random()
    if pick < 0.6:
        return float(rng.randrange(1, 50))
    if pick < 0.85:
        return rng.uniform(1.0, 60.0)
    if pick < 0.95:
        return rng.uniform(60.0, 2000.0)
    return rng.choice([0.5, 1.0, 1e300, INF, 5e-324, 2.0**53])


def _period_within(rng, life, lowest):
    most = max(int(min(life, 2000.0)), lowest)
    return rng.choice([lowest, most] + [rng.randrange(lowest, most + 1) for _ in range(7)] + [most + 1])


def _factor(rng):
    return Number(rng.choice([2.0, 1.5, 1.0, rng.uniform(0.1, 5.0), rng.uniform(0.0, 1.0), 0.0, -1.0, 1e-300, power_of_ten(rng, 0, 30),
                              INF]))


def ddb(rng):
    cost, salvage = _cost_and_salvage(rng)
    life = _life(rng)
    return with_optionals(rng, numbers(cost, salvage, life, nearly_whole(rng, _period_within(rng, life, 1))), _factor)


def vdb(rng):
    cost, salvage = _cost_and_salvage(rng)
    life = _life(rng)
    s, e = _period_within(rng, life, 0), _period_within(rng, life, 1)
    if s > e and rng.random() < 0.7:
        s, e = e, s
    if rng.random() < 0.05:
        s = 0
        e = int(min(life, 2000.0))
    return with_optionals(rng, numbers(cost, salvage, life, nearly_whole(rng, s), nearly_whole(rng, e)), _factor,
                          lambda rng: Number(rng.choice([0.0, 0.0, 0.0, 1.0, 1.0, -0.0, 2.0, -1.0, 0.5, 2.0**32])))


def _host_date(rng):
    """Days since 1 January 1960."""
    pick = rng.random()
    if pick < 0.55:
        return rng.randrange(10000, 30000)
    if pick < 0.75:
        return rng.randrange(-30000, 60000)
    if pick < 0.95:                                   # ends of months and their neighbours
        year, month = rng.randrange(1890, 2110), rng.randrange(12)
        return int((year - 1960) * 365.2425) + int(month * 30.44) + rng.randrange(-3, 4)
    return rng.choice([0, -1, 59, 60, -715510, -715511, 2932896, 10**7, -10**7, 10**12, 2**53 - 400, -2**53])


def _prorated(rng, cost, salvage):
    purchase = _host_date(rng)
    gap = rng.choice([0, 1, 30, 31, 59, 181, 365, 366, rng.randrange(0, 400), rng.randrange(0, 400), rng.randrange(-800, 2000)])
    life = rng.choice([rng.randrange(1, 12), rng.randrange(1, 40), rng.uniform(0.5, 20.0), rng.choice([3, 4, 5, 6, 2.5, 4.5, 6.5])])
    r = 1.0 / life
    pick = rng.random()
    if pick < 0.15:
        r = neighbour(rng, r) * (1.0 + rng.choice([1e-12, -1e-12, 1e-9, -1e-8, 2e-8, 5e-13]))
    elif pick < 0.22:
        r = rng.choice([0.15, 0.3, 0.4, 0.05, 1e-4, 1e-10, 1.0 / 2147483647.0, 5e-324, 1e300, INF, 1e-300])
    elif pick < 0.5:
        r = round(r, 3)
    period = rng.choice([0, 0, 1, 2, int(life) - 1, int(life), int(life) + 1, rng.randrange(0, 12), rng.randrange(0, 40)])
    return with_optionals(rng, numbers(cost, purchase, purchase + gap, salvage, nearly_whole(rng, period), r), basis)


def amorlinc(rng):
    cost = positive_amount(rng)
    salvage = cost * rng.choice([0.0, 0.1, 1.0, rng.random(), rng.random(), 1.0000001])
    return _prorated(rng, cost, salvage)


def amordegrc(rng):
    cost = positive_amount(rng)
    if rng.random() < 0.8:
        cost = min(cost, 1e6)
    salvage = cost * rng.choice([0.0, 0.1, 1.0, rng.random(), rng.random(), 1.5])
    return _prorated(rng, cost, salvage)


# Bills and fractional prices

def _bill(rng):
    settlement = float(rng.randrange(1, 40000))
    D = rng.choice([1, 90, 91, 181, 182, 183, 184, 364, 365, rng.randrange(1, 400), rng.randrange(1, 400), rng.randrange(1, 5000), 0, -30])
    if rng.random() < 0.1:
        settlement = settlement + rng.random()
        D = D + rng.choice([0.0, 0.5, -0.5, rng.random()])
    if rng.random() < 0.04:
        settlement = rng.choice([1e15, 1e17, 1e300, 1e-300, 5e-324, INF])
    return settlement, settlement + D, D


def bill_rate(rng):
    settlement, maturity, D = _bill(rng)
    r = rate(rng)
    if rng.random() < 0.2 and D > 0:
        r = neighbour(rng, 360.0 / D) * rng.choice([1.0, 1.0001, 1.1, 0.9999, 0.9, 3.0])
    return numbers(settlement, maturity, r)


def bill_price(rng):
    settlement, maturity, _ = _bill(rng)
    price = rng.choice([rng.uniform(80.0, 100.0), rng.uniform(1.0, 200.0), 100.0, round(rng.uniform(90.0, 100.0), 3), rate(rng)])
    return numbers(settlement, maturity, price)


def fraction(rng):
    whole = float(rng.choice([0, 1, 99, 100, 101, rng.randrange(0, 200), rng.randrange(-200, 0), rng.randrange(-2**31, 2**31)]))
    pick = rng.random()
    if pick < 0.5:
        price = whole + rng.randrange(0, 100) / rng.choice([100.0, 32.0, 1000.0, 8.0])
    elif pick < 0.7:
        price = whole + rng.random()
    elif pick < 0.9:
        price = whole
        for _ in range(rng.randrange(9)):
            price = math.nextafter(price, rng.choice([INF, INF, INF, -INF]))
    else:
        price = amount(rng)
    f = rng.choice([1, 2, 4, 8, 16, 32, 64, 10, 100, 1000, 10**9, 9, 11, 99, 101, 2147483647, rng.randrange(1, 1000),
                    rng.randrange(1, 2147483648)])
    count = any_count(rng) if rng.random() < 0.05 else nearly_whole(rng, f)
    return numbers(price, count)


_PLAIN = {"FV": fv, "PV": pv, "PMT": _level, "IPMT": _one_period, "PPMT": _one_period, "CUMIPMT": _range_of_periods,
          "CUMPRINC": _range_of_periods, "ISPMT": ispmt, "RATE": rate_search, "NPER": nper, "EFFECT": conversion,
          "NOMINAL": conversion, "FVSCHEDULE": fvschedule, "NPV": npv, "SLN": sln, "SYD": syd, "DB": db, "DDB": ddb,
          "VDB": vdb, "AMORLINC": amorlinc, "AMORDEGRC": amordegrc, "TBILLEQ": bill_rate, "TBILLPRICE": bill_rate,
          "TBILLYIELD": bill_price, "DOLLARDE": fraction, "DOLLARFR": fraction}

GENERATORS = {name: with_faults(generator) for name, generator in _PLAIN.items()}
GENERATORS["MIRR"] = mirr_or_lone_rate
