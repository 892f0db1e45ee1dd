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
}
for call, value in rows.items():
    print(f"{call:45} {float(value)!r}")
