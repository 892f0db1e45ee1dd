"""Threads in another floating-point mode than the usual one: any library that is linked with -ffast-math flushes denormal
numbers in the whole process. Expected are the embedded host's values, from engine_calls.tsv."""

import ctypes
import ctypes.util
import unittest

import numpy as np

from support import FUNCTIONS, engine_calls
from test_engine_calls import outcome_of

# Bits of MXCSR, the last of the eight words of the C library's environment.
FLUSH_TO_ZERO, DENORMALS_ARE_ZERO = 0x8000, 0x0040
DOWNWARDS, UPWARDS, TOWARD_ZERO = 0x2000, 0x4000, 0x6000
MODES = {
    "flush to zero": FLUSH_TO_ZERO,
    "denormals are zero": DENORMALS_ARE_ZERO,
    "as -ffast-math has it": FLUSH_TO_ZERO | DENORMALS_ARE_ZERO,
    "downwards": DOWNWARDS,
    "upwards": UPWARDS,
    "toward zero": TOWARD_ZERO,
}

_LIBM = ctypes.CDLL(ctypes.util.find_library("m"))
_Environment = ctypes.c_uint32 * 8


class Mode:
    """A mode while this lasts."""

    def __init__(self, bits):
        self._usual, self._other = _Environment(), _Environment()
        _LIBM.fegetenv(self._usual)
        _LIBM.fegetenv(self._other)
        self._other[7] |= bits

    def __enter__(self):
        _LIBM.fesetenv(self._other)

    def __exit__(self, *_):
        _LIBM.fesetenv(self._usual)


def result_of(outcome):
    """Sentences are made in the caller's mode: they may tell of 0 where 5e-324 was given."""
    verdict, value = outcome
    return verdict if verdict == "refused" else (verdict, value)


def is_read_alike(call):
    """Not where the package itself, in the caller's mode, reads a basis of 5e-324 as 0."""
    kinds = [parameter["kind"] for parameter in FUNCTIONS[call.name].parameters]
    basis = [value for kind, value in zip(kinds, call.arguments) if kind == "basis" and isinstance(value, float)]
    return not any(0.0 < abs(value) < np.finfo(float).tiny for value in basis)


class Modes(unittest.TestCase):
    def test_they_are_what_they_are_called(self):
        smallest, tenth = np.array([5e-324]), np.array([0.1])
        with Mode(DENORMALS_ARE_ZERO):
            read = smallest * np.array([2.0])
        with Mode(UPWARDS):
            up = tenth + tenth + tenth
        with Mode(DOWNWARDS):
            down = tenth + tenth + tenth
        self.assertEqual(read[0], 0.0)
        self.assertGreater(up[0], down[0])

    def test_calls_have_the_same_result(self):
        every_call, _ = engine_calls()
        calls = [call for call in every_call if is_read_alike(call)]
        self.assertGreater(len(calls), 0.9 * len(every_call))
        self.assertEqual({call.name for call in calls}, set(FUNCTIONS))
        for call in calls:
            expected = result_of(outcome_of(call))
            for name in ("as -ffast-math has it", "upwards"):  # refusals take their time
                with Mode(MODES[name]):
                    got = outcome_of(call)
                self.assertEqual(result_of(got), expected, (name, call))

    def test_arrays_have_the_same_bits(self):
        rates, amounts = np.linspace(0.001, 0.2, 5000), np.geomspace(1e-300, 1e300, 5000)
        expected = FUNCTIONS["PMT"](rates, 36, amounts)
        for name, bits in MODES.items():
            with Mode(bits):
                got = FUNCTIONS["PMT"](rates, 36, amounts)
            self.assertTrue(np.array_equal(got.view(np.uint64), expected.view(np.uint64)), name)


if __name__ == "__main__":
    unittest.main()
