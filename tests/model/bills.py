"""Treasury bills on a 360-day year (TBILLEQ TBILLPRICE TBILLYIELD; per 100 face, dates are plain day numbers that need
not be whole) and fractional prices (DOLLARDE DOLLARFR)."""
from ieee import ceil, div, log10, sqrt, trunc32


def TBILLEQ(call):
    settlement = call.positive(1)
    maturity = call.positive(2)
    r = call.positive(3)
    if settlement >= maturity:
        call.refuse(2)                                        # only after the rate
    D = maturity - settlement
    if D <= 182.0:
        call.result = div(365.0 * r, 360.0 - r * D)
        return
    t = D / 365.0
    q = div(r * D, r * D - 360.0)
    discriminant = t * t - (2.0 * t - 1.0) * q
    if discriminant < 0.0:
        call.fail_silently()
    call.result = div(sqrt(discriminant) - t, t - 0.5)


def TBILLPRICE(call):
    settlement = call.positive(1)
    maturity = call.positive(2)                               # at or before settlement is accepted
    r = call.positive(3)
    D = maturity - settlement
    call.result = (1.0 - r * D / 360.0) * 100.0


def TBILLYIELD(call):
    settlement = call.positive(1)
    maturity = call.positive(2)
    if settlement >= maturity:
        call.refuse(2)                                        # before the price
    r = call.positive(3)
    D = maturity - settlement
    call.result = div(div(100.0 - r, r) * 360.0, D)


POWERS_OF_TEN = [1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14]


def fractional_price(call):
    """whole part, rest, denominator, and the power of ten of as many digits as the denominator needs"""
    x = call.number(1)
    f = float(call.count32(2))
    i = float(trunc32(x))
    w = x - i
    k = trunc32(ceil(log10(f)))
    return i, w, f, POWERS_OF_TEN[k]


def DOLLARDE(call):
    i, w, f, P = fractional_price(call)
    if abs(w) <= i * 5.0 * 1.110223024625157e-16:             # i itself: never true for a negative whole part
        call.result = i
        return
    call.result = i + div(P * w, f)


def DOLLARFR(call):
    i, w, f, P = fractional_price(call)
    call.result = i + div(w * f, P)


CALCULATIONS = {"TBILLEQ": TBILLEQ, "TBILLPRICE": TBILLPRICE, "TBILLYIELD": TBILLYIELD, "DOLLARDE": DOLLARDE,
                "DOLLARFR": DOLLARFR}
