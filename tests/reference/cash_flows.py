"""Cash flows by period and by date, and rate conversion, at 60 digits, for the expected values of tests/cashflow.

Run it to print each value to 17 significant digits; the inputs are the exact doubles that the tests hand over.
"""
from decimal import Decimal, getcontext

getcontext().prec = 60


def D(x):
    return Decimal(float(x))  # the double itself, not its decimal spelling


def npv(rate, *flows):
    return sum(D(v) / (1 + D(rate)) ** (i + 1) for i, v in enumerate(flows))


def mirr(flows, finance_rate, reinvest_rate):
    """The rate that turns the negative flows' present value into the positive flows' final value."""
    last = len(flows) - 1
    paid = sum(D(v) / (1 + D(finance_rate)) ** k for k, v in enumerate(flows) if v < 0)
    gained = sum(D(v) * (1 + D(reinvest_rate)) ** (last - k) for k, v in enumerate(flows) if v > 0)
    return (-gained / paid) ** (Decimal(1) / last) - 1


def years(days, i):
    return Decimal(days[i] - days[0]) / 365


def xnpv(rate, values, days):
    return sum(D(v) * (1 + D(rate)) ** -years(days, i) for i, v in enumerate(values))


def root(worth, low, high):
    """Where worth, which falls or rises between low and high, is 0: by halving."""
    low, high = Decimal(low), Decimal(high)
    rises = worth(low) < 0
    for _ in range(180):
        middle = (low + high) / 2
        if (worth(middle) < 0) == rises:
            low = middle
        else:
            high = middle
    return low


def irr(flows, low, high):
    return root(lambda r: sum(D(v) / (1 + r) ** k for k, v in enumerate(flows)), low, high)


def xirr(values, days, low, high):
    return root(lambda r: sum(D(v) * (1 + r) ** -years(days, i) for i, v in enumerate(values)), low, high)


def effect(rate, m):
    return (1 + D(rate) / m) ** m - 1


def nominal(rate, m):
    return m * ((1 + D(rate)) ** (Decimal(1) / m) - 1)


def fvschedule(principal, *rates):
    value = D(principal)
    for rate in rates:
        value *= 1 + D(rate)
    return value


def show(name, value):
    print(f"{name:60s} {float(value)!r}")


if __name__ == "__main__":
    show("NPV 0.07 -640 130 155 410", npv(0.07, -640, 130, 155, 410))
    show("NPV 0.045 310 -95.5 120 77.25 -260 505", npv(0.045, 310, -95.5, 120, 77.25, -260, 505))
    show("NPV 1e-12 7 -3 11", npv(1e-12, 7, -3, 11))
    project = [-2500, 610, 745, 0, 880, 1230]
    show("MIRR project 0.08 0.11", mirr(project, 0.08, 0.11))
    show("MIRR project 0.11 0.08", mirr(project, 0.11, 0.08))
    show("MIRR -100 50 -40 0 130 0.07 0.03", mirr([-100, 50, -40, 0, 130], 0.07, 0.03))
    show("MIRR 20 -100 90 -5 0.07 0.03", mirr([20, -100, 90, -5], 0.07, 0.03))

    show("IRR project", irr(project, "0", "0.5"))
    show("IRR project cut short", irr(project[:-1], "-0.5", "0.5"))
    show("IRR -100 20 30", irr([-100, 20, 30], "-0.9", "0.5"))
    show("IRR -4 4 9 -18 8 (near -0.253)", irr([-4, 4, 9, -18, 8], "-0.26", "-0.2501"))
    show("IRR 15 -2 4 -11 5 14 -4", irr([15, -2, 4, -11, 5, 14, -4], "-0.8", "-0.6"))
    show("IRR 18 19 -8 1, below -1", irr([18, 19, -8, 1], "-3", "-2"))

    values = [-830, 125, 310, 95, 480]
    days = [17001, 17100, 17319, 17320, 17777]
    show("XNPV 0.06", xnpv(0.06, values, days))
    show("XNPV 0.06, last first", xnpv(0.06, values[::-1], days[::-1]))
    show("XNPV -0.25", xnpv(-0.25, values, days))
    show("XIRR", xirr(values, days, "0", "1"))
    show("XIRR, last first", xirr(values[::-1], days[::-1], "0", "1"))
    show("XIRR -100 20 30 40 irregular", xirr([-100, 20, 30, 40], [100, 131, 700, 1201], "-0.9", "1"))
    show("XIRR repeated and unsorted", xirr([60, -100, -50, 75, 60], [900, 10, 200, 900, 1400], "0", "2"))
    show("XIRR -4 1 -6 in the years 5 0 2", xirr([-4, 1, -6], [1825, 0, 730], "0.5", "3"))

    show("EFFECT 0.12 12", effect(0.12, 12))
    show("EFFECT 1e-10 365", effect(1e-10, 365))
    show("EFFECT -0.5 4", effect(-0.5, 4))
    show("NOMINAL 0.0835 12", nominal(0.0835, 12))
    show("NOMINAL 1e-10 365", nominal(1e-10, 365))
    show("NOMINAL -0.5 4", nominal(-0.5, 4))
    show("NOMINAL 0.05 2^32", nominal(0.05, 2 ** 32))
    show("FVSCHEDULE 250 0.03 -0.02 0.045", fvschedule(250, 0.03, -0.02, 0.045))
