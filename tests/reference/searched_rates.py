#!/usr/bin/env python3
"""True rates of made-up plans, periodic and dated flows: all roots between -0.99999 and 100000, by bisection at 200 bits
between the changes of sign on a fine grid. Prints the rows of tests/command/searched_cases.hpp.

    searched_rates.py > tests/command/searched_cases.hpp
"""
import datetime

from mpmath import exp, log, mp, mpf

mp.prec = 200

RATE = [  # nper, pmt, pv, fv, type
    "60 -400 20000", "360 -1199.1 200000", "120 -200 0 30000", "60 -100 0 8000", "240 -250 0 150000 1",
    "5 -100 -1000 1800", "5 -100 -1000 1600", "36 -50 -2500 5000", "480 -75 -10000 260000 1", "48 -310 15000 -4000",
    "36 -289.5 24000 -15500 1", "12 -105 1200", "24 -45 1200", "10 0 1000 1480.24", "7 0 5000 4100",
    "3 -2000 -1000 8000", "180 -1 0 400", "360 -10 0 2600", "20 800 -10000 0", "30 45 -1040 1000",
]

IRR = [
    "-1000,300,400,500,200", "-100,60,60", "-100,10,10,10", "-70000,12000,15000,18000,21000,26000", "100,-60,-55",
    "-50,-50,-50,40,60,80", "-1,0,0,0,0,0,0,0,0,2", "-500,0,0,100,100,100,100", "-1000,1,1,1,1,1", "-2,3,0,0,0,40",
    "-100,230,-132", "-1,0,0,0,3e10,0,-1", "15,-4,18,-1", "13,12,-4,-6,16,-3", "1,-4.3,6.92,-4.94,1.32",
    "-800,300,300,300,-50", "-10,2,2,2,2,2,2,2,-1", "1000,-3000,1500,800,-200", "-1600,10000,-10000",
    "-4,20,-30,12,5,-1",
]

XIRR = [  # values, dates; the newest first where the dates say so
    ("-1000,600,600", "2023-01-01,2024-01-01,2025-01-01"),
    ("190,629,-42", "2005-08-12,1997-12-24,1993-07-08"),
    ("-10000,2750,4250,3250,2750", "2008-01-01,2008-03-01,2008-10-30,2009-02-15,2009-04-01"),
    ("2750,3250,4250,2750,-10000", "2009-04-01,2009-02-15,2008-10-30,2008-03-01,2008-01-01"),
    ("-4,1,-6", "1964-12-30,1960-01-01,1961-12-31"),
    ("-100,-100,-100,450", "2015-06-30,2016-06-30,2017-06-30,2024-06-30"),
    ("450,-100,-100,-100", "2024-06-30,2017-06-30,2016-06-30,2015-06-30"),
    ("-5000,4000", "2020-02-29,2021-02-28"),
    ("817,239,-4", "2002-03-07,2000-01-11,1992-12-28"),
    ("-100,1", "2010-01-01,2012-01-01"),
    ("994,159,-77", "2007-04-02,1998-02-18,1993-07-12"),
    ("-1,100", "2010-01-01,2011-06-01"),
    ("47,393,-25", "2009-01-12,2003-01-31,1997-01-26"),
    ("-200,50,50,50,50,50", "2019-01-15,2019-04-15,2019-07-15,2019-10-15,2020-01-15,2020-04-15"),
    ("115,291,-44", "2001-03-03,1999-02-10,1993-04-18"),
    ("900,-300,-300,-250", "2000-01-01,2005-01-01,2010-01-01,2015-01-01"),
    ("-250,-300,-300,900", "2015-01-01,2010-01-01,2005-01-01,2000-01-01"),
    ("-1000,2300,-1320", "2020-01-01,2020-12-31,2021-12-31"),
    ("-1000,-1000,30,30,30,2500", "2001-03-31,2001-03-31,2002-03-31,2003-03-31,2004-03-31,2030-03-31"),
    ("2500,30,30,30,-1000,-1000", "2030-03-31,2004-03-31,2003-03-31,2002-03-31,2001-03-31,2001-03-31"),
    ("500,-2000,700,900", "2022-06-01,2021-01-01,2023-06-01,2024-06-01"),
    ("-750000,120000,-90000,310000,655000", "2012-05-01,2013-05-01,2014-05-01,2017-11-01,2021-02-01"),
    ("655000,310000,-90000,120000,-750000", "2021-02-01,2017-11-01,2014-05-01,2013-05-01,2012-05-01"),
    ("-300,100,-20,250,-15,60", "2018-01-31,2018-07-31,2019-01-31,2019-07-31,2020-01-31,2020-07-31"),
]


def plan(arguments):
    nper, pmt, pv, fv, start = (*map(mpf, arguments.split()), mpf(0), mpf(0))[:5]

    def worth(rate):
        v = (1 + rate) ** -nper
        if pmt == 0:
            return pv - fv * v
        annuity = (1 - v) / rate if rate != 0 else nper
        return pv + pmt * annuity * (1 + rate if start == 1 else 1) + fv * v

    return worth


def flows(values, years):
    return lambda rate: sum(value * (1 + rate) ** -year for value, year in zip(values, years))


def periodic(values):
    amounts = [mpf(value) for value in values.split(",")]
    return flows(amounts, range(len(amounts)))


def dated(values, dates):
    days = [datetime.date.fromisoformat(day).toordinal() for day in dates.split(",")]
    return flows([mpf(value) for value in values.split(",")], [mpf(day - min(days)) / 365 for day in days])


def bisected(worth, low, high):
    below = worth(low)
    for _ in range(210):
        middle = (low + high) / 2
        if (worth(middle) > 0) == (below > 0):
            low = middle
        else:
            high = middle
    return (low + high) / 2


def rates(worth, steps=4001):
    first, last = log(mpf("1e-5")), log(mpf("1e5"))
    grid = [exp(first + (last - first) * k / steps) - 1 for k in range(steps + 1)]
    signs = [worth(rate) > 0 for rate in grid]
    return [bisected(worth, grid[k], grid[k + 1]) for k in range(steps) if signs[k] != signs[k + 1]]


def row(call, worth):
    found = rates(worth)
    assert found, call
    numbers = ", ".join(mp.nstr(rate, 20) for rate in found)
    return f'    {{"{call}", {{{numbers}}}}},'


def main():
    print("// Made by tests/reference/searched_rates.py, which says how the rates were found. Not edited by hand.")
    print("#pragma once\n\n#include <vector>\n\nnamespace finance::test {\n")
    print("struct SearchedCase {\n    const char* call;\n    std::vector<double> rates;  // all that solve it\n};\n")
    print("// clang-format off")
    print("inline const std::vector<SearchedCase> searched_cases{")
    for arguments in RATE:
        print(row(f"RATE {arguments}", plan(arguments)))
    for values in IRR:
        print(row(f"IRR {values}", periodic(values)))
    for values, dates in XIRR:
        print(row(f"XIRR {values} {dates}", dated(values, dates)))
    print("};\n// clang-format on\n\n}  // namespace finance::test")


if __name__ == "__main__":
    main()
