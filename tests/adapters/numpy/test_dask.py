"""dask's arrays and Series, on two worker processes: lazy, and NumPy's bits."""

import unittest
import warnings

import dask
import dask.array as da
import dask.dataframe as dd
import numpy as np
import pandas as pd
from dask.distributed import Client, LocalCluster

import zelkovan
from support import same_bits

ROWS = 20_000
RANDOM = np.random.default_rng(1)
YIELDS = RANDOM.uniform(0.01, 0.1, ROWS)
FRAME = pd.DataFrame(
    {
        "maturity": np.datetime64("2026-11-15", "ns") + np.arange(ROWS) % 9000 * np.timedelta64(1, "D"),
        "yield": YIELDS,
        "basis": np.array(["ACTUAL", "30/360", "ACT/365"])[np.arange(ROWS) % 3],
    }
)
FLOWS = RANDOM.uniform(100, 200, (60, 6))
FLOWS[:, 0] = -700


def price(yields, maturity="2030-11-15", basis="ACTUAL"):
    return zelkovan.price("2025-01-20", maturity, 0.05, yields, 100, 2, basis)


class Dask(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        dask.config.set({"distributed.worker.daemon": True})
        cls.cluster = LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None, silence_logs=50)
        cls.client = Client(cls.cluster)

    @classmethod
    def tearDownClass(cls):
        cls.client.close()
        cls.cluster.close()

    def test_two_processes(self):
        self.assertEqual(len(self.client.run(zelkovan.geterr)), 2)

    def test_arrays(self):
        lazy = price(da.from_array(YIELDS, chunks=3000))
        self.assertIsInstance(lazy, da.Array)
        self.assertEqual((lazy.dtype, lazy.shape, lazy.chunksize), (np.dtype("f8"), (ROWS,), (3000,)))
        self.assertTrue(same_bits(lazy.compute(), price(YIELDS)))
        grid = price(da.from_array(YIELDS[:100, None], chunks=30), basis=["ACTUAL", "30/360"])
        self.assertTrue(same_bits(grid.compute(), price(YIELDS[:100, None], basis=["ACTUAL", "30/360"])))

    def test_raw_ufuncs(self):
        lazy = zelkovan.price.ufuncs[6](23761.0, 25886.0, 0.05, da.from_array(YIELDS, chunks=3000), 100.0, 2.0)
        self.assertIsInstance(lazy, da.Array)
        self.assertTrue(same_bits(lazy.compute(), zelkovan.price(23761, 25886, 0.05, YIELDS, 100, 2)))

    def test_dates(self):
        lazy = zelkovan.coupncd("2025-01-20", da.from_array(FRAME.maturity.to_numpy(), chunks=7000), 2)
        self.assertEqual(lazy.dtype, np.dtype("M8[D]"))
        np.testing.assert_array_equal(lazy.compute(), zelkovan.coupncd("2025-01-20", FRAME.maturity.to_numpy(), 2))

    def test_frames(self):
        frame = dd.from_pandas(FRAME, npartitions=4)
        lazy = price(frame["yield"], frame.maturity, frame.basis)
        self.assertIsInstance(lazy, dd.Series)
        expected = price(FRAME["yield"], FRAME.maturity, FRAME.basis)
        answers = lazy.compute()
        self.assertTrue(answers.index.equals(expected.index))
        self.assertTrue(same_bits(answers, expected))
        days = zelkovan.coupncd("2025-01-20", frame.maturity, 2)
        self.assertEqual(days.dtype, np.dtype("M8[ns]"))
        pd.testing.assert_series_equal(days.compute(), zelkovan.coupncd("2025-01-20", FRAME.maturity, 2))
        with self.assertRaises(TypeError):
            price(frame["yield"], basis=FRAME.basis.to_numpy())

    def test_refusals(self):
        rates = da.from_array([0.01, 0.02, 0.03], chunks=2)
        with self.assertRaises(zelkovan.RefusedError) as caught:
            zelkovan.pmt(rates, 2.5, 100).compute()
        self.assertEqual((caught.exception.argument, caught.exception.row), ("nper", (0,)))
        with zelkovan.errstate(refused="nan"):
            lazy = zelkovan.pmt(rates, 2.5, 100)
        self.assertTrue(np.isnan(lazy.compute()).all())
        for extra in ({"out": np.empty(3)}, {"where": [True] * 3}):
            with self.assertRaises(TypeError):
                zelkovan.pmt(rates, 12, 100, **extra)

    def test_lists(self):
        lazy = zelkovan.irr(da.from_array(FLOWS, chunks=(20, 2)))
        self.assertIsInstance(lazy, da.Array)
        self.assertTrue(same_bits(lazy.compute(), zelkovan.irr(FLOWS)))
        rates = da.from_array([0.1, 0.2], chunks=1)
        self.assertTrue(same_bits(zelkovan.npv(rates, FLOWS[0]).compute(), zelkovan.npv([0.1, 0.2], FLOWS[0])))

    def test_lists_of_frames(self):
        flows = pd.DataFrame({"amount": FLOWS.ravel(), "deal": np.repeat(np.arange(60), 6)})
        frame = dd.from_pandas(flows, npartitions=7)
        worth = zelkovan.npv(0.1, frame.amount)
        self.assertTrue(dask.is_dask_collection(worth))
        self.assertTrue(same_bits(worth.compute(), zelkovan.npv(0.1, flows.amount)))
        rates = zelkovan.irr(frame.amount, by=frame.deal)
        self.assertIsInstance(rates, dd.Series)
        answers = rates.compute()
        self.assertEqual(answers.index.name, "deal")
        self.assertTrue(same_bits(answers, zelkovan.irr(FLOWS)))


if __name__ == "__main__":
    with warnings.catch_warnings():
        unittest.main()
