"""Random calls: expected values and sentences are the embedded host's, from engine_calls.tsv."""

import collections
import unittest

import numpy as np

import zelkovan
from support import FUNCTIONS, bits, engine_calls, host_days


def outcome_of(call):
    try:
        answer = float(host_days(FUNCTIONS[call.name](*call.arguments)))
    except zelkovan.RefusedError as error:
        return "refused", error.sentence
    return ("missing", "-") if np.isnan(answer) else ("answered", answer)


def shape_of(call):
    return call.name, len(call.arguments)


def column(values):
    """Words and codes side by side are objects; lists stay ragged."""
    if any(isinstance(value, str) for value in values):
        return np.array(values, object)
    return list(values) if isinstance(values[0], list) else np.array(values)


class EngineCalls(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.calls, cls.unsaid = engine_calls()

    def test_every_calculation_is_called(self):
        self.assertEqual({call.name for call in self.calls}, set(FUNCTIONS))

    def test_one_by_one(self):
        compared = collections.Counter()
        for call in self.calls:
            verdict, answer = outcome_of(call)
            self.assertEqual(verdict, "refused" if call.fails() else call.verdict, call)
            if verdict == "answered":
                self.assertEqual(int(bits(answer)), int(bits(call.answer)), call)
            else:
                self.assertEqual(answer, call.answer, call)
            compared[call.verdict] += 1
        verdicts = ("answered", "missing", "does not solve", "too large", "no answer", "refused")
        self.assertGreater(min(compared[verdict] for verdict in verdicts), 100)
        self.assertLess(self.unsaid, 100)
        print("compared:", dict(compared), "cannot be said:", self.unsaid)

    def test_in_columns(self):
        """All calls of one calculation with as many arguments in one call; refused rows are NaN."""
        alike = collections.defaultdict(list)
        for call in self.calls:
            alike[shape_of(call)].append(call)
        compared = 0
        for (name, count), calls in alike.items():
            columns = [column(values) for values in zip(*(call.arguments for call in calls))]
            with zelkovan.errstate(refused="nan"):
                answers = host_days(FUNCTIONS[name](*columns))
            expected = [call.answer if call.verdict == "answered" else np.nan for call in calls]
            different = np.flatnonzero(bits(answers) != bits(expected))
            self.assertEqual(different.size, 0, [calls[i] for i in different[:3]])
            compared += len(calls)
        self.assertEqual(compared, len(self.calls))

    def test_first_refusal_of_columns(self):
        """The row and the sentence of the first refused call, and the count of a warning."""
        alike = collections.defaultdict(list)
        for call in self.calls:
            alike[shape_of(call)].append(call)
        compared = 0
        for (name, _), calls in alike.items():
            refused = [i for i, call in enumerate(calls) if call.fails()]
            if not refused:
                continue
            columns = [column(values) for values in zip(*(call.arguments for call in calls))]
            function = FUNCTIONS[name]
            with self.assertRaises(zelkovan.RefusedError) as caught:
                function(*columns)
            self.assertEqual(caught.exception.row, (refused[0],))
            self.assertEqual(caught.exception.sentence, calls[refused[0]].answer)
            self.assertEqual(str(caught.exception), f"{calls[refused[0]].answer} (row {refused[0]})")
            with zelkovan.errstate(refused="warn"), self.assertWarns(zelkovan.RefusedWarning) as warned:
                function(*columns)
            self.assertEqual(warned.warning.count, len(refused))
            self.assertEqual(warned.warning.sentence, calls[refused[0]].answer)
            compared += 1
        self.assertGreaterEqual(compared, len(zelkovan.functions) // 2)


if __name__ == "__main__":
    unittest.main()
