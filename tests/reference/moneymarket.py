"""Treasury bills and fractional prices at 60 digits, for the expected values of tests/moneymarket.

Run it to print the rows. Inputs are the exact doubles that the tests hand over. The yield of a bill of more than half a
year is found by bisection of what it means: a coupon after half a year, simple interest for the rest.
"""
from decimal import Decimal, getcontext

getcontext().prec = 60


def D(x):
    return Decimal(float(x))


def bill_price(rate, days):
    return 1 - D(rate) * days / 360  # of 1


def TBILLPRICE(settlement, maturity, rate):
    return 100 * bill_price(rate, D(maturity) - D(settlement))


def TBILLYIELD(settlement, maturity, price):
    return (100 / D(price) - 1) / ((D(maturity) - D(settlement)) / 360)


def TBILLEQ(settlement, maturity, rate):
    days = D(maturity) - D(settlement)
    price = bill_price(rate, days)
    if days <= 182:
        return (1 / price - 1) * 365 / days
    low, high = Decimal(0), Decimal(1000)
    for _ in range(200):
        y = (low + high) / 2
        if price * (1 + y / 2) * (1 + y * (days / 365 - Decimal("0.5"))) < 1:
            low = y
        else:
            high = y
    return low


def parts(price, f):
    whole = Decimal(int(price))
    decimals = 0
    while 10 ** decimals < f:
        decimals += 1
    return whole, D(price) - whole, Decimal(f), Decimal(10) ** decimals


def DOLLARDE(price, f):
    whole, fraction, f, tens = parts(price, f)
    return whole + tens * fraction / f


def DOLLARFR(price, f):
    whole, fraction, f, tens = parts(price, f)
    return whole + fraction * f / tens


ROWS = [
    (TBILLPRICE, (17622, 17684, 0.09)), (TBILLPRICE, (17622, 17560, 0.09)), (TBILLPRICE, (100.25, 150.75, 0.0312)),
    (TBILLPRICE, (1, 100000, 0.09)),
    (TBILLYIELD, (17622, 17684, 98.45)), (TBILLYIELD, (17622, 17684, 101.5)), (TBILLYIELD, (100.25, 150.75, 99.1)),
    (TBILLEQ, (17622, 17684, 0.0914)), (TBILLEQ, (1000, 1182, 0.09)), (TBILLEQ, (1000, 1183, 0.09)),
    (TBILLEQ, (1000, 1182, 0.0001)), (TBILLEQ, (1000, 1183, 0.0001)),
    (TBILLEQ, (1000, 1364, 0.0525)), (TBILLEQ, (1000, 2000, 0.3)), (TBILLEQ, (1000, 1365, 0.9)),
    (DOLLARDE, (1.02, 16)), (DOLLARDE, (1.1, 32)), (DOLLARDE, (-1.02, 16)), (DOLLARDE, (99.16, 32)),
    (DOLLARDE, (0.7, 8)), (DOLLARDE, (-0.7, 8)), (DOLLARDE, (5.123456789, 2147483647)), (DOLLARDE, (2.005, 128)),
    (DOLLARDE, (1.5, 10)), (DOLLARDE, (1.25, 100)), (DOLLARDE, (1.125, 1000)), (DOLLARDE, (1.05, 11)),
    (DOLLARFR, (1.125, 16)), (DOLLARFR, (1.125, 32)), (DOLLARFR, (-1.125, 16)), (DOLLARFR, (99.5, 32)),
    (DOLLARFR, (-0.875, 8)), (DOLLARFR, (1.5, 10)), (DOLLARFR, (1.25, 100)), (DOLLARFR, (2.6, 11)),
    (DOLLARFR, (3.0390625, 128)), (DOLLARFR, (1.5, 2147483647)),
]


def main():
    for compute, arguments in ROWS:
        print(f"{compute.__name__} {{{', '.join(map(repr, arguments))}}}: {float(compute(*arguments))!r}")


if __name__ == "__main__":
    main()
