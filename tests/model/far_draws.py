"""Draws whose dates lie far out: to 1e16 days, around where years, months and days pass 32 bits, and beyond what a date is.

A usual draw of a calculation has its dates moved. What the module answers there is meaningless but fixed, bit for bit:
the model walks literally, and so follows where dates lie close together wherever that is. Dates far apart it follows only
where no walk from one to the other is longer than arguments.MOST_STEPS: draws beyond that are thrown away, by this rule
alone, and draw.py --thrown says how many.
"""
from arguments import Number
from ieee import INF

# Positions of the dates among the arguments, the name not counted; of dated flows they are half of all.
DATES = {
    **dict.fromkeys(["YEARFRAC", "COUPDAYBS", "COUPDAYS", "COUPDAYSNC", "COUPNCD", "COUPNUM", "COUPPCD", "DISC", "INTRATE",
                     "PRICEDISC", "RECEIVED", "YIELDDISC", "ACCRINTM", "PRICE", "YIELD", "DURATION", "MDURATION", "TBILLEQ",
                     "TBILLPRICE", "TBILLYIELD"], (0, 1)),
    **dict.fromkeys(["ACCRINT", "ODDLPRICE", "ODDLYIELD", "PRICEMAT", "YIELDMAT"], (0, 1, 2)),
    **dict.fromkeys(["ODDFPRICE", "ODDFYIELD"], (0, 1, 2, 3)),
    **dict.fromkeys(["AMORDEGRC", "AMORLINC"], (1, 2)),
    "XNPV": None,
    "XIRR": None,
}

DAYS_A_YEAR = 365.2425  # of the Gregorian calendar, on average
YEAR_0 = -1960.0 * DAYS_A_YEAR
WRAPS = [2.0**31 * DAYS_A_YEAR, 2.0**31 / 12.0 * DAYS_A_YEAR]
ENDS = [2.0**53, 1e16, -2.0**53, -1e16, -2.0**61, -2.0**62, -2.0**63, -2.0**63 - 2048, INF, -INF]


def far_day(rng):
    pick = rng.random()
    if pick < 0.50:
        centre = rng.choice([1.0, -1.0]) * rng.choice(WRAPS) + YEAR_0
    elif pick < 0.75:
        centre = rng.choice([1.0, -1.0]) * rng.choice([2.0**31, 2.0**32, 2.0**31 / 1461.0, 2.0**63 / 1461.0, 2.0**63 / 146097.0])
    elif pick < 0.90:
        return float(int(rng.choice([1.0, -1.0]) * 10.0 ** rng.uniform(7.0, 16.0)))
    else:
        return rng.choice(ENDS) + rng.choice([0.0, 1.0, -1.0, 1000.0])
    return float(int(centre) + rng.choice([1, -1]) * int(10.0 ** rng.uniform(0.0, 5.0)))


def positions(name, drawn):
    if DATES[name] is not None:
        return DATES[name]
    without_rate = len(drawn) - (1 if name == "XNPV" else 0)
    first = len(drawn) - without_rate + without_rate // 2
    return range(first, first + without_rate // 2)


def moved(drawn, dates, by):
    for i in dates:
        value = getattr(drawn[i], "value", None)
        if value is not None and value == value and abs(value) < 1e9:
            drawn[i] = Number(float(int(value)) + by)


def far(rng, name, drawn):
    """The draw with its dates far out: mostly all together."""
    dates = [i for i in positions(name, drawn) if i < len(drawn) and hasattr(drawn[i], "value")]
    if not dates:
        return drawn
    pick = rng.random()
    if pick < 0.75:
        moved(drawn, dates, far_day(rng))
    elif pick < 0.90:
        drawn[rng.choice(dates)] = Number(far_day(rng))
    else:
        for i in dates:
            drawn[i] = Number(far_day(rng))
    return drawn
