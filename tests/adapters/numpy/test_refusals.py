"""What refused calls do, where that is set, and that nothing of it is left behind."""

import contextvars
import pickle
import threading
import unittest
import warnings

import numpy as np

import zelkovan

SENTENCE = "PMT: argument 2 (nper): 2.5 is not a whole number"


def refused():
    return zelkovan.pmt(0.01, [12, 2.5, 24, 3.5], 100)


class Refusals(unittest.TestCase):
    def test_raise(self):
        with self.assertRaises(zelkovan.RefusedError) as caught:
            refused()
        error = caught.exception
        self.assertIsInstance(error, ValueError)
        self.assertEqual((error.calculation, error.argument, error.position, error.row), ("PMT", "nper", 2, (1,)))
        self.assertEqual((error.sentence, str(error)), (SENTENCE, SENTENCE + " (row 1)"))

    def test_one_row_and_tables(self):
        with self.assertRaises(zelkovan.RefusedError) as caught:
            zelkovan.pmt(0.01, 2.5, 100)
        self.assertEqual((caught.exception.row, str(caught.exception)), ((), SENTENCE))
        with self.assertRaises(zelkovan.RefusedError) as caught:
            zelkovan.pmt(0.01, np.array([[1, 2, 3], [4, 5, 2.5]]).T, 100)
        self.assertEqual((caught.exception.row, str(caught.exception)), ((2, 1), SENTENCE + " (row (2, 1))"))

    def test_no_argument_at_fault(self):
        with self.assertRaises(zelkovan.RefusedError) as caught:
            zelkovan.irr([100, 100])
        error = caught.exception
        self.assertEqual((error.calculation, error.argument, error.position, error.row), ("IRR", None, None, ()))

    def test_warn(self):
        with zelkovan.errstate(refused="warn"), warnings.catch_warnings(record=True) as caught:
            warnings.simplefilter("always")
            answers = refused()
        self.assertEqual(np.isnan(answers).tolist(), [False, True, False, True])
        self.assertEqual(len(caught), 1)
        warning = caught[0].message
        self.assertEqual((warning.count, warning.sentence, warning.first.row), (2, SENTENCE, (1,)))
        self.assertEqual(str(warning), f"2 rows are refused, the first: {SENTENCE} (row 1)")
        self.assertEqual(caught[0].filename, __file__)

    def test_nan(self):
        with zelkovan.errstate(refused="nan"), warnings.catch_warnings():
            warnings.simplefilter("error")
            answers = refused()
            day = zelkovan.coupncd("2025-01-20", "2030-11-15", 2.5)
        self.assertEqual(np.isnan(answers).tolist(), [False, True, False, True])
        self.assertEqual(int(answers[1].view("u8")), int(np.float64(np.nan).view("u8")))
        self.assertTrue(np.isnat(day))

    def test_errors_and_warnings_travel(self):
        try:
            refused()
        except zelkovan.RefusedError as error:
            copy = pickle.loads(pickle.dumps(error))
            self.assertEqual((str(copy), copy.row, copy.argument), (str(error), (1,), "nper"))
            warning = pickle.loads(pickle.dumps(zelkovan.RefusedWarning(2, error)))
            self.assertEqual((warning.count, warning.sentence), (2, SENTENCE))


class Setting(unittest.TestCase):
    def tearDown(self):
        zelkovan.seterr(refused="raise")

    def test_nested_and_left_by_an_error(self):
        with zelkovan.errstate(refused="nan"):
            with self.assertRaises(ZeroDivisionError), zelkovan.errstate(refused="warn"):
                self.assertEqual(zelkovan.geterr(), {"refused": "warn"})
                raise ZeroDivisionError
            self.assertEqual(zelkovan.geterr(), {"refused": "nan"})
        self.assertEqual(zelkovan.geterr(), {"refused": "raise"})

    def test_decorator(self):
        @zelkovan.errstate(refused="nan")
        def depth(n):
            return [zelkovan.geterr()["refused"]] + (depth(n - 1) if n else [])

        self.assertEqual(depth(2), ["nan"] * 3)
        self.assertEqual(zelkovan.geterr(), {"refused": "raise"})

    def test_set(self):
        self.assertEqual(zelkovan.seterr(refused="nan"), {"refused": "raise"})
        self.assertEqual(np.isnan(refused()).sum(), 2)
        for way in ("ignore", None, "RAISE"):
            with self.assertRaises(ValueError):
                zelkovan.errstate(refused=way)

    def test_threads_and_contexts_have_their_own(self):
        seen = []
        with zelkovan.errstate(refused="nan"):
            thread = threading.Thread(target=lambda: seen.append(zelkovan.geterr()["refused"]))
            thread.start()
            thread.join()
            contextvars.copy_context().run(zelkovan.seterr, refused="warn")
            seen.append(zelkovan.geterr()["refused"])
        self.assertEqual(seen, ["raise", "nan"])


class AnswersThatDoNotHold(unittest.TestCase):
    """A search that ended where nothing is solved, and an infinite answer, are refused calls."""

    def test_raise(self):
        with self.assertRaisesRegex(zelkovan.RefusedError, "RATE: does not solve: the search ended at the lowest rate"):
            zelkovan.rate(120, -200, 0, 30000)
        with self.assertRaisesRegex(zelkovan.RefusedError, "XIRR: does not solve: .* XNPV at this rate is 100, not 0"):
            zelkovan.xirr([100.0], ["2019-01-01"])
        with self.assertRaisesRegex(zelkovan.RefusedError, "PMT: too large: "):
            zelkovan.pmt(0.01, 12, np.inf)

    def test_nan(self):
        with zelkovan.errstate(refused="nan"):
            rates = zelkovan.rate(np.array([60, 120]), np.array([-400, -200]), np.array([20000, 0]), np.array([0, 30000]))
            self.assertAlmostEqual(rates[0], 0.00618341316125396)
            self.assertTrue(np.isnan(rates[1]))
            self.assertTrue(np.isnan(zelkovan.irr([-2.0, 72, 5, 76, 28, 73, -1e12])))


HOSTILE = "a\nb\x1b[2Jc\x9b\u202e"
SHOWN = r"a\nb\x1b[2Jc\x9b\u202e"  # as Python writes it
SHOWN_BY_US = r"a\nb\x1B[2Jc\u009B\u202E"


class WhatOthersWrote(unittest.TestCase):
    """Sentences show it without control characters, and of what is long the beginning."""

    def sentences(self, text):
        def of(function, *arguments, **named):
            with self.assertRaises((TypeError, ValueError)) as caught:
                function(*arguments, **named)
            return str(caught.exception)

        return [
            of(zelkovan.sln, text, 1, 2),
            of(zelkovan.sln, np.array([text], object), 1, 2),
            of(zelkovan.coupncd, text, "2024-07-15", 2),
            of(zelkovan.yearfrac, "2024-01-15", "2024-07-15", text),
            of(zelkovan.yearfrac, ["2024-01-15"], "2024-07-15", [text]),
            of(zelkovan.irr, [1, 1], by=[text, text]),
            of(zelkovan.sln, 1, 2, 3, **{text: 4}),
            of(zelkovan.seterr, refused=text),
        ]

    def test_no_control_characters(self):
        for sentence in self.sentences(HOSTILE):
            self.assertTrue(sentence.isprintable(), sentence)
            self.assertTrue(SHOWN in sentence or SHOWN_BY_US in sentence, sentence)

    def test_not_all_of_a_long_text(self):
        for sentence in self.sentences("x" * 1_000_000):
            self.assertIn("x" * 50, sentence)
            self.assertNotIn("x" * 61, sentence)
            self.assertIn("...", sentence)
            self.assertLess(len(sentence), 300)


if __name__ == "__main__":
    unittest.main()
