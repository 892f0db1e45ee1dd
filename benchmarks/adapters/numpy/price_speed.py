"""A million rows of PRICE through NumPy beside the embedded host's batch call: the same columns, the same run, in turn.

price_speed.py LIBRARY   best of 15 rounds each; prints nanoseconds a row and ratios
"""

import ctypes
import sys
import time

import numpy as np

import zelkovan

ROWS = 1_000_000
ROUNDS = 15
GOAL = 1.15
TERMS = np.array([23761.0, 25886.0, 0.05, 100.0, 2.0])  # settlement, maturity, rate, redemption, frequency
DOUBLES = np.ctypeslib.ndpointer(np.float64, flags="C_CONTIGUOUS")


def seconds(run):
    start = time.perf_counter()
    run()
    return time.perf_counter() - start


def main(library):
    batch_price = ctypes.CDLL(library).batch_price
    batch_price.argtypes = [DOUBLES, DOUBLES, ctypes.c_size_t, DOUBLES]
    batch_price.restype = ctypes.c_long
    settlement, maturity, rate, redemption, frequency = TERMS
    yields = np.random.default_rng(1).uniform(0.01, 0.1, ROWS)
    by_batch, by_numpy = np.empty(ROWS), np.empty(ROWS)
    day = np.datetime64("1960-01-01")
    days = np.full(ROWS, day + int(maturity))
    words = np.full(ROWS, "30/360", object)

    def call(maturity, **named):
        return lambda: zelkovan.price(settlement, maturity, rate, yields, redemption, frequency, **named)

    runs = {
        "batch call": lambda: batch_price(TERMS, yields, ROWS, by_batch),
        "zelkovan.price": call(maturity, out=by_numpy),
        "its raw ufunc": lambda: zelkovan.price.ufuncs[6](settlement, maturity, rate, yields, redemption, frequency),
        "maturities as datetime64[ns]": call(days.astype("M8[ns]")),
        "bases as words": call(maturity, basis=words),
    }
    best = dict.fromkeys(runs, float("inf"))
    for _ in range(ROUNDS):
        for name, run in runs.items():
            best[name] = min(best[name], seconds(run))
    if not np.array_equal(by_batch.view(np.uint64), by_numpy.view(np.uint64)):
        sys.exit("the batch call and NumPy differ")
    for name, taken in best.items():
        print(f"{name:30} {1e9 * taken / ROWS:7.1f} ns a row, {taken / best['batch call']:.2f} of the batch call")
    ratio = best["zelkovan.price"] / best["batch call"]
    print(f"goal for zelkovan.price: <= {GOAL}: {'met' if ratio <= GOAL else 'missed'}")


if __name__ == "__main__":
    main(sys.argv[1])
