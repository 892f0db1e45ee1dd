"""Expected values of end_to_end_test.cpp: the closed forms at 60 digits, of the exact doubles that the command reads."""
from decimal import Decimal, getcontext

getcontext().prec = 60


def D(x):
    return Decimal(float(x))  # the double itself, not its decimal spelling


def pmt(r, n, P, F=0, t=0):
    payment = -r * (P * (1 + r) ** n + F) / ((1 + r) ** n - 1)
    return payment / (1 + r) if t == 1 else payment


def ipmt(r, k, n, P):
    g = (1 + r) ** (k - 1)
    return -P * r * g - (g - 1) * pmt(r, n, P)


def fv(r, n, payment, P=0):
    return -P * (1 + r) ** n - payment * ((1 + r) ** n - 1) / r


def pv(r, n, payment):
    return payment * ((1 + r) ** -n - 1) / r


def nper(r, payment, P, F=0):
    return ((payment - F * r) / (payment + P * r)).ln() / (1 + r).ln()


def root(f, low, high):
    """Of a function that falls from low to high."""
    for _ in range(250):
        middle = (low + high) / 2
        low, high = (middle, high) if f(middle) > 0 else (low, middle)
    return low


def npv(r, flows):
    return sum(flow / (1 + r) ** k for k, flow in enumerate(flows, 1))


def mirr(flows, finance, reinvest):
    m = len(flows)
    P = npv(reinvest, [max(flow, 0) for flow in flows]) * (1 + reinvest) ** m
    N = npv(finance, [min(flow, 0) for flow in flows]) * (1 + finance)
    return (-P / N) ** (D(1) / (m - 1)) - 1


def xnpv(r, values, days):
    return sum(v / (1 + r) ** (D(day - days[0]) / 365) for v, day in zip(values, days))


def vdb_with_switch(cost, salvage, life, start, end, factor):
    """Once straight line over the periods left is more, it is the same amount to the end of the life."""
    total, used, level = D(0), D(0), None
    for i in range(end):
        straight = (cost - salvage - used) / (life - i)
        declining = (cost - used) * factor / life
        if level is None and declining < straight:
            level = straight
        d = declining if level is None else level
        total, used = total + (d if i >= start else 0), used + d
    return total


flows = [D(-1000), D(300), D(400), D(500), D(200)]
values, days = [D(-1000), D(600), D(600)], [23011, 23376, 23742]  # 2023-01-01, 2024-01-01, 2025-01-01
r, n, P = D(0.005), 360, D(200000)
rows = {
    "PMT 0.005 360 200000": pmt(r, n, P),
    "PMT 5.75% 10 1000": pmt(D(0.0575), 10, D(1000)),
    "PMT 0.005 360 100 type=1": pmt(r, n, D(100), 0, 1),
    "PMT rate=1% nper=24 pv=0 fv=5000 type=1": pmt(D(0.01), 24, D(0), D(5000), 1),
    "FV 0.01 12 -100": fv(D(0.01), 12, D(-100)),
    "FV rate=0.01 nper=12 pv=-100": fv(D(0.01), 12, D(0), D(-100)),
    "PV 0.01 12 -100": pv(D(0.01), 12, D(-100)),
    "IPMT 0.005 13 360 200000": ipmt(r, 13, n, P),
    "PPMT 0.005 13 360 200000": pmt(r, n, P) - ipmt(r, 13, n, P),
    "CUMIPMT 0.005 360 200000 1 12": sum(ipmt(r, k, n, P) for k in range(1, 13)),
    "CUMPRINC 0.005 360 200000 1 12": sum(pmt(r, n, P) - ipmt(r, k, n, P) for k in range(1, 13)),
    "RATE 60 -400 20000": root(lambda x: D(400) - 20000 * x / (1 - (1 + x) ** -60), D(0.001), D(0.1)),
    "NPER 0.005 -400 20000": nper(r, D(-400), D(20000)),
    "NPER 0.005 -400 20000 0 1": nper(r, D(-400) * (1 + r), D(20000)),
    "NPV 0.1 -1000 300 400 500 200": npv(D(0.1), flows),
    "IRR -1000 300 400 500 200": root(lambda x: npv(x, flows), D(0), D(1)),
    "MIRR -1000 300 400 500 200 0.1 0.05": mirr(flows, D(0.1), D(0.05)),
    "XNPV 0.1 -1000 600 600 2023-01-01 2024-01-01 2025-01-01": xnpv(D(0.1), values, days),
    "XIRR -1000 600 600 2023-01-01 2024-01-01 2025-01-01": root(lambda x: xnpv(x, values, days), D(0), D(1)),
    "FVSCHEDULE 1000 0.05 0.03 0.04": 1000 * (1 + D(0.05)) * (1 + D(0.03)) * (1 + D(0.04)),
    "EFFECT 12% 12": (1 + D(0.12) / 12) ** 12 - 1,
    "NOMINAL 12.68% 12": 12 * ((1 + D(0.1268)) ** (D(1) / 12) - 1),
    "VDB 10000 500 10 6 10 1.5 0": vdb_with_switch(D(10000), D(500), D(10), 6, 10, D(1.5)),
}
for call, value in rows.items():
    print(f"{call:60} {float(value)!r}")
