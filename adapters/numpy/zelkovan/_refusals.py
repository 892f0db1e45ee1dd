"""What a refused call does: an error, a warning, or a NaN. Set for each thread and context."""

import contextlib
import contextvars
import warnings

import numpy as np

from . import _zelkovan

_WAYS = ("raise", "warn", "nan")
_setting = contextvars.ContextVar("zelkovan_refused", default="raise")


class RefusedError(ValueError):
    """A call that zelkovan refuses.

    calculation  its name: "PRICE"
    argument     the parameter at fault, or None where none is
    position     of the argument at fault, 1 the first, a list being one; or None
    element      in a list, of the value at fault, 1 the first; or None
    row          index of the first refused row, a tuple; () where there is one row only
    sentence     the reason, without the row
    """

    def __init__(self, calculation, argument, position, element, row, sentence, row_words=None):
        self.calculation = calculation
        self.argument = argument
        self.position = position
        self.element = element
        self.row = row
        self.sentence = sentence
        self._row_words = _words_for(row) if row_words is None else row_words
        super().__init__(sentence + self._row_words)

    def __reduce__(self):
        return type(self), (
            self.calculation,
            self.argument,
            self.position,
            self.element,
            self.row,
            self.sentence,
            self._row_words,
        )


class RefusedWarning(UserWarning):
    """Rows that zelkovan refuses, in one warning: count, and the first one's error."""

    def __init__(self, count, first):
        self.count = count
        self.first = first
        self.sentence = first.sentence
        rows = "a row is refused" if count == 1 else f"{count} rows are refused, the first"
        super().__init__(f"{rows}: {first}")

    def __reduce__(self):
        return type(self), (self.count, self.first)


for _public in (RefusedError, RefusedWarning):
    _public.__module__ = "zelkovan"  # where people find it


def _words_for(row):
    if not row:
        return ""
    return f" (row {row[0] if len(row) == 1 else row})"


def geterr():
    """What refused calls do here: {'refused': 'raise'}."""
    return {"refused": _setting.get()}


def seterr(*, refused):
    """Sets what refused calls do in this thread and context: 'raise', 'warn' or 'nan'. Gives what was set before."""
    before = geterr()
    _setting.set(_checked(refused))
    return before


def _checked(way):
    if way not in _WAYS:
        raise ValueError(f"refused is one of {', '.join(_WAYS)}, not {_zelkovan.shown(repr(way))}")
    return way


class errstate(contextlib.ContextDecorator):
    """with zelkovan.errstate(refused='nan'): ...  'raise' is an error, 'warn' one warning a call, 'nan' a NaN.

    Holds for this thread and context, up to the end of the block; also a decorator.
    """

    def __init__(self, *, refused):
        self._way = _checked(refused)
        self._tokens = []

    def _recreate_cm(self):
        return type(self)(refused=self._way)

    def __enter__(self):
        self._tokens.append(_setting.set(self._way))
        return self

    def __exit__(self, *exception):
        _setting.reset(self._tokens.pop())


def way_now():
    return _setting.get()


def settle(answers, error_of, way, where=True):
    """Turns the marks of refused rows into NaN, and raises or warns.

    error_of gives the error of a row's index.
    """
    marked = (answers.view(np.uint64) == _zelkovan.refused_bits) & where
    count = int(np.count_nonzero(marked))
    if count == 0:
        return
    answers[marked] = np.nan
    if way == "nan":
        return
    row = np.unravel_index(int(np.argmax(marked)), marked.shape) if marked.ndim else ()
    error = error_of(tuple(int(i) for i in row))
    if way == "raise":
        raise error
    warnings.warn(RefusedWarning(count, error), stacklevel=4)
