"""Raw ufuncs and what they bring: broadcasting, out, where, threads, flat memory."""

import os
import pickle
import threading
import time
import unittest

import numpy as np

import zelkovan
from support import same_bits

RATES = np.linspace(0.001, 0.02, 3000)


def one_by_one(rates):
    return np.array([float(zelkovan.pmt(rate, 360, 200000)) for rate in np.ravel(rates)]).reshape(np.shape(rates))


class Ufuncs(unittest.TestCase):
    def test_one_for_each_number_of_arguments(self):
        self.assertEqual(sorted(zelkovan.pmt.ufuncs), [3, 4, 5])
        self.assertEqual(sorted(zelkovan.price.ufuncs), [6, 7])
        for function in zelkovan.functions.values():
            for count, ufunc in function.ufuncs.items():
                self.assertIsInstance(ufunc, np.ufunc)
                self.assertEqual((ufunc.nin, ufunc.nout, ufunc.types), (count, 1, ["d" * count + "->d"]))
                self.assertIs(pickle.loads(pickle.dumps(ufunc)), ufunc)
            self.assertIs(pickle.loads(pickle.dumps(function)), function)

    def test_raw(self):
        self.assertTrue(same_bits(zelkovan.pmt.ufuncs[3](RATES, 360, 200000), zelkovan.pmt(RATES, 360, 200000)))
        self.assertTrue(np.isnan(zelkovan.pmt.ufuncs[3](0.01, 2.5, 1)))
        self.assertEqual(zelkovan.pmt(0.01, 12, 1), zelkovan.pmt.ufuncs[3](0.01, 12, 1))  # and no refusal is left over

    def test_broadcasting_and_strides(self):
        expected = one_by_one(RATES[:600])
        table = RATES[:600].reshape(20, 30)
        for rates in (table, table.T, table[::-1, ::2], np.asfortranarray(table), RATES[:600][::-1], RATES[:0]):
            self.assertTrue(same_bits(zelkovan.pmt(rates, 360, 200000), one_by_one(rates)))
        grid = zelkovan.pmt(RATES[:600, None], [360, 180], 200000)
        self.assertEqual(grid.shape, (600, 2))
        self.assertTrue(same_bits(grid[:, 0], expected))
        packed = np.zeros(600, [("letter", "S1"), ("rate", "f8")])
        packed["rate"] = RATES[:600]
        self.assertTrue(same_bits(zelkovan.pmt(packed["rate"], 360, 200000), expected))
        self.assertTrue(same_bits(zelkovan.pmt(RATES[:600].astype(">f8"), 360, 200000), expected))
        with self.assertRaises(ValueError):
            zelkovan.pmt([0.1, 0.2], [1, 2, 3], 4)

    def test_scalars(self):
        self.assertIs(type(zelkovan.pmt(0.01, 12, 100)), np.float64)
        self.assertIs(type(zelkovan.pmt(np.array(0.01), 12, 100)), np.float64)
        self.assertIs(type(zelkovan.coupncd("2025-01-20", "2030-11-15", 2)), np.datetime64)

    def test_out(self):
        expected = zelkovan.pmt(RATES, 360, 200000)
        for out in (np.empty(3000), np.empty(6000)[::2]):
            self.assertIs(zelkovan.pmt(RATES, 360, 200000, out=out), out)
            self.assertTrue(same_bits(out, expected))
        again = RATES.copy()
        zelkovan.pmt(again, 360, 200000, out=(again,))
        self.assertTrue(same_bits(again, expected))
        single = zelkovan.pmt(RATES, 360, 200000, out=np.empty(3000, np.float32))
        self.assertEqual(single.tolist(), expected.astype(np.float32).tolist())
        days = np.empty(2, "M8[D]")
        zelkovan.coupncd("2025-01-20", ["2030-11-15", None], 2, out=days)
        self.assertEqual(str(days), "['2025-05-15'        'NaT']")
        for bad in (np.empty(7), np.empty(3000, int), [0.0] * 3000):
            with self.assertRaises((TypeError, ValueError)):
                zelkovan.pmt(RATES, 360, 200000, out=bad)

    def test_where(self):
        wanted = np.arange(3000) % 2 == 0
        nper = np.where(wanted, 360, 2.5)  # the others would be refused
        answers = zelkovan.pmt(RATES, nper, 200000, where=wanted)
        self.assertTrue(same_bits(answers[wanted], zelkovan.pmt(RATES[wanted], 360, 200000)))
        self.assertTrue(np.isnan(answers[~wanted]).all())
        out = np.full(3000, 7.0)
        zelkovan.pmt(RATES, nper, 200000, out=out, where=wanted)
        self.assertTrue((out[~wanted] == 7).all())
        self.assertTrue(same_bits(out[wanted], answers[wanted]))
        with self.assertRaises(zelkovan.RefusedError) as caught:
            zelkovan.pmt(RATES, nper, 200000, out=out, where=~wanted)
        self.assertEqual(caught.exception.row, (1,))


class Threads(unittest.TestCase):
    def test_same_bits(self):
        rates = np.linspace(0.001, 0.02, 50_000)
        expected = zelkovan.pmt(rates, 360, 200000)
        nper = np.where(np.arange(50_000) % 100 == 0, 2.5, 360)
        same = []

        def run(number):
            with zelkovan.errstate(refused="nan"):
                for _ in range(5):
                    answers = zelkovan.pmt(rates, nper if number % 2 else 360, 200000)
                    there = ~np.isnan(answers)
                    same.append((int(there.sum()), same_bits(answers[there], expected[there])))

        threads = [threading.Thread(target=run, args=(i,)) for i in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(sorted(same), [(49_500, True)] * 10 + [(50_000, True)] * 10)

    def test_others_run_during_a_loop(self):
        """With the lock held the other thread would stand still for as long as the call takes."""
        yields = np.linspace(0.01, 0.1, 1_000_000)
        shares = []
        for _ in range(5):
            took = []

            def run():
                start = time.perf_counter()
                zelkovan.price.ufuncs[6](23761.0, 25886.0, 0.05, yields, 100.0, 2.0)
                took.append(time.perf_counter() - start)

            thread = threading.Thread(target=run)
            longest, last = 0.0, time.perf_counter()
            thread.start()
            while True:
                ended = bool(took)  # looked at before the clock, so that the last standstill counts
                now = time.perf_counter()
                longest, last = max(longest, now - last), now
                if ended:
                    break
            thread.join()
            shares.append(longest / took[0])
            if shares[-1] < 0.5:
                break
        self.assertLess(min(shares), 0.5)


class Memory(unittest.TestCase):
    @staticmethod
    def resident():
        with open("/proc/self/statm", encoding="ascii") as counts:
            return int(counts.read().split()[1]) * 4096

    def test_stays_flat(self):
        """Ten times 200,000 rows, of which each kind of verdict is one; then ten thousand single calls and lists."""
        rates = np.linspace(0.001, 0.02, 200_000)
        rates[::5] = np.nan
        nper = np.where(np.arange(200_000) % 7 == 0, 2.5, 360)
        flows = np.tile([-1000.0, 300, 400, 500], (1000, 1))

        def work():
            with zelkovan.errstate(refused="nan"):
                zelkovan.pmt(rates, nper, 200000)
                zelkovan.irr(flows)
                zelkovan.irr(-abs(flows))
            for _ in range(1000):
                with self.assertRaises(zelkovan.RefusedError):
                    zelkovan.price("2025-01-20", "2030-11-15", 0.05, 0.06, 100, 2, "ACT")

        for _ in range(3):
            work()
        if "SANITIZED" in os.environ:  # what was freed is kept for a while
            return
        before = self.resident()
        for _ in range(10):
            work()
        self.assertLess(self.resident() - before, 4_000_000)


if __name__ == "__main__":
    unittest.main()
