"""The columns that are compared, and how NumPy and DuckDB calculate them."""

from dataclasses import dataclass
from typing import Callable

import numpy as np

DAY_2008 = np.datetime64("2008-01-01")
EPOCH = np.datetime64("1960-01-01")


@dataclass
class Case:
    name: str
    rows_are: str
    columns: list  # a table for lists, a row each
    few: int  # rows for peers that take them one by one
    by_numpy: Callable | None = None  # NumPy's formula of the columns
    by_duckdb: str | None = None  # DuckDB's arithmetic
    fixed: tuple = ()  # arguments behind the columns, of ours

    @property
    def rows(self):
        return len(self.columns[0])

    @property
    def length(self):
        return max(column.shape[1] if column.ndim == 2 else 0 for column in self.columns)


def payment(r, n, pv):
    return -r * pv / (1 - (1 + r) ** -n)


def present_value(r, flows):
    return (flows / (1 + r[:, None]) ** np.arange(1, flows.shape[1] + 1)).sum(axis=1)


def dated_value(r, flows, days):
    return (flows / (1 + r[:, None]) ** ((days - days[:, :1]) / 365)).sum(axis=1)


def modified_rate(flows, finance, reinvest):
    last = flows.shape[1] - 1
    later = (np.where(flows > 0, flows, 0) * (1 + reinvest[:, None]) ** (last - np.arange(last + 1))).sum(axis=1)
    now = (np.where(flows < 0, flows, 0) / (1 + finance[:, None]) ** np.arange(last + 1)).sum(axis=1)
    return (later / -now) ** (1 / last) - 1


def bonds(draw, rows):
    """Settlement and maturity of bonds with 2 to 60 coupons left, two a year, on days that end no month."""
    months = draw.integers(0, 60, rows)
    later = 6 * draw.integers(2, 60, rows) + draw.integers(0, 6, rows)
    on = lambda months: ((DAY_2008.astype("M8[M]") + months).astype("M8[D]") + draw.integers(0, 27, rows) - EPOCH)
    return on(months).astype(float), on(months + later).astype(float)


def cases(draw):
    uniform = draw.uniform
    whole = lambda low, high, *shape: draw.integers(low, high + 1, shape).astype(float)
    rows, lists, dated = 500_000, 5_000, 1_000
    annual, dates = (lists, 60), (dated, 250)
    days = np.sort(whole(17532, 24832, *dates), axis=1)  # twenty years from 2008
    loan = np.hstack([np.full((dated, 1), -1e6), uniform(5000, 9000, (dated, 249))])
    project = np.hstack([-uniform(10000, 40000, (lists, 1)), uniform(500, 1500, (lists, 59))])
    swings = np.hstack([-uniform(5000, 20000, (lists, 1)), uniform(-300, 1000, (lists, 59))])
    bond = dict(few=300, fixed=(100, 2, "30/360"))
    return [
        Case("PMT", "12 to 400 periods", [uniform(0.001, 0.011, rows), whole(12, 400, rows), uniform(1, 1e6, rows)],
             few=100_000, by_numpy=payment, by_duckdb="-a0 * a2 / (1 - pow(1 + a0, -a1))"),
        Case("RATE", "60 to 400 periods",
             [whole(60, 400, 20_000), uniform(-2000, -1000, 20_000), uniform(10000, 50000, 20_000)], few=5_000),
        Case("NPV", "60 flows", [uniform(0.01, 0.2, lists), uniform(-1000, 2000, annual)], few=1_000,
             by_numpy=present_value, by_duckdb="list_sum(list_transform(a1, lambda x, i: x / pow(1 + a0, i)))"),
        Case("IRR", "60 flows", [project], few=200),
        Case("MIRR", "60 flows", [swings, uniform(0.03, 0.1, lists), uniform(0.01, 0.05, lists)], few=1_000,
             by_numpy=modified_rate),
        Case("XNPV", "250 flows", [uniform(0.01, 0.2, dated), uniform(-1000, 2000, dates), days], few=100,
             by_numpy=dated_value,
             by_duckdb="list_sum(list_transform(a1, lambda x, i: x / pow(1 + a0, (a2[i] - a2[1]) / 365)))"),
        Case("XIRR", "250 flows", [loan, days], few=50),
        Case("PRICE", "2 to 60 coupons", [*bonds(draw, rows), uniform(0.01, 0.09, rows), uniform(0.01, 0.09, rows)],
             **bond),
        Case("YIELD", "2 to 60 coupons", [*bonds(draw, 20_000), uniform(0.01, 0.09, 20_000), uniform(80, 120, 20_000)],
             **bond),
    ]
