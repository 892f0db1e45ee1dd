"""Columns through NumPy beside the embedded host's batch call: the same columns, the same run, in turn.

ufunc_speed.py LIBRARY   best of 15 rounds each; prints nanoseconds a row and ratios as a Markdown table

The goals: the raw ufunc within 2.5 of its batch call, zelkovan.price within 1.15 of it. A batch call takes what the
module answers; the ufunc also looks for missing values, for rows that are refused and, after a search, whether its
answer solves.
"""

import ctypes
import sys
import time

import numpy as np

import zelkovan

ROWS = 1_000_000
ROUNDS = 15
GOAL_OF_UFUNC = 2.5
GOAL_OF_PRICE = 1.15
DAY = np.datetime64("1960-01-01")


def tables(draw):
    """Name, columns (one value: the same in all rows) and rows of each calculation."""
    whole = lambda low, high, rows=ROWS: draw.integers(low, high + 1, rows).astype(float)
    settlement, maturity, rate, redemption, frequency = 23761.0, 25886.0, 0.05, 100.0, 2.0
    few = ROWS // 10
    return [
        ("SLN", [draw.uniform(1e4, 1e6, ROWS), draw.uniform(1e2, 1e4, ROWS), whole(10, 40)]),
        ("PMT", [draw.uniform(0.001, 0.011, ROWS), whole(12, 400), draw.uniform(1, 1e6, ROWS)]),
        ("YEARFRAC", [whole(17532, 20532), whole(20533, 29532), 1.0]),
        ("PRICE", [settlement, maturity, rate, draw.uniform(0.01, 0.1, ROWS), redemption, frequency]),
        ("YIELD", [settlement, maturity, rate, draw.uniform(70, 130, few), redemption, frequency]),
        ("RATE", [whole(12, 400, few), draw.uniform(-2000, -1000, few), draw.uniform(10000, 11000, few)]),
    ]


def seconds(run):
    start = time.perf_counter()
    run()
    return time.perf_counter() - start


def best_of(runs):
    best = [float("inf")] * len(runs)
    for _ in range(ROUNDS):
        for i, run in enumerate(runs):
            best[i] = min(best[i], seconds(run))
    return best


def batch_call(library, name, columns, results):
    """What calls the batch, with everything that it takes made before."""
    doubles = ctypes.POINTER(ctypes.c_double)
    held = [np.atleast_1d(np.asarray(column, float)) for column in columns]
    pointers = (doubles * len(held))(*(column.ctypes.data_as(doubles) for column in held))
    lengths = (ctypes.c_size_t * len(held))(*map(len, held))
    rows = ctypes.c_size_t(len(results))
    into = results.ctypes.data_as(doubles)

    def call():
        if library.batch_rows(name.encode(), pointers, lengths, len(held), rows, into):
            sys.exit(f"{name}: rows are refused")

    call.held = held
    return call


def compared(library, name, columns):
    rows = max(np.size(column) for column in columns)
    by_batch, by_ufunc, by_function = np.empty((3, rows))
    function = getattr(zelkovan, name.lower(), None) or getattr(zelkovan, name.lower() + "_")
    raw = function.ufuncs[len(columns)]
    batch, ufunc, usual = best_of([
        batch_call(library, name, columns, by_batch),
        lambda: raw(*columns, out=by_ufunc),
        lambda: function(*columns, out=by_function),
    ])
    if by_batch.tobytes() != by_ufunc.tobytes() or by_batch.tobytes() != by_function.tobytes():
        sys.exit(f"{name}: the batch call and NumPy differ")
    print(f"| {name} | {1e9 * batch / rows:.1f} | {1e9 * ufunc / rows:.1f} | {ufunc / batch:.2f} "
          f"| {1e9 * usual / rows:.1f} | {usual / batch:.2f} |")
    return ufunc / batch, usual / batch


def conversions(columns):
    """What columns cost that are not float64."""
    settlement, maturity, *others = columns
    days = np.full(ROWS, DAY + int(maturity)).astype("M8[ns]")
    words = np.full(ROWS, "30/360", object)
    dates, bases = best_of([
        lambda: zelkovan.price(settlement, days, *others),
        lambda: zelkovan.price(settlement, maturity, *others, basis=words),
    ])
    print(f"\nzelkovan.price with maturities as datetime64[ns]: {1e9 * dates / ROWS:.1f} ns a row, with bases as words: "
          f"{1e9 * bases / ROWS:.1f}")


def main(path):
    library = ctypes.CDLL(path)
    library.batch_rows.restype = ctypes.c_long
    print("| column | batch ns | raw ufunc ns | of the batch | function ns | of the batch |\n|---|---:|---:|---:|---:|---:|")
    ratios = {}
    for name, columns in tables(np.random.default_rng(1)):
        ratios[name] = compared(library, name, columns)
        if name == "PRICE":
            bonds = columns
    conversions(bonds)
    worst = max(ratio for ratio, _ in ratios.values())
    for what, ratio, goal in ("raw ufuncs", worst, GOAL_OF_UFUNC), ("zelkovan.price", ratios["PRICE"][1], GOAL_OF_PRICE):
        print(f"goal for {what}: <= {goal}: {'met' if ratio <= goal else 'missed'}, {ratio:.2f} at worst")


if __name__ == "__main__":
    main(sys.argv[1])
