"""Series and data frames: the index is kept; pandas' own types and missing values."""

import unittest

import numpy as np
import pandas as pd

import zelkovan
from support import same_bits

INDEX = pd.Index(["x", "y", "z"], name="bond")
MATURITY = pd.Series(pd.to_datetime(["2030-11-15", None, "2031-08-31"]), index=INDEX)


class Series(unittest.TestCase):
    def test_index_is_kept(self):
        rates = pd.Series([0.01, 0.02, np.nan], index=INDEX)
        answers = zelkovan.pmt(rates, 12, 100)
        self.assertIsInstance(answers, pd.Series)
        self.assertTrue(answers.index.equals(INDEX))
        self.assertTrue(same_bits(answers, zelkovan.pmt(rates.to_numpy(), 12, 100)))
        self.assertIsInstance(zelkovan.pmt(rates, np.array([12, 24, 36]), rates), pd.Series)

    def test_dates(self):
        answers = zelkovan.coupncd("2025-01-20", MATURITY, 2)
        expected = pd.Series(pd.to_datetime(["2025-05-15", None, "2025-02-28"]), index=INDEX)
        pd.testing.assert_series_equal(answers, expected)
        zoned = MATURITY.dt.tz_localize("Europe/Zurich")
        pd.testing.assert_series_equal(zelkovan.coupncd("2025-01-20", zoned, 2), expected)
        stamp = pd.Timestamp("2025-01-20", tz="Asia/Tokyo")
        pd.testing.assert_series_equal(zelkovan.coupncd(stamp, MATURITY.astype(object), 2), expected)
        self.assertTrue(np.isnat(zelkovan.coupncd(pd.NaT, "2030-11-15", 2)))

    def test_dates_that_pandas_cannot_count(self):
        # Beyond 2262 the nanoseconds of a Timestamp end.
        answers = zelkovan.coupncd(pd.Series(["2500-01-20"]), "2530-11-15", 2)
        self.assertEqual(str(answers[0]), "2500-05-15")

    def test_types(self):
        plain = zelkovan.npv  # of lists
        numbers = [0.01, None, 0.03]
        expected = zelkovan.pmt(numbers, 12, 100)
        for form in (
            pd.Series(numbers, dtype="Float64"),
            pd.Series([0.01, pd.NA, 0.03], dtype=object),
            pd.array(numbers, dtype="Float64"),
            pd.Index(numbers),
        ):
            self.assertTrue(same_bits(np.asarray(zelkovan.pmt(form, 12, 100)), expected), form)
        self.assertTrue(np.isnan(plain(0.1, pd.Series([1, None], dtype="Int64"))))
        words = ["ACTUAL", None, "30/360"]
        expected = zelkovan.coupdays("2025-01-20", "2030-11-15", 2, words)
        for form in (pd.Series(words), pd.Series(words, dtype="category"), pd.Series(words, dtype="string")):
            self.assertTrue(same_bits(zelkovan.coupdays("2025-01-20", "2030-11-15", 2, form), expected), form.dtype)

    def test_indexes_must_agree(self):
        one, other = pd.Series([1.0, 2.0]), pd.Series([1.0, 2.0], index=[1, 0])
        with self.assertRaisesRegex(ValueError, "align them first"):
            zelkovan.pmt(0.01, one, other)
        with self.assertRaisesRegex(ValueError, "does not fit"):
            zelkovan.pmt(np.ones((2, 2)) / 100, one, 3)

    def test_refusals(self):
        with self.assertRaises(zelkovan.RefusedError) as caught:
            zelkovan.pmt(0.01, pd.Series([12, 2.5], index=["a", "b"]), 3)
        self.assertEqual(caught.exception.row, (1,))


class Lists(unittest.TestCase):
    FRAME = pd.DataFrame({"deal": ["w", "m", "w", "m", "w"], "amount": [-100.0, -50, 60, 60, 60]})

    def test_groups(self):
        answers = zelkovan.irr(self.FRAME.amount, by=self.FRAME.deal)
        self.assertEqual((answers.index.tolist(), answers.index.name), (["m", "w"], "deal"))
        self.assertTrue(same_bits(answers, [zelkovan.irr([-50, 60]), zelkovan.irr([-100, 60, 60])]))

    def test_rows_without_a_key_are_left_out(self):
        keys = self.FRAME.deal.where(self.FRAME.deal == "w")
        self.assertEqual(zelkovan.irr(self.FRAME.amount, by=keys).index.tolist(), ["w"])

    def test_frames_and_series_of_lists(self):
        frame = pd.DataFrame([[-100.0, 60, 60], [-50, 60, 70]], index=["w", "m"])
        answers = zelkovan.irr(frame)
        self.assertEqual(answers.index.tolist(), ["w", "m"])
        self.assertTrue(same_bits(answers, zelkovan.irr(frame.to_numpy())))
        lists = pd.Series([[-100.0, 60, 60], [-50, 60]], index=["w", "m"])
        self.assertTrue(same_bits(zelkovan.irr(lists), [zelkovan.irr(flows) for flows in lists]))
        self.assertEqual(type(zelkovan.irr(self.FRAME.amount)), np.float64)

    def test_indexes_must_agree(self):
        with self.assertRaisesRegex(ValueError, "align them first"):
            zelkovan.irr(self.FRAME.amount, by=self.FRAME.deal.iloc[::-1])


if __name__ == "__main__":
    unittest.main()
