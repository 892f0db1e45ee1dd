"""Doubles as the processor and the C library treat them, without a Python exception anywhere.

What to use
  a + b, a - b, a * b, abs(a), comparisons   plain Python, on floats only (turn a whole number into a float first)
  div(a, b)                                  instead of a / b: a zero divisor gives an infinity or a NaN
  exp log log10 pow sqrt floor ceil fmax     the system's libm, called directly, so that the bits are the C library's
  trunc32(x) trunc64(x)                      double -> whole number as the processor converts: the fraction is dropped;
                                             out of range, infinite or NaN gives the smallest value
  low32(k) low64(k)                          a whole number wrapped to its low 32 / 64 bits, signed
  bits(x) from_bits(u)                       a double's 64 bits and back
  minimum(a, b) maximum(a, b)                the first operand stays unless the second is strictly smaller / larger
Constants: MISSING_VALUE, INF, NAN, LARGEST, TWO_53.

The accurate e^x - 1 and ln(1 + x) are in kernels.py, the rate solver in newton.py, reading arguments in arguments.py.
"""
import ctypes
import math
import struct

_libm = ctypes.CDLL("libm.so.6")


def _library_function(name, operands):
    function = getattr(_libm, name)
    function.argtypes = [ctypes.c_double] * operands
    function.restype = ctypes.c_double
    return function


exp = _library_function("exp", 1)
log = _library_function("log", 1)
log10 = _library_function("log10", 1)
sqrt = _library_function("sqrt", 1)
floor = _library_function("floor", 1)
ceil = _library_function("ceil", 1)
pow = _library_function("pow", 2)
fmax = _library_function("fmax", 2)


def bits(x):
    """The 64 bits of a double, as a non-negative whole number."""
    return struct.unpack("<Q", struct.pack("<d", x))[0]


def from_bits(u):
    """The double that has these 64 bits."""
    return struct.unpack("<d", struct.pack("<Q", u))[0]


MISSING_VALUE = from_bits(0xFFFFFE0000000000)   # what the host calls missing; every NaN argument counts as missing
NAN = from_bits(0xFFF8000000000000)             # the NaN that the processor makes of 0/0 and of infinity - infinity
INF = from_bits(0x7FF0000000000000)
LARGEST = 1.7976931348623157e308
TWO_53 = 9007199254740992.0


def is_nan(x):
    return x != x


def div(a, b):
    """a / b; x/0 is an infinity with the product of the signs, 0/0 the processor's NaN, a NaN operand stays."""
    if b != 0.0:                                # also when b is a NaN
        return a / b
    if is_nan(a):
        return a
    if a == 0.0:
        return NAN
    return math.copysign(INF, a) * math.copysign(1.0, b)


def minimum(a, b):
    return b if b < a else a


def maximum(a, b):
    return b if b > a else a


def _wrap(k, width):
    k &= (1 << width) - 1
    return k - (1 << width) if k >> (width - 1) else k


def low32(k):
    return _wrap(k, 32)


def low64(k):
    return _wrap(k, 64)


def _truncate(x, width):
    smallest = -(1 << (width - 1))
    if is_nan(x) or x in (INF, -INF):
        return smallest
    k = int(x)                                  # exact, toward zero
    return k if smallest <= k <= -smallest - 1 else smallest


def trunc32(x):
    return _truncate(x, 32)


def trunc64(x):
    return _truncate(x, 64)
