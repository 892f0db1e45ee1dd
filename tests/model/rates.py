"""Rate conversion, a schedule of rates, net present value, modified internal rate: EFFECT NOMINAL FVSCHEDULE NPV MIRR."""
from ieee import div, log
from kernels import zexpm1, zln1px


def EFFECT(call):
    """(1 + rate/m)^m - 1, m periods a year; an overflow to infinity is an answer."""
    rate = call.number(1)
    m = call.count32(2)
    m = float(m)
    call.result = zexpm1(m * zln1px(div(rate, m)))


def NOMINAL(call):
    """m ((1 + rate)^(1/m) - 1); m keeps its 64 bits."""
    rate = call.number(1)
    m = call.whole(2)
    if m <= 0:
        call.refuse(2)
    m = float(m)
    call.result = m * zexpm1(div(zln1px(rate), m))


def FVSCHEDULE(call):
    """The principal through one rate a period; without rates the principal itself."""
    v = call.number(1)
    for i in range(2, call.count):
        v = v * (1.0 + call.number(i))
    call.result = v


def NPV(call):
    """Sum of v_i d^i, i from 1; read from the last flow back, so that the last faulty flow is the one reported."""
    rate = call.positive(1)
    d = div(1.0, rate + 1.0)
    s = 0.0
    for i in range(call.count - 1, 1, -1):
        s = s * d + call.number(i)
    call.result = d * s


def MIRR(call):
    """flows, finance rate, reinvestment rate; the reinvestment rate is looked at first.

    A lone valid rate would have the name read as the finance rate: never drawn."""
    reinvestment = call.positive(call.count - 1)
    finance = call.positive(call.count - 2)
    m = call.count - 3
    d_reinvestment = div(1.0, 1.0 + reinvestment)
    d_finance = div(1.0, 1.0 + finance)
    positive = 0.0
    negative = 0.0
    negative_flows = 0
    for i in range(m, 0, -1):
        positive = positive * d_reinvestment
        negative = negative * d_finance
        v = call.number(i)
        if v >= 0.0:
            positive = positive + v
        else:
            negative = negative + v
            negative_flows = negative_flows + 1
    if negative_flows == 0:
        call.fail()
    if d_finance * negative == 0.0:
        call.fail()
    q = div(0.0 - d_reinvestment * positive, d_finance * negative)
    if q <= 0.0:
        call.fail()
    g = zexpm1(zln1px(reinvestment) * float(m))
    call.result = zexpm1(div(log(div(q * (1.0 + g), 1.0 + finance)), float(m - 1)))


CALCULATIONS = {"EFFECT": EFFECT, "NOMINAL": NOMINAL, "FVSCHEDULE": FVSCHEDULE, "NPV": NPV, "MIRR": MIRR}
