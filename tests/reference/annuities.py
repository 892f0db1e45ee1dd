"""Closed forms of the level-payment calculations at 60 digits, for the expected values of tests/cashflow.

Run it to print each value to 17 significant digits; the inputs are the exact doubles that the tests hand over.
"""
from decimal import Decimal, getcontext

getcontext().prec = 60


def D(x):
    return Decimal(float(x))  # the double itself, not its decimal spelling


def growth(r, n):
    return (1 + r) ** n - 1


def pmt(r, n, P, F=0, t=0):
    r, P, F = D(r), D(P), D(F)
    e = growth(r, n)
    payment = -r * ((1 + e) * P + F) / e
    return payment / (1 + r) if t == 1 else payment


def fv(r, n, payment, P=0, t=0):
    r, payment, P = D(r), D(payment), D(P)
    e = growth(r, n)
    return -(1 + e) * P - e * payment / r * ((1 + r) if t == 1 else 1)


def pv(r, n, payment, F=0, t=0):
    r, payment, F = D(r), D(payment), D(F)
    e = growth(r, -n)
    return -F * (1 + e) + e * payment / r * ((1 + r) if t == 1 else 1)


def balances(r, n, P, F=0, t=0):
    """Interest and principal of each period 1..n, by walking the loan."""
    payment = pmt(r, n, P, F, t)
    r, b = D(r), D(P)
    rows = []
    for k in range(1, n + 1):
        if t == 1:
            interest = -r * b if k > 1 else Decimal(0)
            b = b - interest + payment if k > 1 else b + payment
        else:
            interest = -r * b
            b = b - interest + payment
        rows.append((interest, payment - interest))
    return rows


def nper(r, payment, P, F=0, t=0):
    r, a, P, F = D(r), D(payment), D(P), D(F)
    a = a * (1 + r) if t == 1 else a
    return -((P * r + a) / (a - F * r)).ln() / (1 + r).ln()


def rate(n, payment, P, F=0, t=0):
    """Between 1e-9 and 3, by bisection of the present value of all amounts."""
    def worth(r):
        v = (1 + r) ** -n
        return D(P) + D(payment) * (1 - v) / r * (1 + r if t == 1 else 1) + D(F) * v
    low, high = Decimal("1e-9"), Decimal(3)
    rising = worth(low) < worth(high)
    for _ in range(130):
        middle = (low + high) / 2
        low, high = (middle, high) if (worth(middle) < 0) == rising else (low, middle)
    return (low + high) / 2


def show(name, value):
    print(f"{name:55s} {float(value)!r}")


if __name__ == "__main__":
    show("PMT 0.005 360 200000", pmt(0.005, 360, 200000))
    show("PMT 0.005 360 200000 -1000 1", pmt(0.005, 360, 200000, -1000, 1))
    show("PMT 1e-12 600 1e5", pmt(1e-12, 600, 1e5))
    show("PMT 0.9 1000 50", pmt(0.9, 1000, 50))
    show("FV 0.01 12 -100", fv(0.01, 12, -100))
    show("FV 0.01 12 -100 -1000", fv(0.01, 12, -100, -1000))
    show("FV 0.01 12 -100 -1000 1", fv(0.01, 12, -100, -1000, 1))
    show("PV 0.08/12 240 500", pv(0.08 / 12, 240, 500))
    show("PV -0.01 12 100 50", pv(-0.01, 12, 100, 50))
    show("PV -0.01 12 100 50 1", pv(-0.01, 12, 100, 50, 1))
    for t in (0, 1):
        rows = balances(0.1 / 12, 36, 8000, 0, t)
        show(f"IPMT 0.1/12 1 36 8000 type {t}", rows[0][0])
        show(f"IPMT 0.1/12 3 36 8000 type {t}", rows[2][0])
        show(f"PPMT 0.1/12 3 36 8000 type {t}", rows[2][1])
        show(f"PPMT 0.1/12 1 36 8000 type {t}", rows[0][1])
        rows = balances(0.0075, 360, 125000, 0, t)
        show(f"CUMIPMT 0.0075 360 125000 13 24 type {t}", sum(i for i, _ in rows[12:24]))
        show(f"CUMPRINC 0.0075 360 125000 13 24 type {t}", sum(p for _, p in rows[12:24]))
        show(f"CUMIPMT 0.0075 360 125000 1 1 type {t}", rows[0][0])
        show(f"CUMPRINC 0.0075 360 125000 1 1 type {t}", rows[0][1])
        show(f"CUMPRINC 0.0075 360 125000 1 360 type {t}", sum(p for _, p in rows))
    rows = balances(0.1 / 12, 36, 8000, -500)
    show("IPMT 0.1/12 20 36 8000 -500", rows[19][0])
    show("PPMT 0.1/12 20 36 8000 -500", rows[19][1])
    r = D(0.1)
    show("ISPMT 0.1/12 1 36 8000000", -D(8000000) * D(0.1 / 12) * 35 / 36)
    show("ISPMT 0.1 2 3 8000000", -D(8000000) * r / 3)
    for call in ((48, -200, 8000, 0, 0), (360, -1500, 200000, 0, 1), (10, -100, 500, -900, 0), (24, -50, 800, -500, 1),
                 (5, 100, -350, -20, 0)):
        show(" ".join(map(str, ("RATE", *call))), rate(*call))
    for call in ((0.01, -100, -1000, 10000, 1), (0.01, -100, -1000, 10000, 0), (0.005, -1200, 200000, 0, 0),
                 (0.0001, -10, 1000, 0, 1), (0.25, 7, -20, 3, 0)):
        show(" ".join(map(str, ("NPER", *call))), nper(*call))
