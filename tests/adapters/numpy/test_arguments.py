"""What a calculation takes: dates, words, missing values, how many; what it gives back."""

import datetime
import decimal
import unittest

import numpy as np

import zelkovan
from support import same_bits

BOND = {"maturity": "2030-11-15", "rate": 0.05, "yield_": 0.06, "redemption": 100, "frequency": 2}
# Days since 1960-01-01: 65 years of 365 and the 17 leap days of 1960, 1964, ... 2024; then 19 days of January.
SETTLEMENT = 65 * 365 + 17 + 19


def price(settlement, **named):
    return zelkovan.price(settlement, **{**BOND, **named})


class Dates(unittest.TestCase):
    def test_every_form_of_a_day(self):
        day = datetime.date(2025, 1, 20)
        forms = [
            day,
            "2025-01-20",
            float(SETTLEMENT),
            np.int32(SETTLEMENT),
            decimal.Decimal(SETTLEMENT),
            datetime.datetime(2025, 1, 20),
            datetime.datetime(2025, 1, 20, tzinfo=datetime.timezone.utc),
            *(np.datetime64("2025-01-20", unit) for unit in ("D", "h", "m", "s", "ms", "us", "ns", "10s")),
        ]
        expected = price(SETTLEMENT)
        for form in forms:
            self.assertTrue(same_bits(price(form), expected), form)
            self.assertTrue(same_bits(price([form, form]), [expected] * 2), form)

    def test_coarse_units_and_days_before_1960(self):
        # By hand: 1959-12-01 is day -31, 1958-01-01 day -730, 1956-01-01 day -1461; 1970-01-01 is a Thursday.
        days = [("1959-12", "M", -31), ("1958", "Y", -730), ("1956", "Y", -1461), ("1969-12-18", "W", 3639)]
        for text, unit, day in days:
            form = np.datetime64(text, unit)
            self.assertEqual(zelkovan._convert.dates(form, ""), day, form)

    def test_part_of_a_day(self):
        # A quarter of 182 days: noon counts half a day for a Treasury bill, and makes no day of a coupon.
        noon = np.datetime64("2025-01-20T12:00")
        self.assertTrue(
            same_bits(
                zelkovan.tbillprice(noon, "2025-07-14", 0.05), zelkovan.tbillprice(SETTLEMENT + 0.5, "2025-07-14", 0.05)
            )
        )
        self.assertTrue(same_bits(zelkovan._convert.dates(datetime.datetime(2025, 1, 20, 6), ""), SETTLEMENT + 0.25))
        with self.assertRaisesRegex(zelkovan.RefusedError, r"argument 1 \(settlement\): .* is not a whole number"):
            price(noon)

    def test_what_is_no_date(self):
        for text in ("2025-02-29", "20.1.2025", "", "2025-1-20", "today", "2025-01-20T00:00", "\ud800"):
            with self.assertRaisesRegex(ValueError, r"PRICE: argument 1 \(settlement\): .* is not a date"):
                price(text)

    def test_dates_come_back(self):
        # Coupons of a bond that ends on 15 November fall on the 15ths of May and November.
        answer = zelkovan.coupncd("2025-01-20", "2030-11-15", 2)
        self.assertEqual(answer, np.datetime64("2025-05-15"))
        self.assertEqual(np.asarray(answer).dtype, np.dtype("M8[D]"))
        answers = zelkovan.couppcd(np.array(["2025-01-20", "NaT", "1959-06-01"], "M8[s]"), "2030-11-15", 2)
        expected = np.array(["2024-11-15", "NaT", "1959-05-15"], "M8[D]")
        self.assertEqual(answers.dtype, expected.dtype)
        np.testing.assert_array_equal(answers, expected)


class Bases(unittest.TestCase):
    WORDS = {"30/360": 0, "ACTUAL": 1, "act/360": 2, " Act / 365 ": 3, "eu30/360": 4, "3": 3, "4.0": 4}

    def test_words_are_codes(self):
        for word, code in self.WORDS.items():
            self.assertTrue(same_bits(price(SETTLEMENT, basis=word), price(SETTLEMENT, basis=code)), word)
        expected = price(SETTLEMENT, basis=list(self.WORDS.values()))
        self.assertGreater(len(set(expected.tolist())), 3)
        self.assertTrue(same_bits(price(SETTLEMENT, basis=list(self.WORDS)), expected))
        self.assertTrue(same_bits(price(SETTLEMENT, basis=np.array(list(self.WORDS))), expected))
        self.assertEqual(zelkovan.basis_words, ("30/360", "ACTUAL", "ACT/360", "ACT/365", "EU30/360"))

    def test_words_and_codes_mixed(self):
        mixed = np.array(["ACTUAL", 2, None, np.nan, "2", np.float64(4)], object)
        self.assertTrue(same_bits(price(SETTLEMENT, basis=mixed), price(SETTLEMENT, basis=[1, 2, np.nan, np.nan, 2, 4])))

    def test_left_out_is_30_360(self):
        self.assertTrue(same_bits(price(SETTLEMENT), price(SETTLEMENT, basis="30/360")))
        self.assertTrue(same_bits(price(SETTLEMENT, basis=...), price(SETTLEMENT)))

    def test_unknown_words(self):
        for word in ("ACTUAL.", "", "nan", "ACTUAL" * 50, "Zin\u017fen", "\ud800"):
            with self.assertRaises(zelkovan.RefusedError) as caught:
                price(SETTLEMENT, basis=[0, word])
            self.assertEqual((caught.exception.argument, caught.exception.row), ("basis", (1,)))
            self.assertIn("is not a day-count basis", caught.exception.sentence)


class Missing(unittest.TestCase):
    def test_each_argument(self):
        checked = 0
        for function in zelkovan.functions.values():
            if not function.ufuncs:
                continue
            for i in range(len(function.names)):
                for missing in (np.nan, None, np.datetime64("NaT"), np.ma.masked_array([1.0], [True])):
                    if isinstance(missing, np.datetime64) and "date" not in function.parameters[i]["kind"]:
                        continue
                    arguments = [1.0] * len(function.names)
                    arguments[i] = missing
                    answer = np.asarray(function(*arguments))
                    self.assertTrue(np.isnat(answer).all() if function.gives_dates else np.isnan(answer).all())
                    checked += 1
        self.assertGreater(checked, 700)

    def test_rows_between(self):
        rates = np.linspace(0.01, 0.05, 2001)
        rates[::3] = np.nan
        answers = zelkovan.pmt(rates, 360, 200000)
        self.assertTrue(np.isnan(answers[::3]).all())
        self.assertEqual(np.isnan(answers).sum(), len(rates[::3]))
        self.assertTrue(same_bits(answers[1::3], zelkovan.pmt(rates[1::3], 360, 200000)))
        self.assertEqual(set(answers[::3].view("u8").tolist()), {np.float64(np.nan).view("u8")})

    def test_rows_of_several_blocks(self):
        """Loops take 2048 rows at a time. A row's answer is that of the row alone, also where pmt is missing, of which
        FV itself would make 0."""
        payments = np.linspace(-200, -100, 7001)
        payments[[2500, 2501, 7000]] = np.nan
        alone = [zelkovan.fv(0.01, 12, payment, -5) for payment in payments[::50]]
        for rows in payments, np.repeat(payments, 2)[::2], payments[::-1][::-1]:
            answers = zelkovan.fv(0.01, 12, rows, -5)
            self.assertTrue(same_bits(answers[::50], alone))
            self.assertEqual(np.flatnonzero(np.isnan(answers)).tolist(), [2500, 2501, 7000])
        written = payments.copy()
        zelkovan.fv(0.01, 12, written, -5, out=written)
        self.assertTrue(same_bits(written[::50], alone))

    def test_a_missing_value_comes_before_a_fault(self):
        self.assertTrue(np.isnan(zelkovan.pmt(np.nan, 2.5, 1)))

    def test_a_search_without_a_rate(self):
        self.assertTrue(np.isnan(zelkovan.xirr([100, 100], ["2023-01-01", "2024-01-01"])))


class Count(unittest.TestCase):
    def test_too_few_too_many_and_unknown(self):
        calls = [
            ((), {}, "lacks 'rate'"),
            ((0.1, 2), {}, "lacks 'pv'"),
            ((0.1, 2, 3, 4, 5, 6), {}, "at most 5 arguments, not 6"),
            ((0.1, 2, 3), {"pv": 3}, "'pv' twice"),
            ((0.1, 2, 3), {"price": 3}, "no argument 'price'"),
            ((0.1, 2, 3), {"type": 1}, "needs 'fv' where 'type' is given"),
        ]
        for arguments, named, words in calls:
            with self.assertRaisesRegex(TypeError, words):
                zelkovan.pmt(*arguments, **named)

    def test_every_number_of_arguments(self):
        for function in zelkovan.functions.values():
            with self.assertRaises(TypeError):
                function()
            with self.assertRaises(TypeError):
                function(*[1.0] * (len(function.names) + 1))

    def test_what_is_no_number(self):
        for value in ("0.1", b"x", [0.1, "x"], 1j, datetime.date(2025, 1, 1), np.timedelta64(1, "D"), object(), [[1], [1, 2]]):
            with self.assertRaises((TypeError, ValueError)) as caught:
                zelkovan.pmt(value, 12, 100)
            self.assertNotIsInstance(caught.exception, zelkovan.RefusedError)

    def test_signed_zeros_of_objects(self):
        array = np.array([0.0, -0.0, 0.0], object)
        self.assertTrue(same_bits(zelkovan._convert.numbers(array, ""), [0.0, -0.0, 0.0]))


if __name__ == "__main__":
    unittest.main()
