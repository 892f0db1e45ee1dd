"""Numeric kernels: e^x - 1, ln(1 + x), ln(e^a + e^b), sums and maxima of absolute values, guarded power."""
from ieee import MISSING_VALUE, TWO_53, div, exp, log, pow, trunc64


def zexpm1(x):
    """e^x - 1: the library's exp above |x| = 0.01, else x + x^2/2 + ... + x^6/720 nested from the inside."""
    if abs(x) > 0.01:
        return exp(x) - 1.0
    t = 1.0 + x / 6.0
    t = 1.0 + (x / 5.0) * t
    t = 1.0 + (0.25 * x) * t
    t = 1.0 + (x / 3.0) * t
    t = 1.0 + (0.5 * x) * t
    return x * t


def zln1px(x):
    """ln(1 + x): the library's log above |x| = 1/32, else a rational form of 2 atanh(s/2), s = x / (1 + x/2)."""
    if abs(x) > 0.03125:
        return log(x + 1.0)
    s = div(x, 0.5 * x + 1.0)
    q = s * s
    return s + (q * s) * div(-0.0023812878804825234 * q + 0.08333333333333427, 1.0 + (-0.178575454351365) * q)


def zlnSumOfExp(a, b):
    """ln(e^a + e^b) without overflow of either power."""
    if a > b:
        return a + zln1px(exp(0.0 - (a - b)))
    if a == b:
        return a + 0.6931471805599453
    return b + zln1px(exp(a - b))


def zvasum(values):
    """Sum of the absolute values; 0 for none."""
    total = 0.0
    for value in values:
        total = total + abs(value)
    return total


def zvamx(values):
    """Largest absolute value; 0 for none. A NaN met replaces the maximum, and is replaced by what follows."""
    if len(values) < 1:
        return 0.0
    largest = abs(values[0])
    for value in values[1:]:
        if not largest > abs(value):
            largest = abs(value)
    return largest


def zpower(x, y):
    """(status, x^y); status 0 valid, 1 overflow, 2 negative base with a fractional exponent, 3 zero base with y <= 0."""
    positive_exponent = y > 0.0
    ay = y if positive_exponent else 0.0 - y
    if x == 0.0:
        return (0, 0.0) if positive_exponent else (3, MISSING_VALUE)
    if positive_exponent and y == 1.0:
        return 0, x
    if not positive_exponent and y == 0.0:
        return 0, 1.0
    negative_base = x < 0.0
    ax = abs(x)
    k = 0
    integral = False
    if not ay >= TWO_53:
        k = trunc64(ay)
        integral = float(k) == ay
    odd = integral and k % 2 != 0
    if negative_base and not integral:
        return 2, MISSING_VALUE
    if ax == 1.0:
        return 0, (-1.0 if negative_base and odd else 1.0)
    if ay >= 1.3407807929943e154:
        if (ax > 1.0) == positive_exponent:
            return 1, MISSING_VALUE
        return 0, 0.0
    t = 1.0000000000000007 * y * log(ax)
    if t >= 709.782712893384:
        return 1, MISSING_VALUE
    if -708.3964185 >= t:
        return 0, 0.0
    if integral and abs(t) < 72.0873067782343:
        p = 1.0
        b = ax
        while True:
            if k & 1:
                p = p * b
            k = k >> 1
            if k == 0:
                break
            b = b * b
        if not positive_exponent:
            p = div(1.0, p)
    else:
        p = pow(ax, y)
    if negative_base and odd:
        return 0, -p
    return 0, p
