"""Calculations of lists: one, tables, ragged, groups."""

import pickle
import unittest

import numpy as np

import zelkovan
from support import same_bits

FLOWS = [-1000.0, 300, 400, 500, 200]
DAYS = ["2023-01-01", "2024-01-01", "2025-01-01"]


class Lists(unittest.TestCase):
    def test_by_hand(self):
        # 110 / 1.1 and 121 / 1.1^2 are 100 each; 100 * 1.5 * 2 is exact in binary; 100 becomes 110 in a year of 365 days.
        self.assertAlmostEqual(zelkovan.npv(0.1, [110, 121]), 200, places=12)
        self.assertEqual(zelkovan.fvschedule(100, [0.5, 1]), 300)
        self.assertAlmostEqual(zelkovan.irr([-100, 110]), 0.1, places=12)
        self.assertAlmostEqual(zelkovan.xirr([-100, 110], DAYS[:2]), 0.1, places=9)
        self.assertAlmostEqual(zelkovan.xnpv(0.1, [-100, 110], DAYS[:2]), 0, places=12)
        # MIRR of -100, 121 over one period is 21 %, whatever the rates are.
        self.assertAlmostEqual(zelkovan.mirr([-100, 121], 0.1, 0.3), 0.21, places=12)

    def test_empty(self):
        self.assertEqual(zelkovan.npv(0.1), 0)
        self.assertEqual(zelkovan.npv(0.1, []), 0)
        self.assertEqual(zelkovan.fvschedule(100, []), 100)
        self.assertEqual(zelkovan.npv([0.1, 0.2], []).tolist(), [0, 0])
        self.assertEqual(zelkovan.irr(np.empty((0, 3))).shape, (0,))
        with self.assertRaises(zelkovan.RefusedError):
            zelkovan.irr([])

    def test_one_table_ragged_and_higher(self):
        more = [-500.0, 100, 600, 7, 8]
        expected = [zelkovan.irr(FLOWS), zelkovan.irr(more)]
        table = np.array([FLOWS, more])
        for rows in (table, [FLOWS, more], np.asfortranarray(table), table.astype(int), table.astype(">f8")):
            self.assertTrue(same_bits(zelkovan.irr(rows), expected))
        self.assertTrue(same_bits(zelkovan.irr(table.T.copy().T), expected))
        self.assertTrue(same_bits(zelkovan.irr(table[None, :, None]), np.reshape(expected, (1, 2, 1))))
        short = zelkovan.irr(FLOWS[:4])
        ragged = [np.array(FLOWS), FLOWS[:4], tuple(more)]
        self.assertTrue(same_bits(zelkovan.irr(ragged), [expected[0], short, expected[1]]))
        objects = np.empty(3, object)
        objects[:] = ragged
        self.assertTrue(same_bits(zelkovan.irr(objects), [expected[0], short, expected[1]]))

    def test_numbers_beside_lists(self):
        rates = np.array([0.1, 0.2, 0.3])
        expected = [zelkovan.npv(rate, FLOWS) for rate in rates]
        self.assertTrue(same_bits(zelkovan.npv(rates, FLOWS), expected))
        grid = zelkovan.npv(rates[:, None], [FLOWS, FLOWS[::-1]])
        self.assertEqual(grid.shape, (3, 2))
        self.assertTrue(same_bits(grid[:, 0], expected))
        worth = zelkovan.xnpv(0.1, [[-1000, 600, 600], [-900, 600, 600]], np.array(DAYS, "M8[ns]"))
        self.assertTrue(same_bits(worth[1], zelkovan.xnpv(0.1, [-900, 600, 600], DAYS)))
        with self.assertRaises(ValueError):
            zelkovan.npv([0.1, 0.2], [FLOWS] * 3)

    def test_missing_in_any_place(self):
        for i in range(len(FLOWS)):
            flows = list(FLOWS)
            flows[i] = np.nan
            self.assertTrue(np.isnan(zelkovan.irr(flows)))
            flows[i] = None
            answers = zelkovan.irr([flows, FLOWS])
            self.assertTrue(np.isnan(answers[0]))
            self.assertTrue(same_bits(answers[1], zelkovan.irr(FLOWS)))
        self.assertTrue(np.isnan(zelkovan.npv(np.nan, FLOWS)))
        self.assertTrue(np.isnan(zelkovan.xnpv(0.1, [1, 2], [DAYS[0], None])))
        self.assertTrue(np.isnan(zelkovan.mirr(FLOWS, 0.1, np.nan)))

    def test_refusals(self):
        faults = [
            (lambda: zelkovan.npv(0, FLOWS), "rate", 1, None, ()),
            (lambda: zelkovan.mirr([FLOWS, FLOWS], 0.1, [0.1, -1]), "reinvestRate", 3, None, (1,)),
            (lambda: zelkovan.mirr(np.arange(-1.0, 999), -5, 0.1), "financeRate", 2, None, ()),
            (lambda: zelkovan.xnpv(0.1, [[1, 2], [3, 4]], [[1, 2], [3, 4.5]]), "dates", 3, 2, (1,)),
            (lambda: zelkovan.irr([[-1, 2], [1, 2]]), None, None, None, (1,)),
        ]
        for call, argument, position, element, row in faults:
            with self.assertRaises(zelkovan.RefusedError) as caught:
                call()
            error = caught.exception
            place = (argument, position, element, row)
            self.assertEqual((error.argument, error.position, error.element, error.row), place, error)
            again = pickle.loads(pickle.dumps(error))
            self.assertEqual((again.argument, again.position, again.element, again.row), place)
        with zelkovan.errstate(refused="nan"):
            self.assertEqual(np.isnan(zelkovan.irr([[-1, 2], [1, 2]])).tolist(), [False, True])

    def test_lists_that_do_not_pair_up(self):
        """Five values and dates in a row could be read as two of each and a guess."""
        with self.assertRaisesRegex(zelkovan.RefusedError, r"XIRR: 3 values, but 2 dates \(row 1\)"):
            zelkovan.xirr([[-100, 110], [-100, 60, 60]], DAYS[:2])

    def test_each_row_as_if_alone(self):
        """256 rows are calculated together where none is odd: of these every block but the first has odd ones, a missing
        value, a day in no year, lists that do not pair up, a part of a day, a rate that is none."""
        draw = np.random.default_rng(1)
        sizes = draw.integers(1, 12, 900)
        values = [draw.uniform(-900, 1000, size) for size in sizes]
        days = [draw.integers(20000, 30000, size).astype(float) for size in sizes]
        values[300][0] = np.nan
        days[301][-1] = 20240115
        days[600] = np.append(days[600], 25000.0)
        days[601][0] += 0.5
        rates = draw.uniform(-0.5, 1, 900)
        rates[899] = np.nan
        with zelkovan.errstate(refused="nan"):
            answers = zelkovan.xnpv(rates, values, days), zelkovan.xirr(values, days)
            alone = [(zelkovan.xnpv(*row), zelkovan.xirr(*row[1:])) for row in zip(rates, values, days)]
        self.assertTrue(same_bits(answers, np.transpose(alone)))
        self.assertEqual(np.flatnonzero(np.isnan(answers[0])).tolist(), [300, 301, 600, 601, 899])
        self.assertLess(np.isnan(answers[1]).sum(), 600)

    def test_what_is_no_list(self):
        for value in (5.0, "abc", [[1, 2], 3], [[[1], [2, 3]]]):
            with self.assertRaises((TypeError, ValueError)):
                zelkovan.irr(value)


class Groups(unittest.TestCase):
    KEYS = ["b", "a", "b", "b", "a", "b", "c", "a", "c"]
    AMOUNTS = np.array([-1000.0, -500, 300, 400, 200, 500, -10, 400, 11])

    def test_groups(self):
        keys, answers = zelkovan.irr(self.AMOUNTS, by=self.KEYS)
        self.assertEqual(keys.tolist(), ["a", "b", "c"])
        expected = [zelkovan.irr(flows) for flows in ([-500, 200, 400], [-1000, 300, 400, 500], [-10, 11])]
        self.assertTrue(same_bits(answers, expected))
        _, answers = zelkovan.npv([0.1, 0.2, 0.3], self.AMOUNTS, by=self.KEYS)
        self.assertTrue(same_bits(answers[2], zelkovan.npv(0.3, [-10, 11])))

    def test_two_lists(self):
        dates = np.datetime64("2020-01-01") + np.arange(9) * np.timedelta64(200, "D")
        keys, answers = zelkovan.xirr(self.AMOUNTS, dates, by=np.array(self.KEYS))
        of_c = [6, 8]
        self.assertTrue(same_bits(answers[2], zelkovan.xirr(self.AMOUNTS[of_c], dates[of_c])))

    def test_refused_groups_are_named(self):
        with self.assertRaisesRegex(zelkovan.RefusedError, r"^IRR: no answer: .* \(group b\)$"):
            zelkovan.irr([-1, 1, 2, 2], by=["a", "b", "a", "b"])

    def test_keys(self):
        keys, answers = zelkovan.irr([], by=[])
        self.assertEqual((len(keys), len(answers)), (0, 0))
        for by in ([1, 2], [[1] * 9], 3):
            with self.assertRaises((TypeError, ValueError)):
                zelkovan.irr(self.AMOUNTS, by=by)


if __name__ == "__main__":
    unittest.main()
